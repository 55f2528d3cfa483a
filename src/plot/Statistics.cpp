#include "plot/Statistics.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "measure/StampTime.h"

namespace tessmar {
namespace {

// Adds the records of a part of a run, which come behind all that were added before.
void AddPart(const PlotData& data, const RecordSpan& part, ChannelStatistics& statistics) {
  const int channel = statistics.Channel;
  const Extent extent = data.ExtentOf(channel, part.First, part.End);
  if (!extent.Any()) return;
  std::size_t first = part.First;
  while (std::isnan(data.Value(channel, first))) ++first;
  std::size_t last = part.End - 1;
  while (std::isnan(data.Value(channel, last))) --last;
  if (!statistics.All.Any()) statistics.First = data.Value(channel, first);
  statistics.Last = data.Value(channel, last);
  statistics.All.Add(extent);
}

std::vector<ChannelStatistics> Empty(const std::vector<int>& channels, double day) {
  std::vector<ChannelStatistics> rows;
  rows.reserve(channels.size());
  for (const int channel : channels) rows.push_back({.Channel = channel, .Day = day, .All = {}});
  return rows;
}

}  // namespace

std::vector<ChannelStatistics> StatisticsIn(const PlotData& data, const std::vector<int>& channels,
                                            TimeRange range) {
  std::vector<ChannelStatistics> rows = Empty(channels, 0);
  for (const RecordSpan& run : data.Runs()) {
    const RecordSpan inside = data.InRange(run, range);
    if (inside.First == inside.End) continue;
    for (ChannelStatistics& row : rows) AddPart(data, inside, row);
  }
  return rows;
}

std::vector<ChannelStatistics> StatisticsByDay(const PlotData& data,
                                               const std::vector<int>& channels, TimeRange range) {
  std::map<double, std::vector<ChannelStatistics>> days;
  const std::span<const double> times = data.Times();
  for (const RecordSpan& run : data.Runs()) {
    RecordSpan rest = data.InRange(run, range);
    while (rest.First < rest.End) {
      const double day = std::floor(times[rest.First] / kSecondsPerDay) * kSecondsPerDay;
      const auto end = std::lower_bound(times.begin() + static_cast<std::ptrdiff_t>(rest.First),
                                        times.begin() + static_cast<std::ptrdiff_t>(rest.End),
                                        day + kSecondsPerDay);
      const RecordSpan part{rest.First, static_cast<std::size_t>(end - times.begin())};
      const auto place = days.try_emplace(day, Empty(channels, day)).first;
      for (ChannelStatistics& row : place->second) AddPart(data, part, row);
      rest.First = part.End;
    }
  }
  std::vector<ChannelStatistics> rows;
  for (const auto& [day, ofDay] : days) rows.insert(rows.end(), ofDay.begin(), ofDay.end());
  return rows;
}

}  // namespace tessmar
