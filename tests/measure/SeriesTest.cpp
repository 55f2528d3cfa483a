#include "measure/Series.h"

#include <gtest/gtest.h>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

double IntervalOf(const QString& interval, int style = kLogPeriodic) {
  LoggerSettings settings;
  settings.SampleInterval = interval;
  settings.LoggingStyle = static_cast<std::uint8_t>(style);
  return LoggedInterval(settings);
}

TEST(LoggedInterval, ReadsCountAndUnit) {
  EXPECT_EQ(IntervalOf(u"10 seconds"_s), 10);
  EXPECT_EQ(IntervalOf(u"1 second"_s), 1);
  EXPECT_EQ(IntervalOf(u"15 minutes"_s), 900);
  EXPECT_EQ(IntervalOf(u"1 hour"_s), 3600);
  EXPECT_EQ(IntervalOf(u"2 days"_s), 172800);
}

TEST(LoggedInterval, IsNoneWhereNoDistanceIsAHole) {
  EXPECT_EQ(IntervalOf(u"15 minutes"_s, kLogLogarithmic), 0);
  EXPECT_EQ(IntervalOf(u"15 minutes"_s, kLogFast), 0);
  EXPECT_EQ(IntervalOf(u"15 minutes"_s, kLogModeMask), 0);
  EXPECT_EQ(IntervalOf(u"15 minutes"_s, kLogPeriodic | kLogException), 0);
}

TEST(LoggedInterval, IsNoneForATextThatNamesNoTime) {
  EXPECT_EQ(IntervalOf(u""_s), 0);
  EXPECT_EQ(IntervalOf(u"15"_s), 0);
  EXPECT_EQ(IntervalOf(u"0 seconds"_s), 0);
  EXPECT_EQ(IntervalOf(u"-3 minutes"_s), 0);
}

}  // namespace
}  // namespace tessmar
