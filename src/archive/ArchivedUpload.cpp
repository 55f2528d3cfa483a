#include "archive/ArchivedUpload.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <array>
#include <span>

#include "archive/RecordMaker.h"
#include "base/Fault.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kBitsPerByte = 8;
constexpr std::int64_t kMsPerSecond = 1000;

LiveSample SampleOf(const RecordRow& row) {
  LiveSample sample;
  sample.HasTime = row.Stamp.has_value();
  sample.PackedTime = row.Stamp.value_or(0);
  const int words = std::min(static_cast<int>(row.Raw.size()) / 2, kSampleValues);
  for (int i = 0; i < words; ++i) {
    sample.Value[static_cast<std::size_t>(i)] =
        static_cast<std::uint8_t>(row.Raw[qsizetype{2} * i]) |
        static_cast<std::uint8_t>(row.Raw[qsizetype{2} * i + 1]) << kBitsPerByte;
  }
  return sample;
}

// Adds the records of an upload that still runs: those of its blocks.
void AddBlocks(const Store& store, qint64 upload, ArchivedUpload& archived) {
  const int words = archived.Link.AnalogChannelCount + archived.Link.PulseChannelCount;
  const int size = RecordSize(archived.Link.AnalogChannelCount, archived.Link.PulseChannelCount);
  store.ForEachBlock(upload, [&](std::span<const std::uint8_t> block) {
    if (block.empty()) return;
    for (int i = 0; i < block[0]; ++i) {
      if (archived.Records->IsFull()) {
        archived.Cut = true;
        return;
      }
      LiveSample sample;
      DecodeRecord(archived.Link, block, i * size + 1, words, sample);
      archived.Records->Append(sample);
    }
  });
}

void AddBytes(std::vector<std::uint8_t>& bytes, std::uint32_t stamp, const QByteArray& words,
              int recordSize) {
  const std::size_t end = bytes.size() + static_cast<std::size_t>(recordSize);
  for (int shift = 0; shift < 32; shift += kBitsPerByte)
    bytes.push_back(static_cast<std::uint8_t>(stamp >> shift));
  for (const char word : words) bytes.push_back(static_cast<std::uint8_t>(word));
  bytes.resize(end, 0);
}

// How many clearings of the logger the logbook knows before a time.
std::int32_t ClearingsBefore(const std::vector<EventRow>& events, const QDateTime& time) {
  return static_cast<std::int32_t>(std::ranges::count_if(events, [&](const EventRow& event) {
    return (event.Entry.Kind == EventKind::Cleared || event.Entry.Kind == EventKind::Initialized) &&
           event.At < time;
  }));
}

// Milliseconds of a clock's time of day as if it were UTC.
std::int64_t AsIfUtc(const QDateTime& local) {
  return QDateTime(local.date(), local.time(), Qt::UTC).toMSecsSinceEpoch();
}

std::vector<ClockReading> ReadingsOf(const ArchivedSeries& series,
                                     const std::vector<EventRow>& events) {
  std::vector<ClockReading> readings;
  for (std::size_t i = 0; i < series.Rows.size(); ++i) {
    const UploadRow& row = series.Rows[i];
    if (!row.ClockOffsetS || row.Kind != UploadKind::History) continue;
    const std::int64_t logger =
        AsIfUtc(row.Started.toLocalTime()) + *row.ClockOffsetS * kMsPerSecond;
    readings.push_back(
        {row.Started.toMSecsSinceEpoch(), logger, logger, static_cast<std::int32_t>(i)});
  }
  for (const EventRow& event : events) {
    if (event.Entry.Kind != EventKind::Synced) continue;
    const auto offset = [](const QByteArray& json) {
      return QJsonDocument::fromJson(json).object().value("clock_offset_s"_L1);
    };
    const QJsonValue before = offset(event.Entry.Before);
    if (!before.isDouble()) continue;
    const std::int64_t right = AsIfUtc(event.At.toLocalTime());
    readings.push_back({event.At.toMSecsSinceEpoch(), right + before.toInteger() * kMsPerSecond,
                        right + offset(event.Entry.After).toInteger() * kMsPerSecond});
  }
  std::ranges::stable_sort(readings, {}, &ClockReading::At);
  return readings;
}

}  // namespace

ArchivedUpload LoadUpload(const Store& store, qint64 upload) {
  const std::optional<UploadRow> row = store.Upload(upload);
  if (!row) throw RangeFault("the archive has no such upload");
  ArchivedUpload archived;
  archived.Link.TrapErrors = true;
  archived.Link.AnalogChannelCount = static_cast<std::int16_t>(row->Analog);
  archived.Link.PulseChannelCount = static_cast<std::int16_t>(row->Pulse);
  archived.Settings = SettingsOfImage(row->Settings, row->Analog, row->Pulse);
  archived.LoggerName = archived.Settings.LoggerName;
  archived.Records = std::make_unique<HistoryBuffer>();
  store.ForEachRecord(upload, [&](const RecordRow& record) {
    if (archived.Records->IsFull()) {
      archived.Cut = true;
      return;
    }
    archived.Records->Append(SampleOf(record));
  });
  if (archived.Records->Count() == 0) AddBlocks(store, upload, archived);
  return archived;
}

ArchivedSeries LoadSeries(const Store& store, qint64 logger) {
  ArchivedSeries series;
  std::vector<UploadRow> rows = store.Uploads(logger);
  std::ranges::reverse(rows);
  const std::vector<EventRow> events = store.Events(logger);
  for (const UploadRow& row : rows) {
    if (row.Kind == UploadKind::Live || row.Records == 0) continue;
    const int size = RecordSize(row.Analog, row.Pulse);
    std::vector<std::uint8_t>& bytes = series.Bytes.emplace_back();
    bytes.reserve(static_cast<std::size_t>(row.Records) * static_cast<std::size_t>(size));
    store.ForEachRecord(row.Id, [&](const RecordRow& record) {
      if (record.Stamp) AddBytes(bytes, *record.Stamp, record.Raw, size);
    });
    series.Rows.push_back(row);
  }
  for (std::size_t i = 0; i < series.Rows.size(); ++i) {
    const UploadRow& row = series.Rows[i];
    const bool image = row.Kind == UploadKind::Image;
    series.Uploads.push_back(
        {.Records = series.Bytes[i],
         .RecordSize = RecordSize(row.Analog, row.Pulse),
         .Complete = row.State == UploadState::Complete,
         .Era = image ? SeriesUpload::kAnyEra : ClearingsBefore(events, row.Started),
         .Undated = image});
  }
  series.Series = JoinUploads(series.Uploads);
  series.Corrected = CorrectedTimes(series.Uploads, series.Series, ReadingsOf(series, events));
  return series;
}

}  // namespace tessmar
