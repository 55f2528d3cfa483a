#include <gtest/gtest.h>

#include <QClipboard>
#include <QLabel>
#include <QTableWidget>

#include "base/TextTable.h"
#include "setup/SetupScreenRig.h"
#include "setup/frmChanges.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ChangesScreen : public testing::Test {
 protected:
  QString Label() { return rig_.Get<QLabel>("lblChanges").text(); }
  QPushButton& Button() { return rig_.Button("cmdChanges"); }
  void Beat() { rig_.Beat(*rig_.Form); }

  /// Presses cmdChanges and looks at the list that opens; gives its rows.
  std::vector<QStringList> List() {
    std::vector<QStringList> rows;
    QTimer::singleShot(0, rig_.Form.get(), [&] {
      auto* list = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(list, nullptr);
      EXPECT_EQ(list->objectName(), u"frmChanges"_s);
      title_ = list->windowTitle();
      auto* table = list->findChild<QTableWidget*>(u"tblChanges"_s);
      for (int row = 0; row < table->rowCount(); ++row)
        rows.push_back({table->item(row, 0)->text(), table->item(row, 1)->text(),
                        table->item(row, 2)->text()});
      list->findChild<QPushButton*>(u"cmdCopy"_s)->click();
      copied_ = QGuiApplication::clipboard()->text();
      table->selectRow(0);
      QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
      QCoreApplication::sendEvent(list, &copy);
      copiedRow_ = QGuiApplication::clipboard()->text();
      list->findChild<QPushButton*>(u"cmdClose"_s)->click();
    });
    Button().click();
    return rows;
  }

  SetupScreenRig rig_;
  QString title_;
  QString copied_;
  QString copiedRow_;
};

TEST_F(ChangesScreen, SaysThatNothingDiffersWhenItOpens) {
  rig_.Open();
  EXPECT_EQ(Label(), u"No setting differs from the logger"_s);
  EXPECT_FALSE(Button().isEnabled());
}

TEST_F(ChangesScreen, FollowsTheControlsWithinAQuarterOfASecond) {
  rig_.Open();
  const QString before = rig_.Field("txtName").text();
  rig_.Field("txtName").setText(u"Weir 12"_s);
  Beat();
  EXPECT_EQ(Label(), u"1 setting differs from the logger"_s);
  EXPECT_TRUE(Button().isEnabled());
  rig_.Check("chkWrap").toggle();
  rig_.Field("txtHighEU(2)").setText(u"12.5"_s);
  Beat();
  EXPECT_EQ(Label(), u"3 settings differ from the logger"_s);
  const std::vector<QStringList> rows = List();
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0].at(0), u"Channel 3: High - Engr. Units"_s);
  EXPECT_EQ(rows[0].at(2), u"12.5"_s);
  EXPECT_EQ(rows[1], (QStringList{u"Name"_s, before, u"Weir 12"_s}));
  EXPECT_EQ(rows[2].at(0), u"Wrap records at end of storage"_s);
  EXPECT_EQ(title_, u"3 settings differ from the logger"_s);
  EXPECT_EQ(copied_.count(u'\n'), 4);
  EXPECT_EQ(copiedRow_.count(u'\n'), 2);
  EXPECT_TRUE(copiedRow_.contains(rows[0].join(u'\t')));

  rig_.Field("txtName").setText(before);
  rig_.Check("chkWrap").toggle();
  Beat();
  EXPECT_EQ(Label(), u"1 setting differs from the logger"_s);
}

TEST_F(ChangesScreen, NeitherAsksNorChangesAnything) {
  rig_.Open();
  const LoggerSettings before = rig_.Settings;
  rig_.Field("txtName").setText(u"Weir 12"_s);
  Beat();
  List();
  EXPECT_EQ(rig_.Settings, before);
  EXPECT_TRUE(rig_.Messages.All.empty());
  EXPECT_EQ(rig_.Field("txtName").text(), u"Weir 12"_s);
}

TEST_F(ChangesScreen, AValueThatNoLoggerTakesIsSaid) {
  rig_.Open();
  rig_.Field("txtException").setText(u"70000"_s);
  Beat();
  EXPECT_EQ(Label(), u"Some settings do not fit the logger"_s);
  EXPECT_FALSE(Button().isEnabled());
}

TEST_F(ChangesScreen, TheListStaysShutWhileTheLinkIsBusy) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir 12"_s);
  rig_.Link.Busy = true;
  Beat();
  EXPECT_FALSE(Button().isEnabled());
  rig_.Link.Busy = false;
  Beat();
  EXPECT_TRUE(Button().isEnabled());
}

TEST_F(ChangesScreen, WithoutALoggerThereIsNothingToCompareWith) {
  rig_.Open().ForbidProgramming();
  rig_.Field("txtName").setText(u"Weir 12"_s);
  Beat();
  EXPECT_FALSE(rig_.Get<QLabel>("lblChanges").isVisible());
  EXPECT_FALSE(Button().isVisible());
}

TEST_F(ChangesScreen, ProgrammingSettlesTheDifferencesAndIsNoted) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir 12"_s);
  Beat();
  rig_.Messages.Answers = {kYes};
  rig_.Button("cmdOK").click();
  Beat();
  EXPECT_EQ(Label(), u"No setting differs from the logger"_s);
  ASSERT_EQ(rig_.Book.Entries.size(), 1U);
  const LogbookEntry& entry = rig_.Book.Entries[0];
  EXPECT_EQ(entry.Kind, EventKind::Programmed);
  EXPECT_EQ(entry.Text, u"1 setting changed"_s);
  EXPECT_EQ(entry.Before.size(), 315);
  EXPECT_TRUE(entry.After.startsWith("Weir 12"));
  EXPECT_FALSE(entry.Before.startsWith("Weir 12"));
}

TEST_F(ChangesScreen, AProgrammingThatIsDeclinedIsNotNoted) {
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir 12"_s);
  rig_.Messages.Answers = {kNo};
  rig_.Button("cmdOK").click();
  EXPECT_TRUE(rig_.Book.Entries.empty());
}

TEST_F(ChangesScreen, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  rig_.Open();
  rig_.Field("txtName").setText(u"Weir 12"_s);
  Beat();
  EXPECT_EQ(Label(), u"1 Einstellung weicht vom Logger ab"_s);
  EXPECT_EQ(Button().text(), u"Änderungen..."_s);
  SetTextLanguage(kLanguageEnglish);
}

}  // namespace
}  // namespace tessmar::test
