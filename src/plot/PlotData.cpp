#include "plot/PlotData.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessmar {

PlotData::PlotData(SeriesSet set) : set_(std::move(set)) {
  BuildLevels();
  CutRuns();
}

void PlotData::BuildLevels() {
  levels_.assign(set_.Channels.size(), Levels());
  for (std::size_t channel = 0; channel < levels_.size(); ++channel)
    levels_[channel].Extend(set_.Channels[channel].Values);
}

void PlotData::ShowCorrectedTimes(bool corrected) {
  if (corrected_ == (corrected && HasCorrectedTimes())) return;
  corrected_ = corrected && HasCorrectedTimes();
  CutRuns();
}

void PlotData::CutRuns() {
  runs_.clear();
  stepsBack_.clear();
  breaks_.clear();
  breaks_.reserve(RecordCount());
  stretch_ = 0;
  whole_ = {};
  disputedPlaces_.clear();
  for (const SeriesDispute& dispute : set_.Disputes)
    if (!BeginsOtherReading(dispute.First)) disputedPlaces_.push_back(dispute.First);
  for (std::size_t record = 0; record < RecordCount(); ++record) TakeRecord(record);
}

void PlotData::TakeRecord(std::size_t record) {
  const std::span<const double> times = Times();
  const double time = times[record];
  const std::vector<LoggingStretch>& stretches = set_.Stretches;
  while (stretch_ + 1 < stretches.size() && stretches[stretch_ + 1].First <= record) ++stretch_;
  if (std::isnan(time)) {
    breaks_.push_back(1);
    return;
  }
  const bool follows = !runs_.empty() && runs_.back().End == record;
  const bool back = !runs_.empty() && time < times[runs_.back().End - 1];
  const bool otherReading = BeginsOtherReading(record);
  if (back && !otherReading && !EndsOtherReading(record)) stepsBack_.push_back(record);
  if (follows && !back) {
    runs_.back().End = record + 1;
  } else {
    runs_.push_back({record, record + 1});
  }
  breaks_.push_back(!follows || back || otherReading || IsHole(record) ? 1 : 0);
  const bool first = runs_.size() == 1 && runs_.back().End - runs_.back().First == 1;
  whole_.Begin = first ? time : std::min(whole_.Begin, time);
  whole_.End = first ? time : std::max(whole_.End, time);
}

bool PlotData::IsHole(std::size_t record) const {
  if (std::binary_search(set_.Seams.begin(), set_.Seams.end(), record)) return true;
  if (set_.Stretches.empty()) return false;
  const double interval = set_.Stretches[stretch_].Interval;
  return interval > 0 && Times()[record] - Times()[record - 1] > kIntervalsToHole * interval;
}

bool PlotData::BeginsOtherReading(std::size_t record) const {
  const std::vector<SeriesDispute>& disputes = set_.Disputes;
  const auto at = std::ranges::lower_bound(disputes, record, {}, &SeriesDispute::First);
  return at != disputes.end() && at != disputes.begin() && at->First == record &&
         (at - 1)->End == record;
}

// True for the record behind the last of two readings.
bool PlotData::EndsOtherReading(std::size_t record) const {
  const std::vector<SeriesDispute>& disputes = set_.Disputes;
  const auto at = std::ranges::lower_bound(disputes, record, {}, &SeriesDispute::End);
  return at != disputes.end() && at->End == record && BeginsOtherReading(at->First);
}

RecordSpan PlotData::InRange(const RecordSpan& run, TimeRange range) const {
  const std::span<const double> times = Times();
  const auto begin = times.begin() + static_cast<std::ptrdiff_t>(run.First);
  const auto end = times.begin() + static_cast<std::ptrdiff_t>(run.End);
  const auto first = std::lower_bound(begin, end, range.Begin);
  const auto last = std::upper_bound(first, end, range.End);
  return {static_cast<std::size_t>(first - times.begin()),
          static_cast<std::size_t>(last - times.begin())};
}

std::size_t PlotData::CountIn(TimeRange range) const {
  std::size_t count = 0;
  for (const RecordSpan& run : runs_) {
    const RecordSpan inside = InRange(run, range);
    count += inside.End - inside.First;
  }
  return count;
}

bool PlotData::Joins(int channel, std::size_t record) const {
  if (record == 0 || breaks_[record] != 0) return false;
  const std::vector<double>& values = Channel(channel).Values;
  return !std::isnan(values[record]) && !std::isnan(values[record - 1]);
}

Extent PlotData::ExtentOf(int channel, std::size_t first, std::size_t end) const {
  return levels_[static_cast<std::size_t>(channel)].Of(Channel(channel).Values, first, end);
}

Extent PlotData::ExtentIn(int channel, TimeRange range) const {
  Extent extent;
  for (const RecordSpan& run : runs_) {
    const RecordSpan inside = InRange(run, range);
    extent.Add(ExtentOf(channel, inside.First, inside.End));
  }
  return extent;
}

std::size_t PlotData::Nearest(double time) const {
  const std::span<const double> times = Times();
  std::size_t nearest = RecordCount();
  const auto consider = [&](std::size_t record) {
    if (nearest == RecordCount() ||
        std::abs(times[record] - time) < std::abs(times[nearest] - time))
      nearest = record;
  };
  for (const RecordSpan& run : runs_) {
    const std::size_t behind = InRange(run, {time, time}).First;
    if (behind > run.First) {
      // The first of those with the same time.
      consider(InRange(run, {times[behind - 1], time}).First);
    }
    if (behind < run.End) consider(behind);
  }
  return nearest;
}

double PlotData::IntervalAt(std::size_t record) const {
  const auto behind = std::ranges::upper_bound(set_.Stretches, record, {}, &LoggingStretch::First);
  return behind == set_.Stretches.begin() ? 0 : (behind - 1)->Interval;
}

bool PlotData::JoinsAnyDistance() const {
  return std::any_of(set_.Stretches.begin(), set_.Stretches.end(),
                     [](const LoggingStretch& stretch) { return stretch.Interval == 0; });
}

void PlotData::Append(double time, std::span<const double> values) {
  set_.Times.push_back(time);
  for (std::size_t channel = 0; channel < levels_.size(); ++channel) {
    set_.Channels[channel].Values.push_back(values[channel]);
    levels_[channel].Extend(set_.Channels[channel].Values);
  }
  TakeRecord(RecordCount() - 1);
}

void PlotData::ForgetFirst(std::size_t count) {
  const auto drop = [count](std::vector<double>& all) {
    all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(std::min(count, all.size())));
  };
  const double interval = IntervalAt(count);
  drop(set_.Times);
  drop(set_.Corrected);
  for (Series& series : set_.Channels) drop(series.Values);
  std::erase_if(set_.Seams, [count](std::size_t seam) { return seam < count; });
  for (std::size_t& seam : set_.Seams) seam -= count;
  std::erase_if(set_.Disputes, [count](const SeriesDispute& d) { return d.First < count; });
  for (SeriesDispute& dispute : set_.Disputes) {
    dispute.First -= count;
    dispute.End -= count;
  }
  std::erase_if(set_.Stretches, [count](const LoggingStretch& s) { return s.First <= count; });
  for (LoggingStretch& stretch : set_.Stretches) stretch.First -= count;
  set_.Stretches.insert(set_.Stretches.begin(), LoggingStretch{.First = 0, .Interval = interval});
  BuildLevels();
  CutRuns();
}

}  // namespace tessmar
