#include "archive/SaveExport.h"

#include <QIODevice>
#include <algorithm>

#include "archive/AnalysisCsv.h"
#include "archive/NetCdf.h"
#include "base/WholeFile.h"
#include "history/CsvExport.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// So many bytes are handed to the device at once.
constexpr qsizetype kPiece = 1048576;

bool SameChannels(const HistoryTable& a, const HistoryTable& b) {
  if (a.ColumnCount() != b.ColumnCount()) return false;
  for (int i = 1; i < a.ColumnCount(); ++i) {
    const HistoryColumn& one = a.Column(i);
    const HistoryColumn& other = b.Column(i);
    if (one.Content != other.Content || one.Channel != other.Channel ||
        one.Heading != other.Heading || one.Decimals != other.Decimals)
      return false;
  }
  return true;
}

/// Writes the table of the viewer, some records at a time, each with what it was made with.
class ViewerCsv {
 public:
  ViewerCsv(QIODevice& device, const ExportSource& source, const ExportForm& form)
      : device_(device), source_(source), form_(form), buffer_(kExportPiece) {
    links_.reserve(source.Settings.size());
    for (const ExportSettings& made : source.Settings) {
      LinkState& link = links_.emplace_back();
      link.TrapErrors = true;
      link.AnalogChannelCount = static_cast<std::int16_t>(made.Analog);
      link.PulseChannelCount = static_cast<std::int16_t>(made.Pulse);
    }
  }

  // The newest settings give the headings, so that those of all others have to be the same.
  void WriteHead() {
    const HistoryBuffer none(0);
    if (source_.Settings.empty()) throw MixedChannels("there are no records");
    const std::size_t last = source_.Settings.size() - 1;
    const HistoryTable table = TableOf(last, none);
    for (std::size_t i = 0; i < last; ++i) {
      if (source_.Settings[i].FirstSeconds && !SameChannels(TableOf(i, none), table))
        throw MixedChannels("the uploads have different channels");
    }
    WriteCsvHead(
        device_, table,
        {.LoggerName = source_.CsvName, .Saved = form_.Saved, .SingleColumn = form_.SingleColumn});
  }

  void Add(const ExportRecord& record) {
    if (record.MadeWith != madeWith_ || buffer_.IsFull()) Flush();
    madeWith_ = record.MadeWith;
    buffer_.Append(record.Sample);
  }

  void Flush() {
    if (buffer_.Count() > 0) WriteCsvRows(device_, TableOf(madeWith_, buffer_), form_.SingleColumn);
    buffer_.Clear();
  }

 private:
  HistoryTable TableOf(std::size_t madeWith, const HistoryBuffer& buffer) const {
    return {buffer, source_.Settings[madeWith].Settings, links_[madeWith], form_.ShowRelays,
            form_.Locale};
  }

  QIODevice& device_;
  const ExportSource& source_;
  const ExportForm& form_;
  HistoryBuffer buffer_;
  std::vector<LinkState> links_;
  std::size_t madeWith_ = 0;
};

std::optional<std::int64_t> WriteViewerCsv(QIODevice& device, ExportSource& source,
                                           const ExportForm& form, const ExportProgress& progress) {
  ViewerCsv csv(device, source, form);
  csv.WriteHead();
  ExportRecord record;
  std::int64_t count = 0;
  while (source.Next(record)) {
    csv.Add(record);
    if (++count % kExportPiece == 0 && !progress(count)) return std::nullopt;
  }
  csv.Flush();
  return count;
}

std::optional<std::int64_t> WriteNetCdf(QIODevice& device, const ExportHead& head,
                                        const ExportRows& rows, const ExportProgress& progress) {
  std::int64_t count = 0;
  const auto counted = [&](ExportRow& row) { return rows(row) && ++count > 0; };
  const std::optional<NetCdfBytes> bytes = MakeNetCdf(head, counted, progress);
  if (!bytes) return std::nullopt;
  const QByteArrayView view = bytes->View();
  for (qsizetype at = 0; at < view.size(); at += kPiece) {
    const QByteArrayView piece = view.sliced(at, std::min(kPiece, view.size() - at));
    if (device.write(piece.data(), piece.size()) != piece.size())
      throw FileFault("the file does not take everything");
    if (!progress(count)) return std::nullopt;
  }
  return count;
}

}  // namespace

std::optional<ExportKind> ExportKindOf(const QString& path) {
  if (path.endsWith(u".csv"_s, Qt::CaseInsensitive)) return ExportKind::ViewerCsv;
  if (path.endsWith(u".nc"_s, Qt::CaseInsensitive)) return ExportKind::NetCdf;
  return std::nullopt;
}

std::optional<std::int64_t> WriteExport(QIODevice& device, ExportSource& source,
                                        const ExportForm& form, const ExportProgress& progress) {
  if (form.Kind == ExportKind::ViewerCsv) return WriteViewerCsv(device, source, form, progress);
  ExportHead head = source.Head;
  head.Columns = ColumnsOf(source.Settings);
  head.Program = form.Program;
  head.Saved = form.Saved.toUTC().toString(Qt::ISODate);
  const ExportRows rows = RowsOf(source, head.Columns);
  return form.Kind == ExportKind::NetCdf ? WriteNetCdf(device, head, rows, progress)
                                         : WriteAnalysisCsv(device, head, rows, progress);
}

std::optional<std::int64_t> SaveExport(const QString& path, ExportSource& source,
                                       const ExportForm& form, const ExportProgress& progress) {
  WholeFile file(path);
  std::optional<std::int64_t> count;
  try {
    count = WriteExport(file.Device(), source, form, progress);
  } catch (const FileFault&) {
    // What the disk said is kept for the end.
    file.ThrowFailure();
    throw;
  }
  if (count) file.Commit();
  return count;
}

}  // namespace tessmar
