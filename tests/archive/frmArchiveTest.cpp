#include "archive/frmArchive.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDateEdit>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTreeView>

#include "archive/ArchiveEdits.h"
#include "archive/ArchiveWindowRig.h"
#include "history/CsvExport.h"
#include "history/frmHistory.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ArchiveWindow : public ArchiveWindowRig {
 protected:
  // Two loggers with two uploads and one.
  void Fill() {
    store_.Open(Store::Access::Write);
    well_ = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
    pond_ = store_.SeeLogger(u"Pond"_s, 12, 3, Hour(1));
    first_ = AddUpload(store_, well_, Hour(10), {10, 12});
    AddUpload(store_, pond_, Hour(11), {20, 22, 24}, u"pond.bin"_s);
    AddUpload(store_, well_, Hour(12), {10, 12, 14, 16});
    store_.AddEvent(
        {.Uuid = u"1"_s, .LoggerId = well_, .At = Hour(9), .Entry = {.Kind = EventKind::Cleared}});
  }

  void Press(const QString& name) const { Find<QPushButton>(name)->click(); }
  QTableView* Uploads() const { return Find<QTableView>(u"tblUploads"_s); }
  QStringList Records() const {
    QStringList records;
    for (int row = 0; row < Uploads()->model()->rowCount(); ++row)
      records.append(Uploads()->model()->index(row, UploadsModel::Records).data().toString());
    return records;
  }
  QStringList Loggers() const {
    QStringList names;
    const QAbstractItemModel* model = Find<QTreeView>(u"treeLoggers"_s)->model();
    for (int row = 0; row < model->rowCount(); ++row)
      names.append(model->index(row, 0).data().toString());
    return names;
  }
  /// Chooses the upload of the pond; then another program deletes it.
  void ChooseAnUploadThatIsTakenAway() {
    Open();
    ChooseLogger(1);
    Uploads()->selectRow(0);
    ASSERT_TRUE(OtherProgram(Path()).Do(u"DELETE FROM upload WHERE logger_id = %1"_s.arg(pond_)));
  }

  qint64 pond_ = 0;
  qint64 first_ = 0;
};

TEST_F(ArchiveWindow, WithoutAnArchiveSaysSoAndMakesNone) {
  Open();
  EXPECT_EQ(Status(), u"Nothing has been uploaded yet"_s);
  EXPECT_FALSE(QFile::exists(Path()));
  EXPECT_TRUE(messages_.All.empty());
  for (const char* button : {"cmdOpen", "cmdExport", "cmdRename", "cmdMerge", "cmdSplit"})
    EXPECT_FALSE(Find<QPushButton>(QString::fromLatin1(button))->isEnabled()) << button;
}

TEST_F(ArchiveWindow, ShowsLoggersUploadsAndLogbook) {
  Fill();
  Open();
  EXPECT_EQ(Loggers(), (QStringList{u"All loggers"_s, u"Pond"_s, u"Well 7"_s}));
  EXPECT_EQ(Records(), (QStringList{u"4"_s, u"3"_s, u"2"_s}));
  EXPECT_EQ(Find<QTableView>(u"tblLogbook"_s)->model()->rowCount(), 1);
  EXPECT_EQ(Status(), u"3 uploads; chosen: Well 7, 3/3/2026 12:00:00 PM"_s);
  ChooseLogger(1);
  EXPECT_EQ(Records(), QStringList{u"3"_s});
  EXPECT_EQ(Status(), u"1 upload; chosen: the whole series of Pond"_s);
  EXPECT_EQ(Find<QTableView>(u"tblLogbook"_s)->model()->rowCount(), 0);
}

TEST_F(ArchiveWindow, OpensTheChosenUploadWithItsOwnSettings) {
  Fill();
  Open();
  ChooseLogger(1);
  Uploads()->selectRow(0);
  Press(u"cmdOpen"_s);
  EXPECT_EQ(shown_, u"Pond 3"_s);
  ChooseLogger(0);
  Uploads()->selectAll();
  EXPECT_FALSE(Find<QPushButton>(u"cmdOpen"_s)->isEnabled());
}

// Two programs look at one archive, and the other has emptied its bin.
TEST_F(ArchiveWindow, SaysThatAnotherProgramHasTakenTheUploadAway) {
  Fill();
  ChooseAnUploadThatIsTakenAway();
  Press(u"cmdOpen"_s);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(
      messages_.All[0].Prompt,
      u"Another program has changed the archive. What was chosen is there no more; the window "
      "shows what there is."_s);
  EXPECT_EQ(messages_.All[0].Buttons, kInformation);
  EXPECT_EQ(shown_, u""_s);
  ChooseLogger(0);
  EXPECT_EQ(Records(), (QStringList{u"4"_s, u"2"_s}));
}

TEST_F(ArchiveWindow, PlotsNothingThatAnotherProgramHasTakenAway) {
  Fill();
  showPlot_ = [this](const SeriesSet&, QWidget*) { shown_ = u"plot"_s; };
  ChooseAnUploadThatIsTakenAway();
  Press(u"cmdPlot"_s);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_TRUE(messages_.All[0].Prompt.startsWith(u"Another program has changed the archive."_s));
  EXPECT_EQ(shown_, u""_s);
}

TEST_F(ArchiveWindow, RenamesNoLoggerThatAnotherProgramHasMergedAway) {
  Fill();
  Open();
  ChooseLogger(1);
  text_ = u"Pool"_s;
  MergeLoggers(store_, pond_, well_, Hour(19));
  ASSERT_TRUE(OtherProgram(Path()).Do(u"DELETE FROM logger WHERE id = %1"_s.arg(pond_)));
  Press(u"cmdRename"_s);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_TRUE(messages_.All[0].Prompt.startsWith(u"Another program has changed the archive."_s));
  EXPECT_EQ(Loggers(), (QStringList{u"All loggers"_s, u"Well 7"_s}));
}

TEST_F(ArchiveWindow, EnterInTheTableOpens) {
  Fill();
  Open().show();
  QTest::keyClick(Uploads(), Qt::Key_Return);
  EXPECT_EQ(shown_, u"Well 7 4"_s);
}

TEST_F(ArchiveWindow, EnterPressesTheButtonWithTheFocusAndNoOther) {
  Fill();
  Open().show();
  QTest::keyClick(Find<QLineEdit>(u"txtFilter"_s), Qt::Key_Return);
  EXPECT_EQ(shown_, u""_s);
  EXPECT_TRUE(window_->isVisible());
  Find<QPushButton>(u"cmdOpen"_s)->setFocus();
  QTest::keyClick(Find<QPushButton>(u"cmdOpen"_s), Qt::Key_Return);
  EXPECT_EQ(shown_, u"Well 7 4"_s);
  QTest::keyClick(&*window_, Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(ArchiveWindow, ThePlotsButtonIsThereOnlyWithAPlot) {
  Fill();
  Open().show();
  EXPECT_FALSE(Find<QPushButton>(u"cmdPlot"_s)->isVisible());
  showPlot_ = [this](const SeriesSet& series, QWidget*) {
    shown_ = u"plot of "_s + series.LoggerName;
  };
  Open().show();
  Press(u"cmdPlot"_s);
  EXPECT_EQ(shown_, u"plot of Well 7"_s);
}

TEST_F(ArchiveWindow, ALoggerStandsForAllItsUploadsUntilOneIsChosen) {
  Fill();
  std::optional<SeriesSet> plotted;
  showPlot_ = [&](SeriesSet series, QWidget*) { plotted = std::move(series); };
  Open().show();
  auto* plot = Find<QPushButton>(u"cmdPlot"_s);
  auto* open = Find<QPushButton>(u"cmdOpen"_s);
  EXPECT_EQ(Status(), u"3 uploads; chosen: Well 7, 3/3/2026 12:00:00 PM"_s);
  EXPECT_EQ(plot->toolTip(),
            u"Plots the chosen upload. For all uploads of a logger choose the logger."_s);
  Press(u"cmdPlot"_s);
  ASSERT_TRUE(plotted);
  EXPECT_EQ(plotted->Times.size(), 4U);

  ChooseLogger(2);
  EXPECT_EQ(Status(), u"2 uploads; chosen: the whole series of Well 7"_s);
  EXPECT_EQ(
      plot->toolTip(),
      u"Plots all uploads of Well 7 as one series: each record once, live samples left out"_s);
  EXPECT_EQ(plot->accessibleDescription(), plot->toolTip());
  EXPECT_TRUE(plot->isEnabled());
  EXPECT_FALSE(open->isEnabled());
  EXPECT_TRUE(open->toolTip().startsWith(u"Choose one upload:"_s));
  Press(u"cmdPlot"_s);
  // Two before the clearing, which stand for the same times again behind it, and its mark.
  ASSERT_EQ(plotted->Times.size(), 4U);
  EXPECT_EQ(plotted->LoggerName, u"Well 7"_s);
  EXPECT_EQ(plotted->Marks.size(), 1U);

  Uploads()->selectRow(1);
  EXPECT_EQ(Status(), u"2 uploads; chosen: Well 7, 3/3/2026 10:00:00 AM"_s);
  Press(u"cmdPlot"_s);
  EXPECT_EQ(plotted->Times.size(), 2U);
  EXPECT_EQ(plotted->Marks.size(), 1U);

  Uploads()->selectAll();
  EXPECT_EQ(Status(), u"2 uploads; chosen: 2 uploads"_s);
  EXPECT_EQ(plot->toolTip(), u"Choose one upload, or a logger for all its uploads"_s);
  EXPECT_FALSE(plot->isEnabled());
}

TEST_F(ArchiveWindow, PressingTheLoggerAgainLetsGoOfItsUpload) {
  Fill();
  showPlot_ = [](const SeriesSet&, QWidget*) {};
  Open().show();
  ChooseLogger(2);
  Uploads()->selectRow(1);
  auto* tree = Find<QTreeView>(u"treeLoggers"_s);
  const QPoint place = tree->visualRect(tree->model()->index(2, 0)).center();
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(Status(), u"2 uploads; chosen: the whole series of Well 7"_s);
  // All of them are no logger.
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                    tree->visualRect(tree->model()->index(0, 0)).center());
  EXPECT_EQ(Status(), u"3 uploads; chosen: Well 7, 3/3/2026 12:00:00 PM"_s);
}

TEST_F(ArchiveWindow, EnterOpensTheRowOfTheLoggerThatTheFocusIsOn) {
  Fill();
  Open().show();
  ChooseLogger(2);
  QTest::keyClick(Uploads(), Qt::Key_Return);
  EXPECT_EQ(shown_, u"Well 7 4"_s);
}

TEST_F(ArchiveWindow, AnUploadWhoseSettingsNobodyKnowsIsToldAndShownAsTimes) {
  Fill();
  store_.Run(u"UPDATE upload SET settings = NULL"_s);
  int channels = -1;
  showPlot_ = [&](const SeriesSet& set, QWidget*) {
    channels = static_cast<int>(set.Channels.size());
  };
  Open();
  ChooseLogger(1);
  Uploads()->selectRow(0);
  Press(u"cmdPlot"_s);
  EXPECT_EQ(channels, 0);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt,
            u"The logger's settings could not be read before these records were taken, so that "
            "nobody can tell what their numbers mean. Their times are shown; the archive keeps the "
            "numbers as they came."_s);
}

TEST_F(ArchiveWindow, ASeriesWithoutRecordsIsTold) {
  Fill();
  store_.Run(u"UPDATE upload SET kind = 'live'"_s);
  bool plotted = false;
  showPlot_ = [&](const SeriesSet&, QWidget*) { plotted = true; };
  Open();
  ChooseLogger(1);
  Press(u"cmdPlot"_s);
  EXPECT_FALSE(plotted);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt,
            u"Pond has no records from its history or from image files."_s);
}

TEST_F(ArchiveWindow, ExportsTheSameBytesAsTheViewer) {
  Fill();
  Open();
  const QString path = folder_.filePath(u"a.csv"_s);
  dialogs_.Answers = {path};
  Press(u"cmdExport"_s);
  EXPECT_EQ(QString::fromUtf8(Content(path)),
            u"Well 7,3/3/2026,8:00:00 PM\r\nDate, Time, %\r\n"
            "3/3/26, 12:00:10, 0.10\r\n3/3/26, 12:00:12, 0.12\r\n"
            "3/3/26, 12:00:14, 0.14\r\n3/3/26, 12:00:16, 0.16\r\n"_s);
  EXPECT_EQ(Status(), u"4 records in "_s + path);

  const ArchivedUpload upload = LoadUpload(store_, store_.Uploads(well_).front().Id);
  frmHistory viewer({.Buffer = *upload.Records,
                     .Settings = upload.Settings,
                     .Link = upload.Link,
                     .Screen = screen_,
                     .Message = messages_,
                     .Dialogs = dialogs_,
                     .Time = clock_,
                     .Locale = locale_,
                     .CsvDateTimeSingleColumn = option_,
                     .AppPath = folder_.path(),
                     .LoggerName = upload.LoggerName});
  const QString other = folder_.filePath(u"b.csv"_s);
  dialogs_.Answers = {other};
  viewer.findChild<QPushButton*>(u"cmdSave"_s)->click();
  EXPECT_EQ(Content(other), Content(path));
}

TEST_F(ArchiveWindow, AnExportThatFailsIsTold) {
  Fill();
  Open();
  dialogs_.Answers = {folder_.filePath(u"no/such/folder/a.csv"_s)};
  Press(u"cmdExport"_s);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Buttons, kExclamation);
}

TEST_F(ArchiveWindow, RenamesTheChosenLogger) {
  Fill();
  Open();
  EXPECT_FALSE(Find<QPushButton>(u"cmdRename"_s)->isEnabled());
  ChooseLogger(2);
  text_ = u"  Bridge "_s;
  Press(u"cmdRename"_s);
  EXPECT_EQ(asked_, u"Rename Logger|New name of Well 7 in the archive:|Well 7"_s);
  EXPECT_EQ(Loggers(), (QStringList{u"All loggers"_s, u"Bridge"_s, u"Pond"_s}));
  text_ = u" "_s;
  Press(u"cmdRename"_s);
  text_ = std::nullopt;
  Press(u"cmdRename"_s);
  EXPECT_EQ(Loggers().at(1), u"Bridge"_s);
}

TEST_F(ArchiveWindow, MergesTheChosenLoggerIntoAnother) {
  Fill();
  Open();
  ChooseLogger(2);
  Press(u"cmdMerge"_s);
  EXPECT_EQ(Loggers().size(), 3);
  choice_ = 0;
  Press(u"cmdMerge"_s);
  EXPECT_EQ(asked_, u"Merge Loggers|All uploads of Well 7, those to come too, belong to:|Pond"_s);
  EXPECT_EQ(Loggers(), (QStringList{u"All loggers"_s, u"Pond"_s}));
  EXPECT_EQ(Records().size(), 3);
  EXPECT_FALSE(Find<QPushButton>(u"cmdMerge"_s)->isEnabled());
}

TEST_F(ArchiveWindow, SplitsTheChosenUploadsOff) {
  Fill();
  Open();
  ChooseLogger(2);
  Uploads()->selectRow(0);
  text_ = u"Well 7 B"_s;
  Press(u"cmdSplit"_s);
  EXPECT_EQ(
      asked_,
      u"Split Logger|Name of another logger that the selected uploads (1 upload) belong to:|"_s);
  EXPECT_EQ(Loggers(), (QStringList{u"All loggers"_s, u"Pond"_s, u"Well 7"_s, u"Well 7 B"_s}));
  EXPECT_EQ(Records(), QStringList{u"4"_s});
}

TEST_F(ArchiveWindow, DeletesIntoABinWithAWayBack) {
  Fill();
  Open().show();
  QTest::keyClick(Uploads(), Qt::Key_Delete);
  EXPECT_TRUE(messages_.All.empty());
  EXPECT_EQ(Status(), u"1 upload moved to the bin"_s);
  EXPECT_EQ(Records(), (QStringList{u"3"_s, u"2"_s}));
  EXPECT_EQ(Loggers().last(), u"Bin (1)"_s);
  EXPECT_FALSE(Find<QPushButton>(u"cmdEmpty"_s)->isVisible());
  ChooseLogger(3);
  EXPECT_FALSE(Find<QPushButton>(u"cmdDelete"_s)->isVisible());
  EXPECT_EQ(Records(), QStringList{u"4"_s});
  Press(u"cmdOpen"_s);
  EXPECT_EQ(shown_, u"Well 7 4"_s);
  Press(u"cmdRestore"_s);
  EXPECT_EQ(Status(), u"1 upload put back"_s);
  EXPECT_EQ(Records(), (QStringList{u"4"_s, u"3"_s, u"2"_s}));
}

TEST_F(ArchiveWindow, EmptiesTheBinOnlyOnAnExplicitYes) {
  Fill();
  PutIntoBin(store_, {first_}, Hour(15));
  Open().show();
  ChooseLogger(3);
  messages_.Default = kNo;
  Press(u"cmdEmpty"_s);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Buttons, kYesNo | kExclamation | kDefaultButton2);
  EXPECT_TRUE(messages_.All[0].Prompt.startsWith(u"The uploads in the bin (1 upload) will be"_s));
  EXPECT_EQ(UploadsInBin(store_).size(), 1U);
  // The end of the program answers with the first button.
  messages_.Default = kYes;
  ending_ = true;
  Press(u"cmdEmpty"_s);
  EXPECT_EQ(UploadsInBin(store_).size(), 1U);
  ending_ = false;
  Press(u"cmdEmpty"_s);
  EXPECT_TRUE(UploadsInBin(store_).empty());
  EXPECT_EQ(Status(), u"The bin is empty"_s);
  EXPECT_EQ(Loggers().size(), 3);
}

// As another page beside the logbook, for the chosen logger, found by Tab and by its mnemonic.
TEST_F(ArchiveWindow, ShowsTheCalibrationsOfTheChosenLogger) {
  Fill();
  for (const qint64 logger : {well_, pond_}) {
    store_.AddEvent({.Uuid = QUuid::createUuid().toString(),
                     .LoggerId = logger,
                     .At = Hour(9),
                     .Entry = {.Kind = EventKind::Calibrated,
                               .Text = u"Channel 1 (%): "_s,
                               .Before = ImageOf(u"a"_s),
                               .After = ImageOf(u"a"_s)}});
  }
  Open().show();
  const auto* table = Find<QTableView>(u"tblCalibrations"_s);
  EXPECT_EQ(table->model()->rowCount(), 2);
  EXPECT_FALSE(table->isVisible());
  ChooseLogger(1);
  ASSERT_EQ(table->model()->rowCount(), 1);
  EXPECT_EQ(table->model()->index(0, 1).data().toString(), u"Pond"_s);
  Find<QLineEdit>(u"txtFilter"_s)->setText(u"well"_s);
  EXPECT_EQ(table->model()->rowCount(), 0);
  Find<QLineEdit>(u"txtFilter"_s)->clear();
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&*window_));
  QTest::keyClick(&*window_, Qt::Key_C, Qt::AltModifier);
  QApplication::processEvents();
  EXPECT_TRUE(table->hasFocus());
  const auto* logbook = Find<QTableView>(u"tblLogbook"_s);
  for (int times = 0; times < 2; ++times) {
    Uploads()->setFocus();
    QTest::keyClick(&*window_, Qt::Key_K, Qt::AltModifier);
    QApplication::processEvents();
    EXPECT_TRUE(logbook->hasFocus()) << times;
  }
}

TEST_F(ArchiveWindow, FiltersByTextAndDay) {
  Fill();
  Open();
  Find<QLineEdit>(u"txtFilter"_s)->setText(u"pond"_s);
  EXPECT_EQ(Records(), QStringList{u"3"_s});
  EXPECT_EQ(Status(), u"1 upload"_s);
  Find<QLineEdit>(u"txtFilter"_s)->clear();
  EXPECT_FALSE(Find<QDateEdit>(u"dtpSince"_s)->isEnabled());
  Find<QCheckBox>(u"chkSince"_s)->setChecked(true);
  Find<QDateEdit>(u"dtpSince"_s)->setDate(QDate(2026, 3, 4));
  EXPECT_EQ(Records(), QStringList());
  Find<QCheckBox>(u"chkSince"_s)->setChecked(false);
  Find<QCheckBox>(u"chkUntil"_s)->setChecked(true);
  Find<QDateEdit>(u"dtpUntil"_s)->setDate(QDate(2026, 3, 3));
  EXPECT_EQ(Records().size(), 3);
}

TEST_F(ArchiveWindow, WhatAnotherProgramHoldsIsToldAndNothingChanges) {
  Fill();
  store_.Close();
  Open();
  ChooseLogger(2);
  OtherProgram other(Path());
  ASSERT_TRUE(other.Do(u"BEGIN IMMEDIATE"_s));
  text_ = u"Bridge"_s;
  Press(u"cmdRename"_s);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt,
            u"The archive was not changed.\r\nAnother program holds it locked.\r\n"_s + Path());
  EXPECT_TRUE(other.Do(u"COMMIT"_s));
  Press(u"cmdRename"_s);
  EXPECT_EQ(Loggers().at(1), u"Bridge"_s);
}

TEST_F(ArchiveWindow, GarbageInItsPlaceIsTold) {
  Put(QByteArray(1000, 'x'));
  Open();
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt,
            u"The archive cannot be read.\r\nIt is damaged.\r\n"_s + Path());
  EXPECT_EQ(Content(Path()), QByteArray(1000, 'x'));
}

TEST_F(ArchiveWindow, HasNoMnemonicTwiceAndANameForEachControl) {
  Fill();
  PutIntoBin(store_, {first_}, Hour(15));
  showPlot_ = [](const SeriesSet&, QWidget*) {};
  for (const auto language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    Open().show();
    for (const int row : {0, 3}) {
      ChooseLogger(row);
      QSet<QString> used;
      const auto take = [&](const QString& text) {
        const auto place = text.indexOf(u'&');
        if (place < 0) return;
        const QString key = text.mid(place + 1, 1).toLower();
        EXPECT_FALSE(used.contains(key)) << text.toStdString();
        used.insert(key);
      };
      for (const QAbstractButton* button : window_->findChildren<QAbstractButton*>())
        if (button->isVisible()) take(button->text());
      for (const QLabel* label : window_->findChildren<QLabel*>())
        if (label->buddy() != nullptr) take(label->text());
      const auto* tabs = Find<QTabWidget>(u"tabLogbook"_s);
      for (int page = 0; page < tabs->count(); ++page) take(tabs->tabText(page));
      take(Find<QPushButton>(u"cmdCalibrationsCsv"_s)->text());
    }
    for (const char* name :
         {"treeLoggers", "tblUploads", "tblLogbook", "txtFilter", "dtpSince", "dtpUntil"})
      EXPECT_FALSE(Find<QWidget>(QString::fromLatin1(name))->accessibleName().isEmpty()) << name;
  }
}

}  // namespace
}  // namespace tessmar::test
