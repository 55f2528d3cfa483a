#include "archive/ClockReadings.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>

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
  QHash<qint64, std::int32_t> places;
  for (const UploadRow& row : series)
    places.insert(row.Id, static_cast<std::int32_t>(places.size()));
  std::vector<ClockReading> readings;
  for (const UploadRow& row : uploads) {
    if (!row.ClockOffsetS || row.Kind != UploadKind::History) continue;
    const std::int64_t logger =
        AsIfUtc(row.Started.toLocalTime()) + *row.ClockOffsetS * kMsPerSecond;
    readings.push_back({row.Started.toMSecsSinceEpoch(), logger, logger,
                        places.value(row.Id, ClockReading::kNoUpload)});
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

std::int64_t LoggerTimeAt(std::span<const ClockReading> readings, const QDateTime& at) {
  const std::int64_t moment = at.toMSecsSinceEpoch();
  if (readings.empty()) return AsIfUtc(at.toLocalTime());
  const auto next = std::ranges::upper_bound(readings, moment, {}, &ClockReading::At);
  if (next == readings.begin()) return next->Before - (next->At - moment);
  const ClockReading& last = *(next - 1);
  if (next == readings.end()) return last.After + (moment - last.At);
  const double share =
      static_cast<double>(moment - last.At) / static_cast<double>(next->At - last.At);
  return last.After + std::llround(share * static_cast<double>(next->Before - last.After));
}

}  // namespace tessmar
