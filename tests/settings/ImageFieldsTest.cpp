#include "settings/ImageFields.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "base/Fault.h"
#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

std::uint32_t Code(std::uint32_t mantissa, std::uint32_t exponent, bool negative = false) {
  return mantissa + exponent * 1048576 + (negative ? 8388608 : 0);
}

TEST(EncodeDecimal24, GivesTheCodesOfTheLogger) {
  EXPECT_EQ(EncodeDecimal24(0), 0U);
  EXPECT_EQ(EncodeDecimal24(-0.0), 0U);
  EXPECT_EQ(EncodeDecimal24(1), 0x5186A0U);
  EXPECT_EQ(EncodeDecimal24(100), 0x3186A0U);
  EXPECT_EQ(EncodeDecimal24(24), 0x43A980U);
  EXPECT_EQ(EncodeDecimal24(-5.5), 0xD86470U);
}

TEST(EncodeDecimal24, TakesValuesBeyondItsRangeAsItsEnds) {
  EXPECT_EQ(EncodeDecimal24(999999), 0x0F423FU);
  EXPECT_EQ(EncodeDecimal24(999999.4), 0x0F423FU);
  EXPECT_EQ(EncodeDecimal24(1000000), 0x0F423FU);
  EXPECT_EQ(EncodeDecimal24(-1000000), 0x8F423FU);
  EXPECT_EQ(EncodeDecimal24(1e300), 0x0F423FU);
  EXPECT_EQ(EncodeDecimal24(-std::numeric_limits<double>::infinity()), 0x8F423FU);
}

TEST(EncodeDecimal24, MultipliesBelow99999Point95) {
  EXPECT_EQ(EncodeDecimal24(99999.94), Code(999999, 1));
  EXPECT_EQ(DecodeDecimal24(Code(999999, 1)), 99999.9);
  EXPECT_EQ(EncodeDecimal24(99999.95), Code(100000, 0));
  EXPECT_EQ(DecodeDecimal24(Code(100000, 0)), 100000);
}

TEST(EncodeDecimal24, LosesDigitsWhenTheExponentRunsOut) {
  EXPECT_EQ(EncodeDecimal24(0.00001234), Code(123, 7));
  EXPECT_EQ(EncodeDecimal24(0.01), Code(100000, 7));
  EXPECT_EQ(EncodeDecimal24(0.00000005), Code(1, 7));
  EXPECT_EQ(EncodeDecimal24(0.00000004), Code(0, 7));
  EXPECT_EQ(EncodeDecimal24(-0.00000004), Code(0, 7, true));
  EXPECT_EQ(DecodeDecimal24(EncodeDecimal24(-0.00000004)), 0);
}

TEST(EncodeDecimal24, RoundsByWayOfAFifteenDigitText) {
  // 123456.5 less one step of a double: the sum with one half is 123456.99999999999.
  EXPECT_EQ(EncodeDecimal24(123456.49999999999), Code(123457, 0));
  EXPECT_EQ(EncodeDecimal24(123456.4999), Code(123456, 0));
  EXPECT_EQ(EncodeDecimal24(1.23456789), Code(123457, 5));
  EXPECT_EQ(EncodeDecimal24(12.34567), Code(123457, 4));
}

TEST(EncodeDecimal24, RefusesWhatIsNoNumber) {
  EXPECT_THROW(EncodeDecimal24(std::numeric_limits<double>::quiet_NaN()), ConversionFault);
}

TEST(DecodeDecimal24, DividesStepByStep) {
  EXPECT_EQ(DecodeDecimal24(0), 0);
  EXPECT_EQ(DecodeDecimal24(0x5186A0), 1);
  EXPECT_EQ(DecodeDecimal24(0x43A980), 24);
  EXPECT_EQ(DecodeDecimal24(0xD86470), -5.5);
  EXPECT_EQ(DecodeDecimal24(0x0F423F), 999999);
  EXPECT_EQ(DecodeDecimal24(0x8F423F), -999999);
  const double stepwise = 123457.0 / 10 / 10 / 10 / 10 / 10;
  EXPECT_EQ(DecodeDecimal24(Code(123457, 5)), stepwise);
  EXPECT_EQ(DecodeDecimal24(Code(999999, 7)), 999999.0 / 10 / 10 / 10 / 10 / 10 / 10 / 10);
}

TEST(DecodeDecimal24, TakesAnyTwentyFourBits) {
  EXPECT_EQ(DecodeDecimal24(0x0FFFFF), 1048575);
  EXPECT_NEAR(DecodeDecimal24(0xFFFFFF), -0.1048575, 1e-15);
  EXPECT_EQ(DecodeDecimal24(0x800000), 0);
}

TEST(Decimal24, KeepsEveryCodeThatItMade) {
  for (const double value : {0.25, 1.5, 15.0, 0.333333, 99999.9, 100000.0, 0.0000123, -273.15}) {
    const std::uint32_t code = EncodeDecimal24(value);
    EXPECT_EQ(EncodeDecimal24(DecodeDecimal24(code)), code) << value;
  }
}

TEST(PutFixedText, PadsWithBlanksAndCuts) {
  std::array<std::uint8_t, 7> image{};
  PutFixedText(u"ABC"_s, image, 1, 5);
  EXPECT_EQ(image, (std::array<std::uint8_t, 7>{0, 'A', 'B', 'C', ' ', ' ', 0}));
  PutFixedText(u"ABCDEFG"_s, image, 1, 5);
  EXPECT_EQ(image, (std::array<std::uint8_t, 7>{0, 'A', 'B', 'C', 'D', 'E', 0}));
  PutFixedText(QString(), image, 0, 7);
  EXPECT_EQ(image, (std::array<std::uint8_t, 7>{' ', ' ', ' ', ' ', ' ', ' ', ' '}));
}

TEST(PutFixedText, WritesOneBytePerCharacter) {
  std::array<std::uint8_t, 4> image{};
  PutFixedText(u"\u00B0C\u00B5\u20AC"_s, image, 0, 4);
  EXPECT_EQ(image, (std::array<std::uint8_t, 4>{0xB0, 'C', 0xB5, '?'}));
}

TEST(PutFixedText, FaultsOutsideTheImage) {
  std::array<std::uint8_t, 4> image{};
  EXPECT_THROW(PutFixedText(u"ABC"_s, image, 2, 3), RangeFault);
  EXPECT_THROW(PutFixedText(u"ABC"_s, image, -1, 3), RangeFault);
}

TEST(GetFixedText, TurnsEveryByteIntoACharacter) {
  for (int code = 0; code < 256; ++code) {
    const std::array<std::uint8_t, 3> image{'<', static_cast<std::uint8_t>(code), '>'};
    const bool kept = (code >= 32 && code <= 126) || code >= 161;
    const QString expected = u"<"_s + (kept ? QChar(code) : QChar(u' ')) + u">"_s;
    EXPECT_EQ(GetFixedText(image, 0, 3), expected) << code;
  }
}

TEST(GetFixedText, ReadsANoBreakSpaceAsABlankButNotItsNeighbour) {
  const std::array<std::uint8_t, 3> image{0xA0, 0xA1, 0xA0};
  EXPECT_EQ(GetFixedText(image, 0, 3), u" \u00A1"_s);
}

TEST(GetFixedText, RemovesTrailingBlanksOnly) {
  const std::array<std::uint8_t, 6> image{' ', 'A', ' ', 'B', ' ', 0};
  EXPECT_EQ(GetFixedText(image, 0, 6), u" A B"_s);
  EXPECT_EQ(GetFixedText(image, 4, 2), QString());
  EXPECT_THROW(GetFixedText(image, 4, 3), RangeFault);
}

TEST(PutBytes, StoreTheLowByteFirst) {
  std::array<std::uint8_t, 3> image{};
  PutByte(255, image, 1);
  EXPECT_EQ(image, (std::array<std::uint8_t, 3>{0, 0xFF, 0}));
  PutU16(0x1234, image, 1);
  EXPECT_EQ(image, (std::array<std::uint8_t, 3>{0, 0x34, 0x12}));
  PutU24(0x563412, image, 0);
  EXPECT_EQ(image, (std::array<std::uint8_t, 3>{0x12, 0x34, 0x56}));
}

TEST(PutBytes, FaultOnWhatDoesNotFit) {
  std::array<std::uint8_t, 3> image{};
  EXPECT_THROW(PutByte(256, image, 0), ConversionFault);
  EXPECT_THROW(PutByte(-1, image, 0), ConversionFault);
  EXPECT_THROW(PutByte(0, image, 3), RangeFault);
  EXPECT_THROW(PutU16(65536, image, 0), ConversionFault);
  EXPECT_THROW(PutU16(-1, image, 0), ConversionFault);
  EXPECT_THROW(PutU24(0x1000000, image, 0), ConversionFault);
  EXPECT_THROW(PutU24(1, image, 1), RangeFault);
}

TEST(PutBytes, WriteTheLowByteAheadOfAHighByteThatDoesNotFit) {
  std::array<std::uint8_t, 2> image{};
  EXPECT_THROW(PutU16(70000, image, 0), ConversionFault);
  EXPECT_EQ(image, (std::array<std::uint8_t, 2>{0x70, 0}));
}

TEST(GetBytes, ReadTheLowByteFirst) {
  const std::array<std::uint8_t, 3> image{0x12, 0x34, 0x56};
  EXPECT_EQ(ByteAt(image, 2), 0x56);
  EXPECT_EQ(GetU16(image, 1), 0x5634);
  EXPECT_EQ(GetU24(image, 0), 0x563412U);
  EXPECT_THROW(ByteAt(image, 3), RangeFault);
  EXPECT_THROW(ByteAt(image, -1), RangeFault);
  EXPECT_THROW(GetU16(image, 2), RangeFault);
  EXPECT_THROW(GetU24(image, 1), RangeFault);
}

}  // namespace
}  // namespace tessmar
