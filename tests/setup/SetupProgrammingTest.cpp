#include "setup/SetupProgramming.h"

#include <gtest/gtest.h>

#include "base/Fault.h"
#include "base/TextTable.h"
#include "setup/SetupRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FakeMessages;
using test::kCommitOpcode;
using test::kWriteOpcode;
using test::SetupRig;

const FakeMessages::Asked kAskProgram{
    u"Are you sure you want to program settings into logger memory?"_s, 68, u"Program Settings"_s};
const FakeMessages::Asked kNotProgrammed{u"Error: programming not completed successfully."_s, 16,
                                         u"Program Settings"_s};
const FakeMessages::Asked kUnableToComplete{
    u"Error: unable to complete operation. Check that setup data is valid and connection is working."_s,
    16, u"Program Settings"_s};
const FakeMessages::Asked kAskSave{
    u"The settings information has changed without being saved to a file.\r\n"
    "Do you want to save it now?"_s,
    67, u"Data Has Changed"_s};
const FakeMessages::Asked kAskProgramChanged{
    u"The settings information has changed without being programmed to the logger.\r\n"
    "If you exit now, the settings information will be restored from the current contents of the "
    "logger.\r\nDo you want to program the logger now?"_s,
    67, u"Data Has Changed"_s};

/// The setup screen reduced to one edit, and a record of what was done to it.
class SetupProgrammingTest : public testing::Test {
 protected:
  explicit SetupProgrammingTest(const sim::LoggerOptions& options = {}) : rig_(options) {
    name_ = rig_.Settings.LoggerName;
    setup_.TakeBaselines();
  }

  std::vector<FakeMessages::Asked>& Asked() { return rig_.Messages.All; }
  void Answer(std::initializer_list<int> answers) { rig_.Messages.Answers = answers; }
  int Writes() const { return rig_.Logger.Requests(kWriteOpcode); }
  int Commits() const { return rig_.Logger.Requests(kCommitOpcode); }

  SetupRig rig_;
  QString name_;  ///< What txtName holds.
  bool doCheckPasses_ = true;
  bool doCheckFaults_ = false;
  bool endsInCheck_ = false;  ///< The program ends while the check asks.
  bool saveSucceeds_ = true;
  int doChecks_ = 0;
  int saves_ = 0;
  bool cancelEnabled_ = true;
  bool cancelHasFocus_ = false;
  bool waitCursor_ = false;
  int waitCursorShown_ = 0;
  std::vector<std::size_t> before_;  ///< Sizes of the images that were told of.
  std::vector<std::size_t> after_;

  SetupProgramming setup_{
      rig_.Commands,
      rig_.Programmer,
      rig_.Link,
      rig_.Settings,
      rig_.Loop,
      rig_.Messages,
      SetupScreenPort{.ControlsToSettings = [this] { rig_.Settings.LoggerName = name_; },
                      .CheckDoSetup =
                          [this] {
                            ++doChecks_;
                            if (endsInCheck_) rig_.Loop.End();
                            if (doCheckFaults_) throw RangeFault("no such column");
                            return doCheckPasses_;
                          },
                      .SaveSetupFile =
                          [this] {
                            ++saves_;
                            if (saveSucceeds_) setup_.TakeFileBaseline();
                            return saveSucceeds_;
                          },
                      .SetCancelEnabled = [this](bool on) { cancelEnabled_ = on; },
                      .FocusCancel = [this] { cancelHasFocus_ = true; },
                      .SetWaitCursor =
                          [this](bool on) {
                            waitCursor_ = on;
                            if (on) ++waitCursorShown_;
                          },
                      .Programmed =
                          [this](const ConfigImage& before, const ConfigImage& after) {
                            before_.push_back(before.size());
                            after_.push_back(after.size());
                          }}};
};

TEST_F(SetupProgrammingTest, ImagesAreEqualByteForByte) {
  EXPECT_TRUE(ImagesEqual({1, 2, 3}, {1, 2, 3}));
  EXPECT_FALSE(ImagesEqual({1, 2, 3}, {1, 2}));
  EXPECT_FALSE(ImagesEqual({1, 2, 3}, {1, 2, 4}));
}

TEST_F(SetupProgrammingTest, AsksChecksWritesAndCommitsWithoutAWordOfSuccess) {
  name_ = u"Weir"_s;
  Answer({kYes});
  setup_.ProgramSettings();
  EXPECT_EQ(Asked(), std::vector{kAskProgram});
  EXPECT_EQ(doChecks_, 1);
  EXPECT_EQ(rig_.Logger.Memory().At(8), 'W');
  EXPECT_EQ(rig_.Logger.Commits(), 1);
  EXPECT_TRUE(cancelEnabled_);
  EXPECT_TRUE(cancelHasFocus_);
  EXPECT_EQ(waitCursorShown_, 1);
  EXPECT_FALSE(waitCursor_);
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, HoldsTheLinkAndTheWayOutWhileItAsksAndWrites) {
  Answer({kYes});
  rig_.Messages.OnMessage = [this] {
    EXPECT_TRUE(rig_.Link.Busy);
    EXPECT_FALSE(cancelEnabled_);
    EXPECT_FALSE(setup_.MayClose());
    setup_.ProgramSettings();
  };
  bool whileWriting = false;
  rig_.Loop.OnTick = [this, &whileWriting, tick = rig_.Loop.OnTick] {
    tick();
    whileWriting = true;
    EXPECT_TRUE(rig_.Link.Busy && waitCursor_ && !cancelEnabled_);
    EXPECT_FALSE(setup_.MayClose());
    setup_.ProgramSettings();
  };
  rig_.Logger.AddFault({.Mode = sim::FailureMode::Silent, .Count = 1});
  setup_.ProgramSettings();
  EXPECT_TRUE(whileWriting);
  EXPECT_EQ(Asked().size(), 1U);
  EXPECT_EQ(rig_.Logger.Commits(), 1);
}

TEST_F(SetupProgrammingTest, DoesNothingWhileBusySamplingOrDisconnected) {
  const auto tryIt = [this] {
    setup_.ProgramSettings();
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(Writes(), 0);
  };
  rig_.Link.Busy = true;
  tryIt();
  EXPECT_TRUE(rig_.Link.Busy);
  rig_.Link.Busy = false;
  rig_.Link.SampleContinuously = true;
  tryIt();
  rig_.Link.SampleContinuously = false;
  rig_.Link.Connected = false;
  tryIt();
}

TEST_F(SetupProgrammingTest, AnyAnswerButYesWritesNothing) {
  name_ = u"Weir"_s;
  Answer({kNo});
  setup_.ProgramSettings();
  EXPECT_EQ(doChecks_, 0);
  EXPECT_EQ(Writes(), 0);
  EXPECT_TRUE(cancelEnabled_);
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, ARefusedDoCheckWritesNothingAndAddsNoMessage) {
  doCheckPasses_ = false;
  Answer({kYes});
  setup_.ProgramSettings();
  EXPECT_EQ(Asked(), std::vector{kAskProgram});
  EXPECT_EQ(Writes(), 0);
  EXPECT_TRUE(cancelEnabled_);
  EXPECT_FALSE(rig_.Link.Busy);
  EXPECT_EQ(waitCursorShown_, 0);
}

TEST_F(SetupProgrammingTest, AFaultLeavesTheWayBackDisabledAndTheLinkFree) {
  doCheckFaults_ = true;
  Answer({kYes});
  setup_.ProgramSettings();
  EXPECT_EQ(Asked(), (std::vector{kAskProgram, kUnableToComplete}));
  EXPECT_FALSE(cancelEnabled_);
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, WithoutTrappingAFaultComesThrough) {
  rig_.Link.TrapErrors = false;
  doCheckFaults_ = true;
  Answer({kYes});
  EXPECT_THROW(setup_.ProgramSettings(), Fault);
}

TEST_F(SetupProgrammingTest, ALoggerThatDropsAByteEndsEveryTimeWithTheErrorAndIsNeverCommitted) {
  rig_.Logger.AddFault(sim::FailureMode::StuckConfigurationByte);
  rig_.Logger.SetStuckAddress(8);
  name_ = u"Weir"_s;
  for (int round = 0; round < 3; ++round) {
    Asked().clear();
    Answer({kYes});
    setup_.ProgramSettings();
    EXPECT_EQ(Asked(), (std::vector{kAskProgram, kNotProgrammed}));
    EXPECT_FALSE(waitCursor_);
    EXPECT_TRUE(cancelEnabled_);
  }
  EXPECT_EQ(Commits(), 0);
  EXPECT_EQ(rig_.Settings.LoggerName, u"Weir"_s);
}

TEST_F(SetupProgrammingTest, ARefusedCommitIsReportedAndTheClosingQuestionComesAgain) {
  rig_.Logger.AddFault(sim::FailureMode::CommitRefused);
  name_ = u"Weir"_s;
  Answer({kYes, kOk});
  setup_.ProgramSettings();
  EXPECT_EQ(Asked(), (std::vector{kAskProgram, kNotProgrammed}));
  EXPECT_EQ(rig_.Logger.Memory().At(8), 'W');
  Asked().clear();
  Answer({kNo, kNo});
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_EQ(Asked(), (std::vector{kAskSave, kAskProgramChanged}));
}

TEST_F(SetupProgrammingTest, TellsWhatTheLoggerHeldBeforeOnlyWhereItWasRead) {
  name_ = u"Weir"_s;
  Answer({kYes});
  setup_.ProgramSettings();
  rig_.Logger.AddFault(sim::FailureMode::Silent);
  rig_.Programmer.RefreshFromLogger();
  rig_.Logger.ClearFaults();
  setup_.TakeBaselines();
  Answer({kYes, kYes});
  name_ = u"Mill"_s;
  setup_.ProgramSettings();
  name_ = u"Pond"_s;
  setup_.ProgramSettings();
  EXPECT_EQ(before_, (std::vector<std::size_t>{315, 0, 315}));
  EXPECT_EQ(after_, (std::vector<std::size_t>{315, 315, 315}));
}

TEST_F(SetupProgrammingTest, NobodyKnowsWhatARefusedProgrammingLeft) {
  rig_.Logger.AddFault(sim::FailureMode::CommitRefused);
  name_ = u"Weir"_s;
  Answer({kYes, kOk});
  setup_.ProgramSettings();
  rig_.Logger.ClearFaults();
  Answer({kYes});
  setup_.ProgramSettings();
  EXPECT_EQ(before_, std::vector<std::size_t>{0});
}

TEST_F(SetupProgrammingTest, NothingThatWasNotVerifiedCountsAsProgrammed) {
  using sim::FailureMode;
  for (const FailureMode mode :
       {FailureMode::Silent, FailureMode::RequestLost, FailureMode::AcknowledgeLost,
        FailureMode::WrongAcknowledge, FailureMode::CorruptCheck, FailureMode::WrongLength,
        FailureMode::BadEscape, FailureMode::StopsMidFrame, FailureMode::StuckConfigurationByte,
        FailureMode::CommitRefused}) {
    rig_.Logger.ClearFaults();
    rig_.Logger.AddFault(mode);
    Asked().clear();
    name_ = u"Weir %1"_s.arg(static_cast<int>(mode), 2);
    rig_.Logger.SetStuckAddress(14);  // The second digit, which is another than the last time.
    const int commits = rig_.Logger.Commits();
    const ConfigImage baseline = setup_.LoggerBaseline();
    Answer({kYes});
    setup_.ProgramSettings();
    EXPECT_EQ(Asked().size(), 2U) << static_cast<int>(mode);
    EXPECT_EQ(Asked().back(), kNotProgrammed) << static_cast<int>(mode);
    EXPECT_EQ(rig_.Logger.Commits(), commits);
    EXPECT_EQ(setup_.LoggerBaseline(), baseline);
    EXPECT_FALSE(rig_.Link.Busy);
    EXPECT_TRUE(cancelEnabled_);
    EXPECT_FALSE(waitCursor_);
  }
}

TEST_F(SetupProgrammingTest, WhateverGoesWrongSilenceMeansThatTheLoggerHoldsTheSettings) {
  int programmed = 0;
  for (const sim::FailureModeName& failure : sim::FailureModes()) {
    rig_.Logger.ClearFaults();
    rig_.Logger.AddFault({.Mode = failure.Mode, .Count = 3});
    Asked().clear();
    name_ = u"Weir %1"_s.arg(static_cast<int>(failure.Mode), 2);
    const int commits = rig_.Logger.Commits();
    Answer({kYes});
    setup_.ProgramSettings();
    if (Asked().size() > 1) continue;
    ++programmed;
    EXPECT_EQ(rig_.Logger.Memory().Configuration(), setup_.LoggerBaseline()) << failure.Name;
    const sim::Bytes stored = rig_.Logger.Memory().Read(8, 7);
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(stored.data()), 7), name_.toLatin1())
        << failure.Name;
    EXPECT_GT(rig_.Logger.Commits(), commits) << failure.Name;
  }
  EXPECT_GT(programmed, 0);
}

TEST_F(SetupProgrammingTest, AnAdapterLostInTheMiddleEndsWithTheError) {
  name_ = u"Weir"_s;
  rig_.Logger.AddFault(sim::FailureMode::Silent);
  Answer({kYes});
  rig_.Loop.After(500, [this] { rig_.LoseAdapter(); });
  setup_.ProgramSettings();
  EXPECT_EQ(Asked().back(), kNotProgrammed);
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, AfterProgrammingOnlyTheFileIsAskedAbout) {
  name_ = u"Weir"_s;
  Answer({kYes});
  setup_.ProgramSettings();
  Asked().clear();
  Answer({kNo});
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_EQ(Asked(), std::vector{kAskSave});
}

TEST_F(SetupProgrammingTest, AfterProgrammingAndSavingNothingIsAsked) {
  name_ = u"Weir"_s;
  Answer({kYes});
  setup_.ProgramSettings();
  setup_.TakeFileBaseline();
  Asked().clear();
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_TRUE(Asked().empty());
}

TEST_F(SetupProgrammingTest, AfterLoadingAFileOnlyTheLoggerIsAskedAbout) {
  name_ = u"From a file"_s;
  rig_.Settings.LoggerName = name_;
  setup_.TakeFileBaseline();
  Answer({kNo});
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_EQ(Asked(), std::vector{kAskProgramChanged});
}

TEST_F(SetupProgrammingTest, ClosingUnchangedAsksNothingAndLeavesTheLinkBusy) {
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_TRUE(Asked().empty());
  EXPECT_TRUE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, NoToBothQuestionsClosesAndTheReReadBringsBackTheLoggersValues) {
  name_ = u"Weir"_s;
  Answer({kNo, kNo});
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_EQ(Asked(), (std::vector{kAskSave, kAskProgramChanged}));
  EXPECT_EQ(rig_.Settings.LoggerName, u"Weir"_s);
  rig_.Programmer.RefreshFromLogger();
  EXPECT_EQ(rig_.Settings.LoggerName, u"Mill Pond 3"_s);
}

TEST_F(SetupProgrammingTest, CancelAtTheSaveQuestionStays) {
  name_ = u"Weir"_s;
  Answer({kCancel});
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_EQ(Asked(), std::vector{kAskSave});
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, ACancelledFileDialogStays) {
  name_ = u"Weir"_s;
  saveSucceeds_ = false;
  Answer({kYes});
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_EQ(saves_, 1);
  EXPECT_EQ(Asked(), std::vector{kAskSave});
}

TEST_F(SetupProgrammingTest, ASaveGoesOnToTheQuestionAboutTheLogger) {
  name_ = u"Weir"_s;
  Answer({kYes, kNo});
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_EQ(Asked(), (std::vector{kAskSave, kAskProgramChanged}));
}

TEST_F(SetupProgrammingTest, YesOnClosingProgramsAndCloses) {
  name_ = u"Weir"_s;
  Answer({kNo, kYes});
  EXPECT_TRUE(setup_.MayClose());
  EXPECT_EQ(rig_.Logger.Commits(), 1);
  EXPECT_EQ(rig_.Logger.Memory().At(8), 'W');
  EXPECT_EQ(waitCursorShown_, 1);
  EXPECT_FALSE(waitCursor_);
}

TEST_F(SetupProgrammingTest, YesOnClosingWithAFailingLoggerReportsAndStays) {
  // Another first letter each time, since a logger that stays silent has stored it all the same.
  QChar first = u'A';
  for (const sim::FailureMode mode :
       {sim::FailureMode::Silent, sim::FailureMode::StuckConfigurationByte,
        sim::FailureMode::CommitRefused}) {
    name_ = first;
    first = QChar(first.unicode() + 1);
    rig_.Logger.ClearFaults();
    rig_.Logger.AddFault(mode);
    rig_.Logger.SetStuckAddress(8);
    Asked().clear();
    Answer({kNo, kYes, kOk});
    EXPECT_FALSE(setup_.MayClose());
    EXPECT_EQ(Asked(), (std::vector{kAskSave, kAskProgramChanged, kNotProgrammed}));
    EXPECT_FALSE(rig_.Link.Busy);
    EXPECT_FALSE(waitCursor_);
  }
}

TEST_F(SetupProgrammingTest, WithTheConnectionLostYesReportsAndStaysAndNoCloses) {
  name_ = u"Weir"_s;
  rig_.LoseAdapter();
  setup_.ProgramSettings();
  EXPECT_TRUE(Asked().empty());
  Answer({kNo, kYes, kOk});
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_EQ(Asked(), (std::vector{kAskSave, kAskProgramChanged, kNotProgrammed}));
  EXPECT_FALSE(rig_.Link.Busy);
  Answer({kNo, kNo});
  EXPECT_TRUE(setup_.MayClose());
}

TEST_F(SetupProgrammingTest, ARefusedDoCheckOnClosingStaysWithoutAnotherMessage) {
  name_ = u"Weir"_s;
  doCheckPasses_ = false;
  Answer({kNo, kYes});
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_EQ(Asked(), (std::vector{kAskSave, kAskProgramChanged}));
  EXPECT_EQ(Writes(), 0);
}

TEST_F(SetupProgrammingTest, AFaultWhileProgrammingOnClosingReportsAndStays) {
  name_ = u"Weir"_s;
  doCheckFaults_ = true;
  Answer({kNo, kYes, kOk});
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_EQ(Asked().back(), kNotProgrammed);
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, CancelAtTheProgramQuestionRunsTheDoCheckAndStays) {
  name_ = u"Weir"_s;
  Answer({kNo, kCancel});
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_EQ(doChecks_, 1);
  EXPECT_EQ(Writes(), 0);
  EXPECT_EQ(Asked(), (std::vector{kAskSave, kAskProgramChanged}));
}

TEST_F(SetupProgrammingTest, ACloseIsRefusedWithoutAWordWhileBusy) {
  name_ = u"Weir"_s;
  rig_.Link.Busy = true;
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_TRUE(Asked().empty());
}

TEST_F(SetupProgrammingTest, NothingIsStartedOnTheWordOfAProgramThatIsEnding) {
  name_ = u"Weir"_s;
  rig_.Messages.Default = kYes;
  rig_.Messages.OnMessage = [this] { rig_.Loop.End(); };
  EXPECT_FALSE(setup_.MayClose());
  EXPECT_EQ(saves_, 0);
  setup_.ProgramSettings();
  EXPECT_EQ(doChecks_, 0);
  EXPECT_EQ(Writes(), 0);
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupProgrammingTest, WritesNothingWhenTheProgramEndsAtAWarning) {
  name_ = u"Weir"_s;
  Answer({kYes, kYes});
  endsInCheck_ = true;
  setup_.ProgramSettings();
  EXPECT_EQ(doChecks_, 1);
  EXPECT_EQ(Writes(), 0);
}

TEST_F(SetupProgrammingTest, OnClosingWritesNothingWhenTheProgramEndsAtAWarning) {
  name_ = u"Weir"_s;
  setup_.TakeFileBaseline();
  Answer({kNo, kYes});
  endsInCheck_ = true;
  setup_.MayClose();
  EXPECT_EQ(doChecks_, 1);
  EXPECT_EQ(Writes(), 0);
}

TEST_F(SetupProgrammingTest, IsUnderWayFromTheFirstBlockToTheCommitAsOnePiece) {
  name_ = u"Weir"_s;
  int finished = 0;
  rig_.Programmer.OnFinished = [&] {
    ++finished;
    EXPECT_EQ(rig_.Logger.Commits(), 1);
  };
  rig_.Messages.OnMessage = [this] { EXPECT_FALSE(rig_.Programmer.IsUnderWay()); };
  bool duringCommit = false;
  rig_.Loop.OnTick = [&, tick = rig_.Loop.OnTick] {
    tick();
    EXPECT_TRUE(rig_.Programmer.IsUnderWay());
    // The line fails at the commit alone: nothing else waits for a tick.
    duringCommit = true;
  };
  rig_.Logger.AddFault(
      {.Mode = sim::FailureMode::RequestLost, .Count = 1, .Opcode = kCommitOpcode});
  Answer({kYes});
  setup_.ProgramSettings();
  EXPECT_TRUE(duringCommit);
  EXPECT_EQ(finished, 1);
  EXPECT_FALSE(rig_.Programmer.IsUnderWay());
}

}  // namespace
}  // namespace tessmar
