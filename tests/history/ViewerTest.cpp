#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QWheelEvent>

#include "base/TextTable.h"
#include "history/HistoryTableModel.h"
#include "history/HistoryView.h"
#include "history/TableRig.h"
#include "history/frmHistory.h"
#include "history/frmProgress.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"
#include "support/SmallDisk.h"
#include "support/ToolkitWarnings.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::kMinute;
using test::kStamp;
using test::TableRig;

TEST(HistoryTableModel, IsAModelAsTheViewsWantIt) {
  TableRig rig(2, 1);
  rig.EnableAnalog(0, u"%"_s);
  rig.EnablePulse(0, u"Pulses"_s, 1, 0);
  for (int i = 0; i < 5; ++i) rig.Add(kStamp, {i, 0, 0});
  HistoryTableModel model;
  const QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.SetTable(rig.Table());
  EXPECT_EQ(model.rowCount(), 5);
  EXPECT_EQ(model.columnCount(), 3);
  model.SetTable(rig.PackedTable());
  model.SetTable(std::nullopt);
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_EQ(model.columnCount(), 0);
}

// The key for copying asks an empty table so.
TEST(HistoryTableModel, HasNothingForNoCellAndSaysNothingOfIt) {
  const HistoryTableModel model;
  const test::ToolkitWarnings warnings;
  EXPECT_FALSE(model.data(QModelIndex(), Qt::DisplayRole).isValid());
  EXPECT_EQ(test::ToolkitWarnings::Said(), QStringList());
}

TEST(HistoryTableModel, GivesTheCellsHeadingsAndAlignmentOfTheTable) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"%"_s);
  rig.Add(kStamp, {150});
  HistoryTableModel model;
  model.SetTable(rig.Table());
  EXPECT_EQ(model.index(0, 0).data().toString(), u"12/26/10 15:47:29"_s);
  EXPECT_EQ(model.index(0, 1).data().toString(), u"1.50"_s);
  EXPECT_EQ(model.index(0, 0).data(Qt::ToolTipRole).toString(), u"12/26/10 15:47:29"_s);
  EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), u"%"_s);
  EXPECT_EQ(model.index(0, 1).data(Qt::TextAlignmentRole).value<Qt::Alignment>(), Qt::AlignCenter);
}

class Viewer : public testing::Test {
 protected:
  Viewer() {
    rig_.EnableAnalog(0, u"%"_s);
    rig_.EnableAnalog(1, u"Volts"_s);
    rig_.EnablePulse(0, u"Pulses"_s, 1, 0);
    screen_.Captions[u"lblLoggerName"_s] = u"Well 7"_s;
  }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  // Pairs of records with the same values.
  void AddRecords(int count) {
    for (int i = 0; i < count; ++i)
      rig_.Add(kStamp + static_cast<std::uint32_t>(i % 10) * kMinute, {4120 + i / 2, 1285, 103});
  }
  frmHistory& Open() {
    return viewer_.emplace(HistoryViewerParts{rig_.Buffer,
                                              rig_.Settings,
                                              rig_.Link,
                                              screen_,
                                              messages_,
                                              dialogs_,
                                              clock_,
                                              rig_.Locale,
                                              option_,
                                              relays_,
                                              u"/opt/app"_s,
                                              nullptr,
                                              {},
                                              showPlot_});
  }
  template <typename Control>
  Control* Find(const QString& name) const {
    Control* const control = viewer_->findChild<Control*>(name);
    EXPECT_NE(control, nullptr) << name.toStdString();
    return control;
  }
  HistoryView* List() const {
    return dynamic_cast<HistoryView*>(Find<QTableView>(u"lvwHistory"_s));
  }
  QProgressBar* Bar() const { return Find<QProgressBar>(u"ProgressBar"_s); }
  void Click(const QString& button) const { Find<QPushButton>(button)->click(); }
  QString Text(const QString& label) const { return Find<QLabel>(label)->text(); }
  QString SavePath() const { return folder_.filePath(u"history.csv"_s); }
  QByteArray Saved() const {
    QFile file(SavePath());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }

  TableRig rig_{2, 1};
  test::FakeMainScreen screen_;
  test::FakeMessages messages_;
  test::FakeFileDialogs dialogs_;
  test::FakeClock clock_;
  QString option_;
  bool relays_ = false;
  std::function<void(const PlotRequest&)> showPlot_;
  QTemporaryDir folder_;
  std::optional<frmHistory> viewer_;
};

TEST_F(Viewer, ShowsTextsNameCountAndAllRecords) {
  AddRecords(6);
  Open();
  EXPECT_EQ(viewer_->objectName(), u"frmHistory"_s);
  EXPECT_EQ(viewer_->windowTitle(), u"Historical Data Viewer"_s);
  EXPECT_EQ(Find<QGroupBox>(u"Frame1"_s)->title(), u"Records Retrieved"_s);
  EXPECT_EQ(Find<QGroupBox>(u"fraLoggerName"_s)->title(), u"Logger Name"_s);
  EXPECT_EQ(Find<QPushButton>(u"cmdPack"_s)->text(), u"&Pack"_s);
  EXPECT_EQ(Find<QPushButton>(u"cmdSave"_s)->text(), u"&Save to File"_s);
  EXPECT_EQ(Find<QPushButton>(u"cmdOptions"_s)->text(), u"Options"_s);
  EXPECT_EQ(Text(u"lblLoggerName"_s), u"Well 7"_s);
  EXPECT_EQ(Text(u"lblNumRecords"_s), u"6"_s);
  EXPECT_EQ(List()->model()->rowCount(), 6);
  EXPECT_EQ(screen_.WaitCursor, 0);
}

TEST_F(Viewer, ColumnsAreAsWideAsGivenAndRowsOfOneHeight) {
  AddRecords(2);
  Open();
  viewer_->show();
  EXPECT_EQ(List()->columnWidth(0), 100);
  EXPECT_EQ(List()->columnWidth(1), 80);
  EXPECT_EQ(List()->columnWidth(3), 96);
  EXPECT_EQ(List()->verticalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
  EXPECT_EQ(List()->horizontalHeader()->sectionResizeMode(0), QHeaderView::Interactive);
}

TEST_F(Viewer, RelayColumnsAppearOnlyWithTheirDisplay) {
  AddRecords(1);
  Open();
  EXPECT_EQ(List()->model()->columnCount(), 4);
  relays_ = true;
  Open();
  EXPECT_EQ(List()->model()->columnCount(), 8);
}

TEST_F(Viewer, LaterSettingsDoNotChangeIt) {
  AddRecords(1);
  Open();
  rig_.Settings = LoggerSettings();
  rig_.Link.AnalogChannelCount = 8;
  EXPECT_EQ(List()->model()->columnCount(), 4);
  EXPECT_EQ(List()->model()->index(0, 1).data().toString(), u"41.20"_s);
}

TEST_F(Viewer, PackAsksAndThenDropsRepeats) {
  AddRecords(6);
  Open();
  messages_.Answers = {kYes};
  Click(u"cmdPack"_s);
  const std::vector<test::FakeMessages::Asked> expected{
      {u"This operation will remove each record from the displayed data that has identical\r\n"
       u"measurements compared with the previous record. \r\n\r\n"
       u"Note that this will not change the history data in the logger.\r\n\r\n"
       u"Select YES to proceed."_s,
       68, u"Pack History Data"_s}};
  EXPECT_EQ(messages_.All, expected);
  EXPECT_EQ(List()->model()->rowCount(), 3);
  EXPECT_EQ(Text(u"lblNumRecords"_s), u"3"_s);
  EXPECT_EQ(rig_.Buffer.Count(), 6);
  EXPECT_EQ(Bar()->minimum(), 0);
  EXPECT_EQ(Bar()->maximum(), 5);
  EXPECT_TRUE(Bar()->isHidden());

  Open();
  EXPECT_EQ(Text(u"lblNumRecords"_s), u"6"_s);
}

TEST_F(Viewer, PackDoesNothingOnNo) {
  AddRecords(6);
  Open();
  messages_.Answers = {kNo};
  Click(u"cmdPack"_s);
  EXPECT_EQ(Text(u"lblNumRecords"_s), u"6"_s);
}

TEST_F(Viewer, ASingleRecordGivesOneRowAndABarThatEndsAtOne) {
  AddRecords(1);
  Open();
  EXPECT_EQ(Text(u"lblNumRecords"_s), u"1"_s);
  messages_.Answers = {kYes};
  Click(u"cmdPack"_s);
  EXPECT_EQ(Bar()->maximum(), 1);
  EXPECT_EQ(List()->model()->rowCount(), 1);
}

TEST_F(Viewer, SaveAsksForAFileAndWritesTheRowsOnTheScreen) {
  AddRecords(6);
  Open();
  messages_.Answers = {kYes};
  Click(u"cmdPack"_s);
  dialogs_.Answers = {SavePath()};
  Click(u"cmdSave"_s);
  ASSERT_EQ(dialogs_.All.size(), 1U);
  EXPECT_EQ(dialogs_.All[0].Title, u"Save To File"_s);
  EXPECT_EQ(dialogs_.All[0].InitialName, u"/opt/app/*.csv"_s);
  EXPECT_EQ(dialogs_.All[0].Filter, u"Comma Separated Value Files (*.csv)|*.csv"_s);
  EXPECT_EQ(dialogs_.All[0].DefaultExtension, u".csv"_s);
  EXPECT_TRUE(dialogs_.All[0].ConfirmOverwrite);
  EXPECT_EQ(Saved(),
            "Well 7,12/27/2010,3:05:12 PM\r\n"
            "Date, Time, %, Volts, Pulses\r\n"
            "12/26/10, 15:47:29, 41.20, 12.85, 103\r\n"
            "12/26/10, 15:49:29, 41.21, 12.85, 103\r\n"
            "12/26/10, 15:51:29, 41.22, 12.85, 103\r\n");
  EXPECT_EQ(Bar()->minimum(), 1);
  EXPECT_EQ(Bar()->maximum(), 3);
  EXPECT_EQ(Bar()->value(), 3);
  EXPECT_TRUE(Bar()->isHidden());
  EXPECT_EQ(viewer_->focusWidget(), Find<QPushButton>(u"cmdOK"_s));
  EXPECT_EQ(screen_.WaitCursor, 0);
}

TEST_F(Viewer, AnyTextOfTheOptionMeansOneColumn) {
  AddRecords(1);
  option_ = u"No"_s;
  Open();
  dialogs_.Answers = {SavePath()};
  Click(u"cmdSave"_s);
  EXPECT_TRUE(Saved().contains("Date Time, %"));
}

TEST_F(Viewer, SavingATableOfNoRowsRunsTheBarFromOneToTwo) {
  Open();
  dialogs_.Answers = {SavePath()};
  Click(u"cmdSave"_s);
  EXPECT_EQ(Bar()->minimum(), 1);
  EXPECT_EQ(Bar()->maximum(), 2);
  EXPECT_EQ(Bar()->value(), 1);
  EXPECT_EQ(Saved(), "Well 7,12/27/2010,3:05:12 PM\r\nDate, Time, %, Volts, Pulses\r\n");
}

TEST_F(Viewer, SavingATableOfOneRowNeverReachesTheEndOfTheBar) {
  AddRecords(1);
  Open();
  dialogs_.Answers = {SavePath()};
  Click(u"cmdSave"_s);
  EXPECT_EQ(Bar()->maximum(), 2);
  EXPECT_EQ(Bar()->value(), 1);
}

TEST_F(Viewer, ACancelledSaveLooksAsIfNothingHappened) {
  AddRecords(1);
  Open();
  Click(u"cmdSave"_s);
  EXPECT_TRUE(messages_.All.empty());
  EXPECT_TRUE(Bar()->isHidden());
  EXPECT_EQ(viewer_->focusWidget(), Find<QPushButton>(u"cmdOK"_s));
}

TEST_F(Viewer, SaysWhichFileWasNotSavedAndWhy) {
  AddRecords(6);
  Open();
  dialogs_.Answers = {u"/dev/full"_s, u"/proc/no/such/folder/h.csv"_s};
  Click(u"cmdSave"_s);
  Click(u"cmdSave"_s);
  SetTextLanguage(kLanguageGerman);
  dialogs_.Answers = {u"/dev/full"_s};
  Click(u"cmdSave"_s);
  SetTextLanguage(kLanguageEnglish);
  using Asked = test::FakeMessages::Asked;
  EXPECT_EQ(messages_.All,
            (std::vector<Asked>{{u"Error: file was not saved correctly.\r\n\r\n"
                                 u"This is not an ordinary file:\r\n/dev/full"_s,
                                 16, u"Save To File"_s},
                                {u"Error: file was not saved correctly.\r\n\r\n"
                                 u"The folder does not exist:\r\n/proc/no/such/folder"_s,
                                 16, u"Save To File"_s},
                                {u"Fehler: Datei wurde nicht korrekt gespeichert.\r\n\r\n"
                                 u"Das ist keine gewöhnliche Datei:\r\n/dev/full"_s,
                                 16, u"In Datei speichern"_s}}));
}

TEST_F(Viewer, AFailedSaveLeavesTheViewerWellAndTheOldFileWhole) {
  AddRecords(6);
  Open();
  test::SmallDisk disk;
  const QString path = disk.Path(u"history.csv"_s);
  dialogs_.Answers = {path, path};
  Click(u"cmdSave"_s);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray old = file.readAll();
  EXPECT_TRUE(old.endsWith("103\r\n"));
  disk.Fill(0);
  Click(u"cmdSave"_s);
  disk.Empty();
  EXPECT_EQ(messages_.All.size(), 1U);
  EXPECT_TRUE(Bar()->isHidden());
  EXPECT_EQ(screen_.WaitCursor, 0);
  EXPECT_EQ(viewer_->focusWidget(), Find<QPushButton>(u"cmdOK"_s));
  QFile after(path);
  ASSERT_TRUE(after.open(QIODevice::ReadOnly));
  EXPECT_EQ(after.readAll(), old);
}

TEST_F(Viewer, OkClearsTheListAndHides) {
  AddRecords(6);
  Open();
  viewer_->show();
  Click(u"cmdOK"_s);
  EXPECT_FALSE(viewer_->isVisible());
  EXPECT_EQ(List()->model()->rowCount(), 0);
}

TEST_F(Viewer, EnterInTheTableDoesNotCloseIt) {
  AddRecords(6);
  Open();
  viewer_->show();
  QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
  QApplication::sendEvent(List(), &enter);
  EXPECT_TRUE(viewer_->isVisible());
}

void Copy(HistoryView* view) {
  QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
  QApplication::sendEvent(view, &copy);
}

TEST_F(Viewer, CtrlCCopiesTheSelectionWithTabs) {
  AddRecords(4);
  Open();
  auto* const selection = List()->selectionModel();
  const QAbstractItemModel* const model = List()->model();
  selection->select(QItemSelection(model->index(1, 0), model->index(2, 1)),
                    QItemSelectionModel::ClearAndSelect);
  Copy(List());
  EXPECT_EQ(QApplication::clipboard()->text(),
            u"12/26/10 15:48:29\t41.20\n12/26/10 15:49:29\t41.21"_s);

  selection->select(model->index(0, 1), QItemSelectionModel::ClearAndSelect);
  selection->select(model->index(3, 3), QItemSelectionModel::Select);
  Copy(List());
  EXPECT_EQ(QApplication::clipboard()->text(), u"41.20\t\t\n\t\t103"_s);
}

TEST_F(Viewer, CtrlCWithoutASelectionLeavesTheClipboardAlone) {
  AddRecords(4);
  Open();
  QApplication::clipboard()->setText(u"before"_s);
  List()->clearSelection();
  Copy(List());
  EXPECT_EQ(QApplication::clipboard()->text(), u"before"_s);
}

TEST_F(Viewer, TheFirstColumnStaysInViewWhileTheOthersScroll) {
  for (std::size_t channel = 0; channel < 2; ++channel) rig_.EnableAnalog(channel, u"u"_s);
  AddRecords(1000);
  Open();
  viewer_->show();
  viewer_->resize(560, 400);
  auto* const frozen = Find<QTableView>(u"lvwHistoryFirstColumn"_s);
  EXPECT_TRUE(frozen->isVisible());
  EXPECT_EQ(frozen->columnWidth(0), 100);
  EXPECT_TRUE(frozen->isColumnHidden(1));

  List()->verticalScrollBar()->setValue(500);
  EXPECT_EQ(frozen->verticalScrollBar()->value(), 500);
  frozen->verticalScrollBar()->setValue(700);
  EXPECT_EQ(List()->verticalScrollBar()->value(), 700);

  List()->horizontalHeader()->resizeSection(0, 150);
  EXPECT_EQ(frozen->columnWidth(0), 150);
  EXPECT_EQ(frozen->width(), 150);
  EXPECT_EQ(frozen->rowHeight(0), List()->rowHeight(0));
}

TEST_F(Viewer, AWheelScrollsOverEveryPartOfTheTable) {
  rig_.Link.AnalogChannelCount = 8;
  for (std::size_t channel = 0; channel < 8; ++channel) rig_.EnableAnalog(channel, u"u"_s);
  AddRecords(200);
  frmHistory& viewer = Open();
  viewer.show();
  viewer.resize(560, 400);
  QCoreApplication::processEvents();
  auto* table = Find<QTableView>(u"lvwHistory"_s);
  auto* first = Find<QTableView>(u"lvwHistoryFirstColumn"_s);
  const auto turn = [](QWidget* widget, QPoint angle) {
    const QPointF place = widget->rect().center();
    QWheelEvent wheel(place, widget->mapToGlobal(place), {}, angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &wheel);
  };
  QScrollBar* const rows = table->verticalScrollBar();
  QScrollBar* const columns = table->horizontalScrollBar();
  for (QWidget* part : {table->viewport(), first->viewport(), static_cast<QWidget*>(rows)}) {
    rows->setValue(0);
    turn(part, {0, -120});
    EXPECT_GT(rows->value(), 0) << part->metaObject()->className();
    turn(part, {0, 120});
    EXPECT_EQ(rows->value(), 0) << part->metaObject()->className();
    // At the end already.
    turn(part, {0, 120});
    EXPECT_EQ(rows->value(), 0) << part->metaObject()->className();
    rows->setValue(rows->maximum());
    turn(part, {0, -120});
    EXPECT_EQ(rows->value(), rows->maximum()) << part->metaObject()->className();
  }
  ASSERT_GT(columns->maximum(), 0);
  for (QWidget* part : {table->viewport(), first->viewport(), static_cast<QWidget*>(columns)}) {
    columns->setValue(0);
    turn(part, {-120, 0});
    EXPECT_GT(columns->value(), 0) << part->metaObject()->className();
    turn(part, {120, 0});
    turn(part, {120, 0});
    EXPECT_EQ(columns->value(), 0) << part->metaObject()->className();
  }
}

TEST_F(Viewer, ACellReachedByTheKeysIsNeverUnderTheFirstColumn) {
  rig_.Link.AnalogChannelCount = 8;
  for (std::size_t channel = 0; channel < 8; ++channel) rig_.EnableAnalog(channel, u"u"_s);
  AddRecords(5);
  Open();
  viewer_->show();
  viewer_->resize(560, 400);
  const int last = List()->model()->columnCount() - 1;
  List()->setCurrentIndex(List()->model()->index(0, last));
  for (int column = last - 1; column > 0; --column) {
    QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    QApplication::sendEvent(List(), &left);
    ASSERT_EQ(List()->currentIndex().column(), column);
    EXPECT_GE(List()->visualRect(List()->currentIndex()).left(), 100) << column;
  }
}

TEST_F(Viewer, ThePageKeysMoveThroughTheRows) {
  AddRecords(1000);
  Open();
  viewer_->show();
  QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::ControlModifier);
  QApplication::sendEvent(List(), &end);
  EXPECT_EQ(List()->currentIndex().row(), 999);
  QKeyEvent home(QEvent::KeyPress, Qt::Key_Home, Qt::ControlModifier);
  QApplication::sendEvent(List(), &home);
  EXPECT_EQ(List()->currentIndex().row(), 0);
}

TEST_F(Viewer, WithoutAPlotThereIsNoButtonForIt) {
  AddRecords(1);
  Open();
  EXPECT_TRUE(Find<QPushButton>(u"cmdPlot"_s)->isHidden());
}

TEST_F(Viewer, ThePlotStandsAtTheEndOfTheRowAndGoesBackToARow) {
  AddRecords(1000);
  showPlot_ = [this](const PlotRequest& request) {
    EXPECT_EQ(&request.Table, dynamic_cast<HistoryTableModel*>(List()->model())->Table());
    EXPECT_EQ(request.LoggerName, u"Well 7"_s);
    EXPECT_EQ(request.Viewer, &*viewer_);
    request.ShowRecord(777);
  };
  Open();
  viewer_->show();
  EXPECT_EQ(Find<QPushButton>(u"cmdPlot"_s)->text(), u"P&lot"_s);
  EXPECT_GT(Find<QPushButton>(u"cmdPlot"_s)->x(), Find<QPushButton>(u"cmdSave"_s)->x());
  EXPECT_EQ(Find<QPushButton>(u"cmdSave"_s)->nextInFocusChain(), Find<QPushButton>(u"cmdPlot"_s));
  Click(u"cmdPlot"_s);
  EXPECT_EQ(List()->currentIndex().row(), 777);
  EXPECT_EQ(List()->selectionModel()->selectedRows().size(), 1);
}

TEST_F(Viewer, ThePlotOfAPackedTableGoesToTheRowThatShowsTheRecord) {
  AddRecords(6);
  showPlot_ = [](const PlotRequest& request) { request.ShowRecord(5); };
  Open();
  messages_.Answers = {kYes};
  Click(u"cmdPack"_s);
  Click(u"cmdPlot"_s);
  EXPECT_EQ(List()->currentIndex().row(), 2);
}

TEST_F(Viewer, NoRowAtAllIsShownWellToo) {
  Open();
  viewer_->show();
  messages_.Answers = {kYes};
  Click(u"cmdPack"_s);
  EXPECT_EQ(Text(u"lblNumRecords"_s), u"0"_s);
  EXPECT_EQ(List()->model()->columnCount(), 4);
}

TEST_F(Viewer, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  AddRecords(1);
  Open();
  EXPECT_EQ(viewer_->windowTitle(), u"Speicherdaten-Betrachter"_s);
  EXPECT_EQ(Find<QPushButton>(u"cmdPack"_s)->text(), u"Packen"_s);
  EXPECT_EQ(Find<QPushButton>(u"cmdSave"_s)->text(), u"In Datei speichern"_s);
  EXPECT_EQ(Find<QGroupBox>(u"fraLoggerName"_s)->title(), u"Loggername"_s);
  EXPECT_EQ(List()->model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(),
            u"Datum / Zeit"_s);
}

TEST(Progress, StaysHiddenWhileThereIsNothingToWaitFor) {
  frmProgress progress(199999, nullptr);
  EXPECT_EQ(progress.windowTitle(), u"Formatting Data"_s);
  EXPECT_EQ(progress.findChild<QLabel*>(u"lblStatusBar"_s)->text(),
            u"Please wait while data is being formatted"_s);
  const auto* const bar = progress.findChild<QProgressBar*>(u"ProgressBar"_s);
  EXPECT_EQ(bar->minimum(), 0);
  EXPECT_EQ(bar->maximum(), 199999);
  progress.Advance(5);
  EXPECT_EQ(bar->value(), 5);
  EXPECT_TRUE(progress.isHidden());
  progress.Advance(199999);
  EXPECT_TRUE(progress.isHidden());
}

TEST_F(Viewer, EnterPressesTheButtonThatHasTheFocusAndNoOther) {
  AddRecords(4);
  Open();
  viewer_->show();
  const auto enterOn = [this](QWidget* control) {
    control->setFocus();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(control, &enter);
  };
  messages_.Answers = {kNo};
  enterOn(Find<QPushButton>(u"cmdPack"_s));
  EXPECT_EQ(messages_.All.size(), 1U);
  enterOn(Find<QPushButton>(u"cmdSave"_s));
  EXPECT_EQ(dialogs_.All.size(), 1U);
  enterOn(List());
  EXPECT_TRUE(viewer_->isVisible());
  enterOn(Find<QPushButton>(u"cmdOK"_s));
  EXPECT_FALSE(viewer_->isVisible());
}

TEST_F(Viewer, PacksNothingWhenTheProgramEndsAtTheQuestion) {
  AddRecords(4);
  test::FakeMessageLoop loop(rig_.Link);
  viewer_.emplace(HistoryViewerParts{rig_.Buffer, rig_.Settings, rig_.Link, screen_, messages_,
                                     dialogs_, clock_, rig_.Locale, option_, relays_, u"/opt/app"_s,
                                     &loop});
  messages_.Answers = {kYes};
  messages_.OnMessage = [&] { loop.End(); };
  Click(u"cmdPack"_s);
  EXPECT_EQ(Text(u"lblNumRecords"_s), u"4"_s);
}

}  // namespace
}  // namespace tessmar
