#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "archive/LoggerSeries.h"

namespace tessmar {

/// What the logger's clock showed at a moment that the computer's clock knew. Times are in
/// milliseconds since the beginning of 1970: the computer's of UTC, the logger's as if its time of
/// day were UTC.
struct ClockReading {
  std::int64_t At = 0;      ///< The computer's.
  std::int64_t Before = 0;  ///< The logger's.
  std::int64_t After = 0;   ///< The logger's: another than Before where the clock was set.
  /// The upload that was begun at that moment; or kNoUpload.
  std::int32_t Upload = kNoUpload;

  static constexpr std::int32_t kNoUpload = -1;
};

/// The time of a record without a corrected one.
inline constexpr std::int64_t kNoCorrectedTime = std::numeric_limits<std::int64_t>::min();

/// The time that a packed time stamp means, in milliseconds since the beginning of 1970 as if the
/// logger's time of day were UTC. A day that the month does not have is carried over, as are
/// seconds and minutes beyond 59.
std::int64_t LoggerMilliseconds(std::uint32_t stamp);

/// The time that the computer's clock would have shown at each record: between two readings of the
/// logger's clock along a straight line, and nothing before the first and behind the last. Nothing
/// either where the clock was set back between two readings and nobody noted it.
///
/// @param readings  in the order in which they were taken.
/// @return by record of the series milliseconds since the beginning of 1970, UTC, or
///   kNoCorrectedTime.
std::vector<std::int64_t> CorrectedTimes(std::span<const SeriesUpload> uploads,
                                         const LoggerSeries& series,
                                         std::span<const ClockReading> readings);

}  // namespace tessmar
