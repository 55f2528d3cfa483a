// Rows of an archive that another program wrote: any value in any column that the tables let
// through. The input is a list of rows.

#include <QBuffer>
#include <QTemporaryDir>
#include <cstring>

#include "Fuzz.h"
#include "archive/ArchiveEdits.h"
#include "archive/ArchiveModels.h"
#include "archive/Calibrations.h"
#include "archive/LastSettings.h"
#include "archive/SaveExport.h"
#include "archive/SeriesSets.h"
#include "settings/config.h"

namespace {

using namespace tessmar;
using fuzz::Bytes;
using fuzz::Hold;
using fuzz::Input;

constexpr int kMostRows = 24;
constexpr qint64 kUsualUploads = 3;

struct Table {
  const char* Name;
  std::vector<const char*> Columns;
};

const std::vector<Table>& Tables() {
  static const std::vector<Table> tables{
      {"logger", {"uuid", "name", "model", "firmware", "first_seen", "last_seen"}},
      {"upload",
       {"uuid", "logger_id", "kind", "started", "ended", "owner", "state", "promised", "records",
        "settings", "analog", "pulse", "clock_offset_s", "source", "program"}},
      {"block", {"upload_id", "number", "bytes"}},
      {"record",
       {"upload_id", "number", "stamp", "logger_time", "raw", "a1", "a2", "a3", "a4", "a5", "a6",
        "a7", "a8", "p1", "p2"}},
      {"channel", {"upload_id", "place", "name", "unit", "decimals", "method"}},
      {"event", {"uuid", "logger_id", "at", "kind", "text", "before", "after"}},
      {"bin", {"upload_id", "deleted"}}};
  return tables;
}

/// A text of the kind that a column holds, or of another one.
QVariant TakeWord(Input& input) {
  static const QStringList words{
      QStringLiteral("history"),     QStringLiteral("image"),
      QStringLiteral("live"),        QStringLiteral("running"),
      QStringLiteral("complete"),    QStringLiteral("interrupted"),
      QStringLiteral("a1"),          QStringLiteral("p2"),
      QStringLiteral("calibrated"),  QStringLiteral("synced"),
      QStringLiteral("cleared"),     QStringLiteral("merged"),
      QStringLiteral("programmed"),  QStringLiteral("initialized"),
      QStringLiteral("Channel 1 ("), QStringLiteral("2026-03-03T12:00:00Z"),
      QStringLiteral("%1 %2"),       QStringLiteral("{\"clock_offset_s\":12}")};
  return words[input.Below(static_cast<int>(words.size()))];
}

QVariant TakeValue(Input& input) {
  switch (input.Below(9)) {
    case 0:
      return {};
    case 1:
      return input.Below(4);
    case 2:
      return static_cast<qlonglong>(input.Number(8));
    case 3: {
      const auto bits = input.Number(8);
      double value = 0;
      std::memcpy(&value, &bits, sizeof value);
      return value;
    }
    case 4:
      return QString::fromUtf8(input.TakeFile());
    case 5:
      return input.TakeFile();
    case 6:
      return input.TakeFile().leftJustified(kConfigImageSize, static_cast<char>(input.Byte()));
    case 7:
      return QStringLiteral("2026-03-%1T12:%2:00Z")
          .arg(1 + input.Below(28), 2, 10, QChar(u'0'))
          .arg(input.Below(60), 2, 10, QChar(u'0'));
    default:
      return TakeWord(input);
  }
}

void InsertRow(Store& store, Input& input) {
  const Table& table = Tables()[static_cast<std::size_t>(input.Below(7))];
  QStringList columns;
  QStringList marks;
  QVariantList values;
  for (const char* column : table.Columns) {
    columns.append(QString::fromLatin1(column));
    marks.append(QStringLiteral("?"));
    values.append(TakeValue(input));
  }
  try {
    store.Run(QStringLiteral("INSERT OR IGNORE INTO %1 (%2) VALUES (%3)")
                  .arg(QString::fromLatin1(table.Name), columns.join(u','), marks.join(u',')),
              values);
  } catch (const ArchiveFault&) {
    // Refers to what is not there.
    return;
  }
}

/// What is sure to be there, so that few bytes reach far: a logger, and an upload of each kind.
void InsertUsual(Store& store) {
  store.Run(
      QStringLiteral("INSERT INTO logger (id, uuid, name, model, firmware, first_seen, last_seen)"
                     " VALUES (1, 'l1', 'Pond', 200, 52, '2026-03-01T00:00:00Z',"
                     " '2026-03-04T00:00:00Z')"));
  int id = 0;
  for (const auto* kind : {"history", "image", "live"}) {
    store.Run(
        QStringLiteral("INSERT INTO upload (id, uuid, logger_id, kind, started, state, records,"
                       " analog, pulse) VALUES (?, ?, 1, ?, '2026-03-03T12:00:00Z', 'complete',"
                       " 2, 1, 0)"),
        {++id, QStringLiteral("u%1").arg(id), QString::fromLatin1(kind)});
  }
}

void CheckExport(ExportSource& source, ExportKind kind) {
  const SystemLocale locale{QLocale(QLocale::English, QLocale::UnitedStates)};
  QByteArray bytes;
  QBuffer device(&bytes);
  device.open(QIODevice::WriteOnly);
  const std::int64_t promised = source.Count;
  std::optional<std::int64_t> written;
  try {
    written = WriteExport(device, source,
                          {.Kind = kind,
                           .Locale = locale,
                           .Saved = QDateTime(QDate(2026, 3, 4), QTime(), Qt::UTC),
                           .Program = QStringLiteral("fuzz")},
                          [](std::int64_t) { return true; });
  } catch (const MixedChannels&) {
    return;
  }
  Hold(written == promised, "all records are written");
  // A unit may hold a line end only within quotes, so that no fewer lines can be.
  Hold(bytes.count("\r\n") > promised, "each record has its line");
}

void CheckUpload(const Store& store, const UploadRow& row) {
  const std::optional<UploadRow> upload = store.Upload(row.Id);
  Hold(upload.has_value(), "an upload of the list is there");
  Hold(upload->Analog >= 0 && upload->Analog <= 8 && upload->Pulse >= 0 && upload->Pulse <= 2,
       "its records have a shape");
  std::int64_t samples = 0;
  ForEachSample(store, *upload, [&](const LiveSample& /*sample*/) { ++samples; });
  for (const ExportKind kind : {ExportKind::ViewerCsv, ExportKind::AnalysisCsv}) {
    ExportSource source = SourceOfUpload(store, row.Id);
    Hold(source.Count == samples, "an upload has the records that it has");
    CheckExport(source, kind);
  }
  // Makes room for a whole history each time; the others are in their logger's plot.
  if (row.Id > kUsualUploads) {
    const SystemLocale locale{QLocale::c()};
    const SeriesSet set = SeriesSetOfUpload(store, row.Id, LoadUpload(store, row.Id), locale);
    Hold(static_cast<std::int64_t>(set.Times.size()) == samples, "and so has its plot");
  }
  store.ForEachRecord(row.Id, [](const RecordRow&) {});
  for (const ChannelRow& channel : store.Channels(row.Id)) PlaceName(channel.Place);
}

void CheckLogger(const Store& store, const LoggerRow& logger) {
  const ArchivedSeries series = LoadSeries(store, logger.Id);
  Hold(series.Corrected.size() == series.Series.Records.size(), "each record has its time");
  for (const SeriesRecord& record : series.Series.Records)
    Hold(record.Number < series.Uploads[static_cast<std::size_t>(record.Upload)].Count(),
         "a record of the series is one of its upload");
  for (const ExportKind kind : {ExportKind::ViewerCsv, ExportKind::AnalysisCsv}) {
    ExportSource source = SourceOfSeries(store, logger.Id);
    CheckExport(source, kind);
  }
  const SystemLocale locale{QLocale::c()};
  const SeriesSet set = SeriesSetOfLogger(store, logger.Id, locale);
  Hold(set.Times.size() == series.Series.Records.size(), "the plot has the series");
  const std::vector<CalibrationRow> rows = CalibrationsIn(store.Events(logger.Id));
  for (const CalibrationRow& row : rows) DriftText(row.Low.Drift, row.Decimals);
  Hold(CalibrationsCsv(rows, [](qint64) { return QStringLiteral("x"); }).count("\r\n") >
           static_cast<qsizetype>(rows.size()),
       "each calibration has its line");
  store.LoggerFor(logger.Name, logger.Model);
}

void ShowAll(const QAbstractItemModel& model) {
  for (int row = 0; row < model.rowCount(); ++row) {
    for (int column = 0; column < model.columnCount(); ++column) {
      for (const int role : {static_cast<int>(Qt::DisplayRole), static_cast<int>(Qt::UserRole),
                             static_cast<int>(Qt::ToolTipRole)})
        model.data(model.index(row, column), role);
    }
  }
}

void CheckWindow(const Store& store) {
  const SystemLocale locale{QLocale(QLocale::German, QLocale::Germany)};
  UploadsModel uploads(locale);
  uploads.Set(store.Uploads(), {});
  ShowAll(uploads);
  LogbookModel logbook(locale);
  logbook.Set(store.Events(), {});
  ShowAll(logbook);
}

void CheckAll(const Store& store) {
  UploadsInBin(store);
  for (const UploadRow& row : store.Uploads()) CheckUpload(store, row);
  for (const LoggerRow& logger : ShownLoggers(store)) CheckLogger(store, logger);
  CheckWindow(store);
}

/// An archive in a folder of its own. What a run writes is rolled back.
class Archive {
 public:
  Archive() { store_.Open(Store::Access::Write); }
  Store& Opened() { return store_; }

 private:
  QTemporaryDir folder_;
  Store store_{folder_.filePath(QStringLiteral("archive.sqlite"))};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Archive archive;
  Input input(data, size);
  Store& store = archive.Opened();
  const Transaction rolledBack(store);
  InsertUsual(store);
  for (int i = 0; i < kMostRows && !input.AtEnd(); ++i) InsertRow(store, input);
  CheckAll(store);
  return 0;
}
