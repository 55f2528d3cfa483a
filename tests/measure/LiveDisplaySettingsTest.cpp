#include "measure/LiveDisplayFixture.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class LiveDisplaySettings : public test::LiveDisplayTest {
 protected:
  QString Interval() {
    display_.RefreshMainScreen();
    return screen_.Captions[u"lblSampleInterval"_s];
  }

  // The text of alarm 1 by the clock form of a locale.
  QString AlarmIn(const QLocale& where, std::int16_t hour) {
    const SystemLocale locale(where);
    LiveDisplay display(link_, settings_, ring_, screen_, locale);
    settings_.Alarm[0] = {.Enable = 1, .AlarmSec = 9, .AlarmMin = 5, .AlarmHour = hour};
    display.RefreshMainScreen();
    return Caption("lblAlarm", 0);
  }
};

TEST_F(LiveDisplaySettings, TheIntervalGivesWayToTheLoggingMode) {
  settings_.SampleInterval = u"15 minutes"_s;
  settings_.LoggingStyle = kLogPeriodic;
  EXPECT_EQ(Interval(), "15 minutes");
  settings_.LoggingStyle = kLogLogarithmic;
  EXPECT_EQ(Interval(), "Logarithmic");
  settings_.LoggingStyle = kLogFast;
  EXPECT_EQ(Interval(), "Fast");
  settings_.LoggingStyle = kLogFast | kLogException;
  EXPECT_EQ(Interval(), "Fast");
  settings_.LoggingStyle = kLogException;
  EXPECT_EQ(Interval(), "15 minutes");
  settings_.LoggingStyle = 3;
  EXPECT_EQ(Interval(), "15 minutes");
}

TEST_F(LiveDisplaySettings, TheWarmUpHasItsUnit) {
  settings_.SensorWarmupTime = 3;
  display_.RefreshMainScreen();
  EXPECT_EQ(screen_.Captions[u"lblWarmup"_s], "3 sec");
}

TEST_F(LiveDisplaySettings, AnAlarmOnA24HourClockIsAsItStands) {
  const QLocale german(QLocale::German, QLocale::Germany);
  EXPECT_EQ(AlarmIn(german, 0), "0:05:09");
  EXPECT_EQ(AlarmIn(german, 7), "7:05:09");
  EXPECT_EQ(AlarmIn(german, 23), "23:05:09");
}

TEST_F(LiveDisplaySettings, AnAlarmOnA12HourClockHasAmAndPm) {
  const QLocale american(QLocale::English, QLocale::UnitedStates);
  EXPECT_EQ(AlarmIn(american, 0), "12:05:09 AM");
  EXPECT_EQ(AlarmIn(american, 1), "1:05:09 AM");
  EXPECT_EQ(AlarmIn(american, 11), "11:05:09 AM");
  EXPECT_EQ(AlarmIn(american, 12), "12:05:09 PM");
  EXPECT_EQ(AlarmIn(american, 13), "1:05:09 PM");
  EXPECT_EQ(AlarmIn(american, 23), "11:05:09 PM");
}

TEST_F(LiveDisplaySettings, AnAlarmIsDimmedUnlessItIsOn) {
  settings_.Alarm[1].Enable = 255;
  display_.RefreshMainScreen();
  EXPECT_FALSE(screen_.Enabled[u"lblAlarm(0)"_s]);
  EXPECT_TRUE(screen_.Enabled[u"lblAlarm(1)"_s]);
}

TEST_F(LiveDisplaySettings, LimitsAndUnitsOfAnEnabledChannel) {
  settings_.Analog[7].DisplayTop = 24;
  settings_.Analog[7].DisplayBottom = -1.5;
  settings_.Analog[7].EngUnits = u"Volts"_s;
  display_.RefreshMainScreen();
  EXPECT_EQ(Caption("lblMax", 7), "24.00");
  EXPECT_EQ(Caption("lblMin", 7), "-1.50");
  EXPECT_EQ(Caption("lblUnits", 7), "Volts");
  EXPECT_TRUE(display_.View(7).Enabled);
  EXPECT_EQ(display_.View(7).MeterTop, 24);
  EXPECT_EQ(display_.View(7).MeterBottom, -1.5);
}

TEST_F(LiveDisplaySettings, ADisabledChannelIsEmptied) {
  Show();
  Push(7138);
  settings_.Analog[2].Enable = 0;
  display_.RefreshMainScreen();
  for (const char* label : {"lblHistory", "lblValue", "lblMax", "lblMin", "lblUnits"})
    EXPECT_EQ(Caption(label, 2), "") << label;
  EXPECT_EQ(display_.View(2).MeterTop, 0);
  EXPECT_EQ(display_.View(2).MeterBottom, 0);
  EXPECT_EQ(display_.View(2).Shown[0], 0);
  EXPECT_FALSE(display_.View(2).Enabled);
}

TEST_F(LiveDisplaySettings, ChannelsBeyondTheLoggersAreLeftAlone) {
  link_.AnalogChannelCount = 2;
  display_.RefreshMainScreen();
  EXPECT_TRUE(display_.View(1).Enabled);
  EXPECT_FALSE(display_.View(2).Enabled);
  EXPECT_FALSE(screen_.Captions.contains(u"lblMax(2)"_s));
}

TEST_F(LiveDisplaySettings, TwoPulseChannelsEnableBothFrames) {
  display_.RefreshMainScreen();
  for (const QString& name :
       {u"fraPulse1"_s, u"lblPulseValue1"_s, u"fraPulse2"_s, u"lblPulseValue2"_s})
    EXPECT_TRUE(screen_.Enabled.value(name, false)) << name.toStdString();
}

TEST_F(LiveDisplaySettings, OnePulseChannelDimsTheSecondFrame) {
  link_.PulseChannelCount = 1;
  display_.RefreshMainScreen();
  EXPECT_TRUE(screen_.Enabled[u"fraPulse1"_s]);
  EXPECT_TRUE(screen_.Enabled[u"lblPulseValue1"_s]);
  EXPECT_FALSE(screen_.Enabled.value(u"fraPulse2"_s, true));
  EXPECT_FALSE(screen_.Enabled.value(u"lblPulseValue2"_s, true));
}

TEST_F(LiveDisplaySettings, NoPulseChannelDimsTheFirstFrameAndLeavesTheSecondAsItWas) {
  link_.PulseChannelCount = 0;
  display_.RefreshMainScreen();
  EXPECT_FALSE(screen_.Enabled.value(u"fraPulse1"_s, true));
  EXPECT_FALSE(screen_.Enabled.value(u"lblPulseValue1"_s, true));
  EXPECT_FALSE(screen_.Enabled.contains(u"fraPulse2"_s));
  EXPECT_FALSE(screen_.Enabled.contains(u"lblPulseValue2"_s));
}

}  // namespace
}  // namespace tessmar
