#include "measure/StampTime.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <cmath>
#include <limits>

#include "base/SystemLocale.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

constexpr double kDay = 86400;

TEST(StampTime, CountsSecondsSinceTheBeginningOf2000) {
  EXPECT_EQ(StampSeconds(0x00020000), 0);  // Day 1 of month 0, 0:00:00.
  // 26 December 2010, 15:47:29: 4012 days, as date(1) counts them.
  EXPECT_EQ(StampSeconds(0x20F4FBDD), 4012 * kDay + 15 * 3600 + 47 * 60 + 29);
}

TEST(StampTime, CarriesWhatTheCalendarDoesNotHave) {
  // All ones: 31 April 2085 is 1 May, and 31:63:63 is 8:04:03 on the day after.
  EXPECT_EQ(CalendarOf(StampSeconds(0xFFFFFFFF)), (CalendarTime{2085, 5, 2, 8, 4, 3}));
  // Day 0 of January 2000.
  EXPECT_EQ(CalendarOf(StampSeconds(0)), (CalendarTime{1999, 12, 31, 0, 0, 0}));
}

TEST(StampTime, AgreesWithTheTablesDatesOnEveryDayThatAStampCanHold) {
  for (std::uint32_t month = 0; month < 1024; ++month) {
    for (std::uint32_t day = 0; day < 32; ++day) {
      const double seconds = StampSeconds(month << 22U | day << 17U);
      const TimeStampFields fields = UnpackTimeStamp(month << 22U | day << 17U);
      const QDate date = CarriedDate(fields.Year, fields.Month, fields.Day);
      ASSERT_EQ(seconds, static_cast<double>(QDate(2000, 1, 1).daysTo(date)) * kDay);
      ASSERT_EQ(CalendarOf(seconds), (CalendarTime{date.year(), date.month(), date.day()}));
    }
  }
}

TEST(StampTime, FindsMidnightsByCountingOn) {
  EXPECT_EQ(MidnightOf(2000, 1, 1), 0);
  EXPECT_EQ(MidnightOf(2000, 3, 1), 60 * kDay);
  EXPECT_EQ(MidnightOf(1999, 12, 31), -kDay);
  EXPECT_EQ(MidnightOf(2010, 13, 1), MidnightOf(2011, 1, 1));
  EXPECT_EQ(MidnightOf(2011, 0, 1), MidnightOf(2010, 12, 1));
  EXPECT_EQ(MidnightOf(2010, -11, 1), MidnightOf(2009, 1, 1));
}

TEST(StampTime, CutsFractionsTowardsThePastAndStandsWhatIsNoTime) {
  EXPECT_EQ(CalendarOf(-0.5), (CalendarTime{1999, 12, 31, 23, 59, 59}));
  EXPECT_EQ(CalendarOf(std::numeric_limits<double>::quiet_NaN()), CalendarTime{});
  EXPECT_EQ(CalendarOf(1e300), CalendarTime{});
}

TEST(StampTime, KnowsTheMillisecondsSince1970) {
  EXPECT_EQ(SecondsOnScale(946684800000), 0);
  // 2026-03-03T12:00:00.250Z.
  EXPECT_EQ(SecondsOnScale(1772539200250), 9558.5 * kDay + 0.25);
}

}  // namespace
}  // namespace tessmar
