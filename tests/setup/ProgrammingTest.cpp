#include "setup/Programming.h"

#include <gtest/gtest.h>

#include "link/CommandsBench.h"
#include "settings/ConfigImages.h"
#include "sim/SimulatedLogger.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using sim::FailureMode;

/// Programming on a line whose far end is a script.
struct ScriptedBench : CommandsBench {
  ScriptedBench() {
    Link.AnalogChannelCount = 8;
    Link.PulseChannelCount = 2;
    Link.SampleOnDemandSupported = true;
  }
  LoggerSettings Settings;
  LiveRing Ring;
  FakeMainScreen Screen;
  LiveDisplay Display{Link, Settings, Ring, Screen, Locale};
  Programming Road{Commands, Link, Settings, Display};
};

/// The same with a simulated logger at the far end.
struct SimulatedBench : ScriptedBench {
  explicit SimulatedBench(const sim::LoggerOptions& options = {.SampleOnDemand = true})
      : Logger(options) {}

  /// Lets the frames that begin with these bytes get lost on their way to the logger.
  void Lose(const Bytes& beginning) {
    Port.OnWrite = [beginning, carry = Port.OnWrite](const Bytes& frame) {
      if (!std::equal(beginning.begin(), beginning.end(), frame.begin())) carry(frame);
    };
  }

  sim::SimulatedLogger Logger;
  SimulatedLine Line{Port, Loop, Logger};
};

/// A record whose image differs everywhere from erased memory and from the simulated logger's.
LoggerSettings OtherSettings() {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  settings.LoggerName = u"Well 4"_s;
  settings.SampleInterval = u"17 hours"_s;
  settings.Analog[2].EngUnits = u"Feet"_s;
  settings.Do.AirPressureManual = 500;
  return settings;
}

ConfigImage Packed(const LinkState& link, const LoggerSettings& settings) {
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(link, settings, image));
  return image;
}

Bytes PayloadOf(const Bytes& frame) {
  Bytes payload;
  for (std::size_t i = 2; payload.size() + 2 < frame[1]; ++i) {
    payload.push_back(frame[i] == 0xFE ? static_cast<std::uint8_t>(0xF8 + frame[++i]) : frame[i]);
  }
  return payload;
}

Bytes Slice(const ConfigImage& image, int offset, int count) {
  return Bytes(image.begin() + offset, image.begin() + offset + count);
}

/// The logger's good answer to a read.
Bytes ReadReply(const Bytes& address, const Bytes& data) {
  return Bytes{0xFA} + FrameOf(address + data);
}

TEST(ProgramImage, WritesReadsBackAndCompares) {
  SimulatedBench bench;
  const ConfigImage image = Packed(bench.Link, OtherSettings());
  EXPECT_TRUE(bench.Road.ProgramImage(image));
  EXPECT_EQ(bench.Road.ReadImage(), image);
}

TEST(ProgramImage, IsNotDoneWhenAByteStaysAsItWas) {
  SimulatedBench bench;
  bench.Logger.AddFault(FailureMode::StuckConfigurationByte);
  EXPECT_FALSE(bench.Road.ProgramImage(Packed(bench.Link, OtherSettings())));
}

TEST(ReadImage, GivesNothingWhenAReadFails) {
  SimulatedBench bench;
  bench.Lose({0xF8, 0x07, 0x08, 0x00, 0x03});
  EXPECT_EQ(bench.Road.ReadImage(), std::nullopt);
}

TEST(ProgramConfiguration, WritesFourBlocksAndReadsThreeBack) {
  ScriptedBench bench;
  const ConfigImage image = EmptyImage();
  for (int i = 0; i < 4; ++i) bench.Answering({0xFA});
  bench.Answering(ReadReply({0x08, 0x00, 0x00}, Slice(image, 0, 242)));
  bench.Answering(ReadReply({0x00, 0x01, 0x00}, Slice(image, 242, 48)));
  bench.Answering(ReadReply({0x00, 0x03, 0x00}, Slice(image, 290, 25)));

  EXPECT_TRUE(bench.Road.ProgramConfiguration());
  const std::vector<Bytes>& frames = bench.Port.Writes;
  ASSERT_EQ(frames.size(), 7U);
  EXPECT_EQ(PayloadOf(frames[0]),
            (Bytes{0x07, 0xA7, 0x7A, 0x08, 0x00, 0x87, 0x00} + Slice(image, 0, 128)));
  EXPECT_EQ(PayloadOf(frames[1]),
            (Bytes{0x07, 0xA7, 0x7A, 0x88, 0x00, 0xF9, 0x00} + Slice(image, 128, 114)));
  EXPECT_EQ(PayloadOf(frames[2]),
            (Bytes{0x07, 0xA7, 0x7A, 0x00, 0x01, 0x2F, 0x01} + Slice(image, 242, 48)));
  const Bytes fourth{0xF8, 0x22, 0x07, 0xA7, 0x7A, 0x00, 0x03, 0x18, 0x03};
  EXPECT_EQ(frames[3], fourth + Bytes(25, 0) + (Bytes{0xA7, 0xC5, 0xF9}));
  EXPECT_EQ(frames[4], (Bytes{0xF8, 0x07, 0x08, 0x08, 0x00, 0x00, 0xF2, 0x62, 0x24, 0xF9}));
  EXPECT_EQ(frames[5], (Bytes{0xF8, 0x07, 0x08, 0x00, 0x01, 0x00, 0x30, 0xB0, 0x15, 0xF9}));
  EXPECT_EQ(frames[6], (Bytes{0xF8, 0x07, 0x08, 0x00, 0x03, 0x00, 0x19, 0xD0, 0x0B, 0xF9}));
}

TEST(ProgramConfiguration, FailsWhenAnyByteComesBackDifferent) {
  for (int changed = 0; changed < 315; ++changed) {
    ScriptedBench bench;
    ConfigImage image = EmptyImage();
    image[changed] ^= 0x01;
    for (int i = 0; i < 4; ++i) bench.Answering({0xFA});
    bench.Answering(ReadReply({0x08, 0x00, 0x00}, Slice(image, 0, 242)));
    bench.Answering(ReadReply({0x00, 0x01, 0x00}, Slice(image, 242, 48)));
    bench.Answering(ReadReply({0x00, 0x03, 0x00}, Slice(image, 290, 25)));
    EXPECT_FALSE(bench.Road.ProgramConfiguration()) << changed;
  }
}

TEST(ProgramConfiguration, EndsAtTheFirstBlockThatFails) {
  for (int good = 0; good < 7; ++good) {
    ScriptedBench bench;
    const ConfigImage image = EmptyImage();
    const Bytes answers[] = {{0xFA},
                             {0xFA},
                             {0xFA},
                             {0xFA},
                             ReadReply({0x08, 0x00, 0x00}, Slice(image, 0, 242)),
                             ReadReply({0x00, 0x01, 0x00}, Slice(image, 242, 48))};
    for (int i = 0; i < good; ++i) {
      if (i < 6) bench.Answering(answers[i]);
    }
    EXPECT_FALSE(bench.Road.ProgramConfiguration()) << good;
    // A write is tried three times, a read in two passes of three.
    const int tries = good < 4 ? 3 : 6;
    EXPECT_EQ(bench.Port.Writes.size(), static_cast<std::size_t>(std::min(good, 6) + tries));
  }
}

TEST(ProgramConfiguration, PutsTheImageIntoTheLogger) {
  SimulatedBench bench;
  bench.Logger.Memory().Erase();
  bench.Settings = OtherSettings();
  const LoggerSettings before = bench.Settings;
  EXPECT_TRUE(bench.Road.ProgramConfiguration());
  EXPECT_EQ(bench.Logger.Memory().Configuration(), Packed(bench.Link, before));
  EXPECT_EQ(bench.Settings, before);
  EXPECT_EQ(bench.Logger.Commits(), 0);
}

TEST(ProgramConfiguration, LeavesTheRestOfTheMemoryAlone) {
  SimulatedBench bench;
  bench.Logger.Memory().Erase();
  EXPECT_TRUE(bench.Road.ProgramConfiguration());
  const auto isConfiguration = [](std::uint32_t address) {
    return (address >= 8 && address <= 249) || (address >= 256 && address <= 303) ||
           (address >= 768 && address <= 792);
  };
  for (std::uint32_t address = 0; address < 65536; ++address) {
    if (!isConfiguration(address)) {
      ASSERT_EQ(bench.Logger.Memory().At(address), 0xFF) << address;
    }
  }
}

TEST(ProgramConfiguration, FailsWhenTheLoggerKeepsOneByteAsItWas) {
  const auto addressOf = [](int offset) {
    return static_cast<std::uint32_t>(offset < 242 ? offset + 8
                                                   : offset + (offset < 290 ? 14 : 478));
  };
  for (int offset = 0; offset < 315; ++offset) {
    SimulatedBench bench;
    bench.Settings = OtherSettings();
    bench.Logger.Memory().Erase();
    bench.Logger.SetStuckAddress(addressOf(offset));
    bench.Logger.AddFault(FailureMode::StuckConfigurationByte);
    const bool storable = Packed(bench.Link, bench.Settings)[offset] == 0xFF;
    EXPECT_EQ(bench.Road.ProgramConfiguration(), storable) << offset;
    EXPECT_EQ(bench.Road.ProgramConfiguration(), storable) << offset;
    EXPECT_EQ(bench.Logger.Commits(), 0);
  }
}

TEST(ProgramConfiguration, SendsARecordThatDoesNotFitWithZerosBehindItsField) {
  SimulatedBench bench;
  bench.Settings = OtherSettings();
  bench.Settings.Deadband = 70000;
  EXPECT_TRUE(bench.Road.ProgramConfiguration());
  EXPECT_EQ(bench.Logger.Memory().At(8 + 47), 0);
  EXPECT_EQ(bench.Logger.Memory().At(8 + 146), 0);
  EXPECT_EQ(bench.Logger.Memory().At(768 + 24), 0);
}

struct FailureRow {
  FailureMode Mode;
  bool WhileItLasts;  ///< The result when every request meets it.
};

/// As long as a line that has hung up stays dead.
constexpr qint64 kHangUpMs = 10000;

/// Every way in which the logger can fail. Retries get over noise and random losses.
constexpr FailureRow kFailures[] = {
    {FailureMode::Silent, false},           {FailureMode::RequestLost, false},
    {FailureMode::AcknowledgeLost, false},  {FailureMode::WrongAcknowledge, false},
    {FailureMode::CorruptCheck, false},     {FailureMode::WrongLength, false},
    {FailureMode::JunkAhead, true},         {FailureMode::BadEscape, false},
    {FailureMode::LateAnswer, false},       {FailureMode::AnswerTwice, true},
    {FailureMode::StopsMidFrame, false},    {FailureMode::StuckConfigurationByte, false},
    {FailureMode::CommitRefused, true},     {FailureMode::IllegalVersion, true},
    {FailureMode::IllegalBlockCount, true}, {FailureMode::MoreRecords, true},
    {FailureMode::NoiseAhead, false},       {FailureMode::NoiseBehind, true},
    {FailureMode::HeldAnswer, true},        {FailureMode::LateCopy, true},
    {FailureMode::RandomLoss, true},        {FailureMode::RequestTwice, true},
    {FailureMode::AcknowledgeTwice, true},  {FailureMode::AcknowledgeBehind, false},
    {FailureMode::ReplyLost, false},        {FailureMode::ReplyLate, false},
    {FailureMode::FlippedBits, false},      {FailureMode::MissingByte, false},
    {FailureMode::DoubledByte, false},      {FailureMode::HangUp, false},
};

TEST(ProgramConfiguration, MeetsEveryFailureOfTheLogger) {
  EXPECT_EQ(std::size(kFailures), sim::FailureModes().size());
  for (const FailureRow& row : kFailures) {
    SimulatedBench bench;
    bench.Settings = OtherSettings();
    bench.Logger.AddFault(row.Mode);
    EXPECT_EQ(bench.Road.ProgramConfiguration(), row.WhileItLasts) << static_cast<int>(row.Mode);

    bench.Logger.ClearFaults();
    bench.Loop.RunFor(kHangUpMs);
    EXPECT_TRUE(bench.Road.ProgramConfiguration()) << static_cast<int>(row.Mode);
    EXPECT_EQ(bench.Logger.Memory().Configuration(), Packed(bench.Link, bench.Settings));
  }
}

TEST(ProgramConfiguration, GetsOverASingleFailureOfTheLine) {
  for (const FailureRow& row : kFailures) {
    // Neither is over with one request.
    if (row.Mode == FailureMode::StuckConfigurationByte || row.Mode == FailureMode::HangUp)
      continue;
    for (const std::uint8_t opcode : {0x07, 0x08}) {
      SimulatedBench bench;
      bench.Settings = OtherSettings();
      bench.Logger.AddFault({.Mode = row.Mode, .Count = 1, .Opcode = opcode});
      EXPECT_TRUE(bench.Road.ProgramConfiguration()) << static_cast<int>(row.Mode);
    }
  }
}

TEST(ProgramConfiguration, FailsWhenTheThirdBlockCannotBeRead) {
  SimulatedBench bench;
  bench.Settings = OtherSettings();
  bench.Lose({0xF8, 0x07, 0x08, 0x00, 0x03});
  EXPECT_FALSE(bench.Road.ProgramConfiguration());
}

TEST(ProgramConfiguration, FailsWithoutAPort) {
  SimulatedBench bench;
  bench.Port.Unplug();
  EXPECT_FALSE(bench.Road.ProgramConfiguration());
}

TEST(ProgramConfiguration, FailsWhenThePlugIsPulledInTheMiddle) {
  // 630 bytes and their frames take more than 164 ms at this speed.
  for (int ms = 0; ms <= 160; ms += 10) {
    SimulatedBench bench(sim::LoggerOptions{.BaudRate = 38400});
    bench.Loop.At(ms, [&bench] { bench.Port.Unplug(); });
    EXPECT_FALSE(bench.Road.ProgramConfiguration()) << ms;
  }
}

TEST(RefreshFromLogger, TakesOverAndShowsWhatTheLoggerHolds) {
  SimulatedBench bench;
  const LoggerSettings expected = OtherSettings();
  bench.Logger.Memory().StoreConfiguration(Packed(bench.Link, expected));
  bench.Road.RefreshFromLogger();
  EXPECT_EQ(bench.Settings, expected);
  EXPECT_EQ(bench.Screen.Captions[u"lblUnits(2)"_s], u"Feet"_s);
  EXPECT_EQ(bench.Link.RecordCount, 960);
  EXPECT_EQ(bench.Link.LoggerTimeText.right(8), u"14:30:00"_s);
}

TEST(RefreshFromLogger, ReadsConfigurationThenStatusThenClock) {
  SimulatedBench bench;
  bench.Road.RefreshFromLogger();
  const std::vector<Bytes>& frames = bench.Port.Writes;
  ASSERT_EQ(frames.size(), 5U);
  EXPECT_EQ(PayloadOf(frames[0]), (Bytes{0x08, 0x08, 0x00, 0x00, 0xF2}));
  EXPECT_EQ(PayloadOf(frames[1]), (Bytes{0x08, 0x00, 0x01, 0x00, 0x30}));
  EXPECT_EQ(PayloadOf(frames[2]), (Bytes{0x08, 0x00, 0x03, 0x00, 0x19}));
  EXPECT_EQ(PayloadOf(frames[3]), (Bytes{0x0C}));
  EXPECT_EQ(PayloadOf(frames[4]), (Bytes{0x00}));
}

TEST(RefreshFromLogger, ShowsTheFirstTwoBlocksWhenTheThirdCannotBeRead) {
  SimulatedBench bench;
  const LoggerSettings stored = OtherSettings();
  bench.Logger.Memory().StoreConfiguration(Packed(bench.Link, stored));
  bench.Lose({0xF8, 0x07, 0x08, 0x00, 0x03});
  bench.Road.RefreshFromLogger();
  LoggerSettings expected = stored;
  expected.Do = DoSettings{};
  EXPECT_EQ(bench.Settings, expected);
  EXPECT_EQ(bench.Screen.Captions[u"lblUnits(2)"_s], u"Feet"_s);
  EXPECT_EQ(bench.Link.RecordCount, 960);
}

TEST(RefreshFromLogger, GivesZerosAndNotDefaultsForAnUnreadThirdBlock) {
  SimulatedBench bench;
  bench.Lose({0xF8, 0x07, 0x08, 0x00, 0x03});
  bench.Settings.Do = DoSettings::Defaults();
  bench.Road.RefreshFromLogger();
  EXPECT_EQ(bench.Settings.Do.ConductivityManualEntry, 0);
  EXPECT_EQ(bench.Settings.Do.AirPressureManualEntry, 0);
  EXPECT_EQ(bench.Settings.Do.AirPressureManualEntryUnits, 0);
}

TEST(RefreshFromLogger, KeepsTheSettingsWhenOneOfTheFirstTwoBlocksCannotBeRead) {
  for (const Bytes& lost : {Bytes{0xF8, 0x07, 0x08, 0x08}, Bytes{0xF8, 0x07, 0x08, 0x00, 0x01}}) {
    SimulatedBench bench;
    const LoggerSettings before = OtherSettings();
    bench.Settings = before;
    bench.Lose(lost);
    bench.Road.RefreshFromLogger();
    EXPECT_EQ(bench.Settings, before);
    EXPECT_EQ(bench.Link.RecordCount, 960);
    EXPECT_EQ(bench.Link.LoggerTimeText.right(8).left(5), u"14:30"_s);
  }
}

TEST(RefreshFromLogger, EndsQuietlyOnADeadLine) {
  SimulatedBench bench;
  const LoggerSettings before = OtherSettings();
  bench.Settings = before;
  bench.Line.SetPlugged(false);
  bench.Road.RefreshFromLogger();
  EXPECT_EQ(bench.Settings, before);
  EXPECT_EQ(bench.Link.LoggerTimeText, u"00/00/00 00:00:00"_s);
}

TEST(ReadIdentifier, GivesAllEightCharacters) {
  ScriptedBench bench;
  bench.Answering(ReadReply({0, 0, 0}, {'A', 0x1F, 0x20, 0x7E, 0x7F, 0x80, 0xFF, ' '}));
  EXPECT_EQ(bench.Road.ReadIdentifier(), u"A  ~\u007F   "_s);
  EXPECT_EQ(bench.Port.Written,
            (Bytes{0xF8, 0x07, 0x08, 0x00, 0x00, 0x00, 0x08, 0xE0, 0x07, 0xF9}));
}

TEST(ReadIdentifier, GivesNothingWhenTheReadFails) {
  ScriptedBench bench;
  EXPECT_EQ(bench.Road.ReadIdentifier(), QString());
}

TEST(WriteIdentifier, PadsWithBlanks) {
  ScriptedBench bench;
  bench.Answering({0xFA});
  EXPECT_TRUE(bench.Road.WriteIdentifier(u"AB"_s));
  EXPECT_EQ(bench.Port.Written,
            (Bytes{0xF8, 0x11, 0x07, 0xA7, 0x7A, 0x00, 0x00, 0x07, 0x00, 0x41,
                   0x42, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0xC4, 0xC8, 0xF9}));
}

TEST(WriteIdentifier, IgnoresWhatFollowsTheEighthCharacter) {
  SimulatedBench bench;
  EXPECT_TRUE(bench.Road.WriteIdentifier(u"ABCDEFGHIJ"_s));
  EXPECT_EQ(bench.Road.ReadIdentifier(), u"ABCDEFGH"_s);
  EXPECT_EQ(bench.Logger.Memory().At(8), 'M') << "the name behind the identifier stays";
}

TEST(WriteIdentifier, FailsWithoutAnAcknowledge) {
  ScriptedBench bench;
  EXPECT_FALSE(bench.Road.WriteIdentifier(u"AB"_s));
}

}  // namespace
}  // namespace tessmar::test
