// Image files: two bytes that say what the operator does, the channel counts, and the file.

#include <QBuffer>

#include "Fuzz.h"
#include "archive/ImageOrder.h"
#include "archive/RecordMaker.h"
#include "base/Fault.h"
#include "base/TextTable.h"
#include "history/CsvExport.h"
#include "history/ImageImport.h"
#include "support/FakeBlockSink.h"
#include "support/Links.h"

namespace {

using namespace tessmar;
using fuzz::Bytes;
using fuzz::Hold;
using fuzz::Input;

constexpr std::size_t kConfiguration = 8 * 264;
constexpr int kPage = 264;
constexpr int kRoom = 2000;

/// The records of a file, read without the program.
std::vector<LiveSample> RecordsOf(const QByteArray& file, int words) {
  const int size = 4 + 2 * words;
  std::vector<LiveSample> records;
  const auto byte = [&](qsizetype at) { return static_cast<std::uint8_t>(file[at]); };
  for (qsizetype page = kConfiguration; page < file.size(); page += kPage) {
    for (int i = 0; i < 240 / size; ++i) {
      const qsizetype at = page + qsizetype{i} * size;
      if (at + size > file.size() || records.size() == kRoom) return records;
      const auto stamp = static_cast<std::uint32_t>(byte(at) | byte(at + 1) << 8 |
                                                    byte(at + 2) << 16 | byte(at + 3) << 24);
      if (stamp == 0xFFFFFFFF) return records;
      LiveSample& record = records.emplace_back();
      record.HasTime = true;
      record.PackedTime = stamp;
      for (int word = 0; word < words; ++word)
        record.Value[static_cast<std::size_t>(word)] =
            byte(at + 4 + 2 * word) | byte(at + 5 + 2 * word) << 8;
    }
  }
  return records;
}

/// The table and the file of the viewer.
void CheckShown(const HistoryBuffer& buffer, const LoggerSettings& settings, const LinkState& link,
                bool german) {
  const SystemLocale locale{german ? QLocale(QLocale::German, QLocale::Germany)
                                   : QLocale(QLocale::English, QLocale::UnitedStates)};
  HistoryTable table(buffer, settings, link, false, locale);
  Hold(table.RowCount() == buffer.Count(), "each record has its row");
  for (std::int32_t row = 0; row < table.RowCount(); ++row) {
    for (int column = 0; column < table.ColumnCount(); ++column)
      Hold(!table.CellText(row, column).isEmpty(), "each cell has a text");
  }
  QByteArray csv;
  QBuffer device(&csv);
  device.open(QIODevice::WriteOnly);
  WriteCsv(device, table, {.LoggerName = settings.LoggerName, .Saved = {}, .SingleColumn = german},
           [](std::int32_t) {});
  Hold(csv.count("\r\n") == buffer.Count() + 2 && csv.count('\n') == buffer.Count() + 2,
       "each record has its line");
  const std::int32_t rows = table.RowCount();
  table.Pack([](std::int32_t) {});
  Hold(table.RowCount() <= rows, "packing leaves out");
  Hold(rows == 0 || table.ColumnCount() == 1 || table.RowOf(0) == 0, "the first record stays");
}

/// The archive's rows of the same records, from the blocks that were kept.
void CheckKept(const test::FakeBlockSink& sink, const HistoryBuffer& buffer,
               const LoggerSettings& settings, const LinkState& link) {
  RecordMaker maker(settings, link.AnalogChannelCount, link.PulseChannelCount);
  std::int32_t record = 0;
  for (const Bytes& block : sink.Blocks) {
    for (int i = 0; i < maker.CountOf(block) && record < buffer.Count(); ++i) {
      RecordRow row;
      maker.Make(block, i, row);
      Hold(row.Stamp == buffer.Record(record++).PackedTime, "the archive has the record");
    }
  }
  Hold(record == buffer.Count(), "the archive has all records");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const int analog = input.Below(9);
  const int flags = input.Byte();
  const LinkState link = test::LinkWith(analog, flags % 3);
  if (!ImportRefusal(link.AnalogChannelCount, link.PulseChannelCount).isEmpty()) return 0;
  const Bytes bytes = input.Rest();
  QByteArray file = fuzz::FileOf(bytes.data(), bytes.size());
  QBuffer device(&file);
  device.open(QIODevice::ReadOnly);

  LoggerSettings settings;
  LoadDefaultSettings(settings, link.AnalogChannelCount);
  try {
    const ConfigImage image = ReadImageConfiguration(device);
    Hold(file.size() >= static_cast<qsizetype>(kConfiguration), "a short file is refused");
    UnpackConfigImage(link, image, settings);
  } catch (const FileFault&) {
    Hold(file.size() < static_cast<qsizetype>(kConfiguration), "a whole configuration is read");
    return 0;
  }
  HistoryBuffer buffer(kRoom);
  test::FakeBlockSink sink;
  ReadImageRecords(device, link, buffer, sink);

  const int words = link.AnalogChannelCount + link.PulseChannelCount;
  const std::vector<LiveSample> records = RecordsOf(file, words);
  Hold(static_cast<std::size_t>(buffer.Count()) == records.size(), "all records of the file");
  for (std::int32_t i = 0; i < buffer.Count(); ++i)
    Hold(buffer.Record(i) == records[static_cast<std::size_t>(i)], "a record is what it was");
  CheckShown(buffer, settings, link, (flags & 0x80) != 0);
  CheckKept(sink, buffer, settings, link);
  return 0;
}
