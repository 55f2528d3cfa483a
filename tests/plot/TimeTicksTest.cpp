#include "plot/TimeTicks.h"

#include <gtest/gtest.h>

#include "history/TableRig.h"
#include "measure/StampTime.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::American;
using test::German;

QStringList Labels(TimeRange range, int most, const SystemLocale& locale = German()) {
  QStringList labels;
  for (const TimeTick& tick : TimeTicks(range, most, locale)) labels.append(tick.Label);
  return labels;
}

double At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return MidnightOf(year, month, day) + hour * 3600 + minute * 60 + second;
}

TEST(TimeTicks, OfTenSeconds) {
  const double begin = At(2010, 12, 26, 15, 47, 29);
  EXPECT_EQ(Labels({begin, begin + 10}, 5),
            (QStringList{u"15:47:30\n26.12.10"_s, u"15:47:32"_s, u"15:47:34"_s, u"15:47:36"_s,
                         u"15:47:38"_s}));
}

TEST(TimeTicks, OfAnHourAcrossMidnight) {
  EXPECT_EQ(Labels({At(2010, 12, 31, 23, 20), At(2011, 1, 1, 0, 20)}, 6, American()),
            (QStringList{u"23:20\n12/31/10"_s, u"23:30"_s, u"23:40"_s, u"23:50"_s,
                         u"00:00\n1/1/11"_s, u"00:10"_s, u"00:20"_s}));
}

TEST(TimeTicks, OfADayAndOfAWeek) {
  EXPECT_EQ(Labels({At(2010, 12, 26), At(2010, 12, 27)}, 8),
            (QStringList{u"00:00\n26.12.10"_s, u"03:00"_s, u"06:00"_s, u"09:00"_s, u"12:00"_s,
                         u"15:00"_s, u"18:00"_s, u"21:00"_s, u"00:00\n27.12.10"_s}));
  EXPECT_EQ(
      Labels({At(2010, 12, 26, 1), At(2010, 12, 31)}, 7),
      (QStringList{u"27.12.10"_s, u"28.12.10"_s, u"29.12.10"_s, u"30.12.10"_s, u"31.12.10"_s}));
}

TEST(TimeTicks, OfAYearAndOfTenYears) {
  EXPECT_EQ(Labels({At(2010, 2, 3), At(2011, 2, 3)}, 6),
            (QStringList{u"03/2010"_s, u"05/2010"_s, u"07/2010"_s, u"09/2010"_s, u"11/2010"_s,
                         u"01/2011"_s}));
  EXPECT_EQ(Labels({At(2010, 2, 3), At(2020, 2, 3)}, 6),
            (QStringList{u"2012"_s, u"2014"_s, u"2016"_s, u"2018"_s, u"2020"_s}));
}

TEST(TimeTicks, AreNeverManyMoreThanWanted) {
  for (double length = 2; length < 1e11; length *= 1.9) {
    for (const int most : {1, 3, 8, 20}) {
      const auto ticks =
          TimeTicks({At(2010, 1, 30, 4, 5, 6), At(2010, 1, 30, 4, 5, 6) + length}, most, German());
      EXPECT_LE(ticks.size(), static_cast<std::size_t>(most) + 2) << length;
    }
  }
}

TEST(TimeTicks, OfNoTimeAreNone) {
  EXPECT_TRUE(TimeTicks({5, 5}, 5, German()).empty());
  EXPECT_TRUE(TimeTicks({5, 4}, 5, German()).empty());
}

TEST(TimeTicks, ATimeReadsAsInTheTable) {
  EXPECT_EQ(TimeOnAxis(StampSeconds(test::kStamp), American()), u"12/26/10 15:47:29"_s);
  EXPECT_EQ(TimeOnAxis(StampSeconds(test::kStamp), German()), u"26.12.10 15:47:29"_s);
  EXPECT_EQ(RangeText({0, 1}, German()), u"01.01.00 00:00:00 – 01.01.00 00:00:01"_s);
}

}  // namespace
}  // namespace tessmar
