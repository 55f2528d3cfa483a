#include "archive/ClockReadings.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::int64_t kMsPerSecond = 1000;

// Milliseconds of a clock's time of day as if it were UTC.
std::int64_t AsIfUtc(const QDateTime& local) {
  return QDateTime(local.date(), local.time(), Qt::UTC).toMSecsSinceEpoch();
}

}  // namespace

std::vector<ClockReading> ClockReadingsOf(std::span<const UploadRow> uploads,
                                          std::span<const EventRow> events,
                                          std::span<const UploadRow> series) {
  std::vector<ClockReading> readings;
  for (const UploadRow& row : uploads) {
    if (!row.ClockOffsetS || row.Kind != UploadKind::History) continue;
    const std::int64_t logger =
        AsIfUtc(row.Started.toLocalTime()) + *row.ClockOffsetS * kMsPerSecond;
    const auto place = std::ranges::find(series, row.Id, &UploadRow::Id);
    readings.push_back({row.Started.toMSecsSinceEpoch(), logger, logger,
                        place == series.end() ? ClockReading::kNoUpload
                                              : static_cast<std::int32_t>(place - series.begin())});
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

}  // namespace tessmar
