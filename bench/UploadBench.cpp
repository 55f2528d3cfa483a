// The upload as the program does it, from a simulated logger in a process of its own over a
// pseudo-terminal: its share of what the wire can carry, and its blocks a second where no wire
// holds it up. A plain reader does the same exchange beside it, and shows what simulator and
// pseudo-terminal leave.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <stdexcept>

#include "archive/JournalTimer.h"
#include "base/QtMessageLoop.h"
#include "bench/CountingPort.h"
#include "bench/Figures.h"
#include "bench/PlainReader.h"
#include "e2e/Desk.h"
#include "history/PullHistory.h"
#include "link/QtSerialPort.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

// Of those that no wire holds up, which the rest of the machine disturbs, more and shorter ones.
constexpr int kThrottledRounds = 5;
constexpr int kUnthrottledRounds = 15;
constexpr int kRecordsABlock = 10;
constexpr int kBitsAByte = 10;
constexpr int kTickMs = 100;

struct Outcome {
  double Seconds = 0;
  double ProcessorSeconds = 0;
  qint64 Bytes = 0;
  int Blocks = 0;

  double BlocksASecond() const { return Blocks / Seconds; }
  /// Percent of what a line of this speed can carry. The exchange is one request and its answer
  /// after the other, so the bytes of both directions take their turns on the wire.
  double ShareOf(int baud) const {
    return 100.0 * static_cast<double>(Bytes) * kBitsAByte / baud / Seconds;
  }
};

/// The program's own parts of an upload, from the port to the buffer.
class Uploader {
 public:
  /// @param archive  the file of the archive; empty for none.
  explicit Uploader(const QString& device, const QString& archive = {})
      : port_(PortMap(u"COM9="_s + device)), counted_(port_), comm_(counted_, loop_, link_) {
    journal_.emplace(archive, JournalContext{.Link = link_,
                                             .Settings = settings_,
                                             .Time = clock_,
                                             .Source = [] { return u"COM9"_s; },
                                             .Program = u"bench"_s});
    journalTimer_.emplace(*journal_);
    link_.TrapErrors = true;
    link_.LinkTimeoutTicks = 10;
    ticks_.setTimerType(Qt::PreciseTimer);
    ticks_.callOnTimeout([this] {
      if (link_.WaitTicks > 0) --link_.WaitTicks;
    });
    ticks_.start(kTickMs);
    if (!comm_.OpenPort(9, u"115200,N,8,1"_s)) throw std::runtime_error("the port does not open");
    // What the handshake would do before it can ask.
    if (!commands_.SyncWithLogger([] { return false; }) || !commands_.GetLoggerStatus())
      throw std::runtime_error("the logger does not answer");
  }
  ~Uploader() { comm_.ClosePort(); }

  Outcome Upload() {
    const BusyScope busy(link_);
    HistoryUpload upload(link_, buffer_, link_.RecordCount);
    const qint64 bytesBefore = counted_.Bytes;
    const double processorBefore = ProcessorSeconds();
    int blocks = 0;
    QElapsedTimer timer;
    timer.start();
    const UploadEnd end = PullHistory(
        upload, commands_, comm_, link_,
        {.Running = [] { return true; }, .Changed = [&blocks] { ++blocks; }}, *journal_);
    const auto seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    if (end != UploadEnd::Complete || upload.TotalFailures() != 0)
      throw std::runtime_error("the upload did not go through in one go");
    return {seconds, ProcessorSeconds() - processorBefore, counted_.Bytes - bytesBefore, blocks};
  }

 private:
  LinkState link_;
  HistoryBuffer buffer_;
  LoggerSettings settings_;
  QtMessageLoop loop_;
  QtSerialPort port_;
  CountingPort counted_;
  Comm comm_;
  SystemClock clock_;
  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
  LoggerCommands commands_{comm_, link_, clock_, locale_};
  std::optional<Journal> journal_;
  std::optional<JournalTimer> journalTimer_;
  QTimer ticks_;
};

Outcome UploadPlainly(const QString& device) {
  PlainReader reader(device);
  const double processorBefore = ProcessorSeconds();
  QElapsedTimer timer;
  timer.start();
  const int blocks = reader.ReadAllBlocks(kRecordsABlock);
  const auto seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
  return {seconds, ProcessorSeconds() - processorBefore, reader.Bytes(), blocks};
}

struct Line {
  int Baud;  ///< 0 for a line that nothing throttles.
  int Records;

  int Rounds() const { return Baud == 0 ? kUnthrottledRounds : kThrottledRounds; }
};

/// With and without the archive in turns. Each upload has a file of its own, and the records of the
/// one before are no part of what is measured.
void MeasureArchive(const Line& line) {
  const QTemporaryDir folder;
  const QString device = folder.filePath(u"logger"_s);
  QStringList options{u"--records"_s, QString::number(line.Records)};
  if (line.Baud != 0) options += {u"--baud"_s, QString::number(line.Baud)};
  const test::LoggerProcess logger(QStringLiteral(TESSMAR_SIM), device, options);
  std::vector<double> with;
  std::vector<double> without;
  const auto measure = [&line](const Outcome& outcome) {
    return line.Baud == 0 ? outcome.BlocksASecond() : outcome.ShareOf(line.Baud);
  };
  for (int round = 0; round < line.Rounds(); ++round) {
    const QString archive = folder.filePath(u"archive%1.sqlite"_s.arg(round));
    with.push_back(measure(Uploader(device, archive).Upload()));
    without.push_back(measure(Uploader(device).Upload()));
  }
  if (line.Baud != 0) {
    const QString what = u"upload at %1 baud, archive on, share of the wire"_s.arg(line.Baud);
    Print({what, Median(with), u"%"_s, Budget::AtLeast, 97});
    return;
  }
  Print({u"upload, unthrottled, archive on"_s, Median(with), u"blocks/s"_s, Budget::AtLeast, 4000});
  Print({u"  share of the speed without it"_s, MedianRatio(with, without), u""_s, Budget::AtLeast,
         0.9});
}

struct Medians {
  double Program = 0;
  double Plain = 0;
  double Ratio = 0;
  double ProgramProcessor = 0;  ///< Seconds a block.
  double PlainProcessor = 0;
  double ProcessorRatio = 0;
};

/// Program and plain reader in turns, so that both meet the same machine.
template <typename Measure>
Medians Compare(const Line& line, Measure measure) {
  const QTemporaryDir folder;
  const QString device = folder.filePath(u"logger"_s);
  QStringList options{u"--records"_s, QString::number(line.Records)};
  if (line.Baud != 0) options += {u"--baud"_s, QString::number(line.Baud)};
  const test::LoggerProcess logger(QStringLiteral(TESSMAR_SIM), device, options);
  std::vector<double> program;
  std::vector<double> plain;
  std::vector<double> programProcessor;
  std::vector<double> plainProcessor;
  for (int round = 0; round < line.Rounds(); ++round) {
    const Outcome ours = Uploader(device).Upload();
    program.push_back(measure(ours));
    programProcessor.push_back(ours.ProcessorSeconds / ours.Blocks);
    const Outcome theirs = UploadPlainly(device);
    plain.push_back(measure(theirs));
    plainProcessor.push_back(theirs.ProcessorSeconds / theirs.Blocks);
  }
  return {.Program = Median(program),
          .Plain = Median(plain),
          .Ratio = MedianRatio(program, plain),
          .ProgramProcessor = Median(programProcessor),
          .PlainProcessor = Median(plainProcessor),
          .ProcessorRatio = MedianRatio(programProcessor, plainProcessor)};
}

void MeasureThrottled(const Line& line) {
  const Medians shares =
      Compare(line, [&line](const Outcome& outcome) { return outcome.ShareOf(line.Baud); });
  const QString what = u"upload at %1 baud, share of the wire"_s.arg(line.Baud);
  Print({what, shares.Program, u"%"_s, Budget::AtLeast, 97});
  PrintComparison(u"  beside the same exchange read plainly"_s, shares.Program, u"%"_s, u"plain"_s,
                  shares.Plain, shares.Ratio);
}

void MeasureUnthrottled(const Line& line) {
  const Medians speeds =
      Compare(line, [](const Outcome& outcome) { return outcome.BlocksASecond(); });
  Print({u"upload, unthrottled"_s, speeds.Program, u"blocks/s"_s, Budget::AtLeast, 4000});
  PrintComparison(u"  beside the same exchange read plainly"_s, speeds.Program, u"blocks/s"_s,
                  u"plain"_s, speeds.Plain, speeds.Ratio);
  PrintComparison(u"  processor time of a block"_s, speeds.ProgramProcessor * 1e6, u"us"_s,
                  u"plain"_s, speeds.PlainProcessor * 1e6, speeds.ProcessorRatio);
}

}  // namespace
}  // namespace tessmar::bench

// With --unthrottled only what no wire holds up, for a profiler.
int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  try {
    if (application.arguments().contains(QStringLiteral("--unthrottled"))) {
      tessmar::bench::MeasureUnthrottled({0, 40005});
      return 0;
    }
    // Each of the throttled takes two seconds.
    for (const tessmar::bench::Line& line :
         {tessmar::bench::Line{9600, 85}, {38400, 325}, {115200, 965}})
      tessmar::bench::MeasureThrottled(line);
    tessmar::bench::MeasureUnthrottled({0, 40005});
    tessmar::bench::MeasureArchive({115200, 965});
    tessmar::bench::MeasureArchive({0, 80005});
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "bench_upload: %s\n", problem.what());
    return 1;
  }
  return 0;
}
