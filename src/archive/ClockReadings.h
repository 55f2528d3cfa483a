#pragma once

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

}  // namespace tessmar
