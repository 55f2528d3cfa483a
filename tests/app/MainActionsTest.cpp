#include "app/MainActions.h"

#include <gtest/gtest.h>

#include "app/AppRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

using Asked = std::vector<FakeMessages::Asked>;

const auto kBox = u"chkSampleContinuously"_s;
const FakeMessages::Asked kAskClear{u"Are you sure you want to erase the history buffer?"_s, 36,
                                    u"Clear History"_s};
const FakeMessages::Asked kAskSync{
    u"Do you want to set the logger time to equal the system time?"_s, 68, u"Synchronize Time"_s};

class MainActionsTest : public AppRig {};

TEST_F(MainActionsTest, TheConnectEntryOnlyConnects) {
  Actions.ConnectEntry();
  ASSERT_TRUE(Link.Connected);
  Actions.ConnectEntry();
  EXPECT_TRUE(Link.Connected);
}

TEST_F(MainActionsTest, TheDisconnectEntryOnlyDisconnects) {
  Actions.DisconnectEntry();
  EXPECT_FALSE(Link.Connected);
  EXPECT_EQ(Port.Opened, 0);
  Actions.Connect();
  ASSERT_TRUE(Link.Connected);
  Actions.DisconnectEntry();
  EXPECT_FALSE(Link.Connected);
}

TEST_F(MainActionsTest, TheBoxCannotBeTickedWithoutASession) {
  Screen.Checked[kBox] = true;
  Actions.SampleContinuouslyClicked();
  EXPECT_FALSE(Screen.Checked[kBox]);
  Connect();
  Screen.Checked[kBox] = true;
  Actions.SampleContinuouslyClicked();
  EXPECT_TRUE(Screen.Checked[kBox]);
}

TEST_F(MainActionsTest, TheSamplingEntryFlipsTheBoxInASession) {
  Actions.SampleContinuouslyEntry();
  EXPECT_FALSE(Screen.IsChecked(kBox));
  Connect();
  Actions.SampleContinuouslyEntry();
  EXPECT_TRUE(Screen.Checked[kBox]);
  Actions.SampleContinuouslyEntry();
  EXPECT_FALSE(Screen.Checked[kBox]);
}

TEST_F(MainActionsTest, GetSampleTakesOne) {
  Connect();
  Actions.GetSample();
  EXPECT_EQ(Ring.Count, 2);
}

TEST_F(MainActionsTest, GuardedActionsDoNothingWithoutASession) {
  Actions.GetSample();
  Actions.GetHistory();
  Actions.ClearHistory();
  Actions.Setup();
  Actions.ResetPulseAccumulators();
  EXPECT_EQ(Port.Opened, 0);
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(HistoryShown + SetupShown, 0);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, GuardedActionsDoNothingWhileBusyAndLeaveTheLinkHeld) {
  Connect();
  Link.Busy = true;
  PressEverything();
  EXPECT_TRUE(Link.Busy);
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(HistoryShown + SetupShown, 0);
}

TEST_F(MainActionsTest, GuardedActionsDoNothingDuringContinuousSampling) {
  Connect();
  StartSampling();
  Forget();
  PressEverything();
  EXPECT_FALSE(Link.Busy);
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(HistoryShown + SetupShown, 0);
}

TEST_F(MainActionsTest, GetHistoryRunsInASession) {
  Connect();
  Actions.GetHistory();
  EXPECT_EQ(HistoryShown, 1);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, ClearHistoryErasesAndReadsStatusAndClock) {
  Connect();
  Messages.Answers = {kYes};
  Messages.OnMessage = [this] { EXPECT_TRUE(Link.Busy); };
  Logger.Status = {0, 0, 0, 0, 0};
  Actions.ClearHistory();
  EXPECT_EQ(Messages.All, Asked{kAskClear});
  EXPECT_EQ(Port.Writes, (std::vector<Bytes>{wire::kClearHistory, wire::kStatus, wire::kTime}));
  EXPECT_EQ(Link.RecordCount, 0);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, ClearHistoryAnsweredWithNoSendsNothing) {
  Connect();
  Messages.Answers = {kNo};
  Actions.ClearHistory();
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, AClearHistoryThatFailsShowsTheSameCountAndNoError) {
  Connect();
  Logger.Deaf = {0x04};
  Messages.Answers = {kYes};
  Actions.ClearHistory();
  EXPECT_EQ(Messages.All, Asked{kAskClear});
  Poll.Timer1Tick();
  EXPECT_EQ(Screen.Caption(u"lblRecordings"_s), u"5"_s);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, AClockThatCannotBeReadShowsZeros) {
  Connect();
  Logger.Deaf = {0x00};
  Messages.Answers = {kYes};
  Actions.ClearHistory();
  EXPECT_EQ(Link.LoggerTimeText, u"00/00/00 00:00:00"_s);
}

TEST_F(MainActionsTest, TheProgramEndingAtAQuestionChangesNothingInTheLogger) {
  Connect();
  Messages.Default = kYes;
  Messages.OnMessage = [this] { Loop.End(); };
  Actions.ClearHistory();
  Actions.SynchronizeTime();
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, SyncTimeSetsTheClockToTheSystems) {
  Connect();
  Messages.Answers = {kYes};
  Messages.OnMessage = [this] {
    EXPECT_FALSE(Link.Busy);
    EXPECT_EQ(Screen.WaitCursor, 0);
  };
  Logger.OnCommand = [this](std::uint8_t) {
    EXPECT_TRUE(Link.Busy);
    EXPECT_EQ(Screen.WaitCursor, 1);
  };
  Actions.SynchronizeTime();
  EXPECT_EQ(Messages.All, Asked{kAskSync});
  EXPECT_EQ(Port.Writes, (std::vector<Bytes>{wire::kSetTime, wire::kStatus, wire::kTime}));
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Screen.WaitCursor, 0);
}

TEST_F(MainActionsTest, SyncTimeAnsweredWithNoSendsNothing) {
  Connect();
  Messages.Answers = {kNo};
  Actions.SynchronizeTime();
  EXPECT_TRUE(Port.Writes.empty());
}

TEST_F(MainActionsTest, SyncTimeAnsweredWithYesDuringContinuousSamplingSetsNothing) {
  Connect();
  StartSampling();
  Forget();
  Messages.Answers = {kYes};
  Actions.SynchronizeTime();
  EXPECT_EQ(Messages.All, Asked{kAskSync});
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_TRUE(Link.SampleContinuously);
}

TEST_F(MainActionsTest, SyncTimeWithoutASessionAsksAndSetsNothing) {
  Messages.Answers = {kYes};
  Actions.SynchronizeTime();
  EXPECT_EQ(Messages.All, Asked{kAskSync});
  EXPECT_EQ(Port.Opened, 0);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, SetupReadsTheLoggerAheadOfTheScreenAndBehindIt) {
  Connect();
  Bytes ahead;
  SetupScreen = [&] {
    ahead = Logger.Opcodes;
    EXPECT_TRUE(Link.Busy);
    EXPECT_EQ(Screen.WaitCursor, 0);
    // The screen frees the link while it is open; what it edits and does not program is lost.
    Link.Busy = false;
    Settings.LoggerName = u"edited"_s;
    Logger.OnCommand = [this](std::uint8_t) {
      EXPECT_TRUE(Link.Busy);
      EXPECT_EQ(Screen.WaitCursor, 1);
    };
  };
  Actions.Setup();
  EXPECT_EQ(SetupShown, 1);
  EXPECT_EQ(ahead, (Bytes{8, 8, 8, 0x0C, 0}));
  EXPECT_EQ(Logger.Opcodes, (Bytes{8, 8, 8, 0x0C, 0, 8, 8, 8, 0x0C, 0}));
  EXPECT_EQ(Settings.LoggerName, u"Pond 7"_s);
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Screen.WaitCursor, 0);
}

TEST_F(MainActionsTest, ABoxTickedWhileSetupOpensStartsSamplingOnlyBehindTheScreen) {
  Connect();
  Logger.OnCommand = [this](std::uint8_t) { Screen.Checked[u"chkSampleContinuously"_s] = true; };
  SetupScreen = [this] {
    Link.Busy = false;
    Logger.Opcodes.clear();
    Loop.RunFor(3000);
    EXPECT_FALSE(Link.SampleContinuously);
    EXPECT_EQ(Logger.Opcodes, Bytes{});
  };
  Actions.Setup();
  EXPECT_EQ(SetupShown, 1);
  EXPECT_EQ(Logger.Opcodes, (Bytes{8, 8, 8, 0x0C, 0}));
  Loop.RunFor(200);
  EXPECT_TRUE(Link.SampleContinuously);
}

TEST_F(MainActionsTest, TheProgramEndingInSetupFreesTheLink) {
  Connect();
  SetupScreen = [this] {
    Port.Close();
    Loop.End();
  };
  Actions.Setup();
  EXPECT_EQ(Logger.Opcodes.size(), 5u);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, TheProgramEndingAheadOfSetupShowsNoScreen) {
  Connect();
  Logger.OnCommand = [this](std::uint8_t) {
    Port.Close();
    Loop.End();
  };
  Actions.Setup();
  EXPECT_EQ(SetupShown, 0);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, ResetPulseAccumulatorsZeroesTheShownTotals) {
  Connect();
  ASSERT_EQ(Ring.Samples[0].Value[8], 9);
  Actions.ResetPulseAccumulators();
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(Port.Writes, std::vector<Bytes>{wire::kResetPulses});
  EXPECT_EQ(Ring.Samples[0].Value, (std::array<std::int32_t, 10>{1, 2, 3, 4, 5, 6, 7, 8, 0, 0}));
  EXPECT_TRUE(Screen.Written.contains(u"lblPulseValue1"_s));
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, ResetPulseAccumulatorsZeroesTheTotalsEvenWhenTheLoggerFails) {
  Connect();
  Logger.Deaf = {0x0E};
  Actions.ResetPulseAccumulators();
  EXPECT_EQ(Ring.Samples[0].Value[8], 0);
  EXPECT_EQ(Ring.Samples[0].Value[9], 0);
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_FALSE(Link.Busy);
}

TEST_F(MainActionsTest, ResetPulseAccumulatorsWithAnEmptyRingChangesNoDisplay) {
  Connect();
  Display.EmptyRing();
  Forget();
  Actions.ResetPulseAccumulators();
  EXPECT_EQ(Port.Writes, std::vector<Bytes>{wire::kResetPulses});
  EXPECT_EQ(Screen.Written, QStringList());
  EXPECT_EQ(Ring.Count, 0);
}

TEST_F(MainActionsTest, FirmwareVersionShowsWhatTheConnectionRead) {
  Connect();
  Logger.Version[0] = 9;
  Actions.FirmwareVersion();
  EXPECT_EQ(Messages.All, (Asked{{u"Logger Firmware Version = 3"_s, 0, u"Firmware Version"_s}}));
  EXPECT_TRUE(Port.Writes.empty());
}

TEST_F(MainActionsTest, FirmwareVersionIsNotReachableWithoutASession) {
  Connect();
  EXPECT_TRUE(Screen.Enabled[u"mnuFirmwareVersion"_s]);
  Actions.Connect();
  Poll.Timer1Tick();
  EXPECT_FALSE(Screen.Enabled[u"mnuFirmwareVersion"_s]);
}

TEST_F(MainActionsTest, TheImageImportNeedsNoSession) {
  Actions.LoadLoggerImageFile();
  EXPECT_EQ(ImportShown, 1);
}

/// A logger that said who it is at the connection and nothing of its settings.
class SettingsNotRead : public MainActionsTest {
 protected:
  SettingsNotRead() {
    Logger.OnCommand = [this](std::uint8_t) {
      // The identifier is read first.
      if (Logger.Count(0x08) > 1) Logger.Failing = {0x08};
    };
    TheSession.Connect();
    Logger.OnCommand = nullptr;
    EXPECT_TRUE(Link.Connected);
    EXPECT_EQ(Settings.LoggerName, QString());
  }
};

// What is uploaded is kept with the settings of the logger that it came from, and under its name.
TEST_F(SettingsNotRead, AreReadOnceBeforeAnUpload) {
  Logger.Failing.clear();
  Actions.GetHistory();
  EXPECT_EQ(HistoryShown, 1);
  EXPECT_EQ(Settings.LoggerName, u"Pond 7"_s);
  EXPECT_FALSE(Link.Busy);
  Forget();
  Actions.GetHistory();
  EXPECT_EQ(HistoryShown, 2);
  EXPECT_EQ(Port.Writes.size(), 0u);
}

TEST_F(SettingsNotRead, HoldNoUploadUpWhenTheyStillCannotBe) {
  Actions.GetHistory();
  EXPECT_EQ(HistoryShown, 1);
  EXPECT_EQ(Settings.LoggerName, QString());
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Messages.All, Asked());
}

TEST_F(SettingsNotRead, AreReadForNoUploadOnceTheProgramEnds) {
  Logger.OnCommand = [this](std::uint8_t) { Loop.End(); };
  Actions.GetHistory();
  EXPECT_EQ(HistoryShown, 0);
  EXPECT_FALSE(Link.Busy);
}

}  // namespace
}  // namespace tessmar::test
