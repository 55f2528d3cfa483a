#include "plot/Statistics.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "plot/PlotRig.h"

namespace tessmar {
namespace {

using test::kNone;
using test::OneChannel;

TEST(Statistics, CountEachRecordInViewOnce) {
  const PlotData data(OneChannel({0, 60, 120, 30, 90}, {4, 2, kNone, 9, 1}));
  const std::vector<ChannelStatistics> rows = StatisticsIn(data, {0}, {0, 120});
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].All.Least, 1);
  EXPECT_EQ(rows[0].All.Greatest, 9);
  EXPECT_EQ(rows[0].All.Sum, 16);
  EXPECT_EQ(rows[0].All.Mean(), 4);
  EXPECT_EQ(rows[0].All.Count, 4U);
  EXPECT_EQ(rows[0].First, 4);
  EXPECT_EQ(rows[0].Last, 1);
}

TEST(Statistics, TakeOnlyWhatIsInView) {
  const PlotData data(OneChannel({0, 60, 120, 180}, {kNone, 2, 3, 100}));
  const std::vector<ChannelStatistics> rows = StatisticsIn(data, {0}, {0, 120});
  EXPECT_EQ(rows[0].First, 2);
  EXPECT_EQ(rows[0].Last, 3);
  EXPECT_EQ(rows[0].All.Greatest, 3);
  EXPECT_FALSE(StatisticsIn(data, {0}, {0, 30})[0].All.Any());
}

TEST(Statistics, GoByDayAndByChannel) {
  SeriesSet set = OneChannel({0, 50000, 86400, 90000, 3 * 86400.0, 86399}, {1, 2, 3, 4, 5, 6}, 0);
  set.Channels.push_back(set.Channels[0]);
  set.Channels[1].Values = {10, 20, 30, 40, 50, 60};
  const PlotData data(set);
  const std::vector<ChannelStatistics> rows = StatisticsByDay(data, {1, 0}, {0, 10 * 86400.0});
  ASSERT_EQ(rows.size(), 6U);
  EXPECT_EQ(rows[0].Day, 0);
  EXPECT_EQ(rows[0].Channel, 1);
  EXPECT_EQ(rows[0].All.Sum, 90);  // With the record that a set-back clock brought back.
  EXPECT_EQ(rows[0].Last, 60);
  EXPECT_EQ(rows[1].Channel, 0);
  EXPECT_EQ(rows[3].Day, 86400);
  EXPECT_EQ(rows[3].All.Sum, 7);
  EXPECT_EQ(rows[5].Day, 3 * 86400.0);
}

TEST(Statistics, OfWildRecordsAreThoseOfAPlainCount) {
  const PlotData data(test::WildSet(3, 3000));
  const TimeRange whole = data.Whole();
  const TimeRange range{whole.Begin + whole.Length() / 5, whole.End - whole.Length() / 7};
  Extent plain;
  for (std::size_t i = 0; i < data.RecordCount(); ++i) {
    const double time = data.Times()[i];
    if (time >= range.Begin && time <= range.End) plain.Add(data.Value(0, i));
  }
  const Extent all = StatisticsIn(data, {0}, range)[0].All;
  EXPECT_EQ(all.Count, plain.Count);
  EXPECT_EQ(all.Least, plain.Least);
  EXPECT_EQ(all.Greatest, plain.Greatest);
  EXPECT_NEAR(all.Sum, plain.Sum, 1e-6);
  std::size_t byDay = 0;
  double lastDay = -1e18;
  for (const ChannelStatistics& row : StatisticsByDay(data, {0}, range)) {
    byDay += row.All.Count;
    EXPECT_GT(row.Day, lastDay);
    lastDay = row.Day;
  }
  EXPECT_EQ(byDay, plain.Count);
}

}  // namespace
}  // namespace tessmar
