#include "settings/IntervalText.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class IntervalDisplay : public testing::Test {
 protected:
  ~IntervalDisplay() override { SetTextLanguage(kLanguageEnglish); }

  static QString Shown(const QString& interval) {
    LoggerSettings settings;
    settings.SampleInterval = interval;
    return IntervalDisplayText(settings);
  }
};

TEST_F(IntervalDisplay, SpellsTheUnitOutInEnglish) {
  EXPECT_EQ(Shown(u"1 min"_s), u"1 minute"_s);
  EXPECT_EQ(Shown(u"30 seconds"_s), u"30 seconds"_s);
  EXPECT_EQ(Shown(u"1 sec"_s), u"1 second"_s);
  EXPECT_EQ(Shown(u"15 minutes"_s), u"15 minutes"_s);
  EXPECT_EQ(Shown(u"1 hours"_s), u"1 hour"_s);
  EXPECT_EQ(Shown(u"2 hour"_s), u"2 hours"_s);
  EXPECT_EQ(Shown(u"1 days"_s), u"1 day"_s);
  EXPECT_EQ(Shown(u"7 day"_s), u"7 days"_s);
}

TEST_F(IntervalDisplay, SpellsTheUnitOutInGerman) {
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(Shown(u"1 min"_s), u"1 Minute"_s);
  EXPECT_EQ(Shown(u"30 seconds"_s), u"30 Sekunden"_s);
  EXPECT_EQ(Shown(u"1 sec"_s), u"1 Sekunde"_s);
  EXPECT_EQ(Shown(u"2 hours"_s), u"2 Stunden"_s);
  EXPECT_EQ(Shown(u"1 day"_s), u"1 Tag"_s);
  EXPECT_EQ(Shown(u"3 days"_s), u"3 Tage"_s);
}

TEST_F(IntervalDisplay, OfAnEmptyIntervalIsEmpty) {
  EXPECT_EQ(Shown(QString()), QString());
}

TEST_F(IntervalDisplay, TakesTheFirstUnitOfItsOwnOrder) {
  EXPECT_EQ(Shown(u"5 days of minutes and seconds"_s), u"5 seconds"_s);
  EXPECT_EQ(Shown(u"5 days of minutes"_s), u"5 minutes"_s);
}

TEST_F(IntervalDisplay, ReturnsWhatItDoesNotKnowAsItStands) {
  EXPECT_EQ(Shown(u"5 weeks"_s), u"5 weeks"_s);
  EXPECT_EQ(Shown(u"10 SEC"_s), u"10 SEC"_s);
}

TEST_F(IntervalDisplay, CountsZeroWithoutANumberOrWithOneTooLarge) {
  EXPECT_EQ(Shown(u"seconds"_s), u"0 seconds"_s);
  EXPECT_EQ(Shown(u"99999999999 min"_s), u"0 minutes"_s);
}

TEST_F(IntervalDisplay, RoundsTheCountToEven) {
  EXPECT_EQ(Shown(u"1.5 hours"_s), u"2 hours"_s);
  EXPECT_EQ(Shown(u"0.5 hours"_s), u"0 hours"_s);
}

}  // namespace
}  // namespace tessmar
