#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/Program.h"
#include "archive/UploadsRig.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMostTicks = 1000;

/// The roads from the archive's window to the plot, through the program that joins the two.
class ArchivedPlot : public testing::Test {
 protected:
  ArchivedPlot() {
    qputenv("TZ", "UTC");
    SetTextLanguage(kLanguageEnglish);
    Store store(ArchivePath());
    store.Open(Store::Access::Write);
    const qint64 well = store.SeeLogger(u"Well 7"_s, 12, 3, test::Hour(1));
    test::AddUpload(store, well, test::Hour(12), {0, 10, 20});
    test::AddUpload(store, well, test::Hour(13), {10, 20, 30, 40, 50});
    store.AddEvent({.Uuid = u"1"_s,
                    .LoggerId = well,
                    .At = test::Hour(12).addSecs(30),
                    .Entry = {.Kind = EventKind::Programmed}});
  }
  QString ArchivePath() const { return folder_.filePath(u"archive.sqlite"_s); }

  // Opens the archive's window and does this in it; then the window is closed.
  void InArchive(std::function<void(QDialog& archive)> act) {
    Program program({.Arguments = {u"TessmarLogger"_s},
                     .AppPath = folder_.path(),
                     .StorePath = folder_.filePath(u"store.ini"_s),
                     .PortNames = {},
                     .ArchivePath = ArchivePath(),
                     .EndProcess = [] {}},
                    SystemLocale(QLocale(QLocale::English, QLocale::UnitedStates)));
    program.Start();
    bool done = false;
    bool asked = false;
    int ticks = 0;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &program.Window(), [&] {
      if (++ticks > kMostTicks) return program.Shutdown();
      // It opens by itself, and has to be gone from the stack, too.
      if (QDialog* connect = Form(u"frmConnect"_s)) {
        asked = true;
        return connect->reject();
      }
      if (!asked) return;
      poll.stop();
      QTimer::singleShot(0, &program.Window(), [&] {
        if (QDialog* archive = Form(u"frmArchive"_s)) {
          act(*archive);
          done = true;
        }
        program.Shutdown();
      });
      qobject_cast<QAction*>(program.Window().Control(u"mnuArchive"_s))->trigger();
    });
    poll.start(5);
    // Until the shutdown.
    QCoreApplication::exec();
    EXPECT_TRUE(done);
  }
  static QDialog* Form(const QString& name) {
    for (QWidget* form : QApplication::topLevelWidgets())
      if (form->isVisible() && form->objectName() == name) return qobject_cast<QDialog*>(form);
    return nullptr;
  }
  // Presses the plot's button and looks at the window that opens over the archive's.
  static void Plot(QDialog& archive, const std::function<void(QDialog& plot)>& look) {
    bool seen = false;
    QTimer::singleShot(0, &archive, [&] {
      QDialog* plot = Form(u"frmPlot"_s);
      if (plot == nullptr) return;
      EXPECT_EQ(plot->parentWidget(), &archive);
      // What is said of the view follows from the message loop.
      QCoreApplication::processEvents(QEventLoop::AllEvents);
      look(*plot);
      seen = true;
      plot->reject();
    });
    archive.findChild<QPushButton*>(u"cmdPlot"_s)->click();
    EXPECT_TRUE(seen);
  }
  static std::string Description(QDialog& plot) {
    return plot.findChild<QWidget*>(u"pltPlot"_s)->accessibleDescription().toStdString();
  }

  QTemporaryDir folder_;
};

TEST_F(ArchivedPlot, ShowsOneUpload) {
  InArchive([](QDialog& archive) {
    Plot(archive, [](QDialog& plot) {
      EXPECT_EQ(Description(plot),
                "3/3/26 12:00:09 – 3/3/26 12:00:51, 5 records in view. "
                "Channel 1 (%): least 0.10, greatest 0.50.");
    });
  });
}

TEST_F(ArchivedPlot, ShowsTheWholeSeriesOfALoggerOnBothClocks) {
  InArchive([](QDialog& archive) {
    auto* loggers = archive.findChild<QTreeView*>(u"treeLoggers"_s);
    loggers->setCurrentIndex(loggers->model()->index(1, 0));
    Plot(archive, [](QDialog& plot) {
      EXPECT_EQ(Description(plot),
                "3/3/26 11:59:59 – 3/3/26 12:00:51, 6 records in view. "
                "Channel 1 (%): least 0.00, greatest 0.50.");
      auto* corrected = plot.findChild<QCheckBox*>(u"chkCorrected"_s);
      ASSERT_TRUE(corrected->isVisible());
      corrected->click();
      QCoreApplication::processEvents(QEventLoop::AllEvents);
      // The logger's clock is 12 s fast. What the first upload has was logged before its clock was
      // known.
      EXPECT_EQ(plot.findChild<QLabel*>(u"lblMarks"_s)->text(),
                u"1 event in view: 3/3/26 12:00:30 programmed; "
                "3 records without a corrected time are not shown"_s);
      EXPECT_EQ(Description(plot),
                "3/3/26 12:00:17 – 3/3/26 12:00:39, 3 records in view. "
                "Channel 1 (%): least 0.30, greatest 0.50.");
    });
  });
}

}  // namespace
}  // namespace tessmar
