#include <gtest/gtest.h>

#include <memory>

#include "app/AppRig.h"
#include "sim/SimulatedLogger.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// The shell with the simulated logger on its line.
class SimulatedSessionTest : public AppRig {
 protected:
  SimulatedSessionTest() { Use({}); }

  void Use(const sim::LoggerOptions& options) {
    if (Wire) Loop.RunFor(5000);  // What is still on its way arrives first.
    Wire.reset();
    Device = std::make_unique<sim::SimulatedLogger>(options);
    Wire = std::make_unique<SimulatedLine>(Port, Loop, *Device);
  }

  void ExpectAtRest() {
    EXPECT_FALSE(Link.Busy);
    EXPECT_FALSE(Link.SingleSampleRequested);
    EXPECT_EQ(Screen.WaitCursor, 0);
    EXPECT_EQ(Port.IsOpen(), Link.Connected);
  }

  std::unique_ptr<sim::SimulatedLogger> Device;
  std::unique_ptr<SimulatedLine> Wire;
};

TEST_F(SimulatedSessionTest, ConnectsAndShowsTheLogger) {
  TheSession.Connect();
  EXPECT_TRUE(Link.Connected);
  EXPECT_EQ(Settings.LoggerName, u"Mill Pond 3"_s);
  EXPECT_EQ(Link.RecordCount, 960);
  EXPECT_EQ(Link.FirmwareVersion, 21);
  EXPECT_EQ(Ring.Count, 1);
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(Device->Requests(0x01), 0) << "the clock is left alone";
}

TEST_F(SimulatedSessionTest, InitializesABlankLoggerWithoutACommit) {
  Use({.BlankFlash = true});
  Device->AddFault(sim::FailureMode::CommitRefused);
  Messages.Answers = {kOk};
  TheSession.Connect();
  EXPECT_TRUE(Link.Connected);
  EXPECT_EQ(Messages.All.size(), 1u);
  EXPECT_EQ(Device->Requests(0x06), 1);
  EXPECT_EQ(Device->Requests(0x0B), 0);
  EXPECT_EQ(Ring.Count, 1);
  TheSession.Connect();
  TheSession.Connect();
  EXPECT_EQ(Messages.All.size(), 1u) << "known from now on";
  EXPECT_TRUE(Link.Connected);
}

TEST_F(SimulatedSessionTest, ABlankLoggerWithABadByteIsReported) {
  Use({.BlankFlash = true});
  Device->AddFault(sim::FailureMode::StuckConfigurationByte);
  Messages.Answers = {kOk};
  TheSession.Connect();
  ASSERT_EQ(Messages.All.size(), 2u);
  EXPECT_EQ(Messages.All[1].Title, u"Initialization Error"_s);
  EXPECT_FALSE(Link.Connected);
  ExpectAtRest();
}

// What is read back tells whether the identifier is there, and not the answer to the writing.
TEST_F(SimulatedSessionTest, AnIdentifierThatIsReadBackRightIsGoodHoweverItsWritingWasAnswered) {
  using Mode = sim::FailureMode;
  for (const Mode mode : {Mode::AcknowledgeLost, Mode::WrongAcknowledge, Mode::Silent}) {
    SCOPED_TRACE(static_cast<int>(mode));
    Messages.All.clear();
    Use({.BlankFlash = true});
    Port.OnWrite = [this, mode, answer = Port.OnWrite](const Bytes& bytes) {
      const bool writesIdentifier = bytes.size() > 6 && bytes[2] == 0x07 && bytes[5] == 0;
      if (writesIdentifier && bytes[6] == 0) Device->AddFault({.Mode = mode, .Opcode = 0x07});
      answer(bytes);
    };
    Messages.Answers = {kOk};
    TheSession.Connect();
    EXPECT_EQ(Messages.All.size(), 1u) << "the question alone";
    EXPECT_TRUE(Link.Connected);
    TheSession.Connect();
  }
}

TEST_F(SimulatedSessionTest, OneBadAnswerDoesNotOfferToEraseTheLogger) {
  using Mode = sim::FailureMode;
  for (const Mode mode :
       {Mode::Silent, Mode::RequestLost, Mode::AcknowledgeLost, Mode::WrongAcknowledge,
        Mode::CorruptCheck, Mode::WrongLength, Mode::JunkAhead, Mode::BadEscape, Mode::LateAnswer,
        Mode::AnswerTwice, Mode::StopsMidFrame}) {
    SCOPED_TRACE(static_cast<int>(mode));
    Use({});
    Device->AddFault({.Mode = mode, .Count = 1, .Opcode = 0x08});
    TheSession.Connect();
    EXPECT_TRUE(Link.Connected);
    EXPECT_TRUE(Messages.All.empty());
    EXPECT_EQ(Ring.Count, 1);
    TheSession.Connect();
    ASSERT_FALSE(Link.Connected);
  }
}

TEST_F(SimulatedSessionTest, EveryFailureLeavesConnectingAtRest) {
  for (const sim::FailureModeName& mode : sim::FailureModes()) {
    SCOPED_TRACE(std::string(mode.Name));
    Use({});
    Device->AddFault({.Mode = mode.Mode, .Rate = 0.5});
    Messages.Default = kCancel;
    TheSession.Connect();
    ExpectAtRest();
    EXPECT_EQ(Device->Requests(0x06), 0);
    Device->ClearFaults();
    Loop.RunFor(5000);
    if (Link.Connected) TheSession.Connect();
    ASSERT_FALSE(Link.Connected);
  }
}

TEST_F(SimulatedSessionTest, EveryFailureLeavesTheActionsAtRest) {
  for (const sim::FailureModeName& mode : sim::FailureModes()) {
    SCOPED_TRACE(std::string(mode.Name));
    Use({});
    TheSession.Connect();
    ASSERT_TRUE(Link.Connected);
    Device->AddFault({.Mode = mode.Mode});
    Messages.Default = kYes;
    Messages.All.clear();
    Actions.GetSample();
    ExpectAtRest();
    Actions.ClearHistory();
    ExpectAtRest();
    Actions.SynchronizeTime();
    ExpectAtRest();
    Actions.ResetPulseAccumulators();
    ExpectAtRest();
    Actions.Setup();
    ExpectAtRest();
    EXPECT_EQ(Messages.All.size(), 2u) << "two questions and no error";
    EXPECT_TRUE(Link.Connected);
    TheSession.Connect();
  }
}

TEST_F(SimulatedSessionTest, SamplesForAMinuteOnALossyLine) {
  Use({.Seed = 7});
  TheSession.Connect();
  ASSERT_TRUE(Link.Connected);
  Device->AddFault({.Mode = sim::FailureMode::RandomLoss, .Rate = 0.2});
  StartSampling();
  Loop.RunFor(60000);
  EXPECT_EQ(Ring.Count, 5);
  EXPECT_TRUE(Link.Connected);
  StopSampling();
  Loop.RunFor(5000);
  ExpectAtRest();
  EXPECT_TRUE(Screen.Enabled[u"cmdSetup"_s]);
}

TEST_F(SimulatedSessionTest, AClearedHistoryIsShown) {
  TheSession.Connect();
  Messages.Answers = {kYes};
  Actions.ClearHistory();
  EXPECT_EQ(Link.RecordCount, 0);
}

TEST_F(SimulatedSessionTest, ASynchronizedClockIsShown) {
  TheSession.Connect();
  Messages.Answers = {kYes};
  Actions.SynchronizeTime();
  EXPECT_EQ(Link.LoggerTimeText, u"12/27/10 15:05:12"_s);
}

}  // namespace
}  // namespace tessmar::test
