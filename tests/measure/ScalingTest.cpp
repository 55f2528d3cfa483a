#include "measure/Scaling.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace tessmar {
namespace {

AnalogChannelSettings Channel(std::int32_t rawLower, std::int32_t rawUpper, double lower,
                              double upper) {
  AnalogChannelSettings channel;
  channel.RawScaleLower = rawLower;
  channel.RawScaleUpper = rawUpper;
  channel.LowerLimit = lower;
  channel.UpperLimit = upper;
  return channel;
}

std::string Formatted(double value, int decimals) {
  return FormatValue(value, decimals).toStdString();
}

TEST(ScaleRaw, GoesThroughBothPoints) {
  const AnalogChannelSettings channel = Channel(1000, 5000, -10, 30);
  EXPECT_DOUBLE_EQ(ScaleRaw(channel, 1000), -10);
  EXPECT_DOUBLE_EQ(ScaleRaw(channel, 5000), 30);
  EXPECT_DOUBLE_EQ(ScaleRaw(channel, 2000), 0);
}

TEST(ScaleRaw, ExtrapolatesBeyondBothPoints) {
  const AnalogChannelSettings channel = Channel(1000, 5000, -10, 30);
  EXPECT_DOUBLE_EQ(ScaleRaw(channel, 0), -20);
  EXPECT_DOUBLE_EQ(ScaleRaw(channel, 65535), 635.35);
}

TEST(ScaleRaw, RunsBackwardsWhenThePointsDo) {
  EXPECT_DOUBLE_EQ(ScaleRaw(Channel(100, 0, 0, 50), 25), 37.5);
  EXPECT_DOUBLE_EQ(ScaleRaw(Channel(0, 100, 50, 0), 25), 37.5);
}

TEST(ScaleRaw, EqualRawPointsGiveTheLowerLimit) {
  const AnalogChannelSettings channel = Channel(500, 500, 3, 9);
  for (const std::int32_t raw : {0, 500, 65535}) EXPECT_EQ(ScaleRaw(channel, raw), 3);
}

TEST(ScaleRaw, EqualRawPointsAndCloseLimitsGiveTheUpperLimit) {
  const AnalogChannelSettings channel = Channel(500, 500, 3, 3.00009);
  for (const std::int32_t raw : {0, 500, 65535}) EXPECT_EQ(ScaleRaw(channel, raw), 3.00009);
}

TEST(ScaleRaw, LimitsCloserThanATenThousandthGiveTheUpperLimitForEveryRawValue) {
  const AnalogChannelSettings channel = Channel(0, 65535, 0, 0.00005);
  for (const std::int32_t raw : {0, 1, 32768, 65535}) EXPECT_EQ(ScaleRaw(channel, raw), 0.00005);
  EXPECT_EQ(ScaleRaw(Channel(0, 65535, 0.00005, 0), 0), 0);
}

TEST(ScaleRaw, LimitsALittleFartherApartAreAScale) {
  EXPECT_DOUBLE_EQ(ScaleRaw(Channel(0, 60000, 0, 0.00018), 20000), 0.00006);
  EXPECT_DOUBLE_EQ(ScaleRaw(Channel(0, 60000, 0.00018, 0), 20000), 0.00012);
}

TEST(ScaleRaw, TakesAWordOf65535AsAnOrdinaryValue) {
  EXPECT_DOUBLE_EQ(ScaleRaw(Channel(0, 65535, 0, 100), 65535), 100);
}

TEST(ScaleRaw, SurvivesRawPointsAtTheEndsOf32Bits) {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  EXPECT_DOUBLE_EQ(ScaleRaw(Channel(kLowest, kHighest, 0, 4294967295.0), kHighest), 4294967295.0);
}

TEST(FormatValue, RoundsHalvesToTheEvenNeighbour) {
  EXPECT_EQ(Formatted(2.5, 0), "2");
  EXPECT_EQ(Formatted(3.5, 0), "4");
  EXPECT_EQ(Formatted(0.5, 0), "0");
  EXPECT_EQ(Formatted(1.5, 0), "2");
  EXPECT_EQ(Formatted(-2.5, 0), "-2");
  EXPECT_EQ(Formatted(0.25, 1), "0.2");
  EXPECT_EQ(Formatted(0.75, 1), "0.8");
  EXPECT_EQ(Formatted(0.125, 2), "0.12");
  EXPECT_EQ(Formatted(0.375, 2), "0.38");
  EXPECT_EQ(Formatted(-0.375, 2), "-0.38");
}

TEST(FormatValue, RoundsTheDoubleAndNotItsDecimalText) {
  EXPECT_EQ(Formatted(2.675, 2), "2.67");
  EXPECT_EQ(Formatted(2.665, 2), "2.67");
  EXPECT_EQ(Formatted(1.005, 2), "1.00");
  EXPECT_EQ(Formatted(2.345, 2), "2.35");
}

TEST(FormatValue, TellsAHalfFromItsNeighbours) {
  EXPECT_EQ(Formatted(2.5000000000000004, 0), "3");
  EXPECT_EQ(Formatted(2.4999999999999996, 0), "2");
  EXPECT_EQ(Formatted(0.12500000000000003, 2), "0.13");
  EXPECT_EQ(Formatted(0.12499999999999999, 2), "0.12");
}

TEST(FormatValue, HasAPatternForEachCountOfDecimals) {
  constexpr double kValue = 1234.5;
  EXPECT_EQ(Formatted(kValue, 1), "1234.5");
  EXPECT_EQ(Formatted(kValue, 2), "1234.50");
  EXPECT_EQ(Formatted(kValue, 3), "1234.500");
  EXPECT_EQ(Formatted(kValue, 4), "1234.5000");
  EXPECT_EQ(Formatted(kValue, 5), "1234.50000");
  EXPECT_EQ(Formatted(kValue, 6), "1234.500000");
}

TEST(FormatValue, TakesDecimalsBelow0As0AndAbove6As6) {
  EXPECT_EQ(Formatted(1234.4, -1), "1234");
  EXPECT_EQ(Formatted(1234.5, 7), "1234.500000");
  EXPECT_EQ(Formatted(0.0000005001, 255), "0.000001");
}

// The nearest double to 0.0000025 lies above the half, that to 0.0000035 below it.
TEST(FormatValue, RoundsTwiceWithMoreThanSixDecimals) {
  EXPECT_EQ(Formatted(0.00000249999996, 6), "0.000002");
  EXPECT_EQ(Formatted(0.00000249999996, 7), "0.000003");
  EXPECT_EQ(Formatted(0.00000249999996, 8), "0.000003");
  EXPECT_EQ(Formatted(0.00000249999996, 13), "0.000003");
  EXPECT_EQ(Formatted(0.00000249999996, 14), "0.000002");
  EXPECT_EQ(Formatted(-0.00000249999996, 7), "-0.000003");
  EXPECT_EQ(Formatted(0.00000350000004, 6), "0.000004");
  EXPECT_EQ(Formatted(0.00000350000004, 7), "0.000003");
  EXPECT_EQ(Formatted(7.9999999, 7), "8.000000");
  EXPECT_EQ(Formatted(-0.00000004, 7), "0.000000");
}

TEST(FormatValue, TakesEveryCountOfDecimalsForEveryMagnitude) {
  for (const double value : {std::numeric_limits<double>::max(), 1e300, 1e15, 1.25, 1e-300,
                             std::numeric_limits<double>::denorm_min()}) {
    for (const int decimals : {7, 17, 100, 255, 32767})
      EXPECT_EQ(Formatted(value, decimals), Formatted(value, 6)) << value << ' ' << decimals;
  }
}

TEST(FormatValue, PutsZerosBehindThePoint) {
  EXPECT_EQ(Formatted(0, 0), "0");
  EXPECT_EQ(Formatted(0, 2), "0.00");
  EXPECT_EQ(Formatted(0.05, 2), "0.05");
  EXPECT_EQ(Formatted(7.000001, 6), "7.000001");
  EXPECT_EQ(Formatted(999.996, 2), "1000.00");
}

TEST(FormatValue, NeverShowsANegativeZero) {
  EXPECT_EQ(Formatted(-0.0, 0), "0");
  EXPECT_EQ(Formatted(-0.0, 2), "0.00");
  EXPECT_EQ(Formatted(-0.004, 2), "0.00");
  EXPECT_EQ(Formatted(-0.5, 0), "0");
  EXPECT_EQ(Formatted(-0.006, 2), "-0.01");
  EXPECT_EQ(Formatted(-std::numeric_limits<double>::denorm_min(), 6), "0.000000");
}

TEST(FormatValue, HasAPointAndNoGroupingWhateverTheLocale) {
  const QLocale before;
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  EXPECT_EQ(Formatted(1.5, 2), "1.50");
  EXPECT_EQ(Formatted(1234567.25, 2), "1234567.25");
  QLocale::setDefault(before);
}

TEST(FormatValue, WritesLargeValuesInFull) {
  EXPECT_EQ(Formatted(999999999999999, 0), "999999999999999");
  EXPECT_EQ(Formatted(9007199254740993.0, 0), "9007199254740992");
  EXPECT_EQ(Formatted(1e20, 1), "100000000000000000000.0");
  EXPECT_EQ(Formatted(-1e22, 0), "-10000000000000000000000");
  const std::string highest = Formatted(-std::numeric_limits<double>::max(), 6);
  EXPECT_EQ(highest.size(), 317U);
  EXPECT_EQ(highest.substr(0, 18), "-17976931348623157");
  EXPECT_EQ(highest.substr(310), ".000000");
}

TEST(FormatValue, ShowsDashesForWhatIsNotANumber) {
  EXPECT_EQ(Formatted(std::numeric_limits<double>::infinity(), 2), "---");
  EXPECT_EQ(Formatted(-std::numeric_limits<double>::infinity(), 2), "---");
  EXPECT_EQ(Formatted(std::numeric_limits<double>::quiet_NaN(), 0), "---");
}

// The C library rounds the exact value of a double, half to even, too.
TEST(FormatValue, AgreesWithTheCLibraryForScaledWords) {
  std::array<char, kFormattedValueSize + 8> expected;
  std::array<char, kFormattedValueSize> text;
  for (const double unit : {100.0 / 65535, 0.005, 0.125, 1.0 / 3, 24.0 / 62384, 0.0000125}) {
    for (int raw = 0; raw <= 65535; raw += 13) {
      for (int decimals = 0; decimals <= 6; ++decimals) {
        const double value = raw * unit;
        std::snprintf(expected.data(), expected.size(), "%.*f", decimals, value);
        const int length = FormatValueTo(text.data(), value, decimals);
        ASSERT_EQ(std::string(text.data(), static_cast<std::size_t>(length)), expected.data())
            << raw << " * " << unit;
      }
    }
  }
}

TEST(ShownNumber, IsTheDoubleNearestToTheDigits) {
  EXPECT_EQ(ShownNumber(12.8549, 2), 12.85);
  EXPECT_EQ(ShownNumber(-12.855, 1), -12.9);
  EXPECT_EQ(ShownNumber(0.125, 2), 0.12);
  EXPECT_EQ(ShownNumber(-2.5, 0), -2.0);
  EXPECT_EQ(ShownNumber(0.3000001, 6), 0.3);
  EXPECT_EQ(ShownNumber(1234.5, -1), 1234.0);
  EXPECT_EQ(ShownNumber(0.00000249999996, 7), 0.000003);
  EXPECT_EQ(ShownNumber(999999999999999.9, 0), 1e15);
  EXPECT_EQ(ShownNumber(-1e22, 0), -1e22);
}

TEST(ShownNumber, IsNeverANegativeZero) {
  for (const double value : {-0.0, -0.004, -0.0049}) {
    EXPECT_EQ(ShownNumber(value, 2), 0.0);
    EXPECT_FALSE(std::signbit(ShownNumber(value, 2).value_or(-1)));
  }
}

TEST(ShownNumber, IsNothingForWhatIsNotANumber) {
  EXPECT_EQ(ShownNumber(std::numeric_limits<double>::infinity(), 2), std::nullopt);
  EXPECT_EQ(ShownNumber(std::numeric_limits<double>::quiet_NaN(), 2), std::nullopt);
}

TEST(ShownNumber, IsWhatTheCLibraryReadsFromTheText) {
  std::mt19937_64 luck(7);
  for (int i = 0; i < 300'000; ++i) {
    const double magnitude = std::pow(10.0, static_cast<int>(luck() % 22) - 6);
    const double word = static_cast<double>(luck() % 65536) / 65536;
    // Every fourth lies on a half or next to one.
    const double value = (i % 4 == 0 ? std::floor(word * 1000) + 0.5 : word) * magnitude *
                         (luck() % 2 == 0 ? 1 : -1);
    const int decimals = static_cast<int>(luck() % 9) - 1;
    EXPECT_EQ(ShownNumber(value, decimals),
              std::strtod(Formatted(value, decimals).c_str(), nullptr))
        << value << ' ' << decimals;
  }
}

TEST(FormatValueTo, WritesWithoutAZeroAtTheEnd) {
  std::array<char, kFormattedValueSize> text;
  text.fill('#');
  EXPECT_EQ(FormatValueTo(text.data(), -12.345, 1), 5);
  EXPECT_EQ(std::string(text.data(), 6), "-12.3#");
}

}  // namespace
}  // namespace tessmar
