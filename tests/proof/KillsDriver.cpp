// Writes files by the program's own functions on a disk that fails where it is told to, for the
// script `kills`.
//
//   proof-kills KIND FILE [--generation G] [fault]     writes a file; says "written" or "failed
//   TEXT" proof-kills KIND FILE --repeat                     writes generations 1 to 8 in turn, for
//   ever proof-kills KIND FILE --fill                       see Fill proof-kills upload ARCHIVE
//   [--blocks N] [--waits] [fault]    see RunUpload proof-kills start ARCHIVE see RunNextStart
//
// KIND is setup, store, csv, export or netcdf; --rows N are the records of the last three. A fault
// counts the calls that change something in the file's folder: --kill N or --error NUMBER --at N,
// each with --halfway to take half of a write first, an error with --stays for every later call;
// --room N for a disk with room for so many bytes. --simple is a disk that knows neither files
// without a name nor room in advance, --locked a folder that takes no new files. At the end "calls
// N growth N" says how many calls there were, and how many bytes the files grew by.

#include <sys/prctl.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <csignal>
#include <cstdio>

#include "proof/KillsFiles.h"
#include "support/FaultyDisk.h"

namespace tessmar::proof {
namespace {

using namespace Qt::StringLiterals;
using namespace test;

constexpr int kGenerations = 8;

QByteArray Content(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList FilesBeside(const QString& path) {
  return QFileInfo(path).dir().entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden |
                                         QDir::System);
}

/// Says what is wrong with one position of the disk's end, and counts.
class Positions {
 public:
  void Check(bool holds, qint64 position, const QString& what) {
    if (holds) return;
    ++wrong_;
    QTextStream(stdout) << "wrong " << position << ' ' << what << '\n';
  }
  void Count(bool written) { ++(written ? written_ : failed_); }
  int Finish() const {
    QTextStream(stdout) << "positions " << written_ + failed_ << " failed " << failed_
                        << " written " << written_ << " wrong " << wrong_ << '\n';
    return wrong_ == 0 ? 0 : 1;
  }

 private:
  int written_ = 0;
  int failed_ = 0;
  int wrong_ = 0;
};

/// Reads places from standard input, one a line. For each of them the file, of generation 1, is
/// written as generation 2 on a disk with room for so many bytes. Then one of the two has to stand
/// there, whole, and nothing beside it; with room again the next write has to succeed.
int Fill(FileWriter& writer, const QString& path) {
  if (writer.Write(path, 2)) return 2;
  const QByteArray next = Content(path);
  if (writer.Write(path, 1)) return 2;
  const QByteArray old = Content(path);
  const QStringList beside = FilesBeside(path);
  if (old == next || old.isEmpty() || next.isEmpty()) return 2;

  Positions positions;
  QTextStream in(stdin);
  for (QString line = in.readLine(); !line.isNull(); line = in.readLine()) {
    const qint64 room = line.toLongLong();
    SetDiskRoom(room);
    const std::optional<QString> failure = writer.Write(path, 2);
    SetDiskRoom(-1);
    positions.Count(!failure);
    positions.Check(Content(path) == (failure ? old : next), room, u"neither old nor new"_s);
    positions.Check(FilesBeside(path) == beside, room, u"litter"_s);
    if (failure && !failure->isEmpty()) {
      const bool clear = failure->startsWith(u"The disk is full:"_s) ||
                         failure->startsWith(u"Error: file was not saved correctly."_s);
      positions.Check(clear, room, u"says "_s + *failure);
    }
    positions.Check(!writer.Write(path, 2) && Content(path) == next, room, u"the next write"_s);
    positions.Check(!writer.Write(path, 1) && Content(path) == old, room, u"the last write"_s);
  }
  return positions.Finish();
}

void Say(const QString& line) {
  QTextStream(stdout) << line << '\n';
}

int WriteOnce(FileWriter& writer, const QString& path, int generation) {
  const std::optional<QString> failure = writer.Write(path, generation);
  const std::int64_t calls = DiskCalls();
  const std::int64_t growth = DiskGrowth();
  SetDiskFault({});
  SetDiskRoom(-1);
  Say(failure ? u"failed "_s + QString(*failure).replace(u"\r\n"_s, u" "_s) : u"written"_s);
  Say(u"calls %1 growth %2"_s.arg(calls).arg(growth));
  return 0;
}

int Repeat(FileWriter& writer, const QString& path) {
  // Not beyond whoever wanted to kill it.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (int generation = 1;; generation = generation % kGenerations + 1) {
    if (writer.Write(path, generation)) return 1;
  }
}

const QStringList kNumbers{u"generation"_s, u"rows"_s, u"blocks"_s, u"kill"_s,
                           u"error"_s,      u"at"_s,   u"room"_s};
const QStringList kFlags{u"repeat"_s, u"fill"_s,   u"waits"_s, u"halfway"_s,
                         u"stays"_s,  u"simple"_s, u"locked"_s};

void SetUpDisk(const QCommandLineParser& words, const QString& path) {
  const auto number = [&](const QString& name) { return words.value(name).toLongLong(); };
  WatchDisk(QFile::encodeName(QFileInfo(path).absolutePath()));
  MakeDiskSimple(words.isSet(u"simple"_s));
  LockFolder(words.isSet(u"locked"_s));
  const bool kill = words.isSet(u"kill"_s);
  SetDiskFault({.AtCall = number(kill ? u"kill"_s : u"at"_s),
                .Kill = kill,
                .Halfway = words.isSet(u"halfway"_s),
                .Error = static_cast<int>(number(u"error"_s)),
                .Stays = words.isSet(u"stays"_s)});
  if (words.isSet(u"room"_s)) SetDiskRoom(number(u"room"_s));
}

int Drive(const QStringList& arguments) {
  QCommandLineParser words;
  for (const QString& name : kNumbers) words.addOption({name, {}, u"number"_s, u"0"_s});
  for (const QString& name : kFlags) words.addOption({name, {}});
  words.process(arguments);
  if (words.positionalArguments().size() != 2) return 2;
  const QString kind = words.positionalArguments()[0];
  const QString path = words.positionalArguments()[1];
  SetUpDisk(words, path);
  if (kind == u"start"_s) return RunNextStart(path);
  if (kind == u"upload"_s) {
    const int result = RunUpload(path, words.value(u"blocks"_s).toInt(), words.isSet(u"waits"_s));
    Say(u"calls %1 growth %2"_s.arg(DiskCalls()).arg(DiskGrowth()));
    return result;
  }
  const std::unique_ptr<FileWriter> writer = MakeFileWriter(kind, words.value(u"rows"_s).toInt());
  if (!writer) return 2;
  if (words.isSet(u"fill"_s)) return Fill(*writer, path);
  if (words.isSet(u"repeat"_s)) return Repeat(*writer, path);
  return WriteOnce(*writer, path, words.value(u"generation"_s).toInt());
}

}  // namespace
}  // namespace tessmar::proof

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return tessmar::proof::Drive(QCoreApplication::arguments());
}
