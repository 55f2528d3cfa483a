// Blocks a second of an upload over an unthrottled pseudo-terminal, with the simulated logger in a
// process of its own.

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include "history/PullHistory.h"
#include "link/QtMessageLoop.h"
#include "link/QtSerialPort.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kRecords = 100000;
constexpr int kRecordsPerBlock = 10;
constexpr std::int16_t kPort = 9;

/// The simulated logger, until the end of this object.
class Simulator {
 public:
  Simulator() : link_(folder_.filePath(u"logger"_s)) {
    process_.start(QStringLiteral(TESSMAR_SIM),
                   {u"--link"_s, link_, u"--records"_s, QString::number(kRecords)});
    for (int i = 0; i < 500 && !QFileInfo::exists(link_); ++i) QThread::msleep(10);
  }
  ~Simulator() {
    process_.terminate();
    process_.waitForFinished();
  }
  const QString& Link() const { return link_; }

 private:
  QTemporaryDir folder_;
  QString link_;
  QProcess process_;
};

void UploadOverAPseudoTerminal(benchmark::State& state) {
  const Simulator simulator;
  LinkState link;
  link.TrapErrors = true;
  link.LinkTimeoutTicks = 10;
  link.AnalogChannelCount = 8;
  link.PulseChannelCount = 2;
  QTimer timer1;
  QObject::connect(&timer1, &QTimer::timeout, [&link] {
    if (link.WaitTicks > 0) --link.WaitTicks;
  });
  timer1.start(100);

  QtMessageLoop loop;
  QtSerialPort port{PortMap(u"COM9="_s + simulator.Link())};
  Comm comm(port, loop, link);
  const SystemClock clock;
  const SystemLocale locale;
  LoggerCommands commands(comm, link, clock, locale);
  HistoryBuffer buffer;
  // A logger that has just been switched on waits for the letters of the handshake.
  if (!comm.OpenPort(kPort, u"115200,N,8,1"_s) || !commands.SyncWithLogger([] { return false; })) {
    state.SkipWithError("the simulated logger does not answer");
    return;
  }
  for (auto _ : state) {
    HistoryUpload upload(link, buffer, kRecords);
    PullHistory(upload, commands, comm, link, {[] { return true; }, [] {}});
    if (buffer.Count() != kRecords || upload.TotalFailures() != 0) {
      state.SkipWithError("the upload is not clean");
      return;
    }
  }
  state.SetItemsProcessed(state.iterations() * (kRecords / kRecordsPerBlock));
}
BENCHMARK(UploadOverAPseudoTerminal)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace tessmar

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
