#include "cli/SettingsDifference.h"

#include <gtest/gtest.h>

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class CompareSettingsTest : public testing::Test {
 protected:
  CompareSettingsTest() {
    Link.TrapErrors = true;
    Link.AnalogChannelCount = 4;
    Link.PulseChannelCount = 1;
    Link.SampleOnDemandSupported = true;
    LoadDefaultSettings(Before, 4);
    After = Before;
  }
  std::vector<SettingsDifference> Compare(bool withDerived = true) {
    return CompareSettings(Link, Before, After, withDerived);
  }
  LinkState Link;
  LoggerSettings Before;
  LoggerSettings After;
};

TEST_F(CompareSettingsTest, FindsNothingWhereNothingDiffers) {
  EXPECT_TRUE(Compare().empty());
}

TEST_F(CompareSettingsTest, NamesTheFieldWithItsSectionAndChannel) {
  After.LoggerName = u"Weir"_s;
  Before.LoggerName = u"Pond"_s;
  After.Analog[1].EngUnits = u"Feet"_s;
  Before.Analog[1].EngUnits = u"Inches"_s;
  Before.Pulse[0].DecPlaces = 1;
  After.Pulse[0].DecPlaces = 3;
  Before.Alarm[1].AlarmHour = 5;
  After.Alarm[1].AlarmHour = 17;
  Before.Do.PO2Units = 0;
  After.Do.PO2Units = 1;
  EXPECT_EQ(Compare(), (std::vector<SettingsDifference>{
                           {u"LoggerName"_s, u"Pond"_s, u"Weir"_s},
                           {u"Analog Channel 2 EngUnits"_s, u"Inches"_s, u"Feet"_s},
                           {u"Digital Channel 1 DecPlaces"_s, u"1"_s, u"3"_s},
                           {u"Alarm 2 AlarmHour"_s, u"5"_s, u"17"_s},
                           {u"DO PO2Units"_s, u"0"_s, u"1"_s}}));
  EXPECT_EQ(Compare(false).size(), 4U) << "an image file has no DO set-up";
}

TEST_F(CompareSettingsTest, ComparesWhatALoggerWouldHold) {
  Before.Analog[0].UpperLimit = 123.456;
  After.Analog[0].UpperLimit = 123.4560001;
  Before.LoggerName = QString(32, u'a');
  After.LoggerName = QString(40, u'a');
  EXPECT_TRUE(Compare().empty());
}

TEST_F(CompareSettingsTest, LeavesOutChannelsThatTheLoggerLacks) {
  After.Analog[4].EngUnits = u"Feet"_s;
  After.Pulse[1].EngUnits = u"Feet"_s;
  EXPECT_TRUE(Compare().empty());
}

}  // namespace
}  // namespace tessmar::test
