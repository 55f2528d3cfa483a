// The program's own reading of the protocol meets the simulator's.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "HexBytes.h"
#include "link/cmd.h"
#include "settings/config.h"
#include "sim/LoggerSetup.h"
#include "sim/SimulatedLogger.h"
#include "support/FakeOutside.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using sim::FailureMode;

class TwoReadings : public testing::Test {
 protected:
  TwoReadings() {
    link.TrapErrors = true;
    link.LinkTimeoutTicks = 10;
    link.AnalogChannelCount = 8;
    link.PulseChannelCount = 2;
  }

  void Connect(const sim::LoggerOptions& options) {
    line.reset();
    logger = std::make_unique<sim::SimulatedLogger>(options);
    line = std::make_unique<SimulatedLine>(port, loop, *logger);
    ASSERT_TRUE(comm.OpenPort(9, u"38400,N,8,1"_s));
    ASSERT_TRUE(commands.SyncWithLogger([] { return false; }));
  }

  std::vector<std::uint8_t> ReadImage() {
    std::vector<std::uint8_t> image;
    EXPECT_TRUE(commands.ReadMemoryBlock(image, 0, 242, 8));
    EXPECT_TRUE(commands.ReadMemoryBlock(image, 242, 48, 256));
    EXPECT_TRUE(commands.ReadMemoryBlock(image, 290, 25, 768));
    return image;
  }

  LinkState link;
  FakeMessageLoop loop{link};
  FakeSerialPort port;
  FakeClock clock;
  SystemLocale locale{QLocale(QLocale::English, QLocale::UnitedStates)};
  Comm comm{port, loop, link};
  LoggerCommands commands{comm, link, clock, locale};
  std::unique_ptr<sim::SimulatedLogger> logger;
  std::unique_ptr<SimulatedLine> line;
};

TEST_F(TwoReadings, AgreeOnTheVersion) {
  Connect({.AnalogChannels = 3,
           .PulseChannels = 1,
           .Firmware = 250,
           .ModelCode = 220,
           .SampleOnDemand = true});
  EXPECT_EQ(link.FirmwareVersion, 250);
  EXPECT_EQ(link.AnalogChannelCount, 3);
  EXPECT_EQ(link.PulseChannelCount, 1);
  EXPECT_TRUE(link.SampleOnDemandSupported);
  EXPECT_EQ(link.LoggerModelCode, kRelayModelCode);
}

TEST_F(TwoReadings, AgreeOnStatusAndClock) {
  Connect({.Records = 123456});
  EXPECT_TRUE(commands.GetLoggerStatus());
  EXPECT_EQ(link.RecordCount, 123456);
  EXPECT_EQ(link.LoggerStatusWord, 0x0080);
  EXPECT_TRUE(commands.SetLoggerTime(commands.ClockText()));
  EXPECT_TRUE(commands.GetLoggerTime().startsWith(u"12/27/10 15:05:1"_s));
}

TEST_F(TwoReadings, AgreeOnTheConfigurationImage) {
  Connect({});
  LoggerSettings settings;
  ASSERT_TRUE(UnpackConfigImage(link, ReadImage(), settings));
  EXPECT_EQ(settings.LoggerName, u"Mill Pond 3"_s);
  EXPECT_EQ(settings.SampleInterval, u"15 minutes"_s);
  EXPECT_EQ(settings.SensorWarmupTime, 3);
  EXPECT_EQ(settings.DataWrapAroundFlag, 1);
  EXPECT_EQ(settings.FixedBaudRate, 0);
  EXPECT_EQ(settings.Analog[1].EngUnits, u"Temp C"_s);
  EXPECT_EQ(settings.Analog[1].DecPlaces, 2);
  EXPECT_EQ(settings.Analog[1].LowerLimit, -10);
  EXPECT_EQ(settings.Analog[1].UpperLimit, 50);
  EXPECT_EQ(settings.Analog[7].EngUnits, u"Volts"_s);
  EXPECT_EQ(settings.Analog[7].RawScaleUpper, 62384);
  EXPECT_EQ(settings.Analog[7].DisplayBottom, 10);
  EXPECT_EQ(settings.Analog[7].DisplayTop, 15);
  EXPECT_NEAR(settings.Pulse[0].PulseUnit, 0.01, 1e-12);
  EXPECT_EQ(settings.Do.ConductivityManualEntry, 0);
  EXPECT_EQ(settings.Do.ConductivityChannel, 2);
  EXPECT_EQ(settings.Do.AirPressureManualEntry, 0);
  EXPECT_EQ(settings.Do.AirPressureChannel, 3);
  EXPECT_EQ(settings.Do.AirPressureUnits, 1);
  EXPECT_EQ(settings.Do.AirPressureManualEntryUnits, 6);
  EXPECT_EQ(settings.Do.EnableSalinityDisplay, 1);
  EXPECT_EQ(settings.Do.SalinityDisplayChannel, 6);
  EXPECT_EQ(settings.Do.O2SaturationDisplayChannel, 4);
  EXPECT_EQ(settings.Do.O2ConcentrationDisplayChannel, 5);
}

TEST_F(TwoReadings, PackTheSameImageFromTheSameSettings) {
  Connect({});
  const std::vector<std::uint8_t> read = ReadImage();
  LoggerSettings settings;
  ASSERT_TRUE(UnpackConfigImage(link, read, settings));
  ConfigImage packed;
  ASSERT_TRUE(PackConfigImage(link, settings, packed));
  EXPECT_EQ(Text(packed), Text(read));
}

TEST_F(TwoReadings, AgreeOnWritingMemoryAndCommitting) {
  Connect({.BlankFlash = true});
  std::vector<std::uint8_t> data(128);
  for (std::size_t index = 0; index < data.size(); ++index)
    data[index] = static_cast<std::uint8_t>(index + 0x80);
  std::uint32_t address = 136;
  EXPECT_TRUE(commands.WriteMemoryBlock(data, 0, 114, address));
  EXPECT_EQ(address, 249U);
  EXPECT_EQ(logger->Memory().At(136), 0x80);
  EXPECT_EQ(logger->Memory().At(249), 0xF1);
  EXPECT_EQ(logger->Memory().At(250), 0xFF);
  EXPECT_TRUE(commands.CommitConfiguration());
  EXPECT_EQ(logger->Commits(), 1);
}

TEST_F(TwoReadings, AgreeOnErasingClearingAndResetting) {
  Connect({});
  EXPECT_TRUE(commands.ResetPulseAccumulators());
  EXPECT_TRUE(commands.ClearHistory());
  EXPECT_TRUE(commands.InitializeFlash());
  EXPECT_TRUE(commands.GetLoggerStatus());
  EXPECT_EQ(link.RecordCount, 0);
  EXPECT_EQ(link.LoggerStatusWord, 0);
}

TEST_F(TwoReadings, AgreeOnSamples) {
  Connect({});
  std::array<std::uint8_t, kSampleReplySize> reply{};
  EXPECT_EQ(commands.GetSample(reply), SampleAnswer::NoSample);
  commands.StartMeasurement();
  loop.RunFor(500);
  EXPECT_EQ(commands.GetSample(reply), SampleAnswer::Sample);
  EXPECT_EQ(reply[3], 0x4F);
}

TEST_F(TwoReadings, AgreeOnBlocksOfRecords) {
  Connect({.Records = 12});
  std::array<std::uint8_t, kHistoryReplySize> reply{};
  EXPECT_TRUE(commands.GetHistoryBlock(HistoryBlock::First, reply));
  EXPECT_EQ(reply[0], 10);
  EXPECT_TRUE(commands.GetHistoryBlock(HistoryBlock::Next, reply));
  EXPECT_EQ(reply[0], 2);
  EXPECT_TRUE(commands.GetHistoryBlock(HistoryBlock::Again, reply));
  EXPECT_EQ(reply[0], 2);
}

TEST_F(TwoReadings, AgreeOnAThrottledLine) {
  Connect({.BaudRate = 9600});
  const qint64 before = loop.NowMs();
  EXPECT_EQ(ReadImage(), sim::ConfigurationImage(logger->Options()));
  // 315 bytes and their frames at 960 bytes a second.
  EXPECT_GE(loop.NowMs() - before, 350);
}

TEST_F(TwoReadings, HandshakeFailsOverALetterThatComesTwice) {
  logger = std::make_unique<sim::SimulatedLogger>();
  line = std::make_unique<SimulatedLine>(port, loop, *logger);
  logger->AddFault({.Mode = FailureMode::AnswerTwice, .Count = 1});
  ASSERT_TRUE(comm.OpenPort(9, u"38400,N,8,1"_s));
  EXPECT_TRUE(commands.SyncWithLogger([] { return false; }));
  EXPECT_EQ(std::ranges::count(port.Writes, Bytes{0x55}), 2);
}

TEST_F(TwoReadings, LoggerPastItsHandshakeIsAcceptedAfterTenPasses) {
  Connect({.PastHandshake = true});
  EXPECT_EQ(std::ranges::count(port.Writes, Bytes{0x55}), 10);
}

TEST_F(TwoReadings, FaultsInRepliesAreNoticed) {
  for (const FailureMode mode :
       {FailureMode::CorruptCheck, FailureMode::WrongLength, FailureMode::BadEscape,
        FailureMode::StopsMidFrame, FailureMode::Silent, FailureMode::RequestLost,
        FailureMode::AcknowledgeLost, FailureMode::WrongAcknowledge}) {
    SCOPED_TRACE(static_cast<int>(mode));
    Connect({});
    logger->AddFault(mode);
    EXPECT_FALSE(commands.GetLoggerStatus());
    logger->ClearFaults();
    EXPECT_TRUE(commands.GetLoggerStatus());
  }
}

TEST_F(TwoReadings, JunkAheadAndLateAnswersAreOvercome) {
  for (const FailureMode mode : {FailureMode::JunkAhead, FailureMode::LateAnswer}) {
    SCOPED_TRACE(static_cast<int>(mode));
    Connect({});
    logger->AddFault(mode);
    EXPECT_TRUE(commands.GetLoggerStatus());
  }
}

TEST_F(TwoReadings, NothingPassesWhileThePlugIsOut) {
  Connect({});
  line->SetPlugged(false);
  EXPECT_FALSE(commands.GetLoggerStatus());
  line->SetPlugged(true);
  EXPECT_TRUE(commands.GetLoggerStatus());
}

}  // namespace
}  // namespace tessmar::test
