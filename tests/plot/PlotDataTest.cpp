#include "plot/PlotData.h"

#include <gtest/gtest.h>

#include "plot/PlotRig.h"

namespace tessmar {
namespace {

using test::kNone;
using test::OneChannel;

std::vector<RecordSpan> RunsOf(const PlotData& data) {
  return {data.Runs().begin(), data.Runs().end()};
}

std::vector<std::size_t> StepsOf(const PlotData& data) {
  return {data.StepsBack().begin(), data.StepsBack().end()};
}

std::vector<std::size_t> JoinedRecords(const PlotData& data) {
  std::vector<std::size_t> joined;
  for (std::size_t record = 0; record < data.RecordCount(); ++record)
    if (data.Joins(0, record)) joined.push_back(record);
  return joined;
}

using Places = std::vector<std::size_t>;

TEST(PlotData, JoinsUpToOneAndAHalfIntervalsAndNoFurther) {
  const PlotData data(OneChannel({0, 60, 150, 241, 301}, {1, 2, 3, 4, 5}));
  EXPECT_EQ(JoinedRecords(data), (Places{1, 2, 4}));  // 90 s are joined, 91 s are a hole.
  EXPECT_EQ(RunsOf(data), (std::vector<RecordSpan>{{0, 5}}));
  EXPECT_FALSE(data.JoinsAnyDistance());
}

TEST(PlotData, JoinsAnyDistanceWhereRecordsAreNotPeriodic) {
  const PlotData data(OneChannel({0, 60, 150, 1e6, 1e9}, {1, 2, 3, 4, 5}, 0));
  EXPECT_EQ(JoinedRecords(data), (Places{1, 2, 3, 4}));
  EXPECT_TRUE(data.JoinsAnyDistance());
}

TEST(PlotData, JudgesEachRecordByItsOwnStretch) {
  SeriesSet set = OneChannel({0, 60, 960, 1860, 3000, 9000}, {1, 1, 1, 1, 1, 1});
  set.Stretches = {{0, 60}, {2, 900}, {5, 0}};
  const PlotData data(set);
  EXPECT_EQ(JoinedRecords(data), (Places{1, 2, 3, 4, 5}));
  EXPECT_TRUE(data.JoinsAnyDistance());
  EXPECT_EQ(data.IntervalAt(1), 60);
  EXPECT_EQ(data.IntervalAt(4), 900);
  EXPECT_EQ(data.IntervalAt(5), 0);
}

TEST(PlotData, NoLineLeadsOverAMissingValue) {
  const PlotData data(OneChannel({0, 60, 120, 180, 240}, {1, 2, kNone, 4, 5}));
  EXPECT_EQ(JoinedRecords(data), (Places{1, 4}));
}

TEST(PlotData, NoLineLeadsOverASeam) {
  SeriesSet set = OneChannel({0, 60, 120}, {1, 2, 3});
  set.Seams = {0, 2};
  EXPECT_EQ(JoinedRecords(PlotData(set)), (Places{1}));
}

TEST(PlotData, TwoReadingsOfAPlaceAreNotJoinedAndNoStepBack) {
  // Of 1 and 2 the second upload has other values, at 4 one upload has a record that the other has
  // not, and between 6 and 7 the clock really went back.
  SeriesSet set = OneChannel({0, 60, 120, 60, 120, 180, 240, 200}, {1, 2, 3, 8, 9, 4, 5, 6});
  set.Disputes = {{1, 3}, {3, 5}, {6, 7}};
  const PlotData data(set);
  EXPECT_EQ(RunsOf(data), (std::vector<RecordSpan>{{0, 3}, {3, 7}, {7, 8}}));
  EXPECT_EQ(StepsOf(data), (Places{7}));
  EXPECT_EQ(JoinedRecords(data), (Places{1, 2, 4, 5, 6}));
  EXPECT_EQ(Places(data.DisputedPlaces().begin(), data.DisputedPlaces().end()), (Places{1, 6}));
}

TEST(PlotData, WhatComesBehindTheOtherReadingIsNoStepBackEither) {
  SeriesSet set = OneChannel({0, 60, 999, 120}, {1, 2, 3, 4});
  set.Disputes = {{1, 2}, {2, 3}};
  EXPECT_TRUE(StepsOf(PlotData(set)).empty());
  // Without another reading it is the clock.
  set.Disputes = {{2, 3}};
  EXPECT_EQ(StepsOf(PlotData(set)), (Places{3}));
}

TEST(PlotData, EqualTimesAreJoined) {
  const PlotData data(OneChannel({0, 0, 0, 1, 1}, {1, 2, 3, 4, 5}, 0));
  EXPECT_EQ(JoinedRecords(data), (Places{1, 2, 3, 4}));
  EXPECT_EQ(data.CountIn({0, 0}), 3U);
}

TEST(PlotData, AStepBackBeginsARunAndNothingIsSorted) {
  const PlotData data(OneChannel({0, 60, 30, 90, 30, 90}, {1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(RunsOf(data), (std::vector<RecordSpan>{{0, 2}, {2, 4}, {4, 6}}));
  EXPECT_EQ(StepsOf(data), (Places{2, 4}));
  EXPECT_EQ(JoinedRecords(data), (Places{1, 3, 5}));
  EXPECT_EQ(data.Whole(), (TimeRange{0, 90}));
  EXPECT_EQ(data.CountIn({30, 60}), 3U);
}

TEST(PlotData, ARecordWithoutATimeStandsNowhere) {
  const PlotData data(OneChannel({kNone, 60, kNone, 120, 180}, {1, 2, 3, 4, 5}));
  EXPECT_EQ(RunsOf(data), (std::vector<RecordSpan>{{1, 2}, {3, 5}}));
  EXPECT_TRUE(StepsOf(data).empty());
  EXPECT_EQ(JoinedRecords(data), (Places{4}));
  EXPECT_EQ(data.Whole(), (TimeRange{60, 180}));
}

TEST(PlotData, SeesAStepBackBehindARecordWithoutATime) {
  const PlotData data(OneChannel({60, kNone, 30}, {1, 2, 3}));
  EXPECT_EQ(StepsOf(data), (Places{2}));
}

TEST(PlotData, WithoutRecordsHasNothing) {
  const PlotData data(OneChannel({}, {}));
  EXPECT_EQ(data.Whole(), (TimeRange{0, 0}));
  EXPECT_EQ(data.Nearest(5), 0U);
  EXPECT_FALSE(data.ExtentIn(0, {0, 1e9}).Any());
  const PlotData untimed(OneChannel({kNone}, {1}));
  EXPECT_EQ(untimed.Nearest(5), 1U);
}

TEST(PlotData, FindsTheNearestRecordOverAllRuns) {
  const PlotData data(OneChannel({0, 100, 100, 40, 90}, {1, 2, 3, 4, 5}));
  EXPECT_EQ(data.Nearest(-50), 0U);
  EXPECT_EQ(data.Nearest(19), 0U);
  EXPECT_EQ(data.Nearest(30), 3U);
  EXPECT_EQ(data.Nearest(94), 4U);
  EXPECT_EQ(data.Nearest(96), 1U);
  EXPECT_EQ(data.Nearest(1e9), 1U);
}

TEST(PlotData, ShowsCorrectedTimesOnlyWhereThereAreSome) {
  SeriesSet set = OneChannel({0, 60, 30, 90}, {1, 2, 3, 4});
  PlotData without(set);
  EXPECT_FALSE(without.HasCorrectedTimes());
  without.ShowCorrectedTimes(true);
  EXPECT_FALSE(without.ShowsCorrectedTimes());

  set.Corrected = {10, 70, 130, kNone};
  PlotData data(set);
  data.ShowCorrectedTimes(true);
  EXPECT_TRUE(data.ShowsCorrectedTimes());
  EXPECT_EQ(RunsOf(data), (std::vector<RecordSpan>{{0, 3}}));
  EXPECT_TRUE(StepsOf(data).empty());
  EXPECT_EQ(data.Whole(), (TimeRange{10, 130}));
  EXPECT_EQ(data.CountIn(data.Whole()), 3U);
  data.ShowCorrectedTimes(false);
  EXPECT_EQ(StepsOf(data), (Places{2}));
}

TEST(PlotData, GrowsAndForgets) {
  PlotData data(OneChannel({}, {}));
  for (int i = 0; i < 100; ++i) data.Append(i * 60.0, std::vector<double>{i * 1.0});
  data.Append(30, std::vector<double>{7});
  EXPECT_EQ(RunsOf(data), (std::vector<RecordSpan>{{0, 100}, {100, 101}}));
  EXPECT_EQ(data.ExtentIn(0, {0, 1e6}).Greatest, 99);
  EXPECT_TRUE(data.Joins(0, 99));

  data.ForgetFirst(50);
  EXPECT_EQ(data.RecordCount(), 51U);
  EXPECT_EQ(data.Set().Times[0], 3000);
  EXPECT_EQ(data.ExtentIn(0, {0, 1e6}).Least, 7);
  EXPECT_EQ(StepsOf(data), (Places{50}));
  EXPECT_EQ(data.IntervalAt(0), 60);
}

TEST(PlotData, ForgettingKeepsTheStretchesInPlace) {
  SeriesSet set = OneChannel({0, 1, 2, 3, 4, 5}, {1, 1, 1, 1, 1, 1});
  set.Stretches = {{0, 10}, {2, 20}, {4, 30}};
  set.Seams = {1, 5};
  PlotData data(set);
  data.ForgetFirst(3);
  EXPECT_EQ(data.Set().Stretches, (std::vector<LoggingStretch>{{0, 20}, {1, 30}}));
  EXPECT_EQ(data.Set().Seams, (Places{2}));
}

}  // namespace
}  // namespace tessmar
