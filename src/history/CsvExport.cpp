#include "history/CsvExport.h"

#include <QIODevice>
#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Blanks.h"
#include "base/Fault.h"
#include "base/TextTable.h"
#include "base/WholeFile.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr QLatin1StringView kSeparator{", "};
constexpr std::int32_t kProgressStep = 4096;

/// Takes a piece of the file, or throws FileFault.
using Sink = std::function<void(QByteArrayView)>;

/// Collects the text and hands it on in big pieces.
class Chunks {
 public:
  explicit Chunks(Sink sink) : sink_(std::move(sink)), bytes_(kSize) {}

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
    sink_({bytes_.data(), static_cast<qsizetype>(used_)});
    used_ = 0;
    ++flushes_;
  }
  /// How often what was collected has been handed on, and its room is used anew.
  int Flushes() const { return flushes_; }

 private:
  static constexpr std::size_t kSize = std::size_t{256} * 1024;

  Sink sink_;
  std::vector<char> bytes_;
  std::size_t used_ = 0;
  int flushes_ = 0;
};

void WriteHead(Chunks& chunks, const HistoryTable& table, const CsvHead& head) {
  const SystemLocale& locale = table.Locale();
  chunks.Add(ControlsToBlanks(head.LoggerName) + u","_s + locale.ShortDate(head.Saved.date()) +
             u","_s + locale.ShortTime(head.Saved.time()) + u"\r\n"_s);

  QString headings = GetText(TextId::Date) + (head.SingleColumn ? u" "_s : QString(kSeparator)) +
                     GetText(TextId::Time);
  for (int column = 1; column < table.ColumnCount(); ++column)
    headings += kSeparator + ControlsToBlanks(table.Column(column).Heading);
  chunks.Add(headings + u"\r\n"_s);
}

/// The times of many rows as they stand in the file. All that changes within a day are the last
/// eight characters, so the rest is made once for a day.
class RowTimes {
 public:
  RowTimes(const SystemLocale& locale, bool singleColumn)
      : maker_(locale), singleColumn_(singleColumn) {}

  /// The time of a record; good until the next call.
  std::string_view Text(const LiveSample& record) {
    if (!known_ || !record.HasTime || DayOf(record) != day_) {
      Make(record);
    } else {
      PutTimeOfDay(text_.data() + text_.size() - kTimeOfDaySize, record);
    }
    return {text_.constData(), static_cast<std::size_t>(text_.size())};
  }

 private:
  static constexpr int kTimeOfDaySize = 8;

  static std::uint32_t DayOf(const LiveSample& record) { return record.PackedTime >> 17U; }

  void Make(const LiveSample& record) {
    QString text = maker_.Text(record);
    if (!singleColumn_) {
      const qsizetype blank = text.indexOf(u' ');
      text.replace(std::max<qsizetype>(blank, 0), blank < 0 ? 0 : 1, kSeparator);
    }
    text_ = text.toUtf8();
    day_ = DayOf(record);
    known_ = record.HasTime;
  }

  // "hh:mm:ss"; the colons are there already.
  static void PutTimeOfDay(char* out, const LiveSample& record) {
    const TimeStampFields fields = UnpackTimeStamp(record.PackedTime);
    const auto put = [](char* place, int value) {
      place[0] = static_cast<char>('0' + value / 10);
      place[1] = static_cast<char>('0' + value % 10);
    };
    put(out, fields.Hour);
    put(out + 3, fields.Minute);
    put(out + 6, fields.Second);
  }

  TimeTextMaker maker_;
  bool singleColumn_;
  QByteArray text_;
  std::uint32_t day_ = 0;
  bool known_ = false;
};

/// The cells of many rows. The text of most follows from one word alone, and what a sensor measures
/// often stands still: such a text is taken over from the row before, as long as that is still in
/// memory.
class RowCells {
 public:
  explicit RowCells(const HistoryTable& table) : table_(table) {
    last_.reserve(static_cast<std::size_t>(table.ColumnCount()));
    for (int column = 0; column < table.ColumnCount(); ++column) {
      const HistoryColumn& content = table.Column(column);
      last_.push_back({.Place = static_cast<std::size_t>(content.Word),
                       .OwnReading = column > 0 && content.OwnReading});
    }
  }

  /// What was written so far is no longer in memory.
  void Forget() {
    for (Last& last : last_) last.Text = nullptr;
  }

  /// Writes a cell, as HistoryTable::WriteCell does. Up to kShort characters behind its end are
  /// touched.
  int Write(char* out, const LiveSample& record, int column) {
    Last& last = last_[static_cast<std::size_t>(column)];
    if (!last.OwnReading) return table_.WriteCell(out, record, column);
    const std::int32_t word = record.Value[last.Place];
    if (last.Text != nullptr && word == last.Word && last.Length <= kShort) {
      // By way of a copy, because a short row is nearer than kShort.
      std::array<char, kShort> text;
      std::memcpy(text.data(), last.Text, kShort);
      std::memcpy(out, text.data(), kShort);
      return last.Length;
    }
    last.Word = word;
    last.Text = out;
    last.Length = table_.WriteCell(out, record, column);
    return last.Length;
  }

 private:
  static constexpr int kShort = 16;

  struct Last {
    std::size_t Place = 0;  ///< Of the column's word in a record.
    bool OwnReading = false;
    std::int32_t Word = 0;
    const char* Text = nullptr;  ///< Where Word was written as text.
    int Length = 0;
  };

  const HistoryTable& table_;
  std::vector<Last> last_;
};

void WriteRows(Chunks& chunks, const HistoryTable& table, bool singleColumn,
               const CsvProgress& progress) {
  RowTimes times(table.Locale(), singleColumn);
  RowCells cells(table);
  int flushes = chunks.Flushes();
  const int columns = table.ColumnCount();
  const int cellsSize = columns * (HistoryTable::kCellSize + 2) + 2;
  for (std::int32_t row = 0; row < table.RowCount(); ++row) {
    if (row % kProgressStep == 0) progress(row + 1);
    const LiveSample& record = table.Record(row);
    chunks.Add(times.Text(record));
    char* const begin = chunks.Room(cellsSize);
    if (chunks.Flushes() != flushes) cells.Forget();
    flushes = chunks.Flushes();
    char* end = begin;
    for (int column = 1; column < columns; ++column) {
      *end++ = ',';
      *end++ = ' ';
      end += cells.Write(end, record, column);
    }
    *end++ = '\r';
    *end++ = '\n';
    chunks.Took(static_cast<int>(end - begin));
  }
  if (table.RowCount() > 0) progress(table.RowCount());
}

void WriteTable(Chunks chunks, const HistoryTable& table, const CsvHead& head,
                const CsvProgress& progress) {
  WriteHead(chunks, table, head);
  WriteRows(chunks, table, head.SingleColumn, progress);
  chunks.Flush();
}

Sink To(QIODevice& device) {
  return [&device](QByteArrayView bytes) {
    if (device.write(bytes.data(), bytes.size()) != bytes.size())
      throw FileFault("the CSV file was not written");
  };
}

}  // namespace

void WriteCsv(QIODevice& device, const HistoryTable& table, const CsvHead& head,
              const CsvProgress& progress) {
  WriteTable(Chunks(To(device)), table, head, progress);
}

void WriteCsvHead(QIODevice& device, const HistoryTable& table, const CsvHead& head) {
  Chunks chunks(To(device));
  WriteHead(chunks, table, head);
  chunks.Flush();
}

void WriteCsvRows(QIODevice& device, const HistoryTable& table, bool singleColumn) {
  Chunks chunks(To(device));
  WriteRows(chunks, table, singleColumn, [](std::int32_t) {});
  chunks.Flush();
}

void SaveCsv(const QString& path, const HistoryTable& table, const CsvHead& head,
             const CsvProgress& progress) {
  WholeFile file(path);
  WriteTable(Chunks([&file](QByteArrayView bytes) { file.Write(bytes); }), table, head, progress);
  file.Commit();
}

}  // namespace tessmar
