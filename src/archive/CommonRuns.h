#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tessmar {

/// A stretch of records that stands in an upload and in the series alike.
struct CommonRun {
  std::int32_t Upload = 0;  ///< Place of its first record in the upload, from 0.
  std::int32_t Series = 0;  ///< Place of its first record in the series, from 0.
  std::int32_t Length = 0;
  bool operator==(const CommonRun&) const = default;

  std::int32_t UploadEnd() const { return Upload + Length; }
  std::int32_t SeriesEnd() const { return Series + Length; }
};

/// A record that stands more often than this in the series starts no run, it only prolongs one. It
/// keeps the work near-linear for a logger with a dead clock, whose records are all alike.
inline constexpr std::int32_t kMostOccurrences = 16;

/// Before the first and behind the last run, further runs are looked for no farther in the series
/// than twice what is left of the upload there, and this many records.
inline constexpr std::int32_t kEdgeReach = 64;

/// What an upload is laid on.
struct RunGround {
  std::span<const std::int32_t> Upload;  ///< Numbers of its records, see RecordClasses.
  std::span<const std::int32_t> Series;
  /// The places of a record in the series, at most kMostOccurrences; none for one that stands more
  /// often, or that stands only where the upload cannot be from.
  std::function<std::span<const std::int32_t>(std::int32_t number)> Places;
  /// Whether this place of the series can be the same record as one of the upload's.
  std::function<bool(std::int32_t place)> Allowed;
};

/// Lays an upload on the series: takes the longest run that stands in both, then the same in what
/// lies before it in both, and in what lies behind it in both, until nothing is left in common. Of
/// equally long runs it takes the one that is first in the upload, and of these the one that is
/// last in the series. A run has at least one record that may start it (kMostOccurrences).
///
/// @return the runs in order, each behind the one before it in the upload and in the series.
std::vector<CommonRun> FindCommonRuns(const RunGround& ground);

/// How an upload goes on where the series ends.
struct ContinuationLength {
  std::int32_t Longest = 0;  ///< So many records end the series and begin the upload.
  std::int32_t Next = 0;     ///< The next smaller number for which this holds as well, or 0.
};
ContinuationLength FindContinuation(std::span<const std::int32_t> series,
                                    std::span<const std::int32_t> upload);

}  // namespace tessmar
