// The running program, worked by a robot against a simulated logger: what it costs while nothing
// or little happens, and what a full history costs on the screen and in memory.

#include <QAbstractItemView>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>
#include <algorithm>
#include <cstdio>

#include "bench/Figures.h"
#include "e2e/Desk.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;
using test::Desk;
using test::Robot;

constexpr int kIdleMs = 10000;
constexpr int kSamplingMs = 20000;
constexpr int kUploadPatienceMs = 120000;
constexpr int kPages = 1000;
constexpr int kBlocks = 20000;  // Of ten records, until the buffer is full.

const QString kMain = u"frmMain"_s;
const QString kViewer = u"frmHistory"_s;
const QString kPlot = u"frmPlot"_s;

/// Sees every event of the user interface: counts what is painted, and takes the time from a press
/// to the first paint of the viewer's table.
class PaintWatch final : public QObject {
 public:
  PaintWatch() { qApp->installEventFilter(this); }

  bool eventFilter(QObject* receiver, QEvent* event) override {
    switch (event->type()) {
      case QEvent::Paint:
        ++Paints[receiver->objectName()];
        OnPaint(receiver);
        break;
      case QEvent::MouseButtonRelease:
        sincePress_.start();
        break;
      default:
        break;
    }
    return false;
  }

  int AllPaints() const {
    int all = 0;
    for (const int count : Paints) all += count;
    return all;
  }

  QHash<QString, int> Paints;
  double PressToTable = 0;  ///< Seconds; 0 until the table is painted.

 private:
  void OnPaint(QObject* receiver) {
    const QObject* parent = receiver->parent();
    if (PressToTable != 0 || parent == nullptr || parent->objectName() != "lvwHistory"_L1) return;
    // The paint is still to come: what is queued now runs behind it.
    QTimer::singleShot(0, this, [this] {
      if (PressToTable == 0) PressToTable = static_cast<double>(sincePress_.nsecsElapsed()) * 1e-9;
    });
  }

  QElapsedTimer sincePress_;
};

/// A line of /proc/self/status that counts kB, in MB.
double StatusMegabytes(const QByteArray& name) {
  QFile status(u"/proc/self/status"_s);
  if (!status.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& line : status.readAll().split('\n')) {
    if (line.startsWith(name + ':'))
      return line.mid(name.size() + 1).simplified().split(' ').constFirst().toDouble() / 1024;
  }
  return 0;
}

class WindowFigures {
 public:
  explicit WindowFigures(Desk& desk) : desk_(desk) {}

  void Measure() {
    desk_.Connect();
    WaitForIdle();
    MeasureIdle();
    MeasureSampling();
    MeasureTrend();
    OpenFullHistory();
    MeasureScrolling();
    MeasurePlot();
    desk_.CloseMainWindow();
  }

 private:
  void WaitForIdle() {
    Robot::WaitFor(u"the buttons"_s, [this] {
      return qobject_cast<QWidget*>(Robot::Control(kMain, u"cmdSetup"_s))->isEnabled() &&
             !desk_.TheProgram().Link().Busy;
    });
    Robot::Pause(1000);
  }

  struct Rest {
    double Percent = 0;  ///< Of one core.
    QHash<QString, int> Paints;
    int AllPaints = 0;
  };

  // The robot sleeps meanwhile, so that what is spent is the program's.
  Rest Watch(int milliseconds) {
    Robot::InGui([this] { watch_.Paints.clear(); });
    const double before = ProcessorSeconds();
    Robot::Pause(milliseconds);
    const double spent = ProcessorSeconds() - before;
    return Robot::InGui([&] {
      return Rest{100 * spent / (milliseconds / 1000.0), watch_.Paints, watch_.AllPaints()};
    });
  }

  void MeasureIdle() {
    const Rest rest = Watch(kIdleMs);
    Print({u"connected, at rest: processor"_s, rest.Percent, u"% of core"_s, Budget::AtMost, 1});
    PrintNote(u"painted in these %1 s: %2 times (none is allowed)"_s.arg(kIdleMs / 1000)
                  .arg(rest.AllPaints));
  }

  void MeasureSampling() {
    Robot::Click(kMain, u"chkSampleContinuously"_s);
    Robot::Pause(3000);
    const Rest rest = Watch(kSamplingMs);
    Print({u"connected, sampling continuously: processor"_s, rest.Percent, u"% of core"_s,
           Budget::AtMost, 1});
    PrintNote(u"painted in these %1 s, a sample each second:"_s.arg(kSamplingMs / 1000));
    QStringList names = rest.Paints.keys();
    names.sort();
    QStringList counts;
    for (const QString& name : names) {
      if (!name.isEmpty()) counts.append(u"%1 %2"_s.arg(name).arg(rest.Paints.value(name)));
    }
    PrintNote(counts.join(u", "_s));
    Robot::Click(kMain, u"chkSampleContinuously"_s);
    WaitForIdle();
  }

  void MeasureTrend() {
    Robot::Click(kMain, u"chkSampleContinuously"_s);
    Robot::Trigger(kMain, u"mnuTrend"_s);
    Robot::WaitForForm(kPlot);
    Robot::Pause(3000);
    Print({u"the same with the live trend: processor"_s, Watch(kSamplingMs).Percent, u"% of core"_s,
           Budget::AtMost, 2});
    Robot::InGui([] { Robot::Form(kPlot)->close(); });
    Robot::Click(kMain, u"chkSampleContinuously"_s);
    WaitForIdle();
  }

  void OpenFullHistory() {
    QElapsedTimer timer;
    Robot::Click(kMain, u"cmdGetHistoryData"_s);
    timer.start();
    // It says that the buffer is full.
    Robot::WaitForForm(u"FMessage"_s, kUploadPatienceMs);
    const double seconds = static_cast<double>(timer.elapsed()) / 1000;
    Print({u"upload of a full buffer in the window"_s, kBlocks / seconds, u"blocks/s"_s,
           Budget::AtLeast, 4000});
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForForm(kViewer);
    Robot::WaitFor(u"the table"_s, [this] { return watch_.PressToTable != 0; });
    Robot::WaitForText(kViewer, u"lblNumRecords"_s, u"200000"_s);
    Robot::Pause(1000);
    Print({u"viewer of 200000 records: press to first paint"_s,
           Robot::InGui([this] { return watch_.PressToTable; }), u"s"_s, Budget::AtMost, 0.1});
    Print({u"memory, full buffer and viewer open: resident"_s, StatusMegabytes("VmRSS"), u"MB"_s,
           Budget::AtMost, 100});
    PrintNote(u"of it the process' own, not shared with files: %1 MB; the robot is in it"_s.arg(
        StatusMegabytes("RssAnon"), 0, 'f', 1));
  }

  void MeasureScrolling() {
    std::vector<double> pages;
    Robot::InGui([&pages] {
      auto* table = qobject_cast<QTableView*>(Robot::Control(kViewer, u"lvwHistory"_s));
      QScrollBar* bar = table->verticalScrollBar();
      for (int page = 0; page <= kPages; ++page) {
        QElapsedTimer timer;
        timer.start();
        bar->setValue(static_cast<int>(static_cast<qint64>(bar->maximum()) * page / kPages));
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        pages.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-6);
      }
    });
    std::sort(pages.begin(), pages.end());
    // 16 ms are one picture of a screen that shows 60 a second.
    Print({u"scrolling end to end: a page, median"_s, Median(pages), u"ms"_s, Budget::AtMost, 16});
    Print({u"scrolling end to end: a page, 99 of 100"_s, pages[pages.size() * 99 / 100], u"ms"_s,
           Budget::AtMost, 16});
  }

  void MeasurePlot() {
    Robot::Click(kViewer, u"cmdPlot"_s);
    Robot::WaitForForm(kPlot);
    Robot::Pause(2000);
    Print({u"memory, the plot of it open too: resident"_s, StatusMegabytes("VmRSS"), u"MB"_s,
           Budget::AtMost, 160});
    Robot::InGui([] { Robot::Form(kPlot)->close(); });
  }

  Desk& desk_;
  PaintWatch watch_;
};

}  // namespace
}  // namespace tessmar::bench

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QString trouble;
  try {
    tessmar::test::Desk desk({QStringLiteral("--records"), QStringLiteral("200000")});
    tessmar::bench::WindowFigures figures(desk);
    trouble = desk.Work([&figures] { figures.Measure(); });
  } catch (const std::exception& problem) {
    trouble = QString::fromUtf8(problem.what());
  }
  if (trouble.isEmpty()) return 0;
  std::fprintf(stderr, "bench_window: %s\n", qPrintable(trouble));
  return 1;
}
