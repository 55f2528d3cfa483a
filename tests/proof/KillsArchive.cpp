#include <unistd.h>

#include <QTextStream>
#include <cstdio>

#include "archive/Journal.h"
#include "history/Blocks.h"
#include "proof/KillsFiles.h"
#include "support/FakeOutside.h"
#include "support/FaultyDisk.h"

namespace tessmar::proof {
namespace {

using namespace Qt::StringLiterals;
using namespace test;

constexpr int kWords = 3;
constexpr int kRecordsInABlock = 24;
constexpr qint64 kTickMs = 100;
/// Longer than the journal waits between two attempts.
constexpr qint64 kLongMs = 6000;

// At once, so that it stands there whatever ends the process.
void Say(const QString& line) {
  const QByteArray bytes = line.toUtf8() + '\n';
  if (::write(STDOUT_FILENO, bytes.constData(), static_cast<std::size_t>(bytes.size())) !=
      bytes.size())
    std::abort();
}

/// The parts of the program that an upload into the archive needs.
class Uploading {
 public:
  explicit Uploading(const QString& archive)
      : journal_(archive, {.Link = link_,
                           .Settings = settings_,
                           .Time = clock_,
                           .Source = [] { return u"COM3"_s; },
                           .Program = u"proof"_s}) {
    link_.TrapErrors = true;
    link_.AnalogChannelCount = 2;
    link_.PulseChannelCount = 1;
    link_.LoggerModelCode = 220;
    link_.FirmwareVersion = 5;
    LoadDefaultSettings(settings_, 2);
    settings_.LoggerName = u"Driven"_s;
  }

  void Upload(int blocks) {
    journal_.Begin({.Promised = blocks * kRecordsInABlock});
    std::uint32_t next = 1;
    for (int i = 0; i < blocks; ++i) {
      journal_.TakeBlock(Block(kRecordsInABlock, kWords, next));
      next += kRecordsInABlock;
      Pass(kTickMs);
    }
    journal_.End(UploadEnd::Complete);
    Pass(3 * kTickMs);
  }

  /// Time goes by, until there is nothing left to do.
  void Pass(qint64 ms) {
    for (; ms > 0; ms -= kTickMs) {
      clock_.Present = clock_.Present.addMSecs(kTickMs);
      journal_.Tick();
      if (Kept() > said_) Say(u"kept %1"_s.arg(said_ = Kept()));
    }
  }

  void Tell() {
    const QString report = journal_.TakeReport();
    if (!report.isEmpty()) Say(u"told "_s + QString(report).replace(u"\r\n"_s, u" "_s));
  }

  int End() {
    Pass(kLongMs);
    Tell();
    journal_.Finish();
    Say(u"end %1 %2"_s.arg(Kept()).arg(journal_.IsIdle() ? u"idle"_s : u"busy"_s));
    return 0;
  }

 private:
  int Kept() const {
    const JournalUpload upload = journal_.LastUpload();
    return upload.Id == 0 ? 0 : upload.Records - upload.NotKept;
  }

  LinkState link_;
  LoggerSettings settings_;
  FakeClock clock_;
  Journal journal_;
  int said_ = 0;
};

}  // namespace

int RunUpload(const QString& archive, int blocks, bool waits) {
  Uploading uploading(archive);
  uploading.Upload(blocks);
  for (int i = 0; i < 3; ++i) {
    uploading.Tell();
    uploading.Pass(kTickMs);
  }
  if (waits) {
    Say(u"waits"_s);
    QTextStream(stdin).read(1);
    SetDiskFault({});
    SetDiskRoom(-1);
  }
  return uploading.End();
}

int RunNextStart(const QString& archive) {
  return Uploading(archive).End();
}

}  // namespace tessmar::proof
