// From the start of the process to its painted main window, seen from outside: the program beside
// the least program that has a window.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>
#include <stdexcept>

#include "bench/Figures.h"
#include "bench/ScreenWatch.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kRounds = 9;
constexpr int kPatienceMs = 15000;

/// Seconds from the start of a program until its window is painted; it is ended then.
double SecondsToWindow(ScreenWatch& screen, const QString& program, const std::string& title) {
  const QTemporaryDir store;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(u"XDG_CONFIG_HOME"_s, store.path());
  environment.insert(u"XDG_DATA_HOME"_s, store.path());
  QProcess process;
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  QElapsedTimer timer;
  timer.start();
  process.start(program, QStringList());
  while (!screen.ShowsWindow(title)) {
    if (timer.elapsed() > kPatienceMs)
      throw std::runtime_error("in vain for the window \"" + title + '"');
    QThread::msleep(1);
  }
  const auto seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
  process.kill();
  process.waitForFinished();
  while (screen.ShowsWindow(title)) QThread::msleep(1);
  return seconds;
}

void Measure() {
  ScreenWatch screen;
  const QString folder = QCoreApplication::applicationDirPath();
  std::vector<double> program;
  std::vector<double> plain;
  // The first start finds the files on the disk and not in memory; it does not count.
  for (int round = 0; round <= kRounds; ++round) {
    const double ours =
        SecondsToWindow(screen, folder + u"/TessmarLogger"_s, "Tessmar DO Monitor v");
    const double theirs = SecondsToWindow(screen, folder + u"/plain_window"_s, "Plain window");
    if (round == 0) continue;
    program.push_back(ours);
    plain.push_back(theirs);
  }
  Print({u"start to a painted main window"_s, Median(program), u"s"_s, Budget::AtMost, 0.3});
  PrintComparison(u"  beside a program with one label"_s, Median(program), u"s"_s, u"label"_s,
                  Median(plain));
}

}  // namespace
}  // namespace tessmar::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  try {
    tessmar::bench::Measure();
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "bench_start: %s\n", problem.what());
    return 1;
  }
  return 0;
}
