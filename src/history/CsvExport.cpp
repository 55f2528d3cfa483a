#include "history/CsvExport.h"

#include <QFile>
#include <cstring>
#include <string_view>
#include <vector>

#include "link/Fault.h"
#include "measure/Sample.h"
#include "ui/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr QLatin1StringView kSeparator{", "};
constexpr std::int32_t kProgressStep = 4096;

/// Collects the text and hands it to the device in big pieces.
class Chunks {
 public:
  explicit Chunks(QIODevice& device) : device_(device), bytes_(kSize) {}

  void Add(std::string_view text) {
    char* const room = Room(static_cast<int>(text.size()));
    std::memcpy(room, text.data(), text.size());
    Took(static_cast<int>(text.size()));
  }
  void Add(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    Add(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
  }

  /// Room for so many characters, of which Took says how many were used.
  char* Room(int size) {
    const auto wanted = static_cast<std::size_t>(size);
    if (used_ + wanted > bytes_.size()) Flush();
    if (wanted > bytes_.size()) bytes_.resize(wanted);
    return bytes_.data() + used_;
  }
  void Took(int size) { used_ += static_cast<std::size_t>(size); }

  void Flush() {
    const auto size = static_cast<qint64>(used_);
    if (device_.write(bytes_.data(), size) != size) throw FileFault("the CSV file was not written");
    used_ = 0;
  }

 private:
  static constexpr std::size_t kSize = 256 * 1024;

  QIODevice& device_;
  std::vector<char> bytes_;
  std::size_t used_ = 0;
};

void WriteHead(Chunks& chunks, const HistoryTable& table, const CsvHead& head) {
  const SystemLocale& locale = table.Locale();
  chunks.Add(head.LoggerName + u","_s + locale.ShortDate(head.Saved.date()) + u","_s +
             locale.ShortTime(head.Saved.time()) + u"\r\n"_s);

  QString headings = GetText(TextId::Date) + (head.SingleColumn ? u" "_s : QString(kSeparator)) +
                     GetText(TextId::Time);
  for (int column = 1; column < table.ColumnCount(); ++column)
    headings += kSeparator + table.Column(column).Heading;
  chunks.Add(headings + u"\r\n"_s);
}

void WriteTime(Chunks& chunks, QString text, bool singleColumn) {
  if (!singleColumn) {
    const qsizetype blank = text.indexOf(u' ');
    if (blank < 0) {
      text += kSeparator;
    } else {
      text.replace(blank, 1, kSeparator);
    }
  }
  chunks.Add(text);
}

}  // namespace

void WriteCsv(QIODevice& device, const HistoryTable& table, const CsvHead& head,
              const CsvProgress& progress) {
  Chunks chunks(device);
  WriteHead(chunks, table, head);
  TimeTextMaker times(table.Locale());
  for (std::int32_t row = 0; row < table.RowCount(); ++row) {
    if (row % kProgressStep == 0) progress(row + 1);
    const LiveSample& record = table.Record(row);
    WriteTime(chunks, times.Text(record), head.SingleColumn);
    for (int column = 1; column < table.ColumnCount(); ++column) {
      chunks.Add(std::string_view(kSeparator.data(), 2));
      chunks.Took(table.WriteCell(chunks.Room(HistoryTable::kCellSize), record, column));
    }
    chunks.Add(std::string_view("\r\n"));
  }
  if (table.RowCount() > 0) progress(table.RowCount());
  chunks.Flush();
}

void SaveCsv(const QString& path, const HistoryTable& table, const CsvHead& head,
             const CsvProgress& progress) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
    throw FileFault("the CSV file cannot be opened");
  WriteCsv(file, table, head, progress);
}

}  // namespace tessmar
