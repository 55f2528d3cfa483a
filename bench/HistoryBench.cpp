// What a full history costs: decoding, cells, pack, CSV beside a plain copy of the same file and
// beside sqlite3 exporting the same table, the archive's exports, and the import of a full image.
// The numbers are for reading, never for a test.

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <array>

#include "archive/SaveExport.h"
#include "bench/FullHistory.h"
#include "history/CsvExport.h"
#include "history/HistoryBuffer.h"
#include "history/HistoryTable.h"
#include "history/HistoryUpload.h"
#include "history/ImageImport.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kRecords = HistoryBuffer::kCapacity;

void TakeBlocks(benchmark::State& state) {
  const LinkState link = test::LinkWith(8, 2);
  HistoryBuffer buffer;
  HistoryUpload::Reply reply{};
  reply[0] = 10;
  HistoryUpload upload(link, buffer, kRecords);
  for (auto _ : state) {
    upload.NextRequest();
    if (buffer.Count() > kRecords - 20) buffer.Clear();
    reply[1] = static_cast<std::uint8_t>(reply[1] + 1);
    benchmark::DoNotOptimize(upload.TakeBlock(reply));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(TakeBlocks);

void FormatCells(benchmark::State& state) {
  const FullHistory history(true);
  const HistoryTable table = history.Table();
  std::array<char, HistoryTable::kCellSize> text;
  std::int32_t row = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(table.WriteCell(text.data(), table.Record(row), 3));
    row = (row + 1) % kRecords;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(FormatCells);

void PackAll(benchmark::State& state) {
  const FullHistory history(state.range(0) != 0);
  for (auto _ : state) {
    HistoryTable table = history.Table();
    table.Pack([](std::int32_t) {});
    benchmark::DoNotOptimize(table.RowCount());
  }
}
BENCHMARK(PackAll)->ArgName("noise")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

const CsvHead kHead{u"Mill Pond 3"_s, QDateTime(QDate(2010, 12, 27), QTime(15, 5, 12)), false};

void SaveAll(benchmark::State& state) {
  const FullHistory history(state.range(0) != 0);
  const HistoryTable table = history.Table();
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"history.csv"_s);
  for (auto _ : state) SaveCsv(path, table, kHead, [](std::int32_t) {});
  state.SetBytesProcessed(state.iterations() * QFileInfo(path).size());
}
BENCHMARK(SaveAll)->ArgName("noise")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The files that the archive's window and the command write, by ExportKind.
void ExportAll(benchmark::State& state) {
  const FullHistory history(true);
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"history"_s);
  const ExportForm form{.Kind = static_cast<ExportKind>(state.range(0)),
                        .Locale = history.Locale,
                        .Saved = kHead.Saved,
                        .Program = u"bench"_s};
  for (auto _ : state) {
    ExportSource source = SourceOfBuffer(history.Buffer, history.Settings, 8, 2);
    if (SaveExport(path, source, form, [](std::int64_t) { return true; }) != kRecords)
      state.SkipWithError("not all was written");
  }
  state.SetBytesProcessed(state.iterations() * QFileInfo(path).size());
}
BENCHMARK(ExportAll)->ArgName("kind")->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void CopyTheSameFile(benchmark::State& state) {
  const FullHistory history(true);
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"history.csv"_s);
  SaveCsv(path, history.Table(), kHead, [](std::int32_t) {});
  std::vector<char> bytes(256 * 1024);
  for (auto _ : state) {
    QFile from(path);
    QFile to(folder.filePath(u"copy.csv"_s));
    if (!from.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ||
        !to.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
      state.SkipWithError("the files cannot be opened");
      return;
    }
    while (true) {
      const qint64 count = from.read(bytes.data(), static_cast<qint64>(bytes.size()));
      if (count <= 0) break;
      to.write(bytes.data(), count);
    }
  }
  state.SetBytesProcessed(state.iterations() * QFileInfo(path).size());
}
BENCHMARK(CopyTheSameFile)->Unit(benchmark::kMillisecond);

/// Runs sqlite3 to its end. @return true when it found nothing to complain about.
bool RunSqlite(const QStringList& arguments, const QString& output = QProcess::nullDevice()) {
  QProcess process;
  process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process.setStandardOutputFile(output, QIODevice::Truncate);
  process.start(u"sqlite3"_s, arguments);
  return process.waitForFinished(-1) && process.exitCode() == 0;
}

// The peer's whole process, as an operator would run it: numbers in, text out.
void ExportTheSameTableWithSqlite(benchmark::State& state) {
  if (QStandardPaths::findExecutable(u"sqlite3"_s).isEmpty()) {
    state.SkipWithError("sqlite3 is not installed");
    return;
  }
  const FullHistory history(true);
  const QTemporaryDir folder;
  const QString csv = folder.filePath(u"history.csv"_s);
  const QString database = folder.filePath(u"history.db"_s);
  SaveCsv(csv, history.Table(), kHead, [](std::int32_t) {});
  QString columns = u"day TEXT, time TEXT"_s;
  for (int channel = 1; channel <= 10; ++channel) columns += u", channel%1 REAL"_s.arg(channel);
  const bool filled = RunSqlite({database, u"CREATE TABLE history ("_s + columns + u")"_s,
                                 u".mode csv"_s, u".import --skip 2 %1 history"_s.arg(csv)});
  for (auto _ : state) {
    if (filled && RunSqlite({u"-csv"_s, database, u"SELECT * FROM history"_s},
                            folder.filePath(u"peer.csv"_s)))
      continue;
    state.SkipWithError("sqlite3 failed");
    return;
  }
  state.SetBytesProcessed(state.iterations() * QFileInfo(folder.filePath(u"peer.csv"_s)).size());
}
BENCHMARK(ExportTheSameTableWithSqlite)->Unit(benchmark::kMillisecond)->UseRealTime();

void ImportAFullImage(benchmark::State& state) {
  const LinkState link = test::LinkWith(8, 2);
  HistoryBuffer buffer;
  NoBlockSink sink;
  const QTemporaryDir folder;
  QFile file(folder.filePath(u"logger.bin"_s));
  if (!file.open(QIODevice::ReadWrite)) {
    state.SkipWithError("the image cannot be written");
    return;
  }
  file.write(QByteArray(2112 + 4088 * 264, '\x11'));
  file.flush();
  for (auto _ : state) {
    file.seek(0);
    benchmark::DoNotOptimize(ReadImageConfiguration(file));
    ReadImageRecords(file, link, buffer, sink);
  }
  if (buffer.Count() != 4088 * 10) state.SkipWithError("the image was not read to its end");
  state.SetItemsProcessed(state.iterations() * 4088);
}
BENCHMARK(ImportAFullImage)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tessmar::bench

BENCHMARK_MAIN();
