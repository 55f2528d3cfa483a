#include "base/SystemLocale.h"

#include <gtest/gtest.h>

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

TEST(ShortDate, LeavesQuotedPartsOfTheFormatAlone) {
  // Bulgarian writes a quoted abbreviation of "year" behind the date.
  const SystemLocale bulgarian(QLocale(QLocale::Bulgarian, QLocale::Bulgaria));
  EXPECT_EQ(bulgarian.ShortDate(kBoxingDay), u"26.12.2010 г."_s);
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
