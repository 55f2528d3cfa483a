#include "base/SystemLocale.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const QDate kBoxingDay(2010, 12, 26);
const QDate kEarlyMarch(2010, 3, 4);
const QTime kAfternoon(15, 5, 12);
const QTime kJustAfterMidnight(0, 5, 9);

SystemLocale English() {
  return SystemLocale(QLocale(QLocale::English, QLocale::UnitedStates));
}
SystemLocale German() {
  return SystemLocale(QLocale(QLocale::German, QLocale::Germany));
}
SystemLocale Spanish() {
  return SystemLocale(QLocale(QLocale::Spanish, QLocale::Spain));
}

TEST(ShortDate, HasTheLocalesOrderAndFourYearDigits) {
  EXPECT_EQ(English().ShortDate(kBoxingDay), u"12/26/2010"_s);
  EXPECT_EQ(English().ShortDate(kEarlyMarch), u"3/4/2010"_s);
  EXPECT_EQ(German().ShortDate(kBoxingDay), u"26.12.2010"_s);
  EXPECT_EQ(German().ShortDate(kEarlyMarch), u"04.03.2010"_s);
  EXPECT_EQ(Spanish().ShortDate(kBoxingDay), u"26/12/2010"_s);
  EXPECT_EQ(Spanish().ShortDate(kEarlyMarch), u"4/3/2010"_s);
}

TEST(ShortDate, KeepsAFourDigitYearThatTheLocaleHasAlready) {
  const SystemLocale british(QLocale(QLocale::English, QLocale::UnitedKingdom));
  EXPECT_EQ(british.ShortDate(kBoxingDay), u"26/12/2010"_s);
  const SystemLocale japanese(QLocale(QLocale::Japanese, QLocale::Japan));
  EXPECT_EQ(japanese.ShortDate(kEarlyMarch), u"2010/03/04"_s);
}

TEST(ShortDate, LeavesOutWordsBlanksAndMarksOfTheLocale) {
  struct Row {
    const char* Locale;
    const char16_t* Date;
    const char16_t* Stamp;
  };
  const Row rows[] = {
      {"bg_BG", u"26.12.2010", u"26.12.10"},     {"hr_HR", u"26.12.2010.", u"26.12.2010."},
      {"bs_BA", u"26.12.2010.", u"26.12.2010."}, {"hu_HU", u"2010.12.26.", u"2010.12.26."},
      {"ko_KR", u"2010.12.26.", u"2010.12.26."}, {"sk_SK", u"26.12.2010", u"26.12.10"},
      {"sl_SI", u"26.12.2010", u"26.12.10"},     {"cs_CZ", u"26.12.2010", u"26.12.10"},
      {"ar_EG", u"26/12/2010", u"26/12/10"},     {"fa_IR", u"2010/12/26", u"2010/12/26"},
      {"kkj_CM", u"26/12/2010", u"26/12/10"},    {"ne_NP", u"2010/12/26", u"2010/12/26"},
      {"he_IL", u"26.12.2010", u"26.12.10"},
  };
  for (const Row& row : rows) {
    const SystemLocale locale(QLocale(QLatin1StringView(row.Locale)));
    EXPECT_EQ(locale.ShortDate(kBoxingDay), QString::fromUtf16(row.Date)) << row.Locale;
    EXPECT_EQ(locale.StampDate(kBoxingDay), QString::fromUtf16(row.Stamp)) << row.Locale;
  }
}

/// Where a part of a date stands in the format of a locale, its quoted words left out.
qsizetype PlaceIn(const QLocale& locale, QChar part) {
  QString format = locale.dateFormat(QLocale::ShortFormat);
  static const QRegularExpression quoted(u"'[^']*'"_s);
  return format.remove(quoted).indexOf(part);
}

// Every digit of the day, month and year differs, so that each is known wherever it stands.
TEST(ShortDate, OfEveryLocaleIsAsciiDigitsAndSeparatorsInItsOrder) {
  const auto locales =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
  ASSERT_GT(locales.size(), 400);
  static const QRegularExpression form(u"^[0-9]+[-./][0-9]+[-./][0-9]+[.]?$"_s);
  const QDate date(2043, 5, 16);
  for (const QLocale& locale : locales) {
    if (locale == QLocale::c()) continue;
    const QString text = SystemLocale(locale).ShortDate(date);
    EXPECT_TRUE(form.match(text).hasMatch()) << locale.name().toStdString();
    EXPECT_EQ(SystemLocale(locale).StampDate(date).contains(u' '), false);
    const qsizetype year = text.indexOf(u"2043"_s);
    const qsizetype month = text.indexOf(u'5');
    const qsizetype day = text.indexOf(u"16"_s);
    ASSERT_TRUE(year >= 0 && month >= 0 && day >= 0) << text.toStdString();
    EXPECT_EQ(day < month, PlaceIn(locale, u'd') < PlaceIn(locale, u'M')) << text.toStdString();
    EXPECT_EQ(year < month, PlaceIn(locale, u'y') < PlaceIn(locale, u'M')) << text.toStdString();
    EXPECT_EQ(year < day, PlaceIn(locale, u'y') < PlaceIn(locale, u'd')) << text.toStdString();
  }
}

TEST(ShortDate, OfASystemWithoutALocaleIsTheAmericanOne) {
  const SystemLocale none(QLocale::c());
  EXPECT_EQ(none.ShortDate(kBoxingDay), u"12/26/2010"_s);
  EXPECT_EQ(none.ShortTime(kAfternoon), u"3:05:12 PM"_s);
  EXPECT_FALSE(none.Uses24HourClock());
  EXPECT_EQ(none.PrimaryLanguage(), 9);
}

TEST(StampDate, EndsInTwoYearDigits) {
  EXPECT_EQ(English().StampDate(kBoxingDay), u"12/26/10"_s);
  EXPECT_EQ(German().StampDate(kBoxingDay), u"26.12.10"_s);
  EXPECT_EQ(Spanish().StampDate(kEarlyMarch), u"4/3/10"_s);
  EXPECT_EQ(English().StampDate(QDate(2005, 1, 2)), u"1/2/05"_s);
}

TEST(StampDate, LeavesADateThatBeginsWithTheYear) {
  const SystemLocale japanese(QLocale(QLocale::Japanese, QLocale::Japan));
  EXPECT_EQ(japanese.StampDate(kBoxingDay), u"2010/12/26"_s);
}

TEST(ShortTime, FollowsTheClockFormOfTheLocale) {
  EXPECT_FALSE(English().Uses24HourClock());
  EXPECT_EQ(English().ShortTime(kAfternoon), u"3:05:12 PM"_s);
  EXPECT_EQ(English().ShortTime(kJustAfterMidnight), u"12:05:09 AM"_s);
  EXPECT_TRUE(German().Uses24HourClock());
  EXPECT_EQ(German().ShortTime(kAfternoon), u"15:05:12"_s);
  EXPECT_EQ(German().ShortTime(kJustAfterMidnight), u"00:05:09"_s);
  EXPECT_TRUE(Spanish().Uses24HourClock());
}

TEST(ShortTime, SaysAmAndPmInEveryTwelveHourLocale) {
  const SystemLocale greek(QLocale(QLocale::Greek, QLocale::Greece));
  ASSERT_FALSE(greek.Uses24HourClock());
  EXPECT_EQ(greek.ShortTime(kAfternoon), u"3:05:12 PM"_s);
}

TEST(PrimaryLanguage, NumbersTheLanguage) {
  EXPECT_EQ(German().PrimaryLanguage(), 7);
  EXPECT_EQ(SystemLocale(QLocale(QLocale::German, QLocale::Austria)).PrimaryLanguage(), 7);
  EXPECT_EQ(English().PrimaryLanguage(), 9);
  EXPECT_EQ(Spanish().PrimaryLanguage(), 10);
  EXPECT_EQ(SystemLocale(QLocale(QLocale::French, QLocale::France)).PrimaryLanguage(), 12);
  EXPECT_EQ(SystemLocale(QLocale(QLocale::Italian, QLocale::Italy)).PrimaryLanguage(), 16);
}

TEST(PrimaryLanguage, IsEnglishForALanguageWithoutANumber) {
  EXPECT_EQ(SystemLocale(QLocale(QLocale::Esperanto)).PrimaryLanguage(), 9);
}

TEST(CarriedDate, KeepsADateOfTheCalendar) {
  EXPECT_EQ(CarriedDate(2010, 12, 26), QDate(2010, 12, 26));
  EXPECT_EQ(CarriedDate(2012, 2, 29), QDate(2012, 2, 29));
}

TEST(CarriedDate, CarriesADayThatTheMonthDoesNotHave) {
  EXPECT_EQ(CarriedDate(2010, 3, 0), QDate(2010, 2, 28));
  EXPECT_EQ(CarriedDate(2010, 1, 0), QDate(2009, 12, 31));
  EXPECT_EQ(CarriedDate(2010, 4, 31), QDate(2010, 5, 1));
  EXPECT_EQ(CarriedDate(2010, 2, 31), QDate(2010, 3, 3));
  EXPECT_EQ(CarriedDate(2012, 2, 31), QDate(2012, 3, 2));
}

TEST(CarriedDate, CarriesAMonthThatTheYearDoesNotHave) {
  EXPECT_EQ(CarriedDate(2010, 0, 5), QDate(2009, 12, 5));
  EXPECT_EQ(CarriedDate(2010, 13, 5), QDate(2011, 1, 5));
  EXPECT_EQ(CarriedDate(2000, 0, 0), QDate(1999, 11, 30));
  EXPECT_EQ(CarriedDate(2165, 165, 165), QDate(2179, 2, 12));
}

}  // namespace
}  // namespace tessmar
