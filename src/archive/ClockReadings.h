#pragma once

#include <QDateTime>
#include <span>
#include <vector>

#include "archive/ArchiveRows.h"
#include "archive/ClockCorrection.h"

namespace tessmar {

/// What is known of a logger's clock: its offset at each upload of the history, and each time that
/// it was set, in the order of time.
///
/// @param uploads  of the logger.
/// @param events   of the logger.
/// @param series   the uploads of the series, so that ClockReading::Upload is a place among them.
std::vector<ClockReading> ClockReadingsOf(std::span<const UploadRow> uploads,
                                          std::span<const EventRow> events,
                                          std::span<const UploadRow> series);

/// What the logger's clock showed at a moment: along a straight line between two readings, going
/// right before the first and behind the last. Where there is none it is taken for right, in the
/// computer's own time zone.
///
/// @return in milliseconds since the beginning of 1970 as if the logger's time of day were UTC.
std::int64_t LoggerTimeAt(std::span<const ClockReading> readings, const QDateTime& at);

}  // namespace tessmar
