#include "base/Numbers.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <cmath>
#include <limits>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const QLocale kUs(QLocale::English, QLocale::UnitedStates);
const QLocale kGerman(QLocale::German, QLocale::Germany);

struct LeadingRow {
  const char16_t* Text;
  double Value;
};

TEST(ParseLeadingNumber, ReadsTheLongestNumericPrefix) {
  const LeadingRow rows[] = {
      {u"", 0},          {u"   ", 0},         {u"abc", 0},       {u"12", 12},
      {u"12abc", 12},    {u"12.5abc", 12.5},  {u"1.5.5", 1.5},   {u"-3.5", -3.5},
      {u"+7", 7},        {u"--7", 0},         {u"- 7", -7},      {u"-", 0},
      {u".", 0},         {u"-.", 0},          {u".5", 0.5},      {u"5.", 5},
      {u"-.25x", -0.25}, {u"15 minutes", 15}, {u"1 day", 1},     {u"7 fortnights", 7},
      {u"007", 7},       {u"%5", 0},          {u"12:30:00", 12}, {u"0x10", 0},
  };
  for (const LeadingRow& row : rows) {
    EXPECT_EQ(ParseLeadingNumber(QString::fromUtf16(row.Text)), row.Value)
        << QString::fromUtf16(row.Text).toStdString();
  }
}

TEST(ParseLeadingNumber, KnowsThePointAlone) {
  EXPECT_EQ(ParseLeadingNumber(u"1,5"_s), 1);
  EXPECT_EQ(ParseLeadingNumber(u"1.234"_s), 1.234);
  EXPECT_EQ(ParseLeadingNumber(u"1,234.5"_s), 1);
}

TEST(ParseLeadingNumber, SkipsBlanksWhereverTheyStand) {
  EXPECT_EQ(ParseLeadingNumber(u"  12"_s), 12);
  EXPECT_EQ(ParseLeadingNumber(u" 1 2"_s), 12);
  EXPECT_EQ(ParseLeadingNumber(u"\t1 . 5\n"_s), 1.5);
  EXPECT_EQ(ParseLeadingNumber(u"1\u00A02"_s), 12);
}

// What the test for a number lets through at the ends of one must not hide it from the reading.
TEST(ParseLeadingNumber, SkipsEveryBlankThatTheTestForANumberSkips) {
  for (int code = 0; code <= 0xFFFF; ++code) {
    const QString mark = QChar(code);
    for (const QString& text :
         {mark + u"12.5"_s, u"12.5"_s + mark, mark + u" "_s + mark + u"12.5 "_s + mark}) {
      if (!IsNumeric(text, kUs) || QChar(code).isDigit() || mark == u"."_s) continue;
      EXPECT_EQ(ParseLeadingNumber(text), mark == u"-"_s ? -12.5 : 12.5) << code;
    }
  }
  for (const QString& blank : {u" "_s, u"\t"_s, u"\u00A0"_s, u"\u2007"_s, u"\u202F"_s, u"\u3000"_s,
                               u"\u200E"_s, u"\u061C"_s}) {
    EXPECT_TRUE(IsNumeric(blank + u"12.5"_s, kUs)) << int{blank.at(0).unicode()};
    EXPECT_EQ(ParseLeadingNumber(blank + u"12.5"_s), 12.5) << int{blank.at(0).unicode()};
  }
}

TEST(ParseLeadingNumber, KnowsTheSignsOfEveryLocale) {
  const auto locales =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
  ASSERT_GT(locales.size(), 400);
  for (const QLocale& locale : locales) {
    const QString negative = locale.negativeSign() + u"7"_s;
    EXPECT_TRUE(IsNumeric(negative, locale)) << locale.name().toStdString();
    EXPECT_EQ(ParseLeadingNumber(negative), -7) << locale.name().toStdString();
    const QString positive = locale.positiveSign() + u"7"_s;
    EXPECT_TRUE(IsNumeric(positive, locale)) << locale.name().toStdString();
    EXPECT_EQ(ParseLeadingNumber(positive), 7) << locale.name().toStdString();
  }
}

TEST(ParseLeadingNumber, TakesAnExponentOnlyWhenItHasDigits) {
  EXPECT_EQ(ParseLeadingNumber(u"1e3"_s), 1000);
  EXPECT_EQ(ParseLeadingNumber(u"25E-2"_s), 0.25);
  EXPECT_EQ(ParseLeadingNumber(u"1e+2 V"_s), 100);
  EXPECT_EQ(ParseLeadingNumber(u"3 Eggs"_s), 3);
  EXPECT_EQ(ParseLeadingNumber(u"3e-"_s), 3);
  EXPECT_EQ(ParseLeadingNumber(u"e3"_s), 0);
}

TEST(ParseLeadingNumber, FaultsOnANumberTooLargeForADouble) {
  EXPECT_THROW(ParseLeadingNumber(QString(400, u'9')), ConversionFault);
  EXPECT_THROW(ParseLeadingNumber(u"1e999"_s), ConversionFault);
  EXPECT_THROW(ParseLeadingNumber(u"-1e999"_s), ConversionFault);
  EXPECT_THROW(ParseLeadingNumber(u"0.001e400"_s), ConversionFault);
  EXPECT_THROW(ParseLeadingNumber(QString(400, u'9') + u"e-10"_s), ConversionFault);
  EXPECT_THROW(ParseLeadingNumber(u"1e99999999999999999999"_s), ConversionFault);
  EXPECT_THROW(ParseLeadingNumber(u"12e9223372036854775807"_s), ConversionFault);
  EXPECT_THROW(ParseLeadingNumber(u"1e0000000000999"_s), ConversionFault);
}

TEST(ParseLeadingNumber, TakesANumberTooSmallForADoubleAsZero) {
  EXPECT_EQ(ParseLeadingNumber(u"1e-999"_s), 0);
  EXPECT_EQ(ParseLeadingNumber(u"1e-99999999999999999999"_s), 0);
  EXPECT_EQ(ParseLeadingNumber(u"0.01e-9223372036854775807"_s), 0);
  EXPECT_EQ(ParseLeadingNumber(u"0.01e-9223372036854775808"_s), 0);
  EXPECT_EQ(ParseLeadingNumber(u"0."_s + QString(400, u'0') + u"1"_s), 0);
  EXPECT_EQ(ParseLeadingNumber(u"0e99999999999999999999"_s), 0);
}

TEST(ParseLeadingNumber, GivesNoNegativeZero) {
  EXPECT_FALSE(std::signbit(ParseLeadingNumber(u"-0"_s)));
  EXPECT_FALSE(std::signbit(ParseLeadingNumber(u"-0.0x"_s)));
}

TEST(ParseLeadingNumber, ReadsAMegabyteOfDigitsWithoutHarm) {
  EXPECT_THROW(ParseLeadingNumber(QString(1'000'000, u'1')), ConversionFault);
  EXPECT_EQ(ParseLeadingNumber(QString(1'000'000, u'0') + u"5"_s), 5);
}

TEST(IsNumeric, FollowsTheConventionsOfTheLocale) {
  for (const QString& text : {u"0"_s, u" 12 "_s, u"-3.5"_s, u"+1"_s, u"1,234"_s, u"1,234,567.89"_s,
                              u"1,5"_s, u".5"_s, u"5."_s}) {
    EXPECT_TRUE(IsNumeric(text, kUs)) << text.toStdString();
  }
  for (const QString& text :
       {u""_s, u"  "_s, u"."_s, u"-"_s, u"1.2.3"_s, u"1.234,5"_s, u"12abc"_s, u"1 2"_s, u"1e3"_s,
        u"--1"_s, u"+-1"_s, u"1-"_s, u",5"_s, u"1,,5"_s}) {
    EXPECT_FALSE(IsNumeric(text, kUs)) << text.toStdString();
  }
  for (const QString& text : {u"1,5"_s, u"1.234"_s, u"1.5"_s, u"1.234,5"_s, u"-0,25"_s}) {
    EXPECT_TRUE(IsNumeric(text, kGerman)) << text.toStdString();
  }
  for (const QString& text : {u"1,5,5"_s, u"1,234.5"_s, u"abc"_s}) {
    EXPECT_FALSE(IsNumeric(text, kGerman)) << text.toStdString();
  }
}

TEST(IsNumeric, TakesTypedBlanksForNoBreakSpacesThatGroup) {
  const QLocale french(QLocale::French, QLocale::France);
  EXPECT_TRUE(IsNumeric(u"12 345,5"_s, french));
  EXPECT_TRUE(IsNumeric(u"12\u202F345"_s, french));
}

TEST(IsNumeric, TakesAPointForTheSeparatorWhereItDoesNotGroup) {
  const QLocale french(QLocale::French, QLocale::France);
  const QLocale austrian(QLocale::German, QLocale::Austria);
  for (const QLocale& locale : {french, austrian}) {
    for (const QString& text : {u"1.5"_s, u"1,5"_s, u"-273.15"_s, u"12 345.5"_s}) {
      EXPECT_TRUE(IsNumeric(text, locale)) << text.toStdString();
    }
    for (const QString& text : {u"1.2.3"_s, u"1,5.5"_s, u"1.5,5"_s, u"."_s}) {
      EXPECT_FALSE(IsNumeric(text, locale)) << text.toStdString();
    }
  }
}

TEST(IsNumeric, TakesTheSignsOfTheLocale) {
  const QLocale swedish(QLocale::Swedish, QLocale::Sweden);
  EXPECT_TRUE(IsNumeric(u"\u22121,5"_s, swedish));
  EXPECT_TRUE(IsNumeric(u"-1,5"_s, swedish));
  EXPECT_FALSE(IsNumeric(u"\u22121.5"_s, kUs));
}

std::int32_t Integer(const QString& text, const QLocale& locale) {
  std::int32_t value = -77;
  EXPECT_TRUE(TryParseInteger(text, locale, value)) << text.toStdString();
  return value;
}

TEST(TryParseInteger, RoundsToTheNearestWithTiesToEven) {
  EXPECT_EQ(Integer(u"1.5"_s, kUs), 2);
  EXPECT_EQ(Integer(u"2.5"_s, kUs), 2);
  EXPECT_EQ(Integer(u"-0.5"_s, kUs), 0);
  EXPECT_EQ(Integer(u"-1.5"_s, kUs), -2);
  EXPECT_EQ(Integer(u"2.51"_s, kUs), 3);
  EXPECT_EQ(Integer(u" 12 "_s, kUs), 12);
}

TEST(TryParseInteger, ReadsSeparatorsByTheLocale) {
  EXPECT_EQ(Integer(u"1,5"_s, kUs), 15);
  EXPECT_EQ(Integer(u"1,5"_s, kGerman), 2);
  EXPECT_EQ(Integer(u"1.234"_s, kUs), 1);
  EXPECT_EQ(Integer(u"1.234"_s, kGerman), 1234);
  EXPECT_EQ(Integer(u"1.5"_s, kGerman), 15);
  EXPECT_EQ(Integer(u"\u22127"_s, QLocale(QLocale::Swedish, QLocale::Sweden)), -7);
  EXPECT_EQ(Integer(u"+7"_s, kUs), 7);
}

TEST(TryParseInteger, GivesFalseAndZeroForWhatIsNoInteger) {
  for (const QString& text : {u""_s, u"abc"_s, u"12abc"_s, u"1e3"_s, u"2147483648"_s,
                              u"2147483647.5"_s, u"-2147483649"_s, QString(400, u'9')}) {
    std::int32_t value = -77;
    EXPECT_FALSE(TryParseInteger(text, kUs, value)) << text.toStdString();
    EXPECT_EQ(value, 0);
  }
  EXPECT_EQ(Integer(u"2147483647"_s, kUs), 2147483647);
  EXPECT_EQ(Integer(u"-2147483648"_s, kUs), std::numeric_limits<std::int32_t>::min());
}

TEST(FormatInvariantNumber, WritesPlainDecimals) {
  EXPECT_EQ(FormatInvariantNumber(0), u"0"_s);
  EXPECT_EQ(FormatInvariantNumber(100), u"100"_s);
  EXPECT_EQ(FormatInvariantNumber(0.25), u"0.25"_s);
  EXPECT_EQ(FormatInvariantNumber(-3.5), u"-3.5"_s);
  EXPECT_EQ(FormatInvariantNumber(12.3457), u"12.3457"_s);
  EXPECT_EQ(FormatInvariantNumber(-999999), u"-999999"_s);
  EXPECT_EQ(FormatInvariantNumber(1000), u"1000"_s);
}

TEST(FormatInvariantNumber, NeverWritesAnExponent) {
  EXPECT_EQ(FormatInvariantNumber(1e-7), u"0.0000001"_s);
  EXPECT_EQ(FormatInvariantNumber(-1.23e-6), u"-0.00000123"_s);
  EXPECT_EQ(FormatInvariantNumber(999999999999.0), u"999999999999"_s);
  EXPECT_EQ(FormatInvariantNumber(1e21), u"1000000000000000000000"_s);
}

TEST(FormatInvariantNumber, KeepsFifteenSignificantDigits) {
  EXPECT_EQ(FormatInvariantNumber(1.0 / 3), u"0.333333333333333"_s);
  EXPECT_EQ(FormatInvariantNumber(123456.99999999999), u"123457"_s);
  EXPECT_EQ(FormatInvariantNumber(0.1 + 0.2), u"0.3"_s);
  EXPECT_EQ(FormatInvariantNumber(123456789.123456), u"123456789.123456"_s);
}

TEST(FormatInvariantNumber, WritesNothingThatCannotBeRead) {
  const QString largest = u"179769313486231"_s + QString(294, u'0');
  EXPECT_EQ(FormatInvariantNumber(1.7976931348623157e308), largest);
  EXPECT_EQ(FormatInvariantNumber(-1.7976931348623157e308), u'-' + largest);
  EXPECT_EQ(ParseLeadingNumber(largest), 1.79769313486231e308);
}

TEST(FormatInvariantNumber, ShowsNoNegativeZeroAndNothingButNumbers) {
  EXPECT_EQ(FormatInvariantNumber(-0.0), u"0"_s);
  EXPECT_EQ(FormatInvariantNumber(std::numeric_limits<double>::quiet_NaN()), u"0"_s);
  EXPECT_EQ(FormatInvariantNumber(std::numeric_limits<double>::infinity()), u"0"_s);
}

TEST(ParseInvariantNumber, TakesACommaForAPointAndChangesTheText) {
  QString text = u"1,5"_s;
  EXPECT_EQ(ParseInvariantNumber(text), 1.5);
  EXPECT_EQ(text, u"1.5"_s);
  text = u"1,234,5"_s;
  EXPECT_EQ(ParseInvariantNumber(text), 1.234);
  EXPECT_EQ(text, u"1.234.5"_s);
}

TEST(ParseInvariantNumber, NeverFails) {
  QString text = u"x"_s;
  EXPECT_EQ(ParseInvariantNumber(text), 0);
  text = u"1e999"_s;
  EXPECT_EQ(ParseInvariantNumber(text), 0);
  text = QString();
  EXPECT_EQ(ParseInvariantNumber(text), 0);
}

TEST(RoundToInt, FaultsOnWhatDoesNotFit) {
  EXPECT_EQ(RoundToInt16(32767.4), 32767);
  EXPECT_THROW(RoundToInt16(32767.5), ConversionFault);
  EXPECT_EQ(RoundToInt16(-32768.5), -32768);
  EXPECT_THROW(RoundToInt16(99999), ConversionFault);
  EXPECT_EQ(RoundToInt32(0.5), 0);
  EXPECT_EQ(RoundToInt32(3.5), 4);
  EXPECT_THROW(RoundToInt32(2147483647.5), ConversionFault);
  EXPECT_THROW(RoundToInt32(std::numeric_limits<double>::quiet_NaN()), ConversionFault);
}

TEST(ToBcd, PutsTheTensInTheHighHalfByte) {
  EXPECT_EQ(ToBcd(0), 0x00);
  EXPECT_EQ(ToBcd(9), 0x09);
  EXPECT_EQ(ToBcd(10), 0x10);
  EXPECT_EQ(ToBcd(59), 0x59);
  EXPECT_EQ(ToBcd(99), 0x99);
}

TEST(FromBcd, TakesTheHighHalfByteTimesTen) {
  EXPECT_EQ(FromBcd(0x00), 0);
  EXPECT_EQ(FromBcd(0x27), 27);
  EXPECT_EQ(FromBcd(0x99), 99);
  EXPECT_EQ(FromBcd(0x1A), 20);
  EXPECT_EQ(FromBcd(0xFF), 165);
}

TEST(BcdToText, GivesTwoCharacters) {
  EXPECT_EQ(BcdToText(0x07), QStringLiteral("07"));
  EXPECT_EQ(BcdToText(0x59), QStringLiteral("59"));
}

TEST(BcdToText, GoesOnInAsciiForAHalfByteAboveNine) {
  EXPECT_EQ(BcdToText(0x1A), QStringLiteral("1:"));
  EXPECT_EQ(BcdToText(0x1B), QStringLiteral("1;"));
  EXPECT_EQ(BcdToText(0xF0), QStringLiteral("?0"));
}

}  // namespace
}  // namespace tessmar
