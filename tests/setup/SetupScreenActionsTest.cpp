#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "setup/SetupScreenRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FakeMessages;
using test::SetupScreenRig;

class SetupScreenActionsTest : public testing::Test {
 protected:
  QStringList Titles() const {
    QStringList titles;
    for (const FakeMessages::Asked& asked : rig_.Messages.All) titles.append(asked.Title);
    return titles;
  }

  SetupScreenRig rig_;
};

TEST_F(SetupScreenActionsTest, ClosingUnchangedAsksNothing) {
  rig_.Open();
  rig_.Click(rig_.Button("cmdCancel"));
  EXPECT_FALSE(rig_.Form->isVisible());
  EXPECT_TRUE(rig_.Messages.All.empty());
  EXPECT_TRUE(rig_.Link.Busy);
}

TEST_F(SetupScreenActionsTest, EveryWayOfClosingAsks) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Messages.Default = kCancel;
  rig_.Form->close();
  rig_.Choose("mnuExit");
  rig_.Click(rig_.Button("cmdCancel"));
  QTest::keyClick(rig_.Form.get(), Qt::Key_Escape);
  EXPECT_EQ(Titles(), QStringList(4, u"Data Has Changed"_s));
  EXPECT_TRUE(rig_.Form->isVisible());
}

TEST_F(SetupScreenActionsTest, ACloseWhileBusyIsRefusedWithoutAWord) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Link.Busy = true;
  rig_.Form->close();
  EXPECT_TRUE(rig_.Form->isVisible());
  EXPECT_TRUE(rig_.Messages.All.empty());
}

TEST_F(SetupScreenActionsTest, CancelAtTheProgramQuestionShowsTheDoWarningsAndStays) {
  rig_.Open();
  rig_.ShowPage(0);
  rig_.Check("chkEnable(0)").setChecked(false);
  rig_.Messages.Answers = {kNo, kCancel, kOk};
  rig_.Messages.Default = kOk;
  rig_.Click(rig_.Button("cmdCancel"));
  EXPECT_EQ(Titles(),
            (QStringList{u"Data Has Changed"_s, u"Data Has Changed"_s, u"DO Setup Problem"_s}));
  EXPECT_TRUE(rig_.Form->isVisible());
  EXPECT_EQ(rig_.Logger.Requests(test::kWriteOpcode), 0);
}

TEST_F(SetupScreenActionsTest, ADoWarningAnsweredWithCancelWritesNothing) {
  rig_.Open();
  rig_.ShowPage(0);
  rig_.Check("chkEnable(0)").setChecked(false);
  rig_.Messages.Answers = {kYes, kCancel};
  rig_.Click(rig_.Button("cmdOK"));
  EXPECT_EQ(Titles(), (QStringList{u"Program Settings"_s, u"DO Setup Problem"_s}));
  EXPECT_EQ(rig_.Logger.Requests(test::kWriteOpcode), 0);
}

TEST_F(SetupScreenActionsTest, ProgramsWhatTheControlsHold) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Messages.Answers = {kYes};
  rig_.Click(rig_.Button("cmdOK"));
  EXPECT_EQ(rig_.Logger.Commits(), 1);
  EXPECT_EQ(rig_.Logger.Memory().Read(8, 5), (sim::Bytes{'W', 'e', 'i', 'r', ' '}));
  EXPECT_TRUE(rig_.Button("cmdCancel").hasFocus());
  EXPECT_TRUE(rig_.Button("cmdCancel").isEnabled());
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(SetupScreenActionsTest, TheWaitCursorShowsWhileProgrammingAndCloseIsShut) {
  rig_.Open();
  rig_.Logger.AddFault({.Mode = sim::FailureMode::Silent, .Count = 1});
  int seen = 0;
  rig_.Loop.OnTick = [this, &seen, tick = rig_.Loop.OnTick] {
    tick();
    if (QGuiApplication::overrideCursor() == nullptr) return;
    ++seen;
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    EXPECT_FALSE(rig_.Button("cmdCancel").isEnabled());
    rig_.Form->close();
    EXPECT_TRUE(rig_.Form->isVisible());
  };
  rig_.Messages.Answers = {kYes};
  rig_.Choose("mnuDownload");
  EXPECT_GT(seen, 0);
}

TEST_F(SetupScreenActionsTest, NothingReplacesTheSettingsWhileTheyAreProgrammed) {
  const QTemporaryDir folder;
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Dialogs.Answers = {folder.filePath(u"weir.set"_s)};
  rig_.Choose("mnuSave");
  rig_.Dialogs.All.clear();
  rig_.Messages.Default = kYes;
  rig_.Logger.AddFault({.Mode = sim::FailureMode::Silent, .Count = 1});
  int chosen = 0;
  rig_.Loop.OnTick = [this, &chosen, tick = rig_.Loop.OnTick] {
    tick();
    if (QGuiApplication::overrideCursor() == nullptr || chosen > 0) return;
    ++chosen;
    rig_.Field("txtName").setText(u"Changed meanwhile"_s);
    for (const char* entry : {"mnuInitialize", "mnuLoad", "mnuHist(0)", "mnuSave"})
      rig_.Choose(entry);
  };
  rig_.Choose("mnuDownload");
  ASSERT_EQ(chosen, 1);
  EXPECT_TRUE(rig_.Dialogs.All.empty());
  EXPECT_EQ(Titles(), QStringList{u"Program Settings"_s});
  EXPECT_EQ(rig_.Settings.LoggerName, u"Weir"_s);

  // What was typed meanwhile is not in the logger.
  rig_.Messages.Answers = {kNo, kNo};
  rig_.Form->close();
  EXPECT_TRUE(rig_.Messages.All.back().Prompt.contains(u"without being programmed"_s));
}

TEST_F(SetupScreenActionsTest, ADoChannelThatTheLoggerLacksEndsProgrammingWithTheError) {
  SetupScreenRig rig({.AnalogChannels = 3});
  rig.Settings.Do.PO2Channel = 5;
  rig.Open();
  EXPECT_EQ(rig.List("cmbPO2SourceChannel").currentIndex(), -1);
  rig.Messages.Answers = {kYes};
  rig.Click(rig.Button("cmdOK"));
  EXPECT_EQ(
      rig.Messages.All.back().Prompt,
      u"Error: unable to complete operation. Check that setup data is valid and connection is "
      "working."_s);
  EXPECT_FALSE(rig.Button("cmdCancel").isEnabled());
  EXPECT_FALSE(rig.Link.Busy);
  EXPECT_EQ(rig.Logger.Requests(test::kWriteOpcode), 0);
  // The way out is another one than the button.
  rig.Messages.Default = kNo;
  rig.Form->close();
  EXPECT_FALSE(rig.Form->isVisible());
}

TEST_F(SetupScreenActionsTest, InitializingAnsweredWithNoChangesNothing) {
  rig_.Open();
  const LoggerSettings before = rig_.Settings;
  rig_.Messages.Answers = {kNo};
  rig_.Choose("mnuInitialize");
  EXPECT_EQ(
      rig_.Messages.All,
      (std::vector<FakeMessages::Asked>{
          {u"This action will reset all setup values to defaults, but will not program the\r\n"
           "values into the logger until the Program button is clicked. Do you want to "
           "proceed?"_s,
           36, u"Initialize to Default Values"_s}}));
  EXPECT_EQ(rig_.Settings, before);
  EXPECT_EQ(rig_.Field("txtName").text(), u"Mill Pond 3"_s);
}

TEST_F(SetupScreenActionsTest, InitializingShowsTheDefaultsAndSendsNothing) {
  rig_.Open();
  rig_.Messages.Answers = {kYes};
  rig_.Choose("mnuInitialize");
  EXPECT_EQ(rig_.Field("txtName").text(), u"Tessmar Logger"_s);
  EXPECT_EQ(rig_.List("cmbEU(0)").currentText(), u"%"_s);
  EXPECT_EQ(rig_.Field("txtHighEU(7)").text(), u"24"_s);
  EXPECT_TRUE(rig_.Check("chkAirPressureManualEntry").isChecked());
  EXPECT_TRUE(rig_.Field("txtAirPressureManualEntry").isEnabled());
  EXPECT_EQ(rig_.Logger.Requests(test::kWriteOpcode), 0);
  rig_.Messages.All.clear();
  rig_.Messages.Answers = {kNo, kNo};
  rig_.Form->close();
  EXPECT_EQ(Titles(), QStringList(2, u"Data Has Changed"_s));
}

TEST_F(SetupScreenActionsTest, RecentFilesStandInTheMenu) {
  rig_.Recent.RecentSetupFiles = {u"/home/anna/weir.set"_s, u"weir.set"_s, u"/x/weir.set"_s, {}};
  rig_.Open();
  rig_.Beat(*rig_.Form);
  EXPECT_EQ(rig_.Get<QAction>("mnuHist(0)").text(), u"&1 weir.set"_s);
  // Without a separator, or with the only one in front, a path is shown whole.
  EXPECT_EQ(rig_.Get<QAction>("mnuHist(1)").text(), u"&2 weir.set"_s);
  EXPECT_EQ(rig_.Get<QAction>("mnuHist(2)").text(), u"&3 /x/weir.set"_s);
  EXPECT_EQ(rig_.Get<QAction>("mnuHist(3)").text(), u"&4 "_s);
  rig_.Recent.RecentSetupFiles[3] = u"/data/later.set"_s;
  rig_.Beat(*rig_.Form);
  EXPECT_EQ(rig_.Get<QAction>("mnuHist(3)").text(), u"&4 later.set"_s);
}

TEST_F(SetupScreenActionsTest, SavesAndLoadsThroughItsMenu) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"weir.set"_s);
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Dialogs.Answers = {path, path};
  rig_.Choose("mnuSave");
  rig_.Field("txtName").setText(u"Changed"_s);
  rig_.Messages.Answers = {kNo};
  rig_.Choose("mnuLoad");
  EXPECT_EQ(rig_.Field("txtName").text(), u"Weir"_s);
  EXPECT_EQ(rig_.Recent.RecentSetupFiles[0], path);

  // The file is as it was loaded, so only the logger is asked about.
  rig_.Messages.All.clear();
  rig_.Messages.Answers = {kNo};
  rig_.Form->close();
  ASSERT_EQ(rig_.Messages.All.size(), 1U);
  EXPECT_TRUE(rig_.Messages.All[0].Prompt.contains(u"without being programmed"_s));
}

TEST_F(SetupScreenActionsTest, ALongNameFromAFileIsShownWhole) {
  rig_.Settings.LoggerName = QString(40, u'n');
  rig_.Open();
  EXPECT_EQ(rig_.Field("txtName").text(), QString(40, u'n'));
}

TEST_F(SetupScreenActionsTest, YesToSaveWithACancelledFileDialogStays) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Messages.Answers = {kYes};
  rig_.Click(rig_.Button("cmdCancel"));
  EXPECT_EQ(rig_.Dialogs.All.size(), 1U);
  EXPECT_TRUE(rig_.Form->isVisible());
}

TEST_F(SetupScreenActionsTest, HelpAndAboutAreTheMainWindowsOwn) {
  rig_.Open();
  rig_.Choose("mnuLaunchHelp");
  rig_.Choose("mnuLaunchDOHelp");
  rig_.Choose("mnuAbout");
  EXPECT_EQ(rig_.HelpShown, 1);
  EXPECT_EQ(rig_.DoHelpShown, 1);
  EXPECT_EQ(rig_.AboutShown, 1);
}

TEST_F(SetupScreenActionsTest, TheDoHelpEntryIsThereOnlyWithItsFile) {
  rig_.ShowDoHelpEntry = false;
  rig_.Open();
  EXPECT_FALSE(rig_.Get<QAction>("mnuLaunchDOHelp").isVisible());
  EXPECT_TRUE(rig_.Get<QAction>("mnuLaunchHelp").isVisible());
}

TEST_F(SetupScreenActionsTest, ProgrammingCanBeForbidden) {
  rig_.Open().ForbidProgramming();
  EXPECT_FALSE(rig_.Button("cmdOK").isEnabled());
  EXPECT_FALSE(rig_.Get<QAction>("mnuDownload").isEnabled());
}

TEST_F(SetupScreenActionsTest, AProgramThatIsEndingTakesTheScreenDown) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Link.Busy = true;
  rig_.Loop.End();
  rig_.Form->reject();
  EXPECT_FALSE(rig_.Form->isVisible());
  EXPECT_TRUE(rig_.Messages.All.empty());
}

TEST_F(SetupScreenActionsTest, AProgramThatEndsUnderAQuestionStartsNothingAndTakesTheScreenDown) {
  for (const char* way : {"mnuExit", "mnuDownload", "mnuLoad", "mnuInitialize"}) {
    SetupScreenRig rig;
    rig.Open();
    rig.Field("txtName").setText(u"Weir"_s);
    // Messages are answered with their first button then, and every window is rejected.
    rig.Messages.Default = kYes;
    rig.Messages.OnMessage = [&rig] {
      rig.Loop.End();
      rig.Port.Close();
      rig.Form->reject();
    };
    rig.Choose(way);
    EXPECT_FALSE(rig.Form->isVisible()) << way;
    EXPECT_EQ(rig.Messages.All.size(), 1U) << way;
    EXPECT_TRUE(rig.Dialogs.All.empty()) << way;
    EXPECT_EQ(rig.Logger.Requests(test::kWriteOpcode), 0) << way;
  }
}

TEST_F(SetupScreenActionsTest, TheDefaultsAreNotLoadedOnTheWordOfAProgramThatIsEnding) {
  rig_.Open();
  const LoggerSettings before = rig_.Settings;
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Messages.Answers = {kYes};
  rig_.Messages.OnMessage = [this] { rig_.Loop.End(); };
  rig_.Choose("mnuInitialize");
  EXPECT_EQ(Titles(), QStringList{u"Initialize to Default Values"_s});
  EXPECT_EQ(rig_.Field("txtName").text(), u"Weir"_s);
  EXPECT_EQ(rig_.Settings, before);
}

TEST_F(SetupScreenActionsTest, AnAdapterLostWhileTheScreenIsOpenLeavesItUsable) {
  rig_.Open();
  rig_.LoseAdapter();
  rig_.Field("txtName").setText(u"Weir"_s);
  rig_.Click(rig_.Button("cmdOK"));
  EXPECT_TRUE(rig_.Messages.All.empty());
  rig_.Messages.Answers = {kNo, kYes, kOk};
  rig_.Click(rig_.Button("cmdCancel"));
  EXPECT_EQ(rig_.Messages.All.back().Prompt, u"Error: programming not completed successfully."_s);
  EXPECT_TRUE(rig_.Form->isVisible());
  rig_.Messages.Answers = {kNo, kNo};
  rig_.Click(rig_.Button("cmdCancel"));
  EXPECT_FALSE(rig_.Form->isVisible());
}

TEST_F(SetupScreenActionsTest, TheWheelOverAListThatHasNotTheFocusChangesNothing) {
  rig_.Open();
  QComboBox& baud = rig_.List("cmbBaud");
  const QPointF centre = baud.rect().center();
  QWheelEvent wheel(centre, baud.mapToGlobal(centre), {}, QPoint(0, -120), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&baud, &wheel);
  EXPECT_EQ(baud.currentIndex(), 0);
}

}  // namespace
}  // namespace tessmar
