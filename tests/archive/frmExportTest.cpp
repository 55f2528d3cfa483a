#include "archive/frmExport.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QItemSelectionModel>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <atomic>
#include <chrono>
#include <thread>

#include "archive/ArchiveWindowRig.h"
#include "archive/ExportRoad.h"
#include "support/SmallDisk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// Does something with the progress window as soon as it stands there.
void WhenShown(const std::function<void(QDialog& window)>& act) {
  auto* timer = new QTimer;
  QObject::connect(timer, &QTimer::timeout, [timer, act] {
    auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (window == nullptr || window->objectName() != "frmExport"_L1) return;
    timer->deleteLater();
    act(*window);
  });
  timer->start(5);
}

/// Work that ends only when it is stopped.
void Endless(ExportState& state) {
  state.Total = 5'000'000;
  while (!state.Stop) {
    state.Done = state.Done + 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

class ExportProgressWindow : public testing::Test {
 protected:
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }
};

TEST_F(ExportProgressWindow, ShortWorkShowsNoWindow) {
  frmExport window(nullptr);
  bool done = false;
  window.Run([&](ExportState&) { done = true; });
  EXPECT_TRUE(done);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(ExportProgressWindow, ShowsHowFarTheWorkIsAndStaysAlive) {
  frmExport window(nullptr);
  QString reading;
  QString writing;
  // The work runs in a thread of its own, and may look at nothing else of this one.
  std::atomic<bool> isRead = false;
  WhenShown([&](QDialog& shown) {
    reading = shown.findChild<QLabel*>(u"lblStatusBar"_s)->text();
    EXPECT_FALSE(shown.findChild<QProgressBar*>(u"ProgressBar"_s)->accessibleName().isEmpty());
    EXPECT_FALSE(shown.findChild<QPushButton*>(u"cmdCancel"_s)->hasFocus());
    isRead = true;
    isRead.notify_one();
  });
  window.Run([&](ExportState& state) {
    state.Total = 400;
    state.Done = 100;
    isRead.wait(false);
    state.Writes = true;
    // The timer of the window turns on all the while.
    while (writing.isEmpty()) {
      QMetaObject::invokeMethod(
          &window,
          [&] {
            const QString text = window.findChild<QLabel*>(u"lblStatusBar"_s)->text();
            if (text.startsWith(u"Writing"_s)) writing = text;
          },
          Qt::BlockingQueuedConnection);
    }
  });
  EXPECT_EQ(reading, u"Reading: 100 of 400 records"_s);
  EXPECT_EQ(writing, u"Writing: 100 of 400 records"_s);
  EXPECT_EQ(window.findChild<QProgressBar*>(u"ProgressBar"_s)->value(), 250);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(ExportProgressWindow, CancelAndEscapeStopTheWork) {
  SetTextLanguage(kLanguageGerman);
  for (const bool byKey : {false, true}) {
    frmExport window(nullptr);
    WhenShown([&](QDialog& shown) {
      auto* cancel = shown.findChild<QPushButton*>(u"cmdCancel"_s);
      EXPECT_EQ(cancel->text(), u"Abbrechen"_s);
      if (byKey) {
        QTest::keyClick(&shown, Qt::Key_Escape);
      } else {
        cancel->click();
      }
      EXPECT_FALSE(cancel->isEnabled());
      EXPECT_EQ(shown.findChild<QLabel*>(u"lblStatusBar"_s)->text(), u"Wird abgebrochen..."_s);
    });
    bool stopped = false;
    window.Run([&](ExportState& state) {
      Endless(state);
      stopped = true;
    });
    EXPECT_TRUE(stopped);
  }
}

TEST_F(ExportProgressWindow, TheEndOfTheMessageLoopStopsTheWork) {
  frmExport window(nullptr);
  WhenShown([](QDialog& shown) { shown.done(QDialog::Rejected); });
  window.Run(Endless);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(ExportProgressWindow, WhatTheWorkThrowsComesOut) {
  frmExport window(nullptr);
  EXPECT_THROW(window.Run([](ExportState&) { throw RangeFault("no such upload"); }), RangeFault);
}

class ExportFromArchive : public ArchiveWindowRig {
 protected:
  ExportFromArchive() {
    store_.Open(Store::Access::Write);
    const qint64 pond = store_.SeeLogger(u"Pond"_s, 12, 3, Hour(1));
    well_ = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
    AddUpload(store_, pond, Hour(11), {20, 22, 24});
    AddUpload(store_, well_, Hour(12), {10, 20, 30, 50, 60, 70});
    AddUpload(store_, well_, Hour(13), {10, 20, 30, 40, 60, 70, 80});
  }
  QPushButton* Button() const { return Find<QPushButton>(u"cmdExport"_s); }
  /// Chooses a logger by its row, and none of its uploads.
  void ChooseWholeLogger(int row) const {
    ChooseLogger(row);
    Find<QTableView>(u"tblUploads"_s)->clearSelection();
  }
  /// Presses Export and answers the save dialog.
  void Export(const QString& path, int part) {
    dialogs_.Answers = {path};
    dialogs_.Part = part;
    Button()->click();
  }
};

TEST_F(ExportFromArchive, TheButtonTellsWhatItActsOn) {
  Open().show();
  ChooseWholeLogger(0);
  EXPECT_FALSE(Button()->isEnabled());
  EXPECT_EQ(Button()->toolTip(), u"Choose one upload, or a logger for all its uploads"_s);
  ChooseWholeLogger(2);
  EXPECT_TRUE(Button()->isEnabled());
  EXPECT_EQ(
      Button()->toolTip(),
      u"Saves all uploads of Well 7 as one series: each record once, live samples left out"_s);
  EXPECT_EQ(Button()->accessibleDescription(), Button()->toolTip());
  Find<QTableView>(u"tblUploads"_s)->selectRow(1);
  EXPECT_TRUE(Button()->isEnabled());
  EXPECT_TRUE(Button()->toolTip().startsWith(u"Saves the chosen upload as a file"_s));
  Find<QTableView>(u"tblUploads"_s)->selectAll();
  EXPECT_FALSE(Button()->isEnabled());
  SetTextLanguage(kLanguageGerman);
  Open().show();
  ChooseWholeLogger(2);
  EXPECT_EQ(
      Button()->toolTip(),
      u"Speichert alle Abrufe von Well 7 als eine Reihe: jeden Datensatz einmal, ohne Live-Werte"_s);
}

TEST_F(ExportFromArchive, OffersTheKindsAndAsksBeforeAFileIsReplaced) {
  Open().show();
  ChooseWholeLogger(2);
  Button()->click();
  ASSERT_EQ(dialogs_.All.size(), 1U);
  EXPECT_EQ(dialogs_.All[0].Filter,
            u"Comma Separated Value Files, as the viewer saves them (*.csv)|*.csv|"
            "Comma Separated Value Files for analysis (*.csv)|*.csv|NetCDF Files (*.nc)|*.nc"_s);
  EXPECT_EQ(dialogs_.All[0].InitialName, folder_.path() + u"/*.csv"_s);
  EXPECT_EQ(dialogs_.All[0].DefaultExtension, u".csv"_s);
  EXPECT_TRUE(dialogs_.All[0].ConfirmOverwrite);
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(ExportFromArchive, ASeriesGoesIntoEachKind) {
  Open().show();
  ChooseWholeLogger(2);
  const QString csv = folder_.filePath(u"a.csv"_s);
  Export(csv, 0);
  EXPECT_EQ(Status(), u"8 records in %1; 2 of them where uploads disagree"_s.arg(csv));
  EXPECT_TRUE(
      Content(csv).startsWith("Well 7,3/3/2026,8:00:00 PM\r\nDate, Time, %\r\n"
                              "3/3/26, 12:00:10, 0.10\r\n"));
  Export(csv, 1);
  EXPECT_TRUE(Content(csv).startsWith(
      "logger_time,corrected_time,Channel 1 (%),disagreement\r\n2026-03-03T12:00:10,,0.10,0\r\n"));
  const QString netCdf = folder_.filePath(u"a.nc"_s);
  Export(netCdf, 2);
  EXPECT_EQ(Content(netCdf).left(4), "\x89HDF");
  EXPECT_TRUE(Content(netCdf).contains("Tessmar Logger 2.1.9"));
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(ExportFromArchive, TheNameDecidesWhereItSaysAnotherKind) {
  Open().show();
  ChooseWholeLogger(2);
  Export(folder_.filePath(u"a.nc"_s), 0);
  EXPECT_EQ(Content(folder_.filePath(u"a.nc"_s)).left(4), "\x89HDF");
  Export(folder_.filePath(u"a.csv"_s), 2);
  EXPECT_TRUE(Content(folder_.filePath(u"a.csv"_s)).startsWith("Well 7,"));
  Export(folder_.filePath(u"a.txt"_s), 1);
  EXPECT_TRUE(Content(folder_.filePath(u"a.txt"_s)).startsWith("logger_time,"));
}

TEST_F(ExportFromArchive, AnUploadIsExportedAlone) {
  Open().show();
  ChooseWholeLogger(2);
  Find<QTableView>(u"tblUploads"_s)->selectRow(1);
  const QString csv = folder_.filePath(u"a.csv"_s);
  option_ = u"Yes"_s;
  Export(csv, 0);
  EXPECT_EQ(Status(), u"6 records in "_s + csv);
  EXPECT_TRUE(
      Content(csv).startsWith("Well 7,3/3/2026,8:00:00 PM\r\nDate Time, %\r\n"
                              "3/3/26 12:00:10, 0.10\r\n"));
}

TEST_F(ExportFromArchive, WhatFailsIsToldWithFileAndReason) {
  Open().show();
  ChooseWholeLogger(2);
  Export(folder_.filePath(u"no/such/folder/a.csv"_s), 0);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt,
            u"The folder does not exist:\r\n"_s + folder_.filePath(u"no/such/folder"_s));
  EXPECT_EQ(messages_.All[0].Buttons, kExclamation);
  EXPECT_EQ(messages_.All[0].Title, u"Export"_s);

  // Written to before it is full.
  SmallDisk disk;
  const QString small = disk.Path(u"a.csv"_s);
  QFile old(small);
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write("yesterday's");
  old.close();
  disk.Fill(0);
  Export(small, 1);
  disk.Empty();
  ASSERT_EQ(messages_.All.size(), 2U);
  EXPECT_TRUE(messages_.All[1].Prompt.contains(small)) << messages_.All[1].Prompt.toStdString();
  EXPECT_EQ(Content(small), "yesterday's");
}

TEST_F(ExportFromArchive, DifferentChannelsNameTheWayOut) {
  QByteArray image = store_.Upload(3)->Settings;
  image.replace('%', 'V');
  store_.Run(u"UPDATE upload SET settings = ? WHERE id = 3"_s, {image});
  Open().show();
  ChooseWholeLogger(2);
  const QString csv = folder_.filePath(u"a.csv"_s);
  Export(csv, 0);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_TRUE(messages_.All[0].Prompt.startsWith(u"The channels changed between the uploads"_s));
  EXPECT_FALSE(QFile::exists(csv));
  Export(csv, 1);
  EXPECT_EQ(messages_.All.size(), 1U);
  EXPECT_TRUE(QFile::exists(csv));
}

TEST_F(ExportFromArchive, NoRecordsAreNoFile) {
  const qint64 empty = store_.SeeLogger(u"A new one"_s, 12, 3, Hour(1));
  AddUpload(store_, empty, Hour(14), {});
  Open().show();
  ChooseWholeLogger(1);
  const QString csv = folder_.filePath(u"a.csv"_s);
  Export(csv, 0);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt, u"There are no records to export."_s);
  EXPECT_EQ(messages_.All[0].Buttons, kInformation);
  EXPECT_FALSE(QFile::exists(csv));
}

TEST_F(ExportFromArchive, CancelInTheSaveDialogDoesNothing) {
  Open().show();
  ChooseWholeLogger(2);
  const QString before = Status();
  Button()->click();
  EXPECT_EQ(Status(), before);
  EXPECT_TRUE(messages_.All.empty());
}

}  // namespace
}  // namespace tessmar::test
