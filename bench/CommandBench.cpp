// The command from the start of its process to its end, seen from outside.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <stdexcept>

#include "bench/Figures.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kRounds = 21;
constexpr int kPatienceMs = 15000;

/// Seconds that a call of the command takes.
double SecondsOf(const QProcessEnvironment& environment, const QStringList& arguments) {
  QProcess process;
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  QElapsedTimer timer;
  timer.start();
  process.start(QCoreApplication::applicationDirPath() + u"/tessmar"_s, arguments);
  if (!process.waitForFinished(kPatienceMs) || process.exitCode() != 0)
    throw std::runtime_error("tessmar did not do what it was told");
  return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
}

double MedianOf(const QProcessEnvironment& environment, const QStringList& arguments) {
  std::vector<double> seconds;
  // The first call finds the files on the disk and not in memory; it does not count.
  SecondsOf(environment, arguments);
  for (int round = 0; round < kRounds; ++round)
    seconds.push_back(SecondsOf(environment, arguments));
  return Median(seconds);
}

void Measure() {
  const QTemporaryDir folder;
  const QString link = folder.filePath(u"line"_s);
  QProcess simulator;
  simulator.start(QCoreApplication::applicationDirPath() + u"/tessmar-sim"_s, {u"--link"_s, link});
  while (!simulator.canReadLine() && simulator.waitForReadyRead(kPatienceMs)) continue;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(u"XDG_CONFIG_HOME"_s, folder.path());
  Print({u"tessmar --help"_s, MedianOf(environment, {u"--help"_s}), u"s"_s, Budget::AtMost, 0.02});
  // The simulated logger answers at once, so that all of it is the command's own time.
  Print({u"tessmar status on a pseudo-terminal"_s, MedianOf(environment, {u"status"_s, link}),
         u"s"_s, Budget::AtMost, 0.2});
  simulator.terminate();
  simulator.waitForFinished(kPatienceMs);
}

}  // namespace
}  // namespace tessmar::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  try {
    tessmar::bench::Measure();
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "bench_command: %s\n", problem.what());
    return 1;
  }
  return 0;
}
