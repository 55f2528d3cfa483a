#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "measure/Series.h"
#include "plot/Levels.h"

namespace tessmar {

/// A stretch of time on the axis, in seconds as StampSeconds counts them.
struct TimeRange {
  double Begin = 0;
  double End = 0;
  double Length() const { return End - Begin; }
  /// Ends included; false for a place that is not a number.
  bool Contains(double time) const { return time >= Begin && time <= End; }
  bool operator==(const TimeRange&) const = default;
};

/// Records whose times do not go back: First to End - 1.
struct RecordSpan {
  std::size_t First = 0;
  std::size_t End = 0;
  bool operator==(const RecordSpan&) const = default;
};

/// A set of series made ready for looking at: cut into runs at each step back of the clock, with
/// the holes between records found and the levels of detail built.
///
/// The rule, which docs/decisions/plot.md tells with its reasons: records stay in the logger's
/// order and are never sorted. A line leads from a record to the next one when both have a value,
/// the clock did not go back between them, and, with periodic logging, no more than 1.5 intervals
/// lie between, and they are not two uploads' readings of the same place. Equal times are joined.
class PlotData {
 public:
  explicit PlotData(SeriesSet set);

  const SeriesSet& Set() const { return set_; }
  std::size_t RecordCount() const { return set_.Times.size(); }
  int ChannelCount() const { return static_cast<int>(set_.Channels.size()); }
  const Series& Channel(int channel) const {
    return set_.Channels[static_cast<std::size_t>(channel)];
  }
  double Value(int channel, std::size_t record) const { return Channel(channel).Values[record]; }

  bool HasCorrectedTimes() const { return !set_.Corrected.empty(); }
  /// Which of the two times the axis shows; the logger's at first. Corrected times are shown only
  /// where there are some.
  void ShowCorrectedTimes(bool corrected);
  bool ShowsCorrectedTimes() const { return corrected_; }

  /// The times shown; not a number for a record that has none and stands nowhere on the axis.
  std::span<const double> Times() const { return corrected_ ? set_.Corrected : set_.Times; }
  /// Where a mark stands on the axis shown; not a number for nowhere.
  double TimeOf(const SeriesMark& mark) const { return corrected_ ? mark.Corrected : mark.Time; }
  std::span<const RecordSpan> Runs() const { return runs_; }
  /// The first records after each step back of the clock. What two uploads read differently begins
  /// anew, too, but no clock went back there.
  std::span<const std::size_t> StepsBack() const { return stepsBack_; }
  /// The first record of each place where uploads disagree.
  std::span<const std::size_t> DisputedPlaces() const { return disputedPlaces_; }
  /// From the earliest time to the latest; of no length at 0 when no record has a time.
  TimeRange Whole() const { return whole_; }
  /// The records of a run whose times lie in the range, ends included.
  RecordSpan InRange(const RecordSpan& run, TimeRange range) const;
  /// Records whose times lie in the range, over all runs.
  std::size_t CountIn(TimeRange range) const;

  /// True when a line leads from the record before to this one.
  bool Joins(int channel, std::size_t record) const;
  /// What a channel's values from record first to end - 1 come to.
  Extent ExtentOf(int channel, std::size_t first, std::size_t end) const;
  /// What its values in a range of time come to.
  Extent ExtentIn(int channel, TimeRange range) const;
  /// The record next to a time, the earliest arrived of several. @return RecordCount() for none.
  std::size_t Nearest(double time) const;
  /// The interval that a record was logged with, 0 where there was none.
  double IntervalAt(std::size_t record) const;
  /// True when no stretch was logged periodically, or some were not: points are joined there.
  bool JoinsAnyDistance() const;

  /// Appends a record, as live readings come. @param values  one for each channel.
  void Append(double time, std::span<const double> values);
  /// Drops the first records, for room.
  void ForgetFirst(std::size_t count);

 private:
  void CutRuns();
  void TakeRecord(std::size_t record);
  void BuildLevels();
  bool IsHole(std::size_t record) const;
  bool BeginsOtherReading(std::size_t record) const;
  bool EndsOtherReading(std::size_t record) const;

  SeriesSet set_;
  bool corrected_ = false;
  std::vector<RecordSpan> runs_;
  std::vector<std::size_t> stepsBack_;
  std::vector<std::size_t> disputedPlaces_;
  std::vector<std::uint8_t> breaks_;  ///< By record: 1 where no line leads to it.
  std::vector<Levels> levels_;        ///< By channel.
  std::size_t stretch_ = 0;           ///< That of the record taken last.
  TimeRange whole_;
};

}  // namespace tessmar
