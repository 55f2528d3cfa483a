#include "plot/Levels.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "plot/PlotRig.h"

namespace tessmar {
namespace {

using test::kNone;

Extent Plainly(const std::vector<double>& values, std::size_t first, std::size_t end) {
  Extent extent;
  for (std::size_t i = first; i < end; ++i) {
    if (std::isnan(values[i])) continue;
    extent.Least = std::min(extent.Least, values[i]);
    extent.Greatest = std::max(extent.Greatest, values[i]);
    extent.Sum += values[i];
    ++extent.Count;
  }
  return extent;
}

void ExpectSame(const Extent& a, const Extent& b) {
  ASSERT_EQ(a.Count, b.Count);
  ASSERT_EQ(a.Least, b.Least);
  ASSERT_EQ(a.Greatest, b.Greatest);
  ASSERT_NEAR(a.Sum, b.Sum, 1e-6 * (1 + std::abs(b.Sum)));
}

TEST(Levels, GiveTheExtentOfEveryRangeOfAShortSeries) {
  std::vector<double> values;
  for (int i = 0; i < 300; ++i) values.push_back(i % 7 == 0 ? kNone : (i * 37) % 101);
  Levels levels;
  levels.Extend(values);
  for (std::size_t first = 0; first <= values.size(); ++first) {
    for (std::size_t end = first; end <= values.size(); ++end)
      ExpectSame(levels.Of(values, first, end), Plainly(values, first, end));
  }
}

TEST(Levels, GiveTheExtentOfRangesOfALongSeries) {
  std::mt19937 luck(7);
  std::vector<double> values;
  for (int i = 0; i < 70000; ++i)
    values.push_back(luck() % 9 == 0 ? kNone : static_cast<double>(luck() % 65536));
  Levels levels;
  levels.Extend(values);
  for (int round = 0; round < 2000; ++round) {
    const std::size_t a = luck() % (values.size() + 1);
    const std::size_t b = luck() % (values.size() + 1);
    ExpectSame(levels.Of(values, std::min(a, b), std::max(a, b)),
               Plainly(values, std::min(a, b), std::max(a, b)));
  }
}

TEST(Levels, GrowAsTheSeriesGrows) {
  std::vector<double> values;
  Levels levels;
  for (int i = 0; i < 5000; ++i) {
    values.push_back((i * 31) % 997);
    levels.Extend(values);
    if (i % 97 == 0)
      ExpectSame(levels.Of(values, 0, values.size()), Plainly(values, 0, values.size()));
  }
}

TEST(Levels, WithoutAValueHaveNone) {
  const std::vector<double> values(200, kNone);
  Levels levels;
  EXPECT_FALSE(levels.Of({}, 0, 0).Any());
  levels.Extend(values);
  EXPECT_FALSE(levels.Of(values, 0, 200).Any());
  EXPECT_FALSE(levels.Of(values, 5, 5).Any());
}

}  // namespace
}  // namespace tessmar
