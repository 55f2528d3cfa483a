#pragma once

#include <vector>

#include "plot/PlotData.h"

namespace tessmar {

/// What a channel did in a range of time.
struct ChannelStatistics {
  int Channel = 0;
  double Day = 0;  ///< Midnight before the day, when the statistics are by day.
  Extent All;
  double First = 0;  ///< The first value in the logger's order; only where there is one.
  double Last = 0;
};

/// Of each of the channels: all values whose records lie in the range, ends included, each record
/// once. A channel without a value in it has an empty extent.
std::vector<ChannelStatistics> StatisticsIn(const PlotData& data, const std::vector<int>& channels,
                                            TimeRange range);

/// The same for each day of the axis that has records in the range, the days rising, the channels
/// of a day in the order given. Of the first and the last day what lies in the range counts.
std::vector<ChannelStatistics> StatisticsByDay(const PlotData& data,
                                               const std::vector<int>& channels, TimeRange range);

}  // namespace tessmar
