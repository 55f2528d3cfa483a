#pragma once

#include <QString>
#include <cstddef>
#include <vector>

#include "settings/LoggerSettings.h"

namespace tessmar {

/// The values of one channel over time, one for each record of its set.
struct Series {
  QString Place;               ///< "a1" to "a8" for analog channels, "p1" and "p2" for pulses.
  QString Unit = {};           ///< As the logger has it.
  int Decimals = 0;            ///< With which a value is shown.
  bool IsTotal = false;        ///< Each value holds those before it, as live pulses do.
  std::vector<double> Values;  ///< As the history table shows them; not a number for no value.

  bool IsPulse() const { return Place.startsWith(u'p'); }
  /// True for counts of their own time, which stand for themselves and can be summed.
  bool IsCounted() const { return IsPulse() && !IsTotal; }
};

/// From where on records were logged in one way.
struct LoggingStretch {
  std::size_t First = 0;  ///< The first record of the stretch.
  /// Seconds between two records; 0 where they come when they come, as with logarithmic and fast
  /// logging and logging on change: there no distance is a hole.
  double Interval = 0;
  bool operator==(const LoggingStretch&) const = default;
};

/// Records that one upload has where another has others or none: First to End - 1. Where the next
/// dispute begins at End, it is the other upload's reading of the same place.
struct SeriesDispute {
  std::size_t First = 0;
  std::size_t End = 0;
  bool operator==(const SeriesDispute&) const = default;
};

/// Something that happened to the logger: the clock was set, the memory cleared.
struct SeriesMark {
  double Time = 0;       ///< On the scale of SeriesSet::Times.
  double Corrected = 0;  ///< On that of SeriesSet::Corrected; not a number where unknown.
  QString Text = {};     ///< What it was, in the operator's language.
};

/// All channels of a logger's records, in the logger's order.
struct SeriesSet {
  QString LoggerName;
  /// Of each record by the logger's clock, see StampSeconds; not a number for a record without a
  /// time. A clock that was set back goes back here.
  std::vector<double> Times;
  /// Of each record as the computer's clock would have had it, in UTC; not a number where it is not
  /// known, and empty where it is nowhere known.
  std::vector<double> Corrected;
  std::vector<LoggingStretch> Stretches;  ///< Rising; the first begins at record 0.
  /// Records, rising, before which others may be missing, such as between two uploads that have no
  /// record in common: no line leads to them.
  std::vector<std::size_t> Seams;
  std::vector<SeriesDispute> Disputes;  ///< Rising, without a record in common.
  std::vector<Series> Channels;
  std::vector<SeriesMark> Marks;
};

/// Seconds between two records of a logger that is set up so; 0 where records do not come
/// periodically, or where the interval's text names no time.
double LoggedInterval(const LoggerSettings& settings);

/// Samples of a live run that come farther apart, in seconds, are not joined unless most do.
inline constexpr double kLongestLiveStep = 6;

/// A longer distance between two records of a periodic stretch is a hole.
inline constexpr double kIntervalsToHole = 1.5;

}  // namespace tessmar
