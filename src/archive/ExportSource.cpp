#include "archive/ExportSource.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "archive/RecordMaker.h"
#include "archive/UploadTimes.h"
#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::int64_t kMsPerSecond = 1000;
constexpr int kMostDecimals = 6;

std::optional<std::int64_t> SecondsOf(const LiveSample& sample) {
  if (!sample.HasTime) return std::nullopt;
  return LoggerMilliseconds(sample.PackedTime) / kMsPerSecond;
}

std::optional<std::int64_t> Known(std::int64_t corrected) {
  if (corrected == kNoCorrectedTime) return std::nullopt;
  return corrected;
}

ExportHead HeadOf(const LoggerRow& logger) {
  return {.LoggerName = logger.Name,
          .LoggerModel = logger.Model ? QString::number(*logger.Model) : QString(),
          .LoggerUuid = logger.Uuid,
          .Firmware = logger.Firmware ? QString::number(*logger.Firmware) : QString()};
}

QString WordsOf(const UploadRow& upload) {
  QString words =
      u"upload %1 of %2"_s.arg(QString::number(upload.Id), upload.Started.toString(Qt::ISODate));
  if (!upload.Source.isEmpty()) words += u" from "_s + upload.Source;
  return words;
}

QString WordsOf(const std::vector<UploadRow>& series) {
  QStringList numbers;
  for (const UploadRow& upload : series) numbers.append(QString::number(upload.Id));
  if (numbers.isEmpty()) return u"no upload"_s;
  return u"series of uploads %1, taken from %2 to %3"_s.arg(
      numbers.join(u", "_s), series.front().Started.toString(Qt::ISODate),
      series.back().Started.toString(Qt::ISODate));
}

/// Records that are in memory.
struct HeldRecords {
  std::vector<LiveSample> Samples;
  std::vector<std::int64_t> Corrected;
  std::size_t Next = 0;
};

/// Where the values of one of the settings go.
struct Filler {
  std::unique_ptr<RecordMaker> Maker;
  std::vector<std::size_t> Columns;  ///< By channel of the maker, from 0.
  /// The word and the value of the record before, by channel: often a sensor's value stands still.
  std::vector<std::pair<std::int32_t, double>> Last;

  void Fill(const LiveSample& sample, std::vector<double>& values) {
    for (std::size_t i = 0; i < Columns.size(); ++i) {
      const int channel = static_cast<int>(i) + 1;
      const std::int32_t word = sample.Value[static_cast<std::size_t>(Maker->WordOf(channel))];
      auto& [lastWord, lastValue] = Last[i];
      if (word != lastWord || !Maker->FollowsFromWord(channel)) {
        lastWord = word;
        lastValue = Maker->ShownValue(sample, channel).value_or(kNoExportValue);
      }
      values[Columns[i]] = lastValue;
    }
  }
};

bool SameColumn(const ExportColumn& column, const ChannelRow& channel) {
  const QString place = PlaceName(channel.Place);
  const bool samePlace = column.Place == place || column.Place.startsWith(place + u'_');
  return samePlace && column.Name == channel.Name && column.Unit == channel.Unit;
}

std::size_t ColumnOf(const std::vector<ExportColumn>& columns, const ChannelRow& channel) {
  const auto found = std::ranges::find_if(
      columns, [&](const ExportColumn& column) { return SameColumn(column, channel); });
  return static_cast<std::size_t>(found - columns.begin());
}

std::unique_ptr<RecordMaker> MakerOf(const ExportSettings& settings) {
  return std::make_unique<RecordMaker>(settings.Settings, settings.Analog, settings.Pulse);
}

/// A column in the making: its methods, each with the time of the first record made by it. A
/// channel's own reading has none, and is another column than what is derived for its place.
struct DraftColumn {
  ExportColumn Column;
  int Place = 0;
  std::vector<std::pair<QString, std::int64_t>> Methods;

  void TakeMethod(const QString& method, std::int64_t first) {
    if (!Methods.empty() && Methods.back().first == method) return;
    Methods.emplace_back(method, first);
  }
  QString MethodText() const {
    if (Methods.size() == 1) return Methods.front().first;
    QStringList texts;
    for (const auto& [method, first] : Methods) {
      texts.append(u"from %1: %2"_s.arg(IsoLoggerTime(first), method));
    }
    return texts.join(u"; "_s);
  }
};

void TakeChannel(std::vector<DraftColumn>& drafts, const ChannelRow& channel, std::int64_t first) {
  const auto same = std::ranges::find_if(drafts, [&](const DraftColumn& draft) {
    return draft.Place == channel.Place && draft.Column.Name == channel.Name &&
           draft.Column.Unit == channel.Unit;
  });
  const int decimals = std::clamp(channel.Decimals, 0, kMostDecimals);
  if (same != drafts.end()) {
    same->Column.Decimals = std::max(same->Column.Decimals, decimals);
    same->TakeMethod(channel.Method, first);
    return;
  }
  const auto times = std::ranges::count(drafts, channel.Place, &DraftColumn::Place);
  QString place = PlaceName(channel.Place);
  if (times > 0) place += u'_' + QString::number(times + 1);
  drafts.push_back({.Column = {.Place = place,
                               .Name = channel.Name,
                               .Unit = channel.Unit,
                               .Decimals = decimals,
                               .Method = {}},
                    .Place = channel.Place,
                    .Methods = {{channel.Method, first}}});
}

/// The records of a series, one after the other.
class SeriesRecords {
 public:
  explicit SeriesRecords(ArchivedSeries series) : series_(std::move(series)) {
    link_.TrapErrors = true;
  }

  bool Next(ExportRecord& record) {
    const std::vector<SeriesRecord>& records = series_.Series.Records;
    if (next_ == records.size()) return false;
    const SeriesRecord& place = records[next_];
    const auto made = static_cast<std::size_t>(place.Upload);
    const UploadRow& row = series_.Rows[made];
    record.MadeWith = made;
    record.Sample = {};
    DecodeRecord(link_, series_.Uploads[made].Record(place.Number), 0, row.Analog + row.Pulse,
                 record.Sample);
    record.CorrectedMs = Known(series_.Corrected[next_]);
    record.Disagrees = place.Disputed;
    ++next_;
    return true;
  }

 private:
  LinkState link_;
  ArchivedSeries series_;
  std::size_t next_ = 0;
};

std::vector<ExportSettings> SettingsOf(const Store& store, const ArchivedSeries& series) {
  std::vector<ExportSettings> settings;
  settings.reserve(series.Rows.size());
  for (const UploadRow& row : series.Rows) {
    const std::optional<UploadRow> whole = store.Upload(row.Id);
    const QByteArray image = whole ? whole->Settings : QByteArray();
    settings.push_back({.Settings = SettingsOfImage(image, row.Analog, row.Pulse),
                        .Analog = row.Analog,
                        .Pulse = row.Pulse});
  }
  for (const SeriesRecord& record : series.Series.Records) {
    const auto made = static_cast<std::size_t>(record.Upload);
    if (settings[made].FirstSeconds) continue;
    const std::uint32_t stamp = series.Uploads[made].Stamp(record.Number);
    settings[made].FirstSeconds = LoggerMilliseconds(stamp) / kMsPerSecond;
  }
  return settings;
}

}  // namespace

ExportSource SourceOfUpload(const Store& store, qint64 upload) {
  const std::optional<UploadRow> row = store.Upload(upload);
  if (!row) throw RangeFault("the archive has no such upload");
  const auto held = std::make_shared<HeldRecords>();
  ForEachSample(store, *row, [&](const LiveSample& sample) { held->Samples.push_back(sample); });
  held->Corrected = CorrectedTimesOf(store, *row, held->Samples);

  ExportSource source;
  source.Head = HeadOf(store.Logger(row->LoggerId).value_or(LoggerRow()));
  source.Head.Source = WordsOf(*row);
  source.Settings = {{.Settings = SettingsOfImage(row->Settings, row->Analog, row->Pulse),
                      .Analog = row->Analog,
                      .Pulse = row->Pulse}};
  if (!held->Samples.empty())
    source.Settings.front().FirstSeconds = SecondsOf(held->Samples.front());
  source.CsvName = source.Settings.front().Settings.LoggerName;
  source.Count = static_cast<std::int64_t>(held->Samples.size());
  source.Next = [held](ExportRecord& record) {
    if (held->Next == held->Samples.size()) return false;
    record = {.Sample = held->Samples[held->Next],
              .CorrectedMs = Known(held->Corrected[held->Next])};
    ++held->Next;
    return true;
  };
  return source;
}

ExportSource SourceOfSeries(const Store& store, qint64 logger, const LoadProgress& progress) {
  const std::optional<LoggerRow> row = store.Logger(logger);
  if (!row) throw RangeFault("the archive has no such logger");
  ArchivedSeries series = LoadSeries(store, logger, progress);
  ExportSource source;
  source.Head = HeadOf(*row);
  source.Head.Source = WordsOf(series.Rows);
  source.Settings = SettingsOf(store, series);
  source.CsvName = source.Settings.empty() ? row->Name : source.Settings.back().Settings.LoggerName;
  source.Count = static_cast<std::int64_t>(series.Series.Records.size());
  source.Disagreements = std::ranges::count(series.Series.Records, true, &SeriesRecord::Disputed);
  const auto records = std::make_shared<SeriesRecords>(std::move(series));
  source.Next = [records](ExportRecord& record) { return records->Next(record); };
  return source;
}

ExportSource SourceOfBuffer(const HistoryBuffer& buffer, const LoggerSettings& settings, int analog,
                            int pulse) {
  ExportSource source;
  source.Head.LoggerName = settings.LoggerName;
  source.CsvName = settings.LoggerName;
  source.Settings = {{.Settings = settings, .Analog = analog, .Pulse = pulse}};
  if (buffer.Count() > 0) source.Settings.front().FirstSeconds = SecondsOf(buffer.Record(0));
  source.Count = buffer.Count();
  source.Next = [&buffer, next = std::int32_t{0}](ExportRecord& record) mutable {
    if (next == buffer.Count()) return false;
    record = {.Sample = buffer.Record(next++), .CorrectedMs = {}};
    return true;
  };
  return source;
}

std::vector<ExportColumn> ColumnsOf(const std::vector<ExportSettings>& settings) {
  std::vector<DraftColumn> drafts;
  for (const ExportSettings& made : settings) {
    // An upload that brought no record of its own says nothing of the others.
    if (!made.FirstSeconds && settings.size() > 1) continue;
    for (const ChannelRow& channel : MakerOf(made)->Channels())
      TakeChannel(drafts, channel, made.FirstSeconds.value_or(0));
  }
  std::ranges::stable_sort(drafts, {}, &DraftColumn::Place);
  std::vector<ExportColumn> columns;
  columns.reserve(drafts.size());
  for (DraftColumn& draft : drafts) {
    draft.Column.Method = draft.MethodText();
    columns.push_back(std::move(draft.Column));
  }
  return columns;
}

ExportRows RowsOf(ExportSource& source, const std::vector<ExportColumn>& columns) {
  const auto fillers = std::make_shared<std::vector<Filler>>();
  for (const ExportSettings& made : source.Settings) {
    Filler& filler = fillers->emplace_back();
    filler.Maker = MakerOf(made);
    for (const ChannelRow& channel : filler.Maker->Channels())
      filler.Columns.push_back(ColumnOf(columns, channel));
    constexpr std::int32_t kNoWord = -1;
    filler.Last.assign(filler.Columns.size(), {kNoWord, kNoExportValue});
  }
  return [&source, fillers, record = ExportRecord()](ExportRow& row) mutable {
    if (!source.Next(record)) return false;
    row.LoggerSeconds = SecondsOf(record.Sample);
    row.CorrectedMs = record.CorrectedMs;
    row.Disagrees = record.Disagrees;
    std::ranges::fill(row.Values, kNoExportValue);
    (*fillers)[record.MadeWith].Fill(record.Sample, row.Values);
    return true;
  };
}

}  // namespace tessmar
