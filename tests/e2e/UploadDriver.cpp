// An upload with the archive on, to be killed: `upload-driver ARCHIVE ACKNOWLEDGED DEVICE` uploads
// everything and notes each block in the file ACKNOWLEDGED once the journal has taken it, with the
// time of the monotonic clock in nanoseconds. `upload-driver ARCHIVE` is the next start: it does
// what a start does about what was left running, and ends.

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QTimer>
#include <chrono>
#include <cstdio>

#include "archive/JournalTimer.h"
#include "base/QtMessageLoop.h"
#include "history/PullHistory.h"
#include "link/QtSerialPort.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kTickMs = 100;

/// The journal, with a note of each block that it has taken.
class NotingSink final : public BlockSink {
 public:
  NotingSink(Journal& journal, const QString& path)
      : journal_(journal),
        file_(::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600)) {}
  ~NotingSink() override { ::close(file_); }
  NotingSink(const NotingSink&) = delete;
  NotingSink& operator=(const NotingSink&) = delete;

  void Begin(const UploadStart& start) override { journal_.Begin(start); }
  void TakeBlock(std::span<const std::uint8_t> block) override {
    journal_.TakeBlock(block);
    using std::chrono::steady_clock;
    const QByteArray hash = QCryptographicHash::hash(
        {reinterpret_cast<const char*>(block.data()), static_cast<qsizetype>(block.size())},
        QCryptographicHash::Md5);
    const QByteArray line =
        QByteArray::number(qint64{steady_clock::now().time_since_epoch().count()}) + ' ' +
        hash.toHex() + '\n';
    if (::write(file_, line.constData(), static_cast<std::size_t>(line.size())) != line.size())
      std::abort();
  }
  void BeginAnew() override { journal_.BeginAnew(); }
  void End(UploadEnd end) override { journal_.End(end); }

 private:
  Journal& journal_;
  int file_;
};

/// The parts of the program that an upload needs.
struct Driver {
  Driver(const QString& archive, const QString& device)
      : Port(PortMap(u"COM9="_s + device)),
        Keeper(archive, {.Link = Link,
                         .Settings = Settings,
                         .Time = Time,
                         .Source = [] { return u"COM9"_s; },
                         .Program = u"driver"_s}) {
    Link.TrapErrors = true;
    Link.LinkTimeoutTicks = 10;
    Ticks.setTimerType(Qt::PreciseTimer);
    Ticks.callOnTimeout([this] {
      if (Link.WaitTicks > 0) --Link.WaitTicks;
    });
    Ticks.start(kTickMs);
  }

  bool Upload(const QString& acknowledged) {
    if (!Line.OpenPort(9, u"115200,N,8,1"_s) || !Commands.SyncWithLogger([] { return false; }) ||
        !Commands.GetLoggerStatus())
      return false;
    LoadDefaultSettings(Settings, Link.AnalogChannelCount);
    Settings.LoggerName = u"Driven"_s;
    NotingSink sink(Keeper, acknowledged);
    HistoryUpload upload(Link, Buffer, Link.RecordCount);
    const UploadEnd end = PullHistory(upload, Commands, Line, Link,
                                      {.Running = [] { return true; }, .Changed = [] {}}, sink);
    return end == UploadEnd::Complete || end == UploadEnd::BufferFull;
  }

  LinkState Link;
  LoggerSettings Settings;
  HistoryBuffer Buffer;
  QtMessageLoop Loop;
  QtSerialPort Port;
  Comm Line{Port, Loop, Link};
  SystemClock Time;
  SystemLocale Locale{QLocale::c()};
  LoggerCommands Commands{Line, Link, Time, Locale};
  Journal Keeper;
  JournalTimer KeeperTimer{Keeper};
  QTimer Ticks;
};

int Drive(const QStringList& arguments) {
  if (arguments.size() == 2) {
    Driver next(arguments[1], u"/dev/null"_s);
    while (!next.Keeper.IsIdle()) next.Loop.RunOnce();
    return 0;
  }
  if (arguments.size() != 4) return 2;
  Driver driver(arguments[1], arguments[3]);
  if (!driver.Upload(arguments[2])) return 1;
  while (!driver.Keeper.IsIdle()) driver.Loop.RunOnce();
  return 0;
}

}  // namespace
}  // namespace tessmar

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return tessmar::Drive(QCoreApplication::arguments());
}
