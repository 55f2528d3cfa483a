#include "archive/ArchivedUpload.h"

#include <algorithm>
#include <array>
#include <span>

#include "archive/ClockReadings.h"
#include "archive/ImageOrder.h"
#include "archive/RecordMaker.h"
#include "base/Fault.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

constexpr int kBitsPerByte = 8;
constexpr std::int64_t kRecordsPerLook = 4096;

LiveSample SampleOf(std::optional<std::uint32_t> stamp, const QByteArray& raw) {
  LiveSample sample;
  sample.HasTime = stamp.has_value();
  sample.PackedTime = stamp.value_or(0);
  const int words = std::min(static_cast<int>(raw.size()) / 2, kSampleValues);
  for (int i = 0; i < words; ++i) {
    sample.Value[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(raw[qsizetype{2} * i]) |
                                                static_cast<std::uint8_t>(raw[qsizetype{2} * i + 1])
                                                    << kBitsPerByte;
  }
  return sample;
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

// Nobody knows what the records of an upload without settings mean, nor always whose they are.
bool HasSettings(const Store& store, qint64 upload) {
  return store
      .Run(QStringLiteral("SELECT 1 FROM upload WHERE id = ? AND settings IS NOT NULL"), {upload})
      .next();
}

// Brings the records of an image file into the logger's order where that is known.
void BeginWithOldest(const Store& store, const UploadRow& row, std::vector<std::uint8_t>& bytes) {
  const std::optional<UploadRow> whole = store.Upload(row.Id);
  if (!whole) return;
  const int size = RecordSize(row.Analog, row.Pulse);
  const bool wraps =
      MayHaveWrapped(SettingsOfImage(whole->Settings, row.Analog, row.Pulse), size, row.Records);
  const std::int32_t oldest = OldestOfImage({.Records = bytes, .RecordSize = size}, wraps);
  std::rotate(bytes.begin(), bytes.begin() + std::ptrdiff_t{oldest} * size, bytes.end());
}

}  // namespace

void ForEachSample(const Store& store, const UploadRow& upload,
                   const std::function<void(const LiveSample&)>& take) {
  bool any = false;
  store.ForEachStored(upload.Id, [&](std::optional<std::uint32_t> stamp, const QByteArray& raw) {
    any = true;
    take(SampleOf(stamp, raw));
  });
  if (any) return;
  LinkState link;
  link.TrapErrors = true;
  const int words = upload.Analog + upload.Pulse;
  const int size = RecordSize(upload.Analog, upload.Pulse);
  store.ForEachBlock(upload.Id, [&](std::span<const std::uint8_t> block) {
    const int records = RecordsOfBlock(block, upload.Analog, upload.Pulse);
    for (int i = 0; i < records; ++i) {
      LiveSample sample;
      DecodeRecord(link, block, i * size + 1, words, sample);
      take(sample);
    }
  });
}

ArchivedUpload LoadUpload(const Store& store, qint64 upload) {
  const std::optional<UploadRow> row = store.Upload(upload);
  if (!row) throw RangeFault("the archive has no such upload");
  ArchivedUpload archived;
  archived.Link.TrapErrors = true;
  archived.Link.AnalogChannelCount = static_cast<std::int16_t>(row->Analog);
  archived.Link.PulseChannelCount = static_cast<std::int16_t>(row->Pulse);
  archived.Settings = SettingsOfImage(row->Settings, row->Analog, row->Pulse);
  archived.SettingsKnown = !row->Settings.isEmpty();
  archived.LoggerName = archived.SettingsKnown
                            ? archived.Settings.LoggerName
                            : store.Logger(row->LoggerId).value_or(LoggerRow()).Name;
  archived.Records = std::make_unique<HistoryBuffer>();
  ForEachSample(store, *row, [&](const LiveSample& sample) {
    if (archived.Records->IsFull()) {
      archived.Cut = true;
    } else {
      archived.Records->Append(sample);
    }
  });
  return archived;
}

ArchivedSeries LoadSeries(const Store& store, qint64 logger, const LoadProgress& progress) {
  ArchivedSeries series;
  std::vector<UploadRow> rows = store.Uploads(logger);
  std::ranges::reverse(rows);
  const std::vector<EventRow> events = store.Events(logger);
  std::int64_t read = 0;
  for (const UploadRow& row : rows) {
    if (row.Kind == UploadKind::Live || row.Records == 0 || !HasSettings(store, row.Id)) continue;
    const int size = RecordSize(row.Analog, row.Pulse);
    std::vector<std::uint8_t>& bytes = series.Bytes.emplace_back();
    // The number is what the row says; any program may have written it.
    const std::int32_t expected = std::clamp(row.Records, 0, HistoryBuffer::kCapacity);
    bytes.reserve(static_cast<std::size_t>(expected) * static_cast<std::size_t>(size));
    store.ForEachStored(row.Id, [&](std::optional<std::uint32_t> stamp, const QByteArray& raw) {
      if (stamp) AddBytes(bytes, *stamp, raw, size);
      if (++read % kRecordsPerLook == 0 && progress) progress(read);
    });
    if (row.Kind == UploadKind::Image) BeginWithOldest(store, row, bytes);
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
  series.Readings = ClockReadingsOf(series.Rows, events, series.Rows);
  series.Corrected = CorrectedTimes(series.Uploads, series.Series, series.Readings);
  return series;
}

}  // namespace tessmar
