#include "plot/ColumnFill.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "plot/PlotRig.h"

namespace tessmar {
namespace {

using test::kNone;
using test::OneChannel;
using test::WildSet;

std::vector<FilledColumn> Fill(const PlotData& data, const ColumnView& view) {
  return FillColumns(data, 0, view, CellsOf(data, view));
}

using Span = std::pair<double, double>;

void Cover(std::map<int, Span>& columns, int column, double a, double b) {
  const auto [place, fresh] = columns.try_emplace(column, std::min(a, b), std::max(a, b));
  if (fresh) return;
  place->second.first = std::min({place->second.first, a, b});
  place->second.second = std::max({place->second.second, a, b});
}

// What a run covers of each column: looked at record by record and line by line.
std::map<int, Span> Plainly(const PlotData& data, const RecordSpan& run, const ColumnView& view) {
  std::map<int, Span> columns;
  const double width = view.Range.Length() / view.Columns;
  for (std::size_t i = run.First; i < run.End; ++i) {
    const double time = data.Times()[i];
    const double value = data.Value(0, i);
    if (time >= view.Range.Begin && time <= view.Range.End && !std::isnan(value)) {
      const int column =
          std::min(static_cast<int>((time - view.Range.Begin) / width), view.Columns - 1);
      Cover(columns, column, value, value);
    }
    if (i == run.First || !data.Joins(0, i)) continue;
    const double before = data.Times()[i - 1];
    const double from = data.Value(0, i - 1);
    for (int column = 0; column < view.Columns; ++column) {
      const double left = std::max(before, view.Range.Begin + column * width);
      const double right = std::min(time, view.Range.Begin + (column + 1) * width);
      if (left >= right) continue;
      const auto at = [&](double t) {
        return from + (value - from) * (t - before) / (time - before);
      };
      Cover(columns, column, at(left), at(right));
    }
  }
  return columns;
}

std::vector<FilledColumn> OfAllRuns(const PlotData& data, const ColumnView& view) {
  std::vector<FilledColumn> all;
  for (const RecordSpan& run : data.Runs()) {
    for (const auto& [column, span] : Plainly(data, run, view))
      all.push_back({column, span.first, span.second});
  }
  return all;
}

void ExpectSame(const std::vector<FilledColumn>& a, const std::vector<FilledColumn>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    ASSERT_EQ(a[i].Column, b[i].Column) << i;
    ASSERT_NEAR(a[i].Least, b[i].Least, 1e-6) << i;
    ASSERT_NEAR(a[i].Greatest, b[i].Greatest, 1e-6) << i;
  }
}

// The columns' width has no finite binary form here, so that no record lies upon an edge.
TEST(ColumnFill, CoversWhatEveryRecordAndEveryLineCovers) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    const PlotData data(WildSet(seed, 700));
    const TimeRange whole = data.Whole();
    const double pi = 3.14159265358979;
    for (const TimeRange range : {TimeRange{whole.Begin - pi, whole.End + pi},
                                  TimeRange{whole.Begin + whole.Length() / pi, whole.End - pi},
                                  TimeRange{whole.Begin + 2000 / pi, whole.Begin + 9000 / pi},
                                  TimeRange{whole.Begin - 5000 / pi, whole.Begin - 1 / pi}}) {
      for (const int columns : {1, 7, 97, 1600}) {
        const ColumnView view{range, columns};
        ExpectSame(Fill(data, view), OfAllRuns(data, view));
        if (HasFatalFailure()) FAIL() << "seed " << seed << ", columns " << columns;
      }
    }
  }
}

// One record among 200000 is not to be missed, at whatever zoom.
TEST(ColumnFill, ShowsOneRecordOutOfTwoHundredThousandAtEveryZoom) {
  constexpr std::size_t kRecords = 200000;
  constexpr std::size_t kSpike = 123457;
  std::vector<double> times;
  std::vector<double> values;
  for (std::size_t i = 0; i < kRecords; ++i) {
    times.push_back(static_cast<double>(i) * 60);
    values.push_back(i == kSpike ? 1000 : static_cast<double>(i % 10));
  }
  const PlotData data(OneChannel(times, values));
  const double at = times[kSpike];
  double length = data.Whole().Length();
  for (; length > 100; length /= 1.7) {
    for (const double part : {0.0, 0.31, 0.999}) {
      const TimeRange range{at - part * length, at + (1 - part) * length};
      for (const int columns : {1, 300, 1600, 3840}) {
        const std::vector<FilledColumn> filled = Fill(data, {range, columns});
        const auto spikes = std::count_if(filled.begin(), filled.end(),
                                          [](const FilledColumn& c) { return c.Greatest == 1000; });
        ASSERT_GE(spikes, 1) << length << ' ' << columns;
        ASSERT_LE(spikes, 2);
      }
    }
  }
}

TEST(ColumnFill, LeavesAHoleEmptyThatIsWiderThanAColumn) {
  // A record a minute, but for an hour and, later, two minutes.
  const PlotData data(OneChannel({0, 60, 3660, 3720, 3840, 3900}, {5, 5, 5, 5, 5, 5}));
  std::vector<int> columns;
  for (const FilledColumn& column : Fill(data, {{-15, 4185}, 140}))
    columns.push_back(column.Column);
  EXPECT_EQ(columns, (std::vector<int>{0, 1, 2, 122, 123, 124, 128, 129, 130}));
}

TEST(ColumnFill, LeavesAMissingValueEmptyAtEachLevelOfDetail) {
  std::vector<double> times;
  std::vector<double> values;
  for (int i = 0; i < 20000; ++i) {
    times.push_back(i * 60.0);
    values.push_back(i >= 8000 && i < 12000 ? kNone : 1.0);
  }
  const PlotData data(OneChannel(times, values));
  for (const int columns : {10, 100, 1000, 10000}) {
    const ColumnView view{{0, 1200000}, columns};
    for (const FilledColumn& column : Fill(data, view)) {
      const double begin = column.Column * 1200000.0 / columns;
      const double end = begin + 1200000.0 / columns;
      EXPECT_TRUE(begin < 480000 || end > 720000) << columns << ' ' << column.Column;
    }
  }
}

TEST(ColumnFill, ARecordWithNothingBesideItIsLone) {
  const PlotData data(OneChannel({0, 60, 120, 1000, 2000, 2060}, {1, 2, kNone, 4, kNone, 6}));
  std::vector<int> lone;
  for (const FilledColumn& column : Fill(data, {{-5, 2105}, 211}))
    if (column.Lone) lone.push_back(column.Column);
  EXPECT_EQ(lone, (std::vector<int>{100, 206}));
}

TEST(ColumnFill, RunsThatLieOverEachOtherAreNotFilledBetween) {
  const PlotData data(OneChannel({0, 60, 120, 0, 60, 120}, {1, 1, 1, 100, 100, 100}));
  for (const FilledColumn& column : Fill(data, {{0, 120}, 12}))
    EXPECT_EQ(column.Least, column.Greatest);
}

TEST(ColumnFill, StandsAViewOfNothing) {
  const PlotData data(OneChannel({0, 60}, {1, 2}));
  EXPECT_TRUE(Fill(data, {{0, 60}, 0}).empty());
  EXPECT_TRUE(Fill(data, {{30, 30}, 10}).empty());
  EXPECT_TRUE(Fill(data, {{100, 200}, 10}).empty());
  EXPECT_TRUE(Fill(PlotData(OneChannel({}, {})), {{0, 60}, 10}).empty());
}

TEST(ColumnFill, FillsAViewThatLiesWithinOneLine) {
  const PlotData data(OneChannel({0, 1000}, {0, 1000}, 0));
  const std::vector<FilledColumn> filled = Fill(data, {{400, 500}, 10});
  ASSERT_EQ(filled.size(), 10U);
  EXPECT_NEAR(filled[0].Least, 400, 1e-9);
  EXPECT_NEAR(filled[9].Greatest, 500, 1e-9);
}

TEST(Strands, AreTheRecordsThatAreJoined) {
  const PlotData data(
      OneChannel({0, 60, 120, 180, 1000, 1060, 500, 560}, {1, 2, kNone, 4, 5, 6, 7, 8}));
  EXPECT_EQ(StrandsIn(data, 0, {-10, 2000}), (std::vector<Strand>{{0, 2}, {3, 4}, {4, 6}, {6, 8}}));
  // With the neighbours outside the view.
  EXPECT_EQ(StrandsIn(data, 0, {1010, 1050}), (std::vector<Strand>{{4, 6}}));
}

TEST(Strands, AreThinnedToWhatALineNeeds) {
  std::vector<double> times;
  std::vector<double> values;
  for (int i = 0; i < 10000; ++i) {
    times.push_back(i);
    values.push_back(i == 4321 ? -50 : i % 7);
  }
  const PlotData data(OneChannel(times, values, 1));
  const ColumnView view{{0, 10000}, 100};
  const std::vector<std::size_t> kept = ThinnedStrand(data, 0, {0, 10000}, view);
  EXPECT_LE(kept.size(), 400U);
  EXPECT_TRUE(std::is_sorted(kept.begin(), kept.end()));
  EXPECT_EQ(std::adjacent_find(kept.begin(), kept.end()), kept.end());
  EXPECT_EQ(kept.front(), 0U);
  EXPECT_EQ(kept.back(), 9999U);
  EXPECT_TRUE(std::binary_search(kept.begin(), kept.end(), 4321U));
}

}  // namespace
}  // namespace tessmar
