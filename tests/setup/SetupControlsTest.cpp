#include "setup/SetupControls.h"

#include <gtest/gtest.h>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class SetupControlsTest : public testing::Test {
 protected:
  SetupControlsTest() {
    link_.TrapErrors = true;
    link_.AnalogChannelCount = 8;
    link_.PulseChannelCount = 2;
    LoadDefaultSettings(settings_, 8);
    SettingsToControls(link_, false, settings_, controls_);
  }

  void ToSettings(bool use24HourClock = false) {
    ControlsToSettings(link_, use24HourClock, controls_, settings_);
  }
  void ToControls(bool use24HourClock = false) {
    SettingsToControls(link_, use24HourClock, settings_, controls_);
  }

  QString IntervalFor(const QString& number, int unit) {
    controls_.txtSampleInterval = number;
    controls_.cmbSampleInterval = unit;
    ToSettings();
    return settings_.SampleInterval;
  }

  AlarmSettings AlarmFor(const QString& text, int half, bool use24HourClock = false) {
    controls_.Alarm[0] = {.chkAlarm = true, .txtAlarm = text, .cmbAlarm = half};
    ToSettings(use24HourClock);
    return settings_.Alarm[0];
  }

  LinkState link_;
  LoggerSettings settings_;
  SetupControls controls_;
};

TEST_F(SetupControlsTest, OneIsSingularAlsoWhenWrittenWithADecimalPoint) {
  EXPECT_EQ(IntervalFor(u"1"_s, 1), u"1 minute"_s);
  EXPECT_EQ(IntervalFor(u"2"_s, 1), u"2 minutes"_s);
  EXPECT_EQ(IntervalFor(u"1.0"_s, 1), u"1 minute"_s);
}

TEST_F(SetupControlsTest, TheIntervalTakesTheUnitOfTheList) {
  EXPECT_EQ(IntervalFor(u"0"_s, 0), u"0 seconds"_s);
  EXPECT_EQ(IntervalFor(u"1"_s, 0), u"1 second"_s);
  EXPECT_EQ(IntervalFor(u"1"_s, 2), u"1 hour"_s);
  EXPECT_EQ(IntervalFor(u"1"_s, 3), u"1 day"_s);
  EXPECT_EQ(IntervalFor(u"65535"_s, 3), u"65535 days"_s);
}

TEST_F(SetupControlsTest, AnIntervalWithoutAUnitWordShowsDays) {
  settings_.SampleInterval = u"7 fortnights"_s;
  ToControls();
  EXPECT_EQ(controls_.txtSampleInterval, u"7"_s);
  EXPECT_EQ(controls_.cmbSampleInterval, 3);
}

TEST_F(SetupControlsTest, TheIntervalUnitIsFoundInAFixedOrder) {
  const std::pair<QString, int> rows[] = {{u"30 seconds"_s, 0},   {u"1 minute"_s, 1},
                                          {u"5 hours"_s, 2},      {u"2 days"_s, 3},
                                          {u"9 min or sec"_s, 0}, {u"9 hour min"_s, 1}};
  for (const auto& [text, index] : rows) {
    settings_.SampleInterval = text;
    ToControls();
    EXPECT_EQ(controls_.cmbSampleInterval, index) << text.toStdString();
  }
}

TEST_F(SetupControlsTest, TwelveAmIsHourZeroAndComesBackAsTwelve) {
  EXPECT_EQ(AlarmFor(u"12:30:00"_s, 0),
            (AlarmSettings{.Enable = 1, .AlarmSec = 0, .AlarmMin = 30, .AlarmHour = 0}));
  ToControls();
  EXPECT_EQ(controls_.Alarm[0].txtAlarm, u"12:30:00"_s);
  EXPECT_EQ(controls_.Alarm[0].cmbAlarm, 0);
}

TEST_F(SetupControlsTest, TwelvePmStaysHourTwelve) {
  EXPECT_EQ(AlarmFor(u"12:30:00"_s, 1).AlarmHour, 12);
  ToControls();
  EXPECT_EQ(controls_.Alarm[0].txtAlarm, u"12:30:00"_s);
  EXPECT_EQ(controls_.Alarm[0].cmbAlarm, 1);
}

TEST_F(SetupControlsTest, AnAfternoonHourIsMovedByTwelveBothWays) {
  EXPECT_EQ(AlarmFor(u"1:02:03"_s, 1),
            (AlarmSettings{.Enable = 1, .AlarmSec = 3, .AlarmMin = 2, .AlarmHour = 13}));
  ToControls();
  EXPECT_EQ(controls_.Alarm[0].txtAlarm, u"1:02:03"_s);
  EXPECT_EQ(controls_.Alarm[0].cmbAlarm, 1);
}

TEST_F(SetupControlsTest, InThe24HourFormTheHalfDayListPlaysNoPart) {
  EXPECT_EQ(AlarmFor(u"12:30:00"_s, 0, true).AlarmHour, 12);
  EXPECT_EQ(AlarmFor(u"1:30:00"_s, 1, true).AlarmHour, 1);
  settings_.Alarm[0].AlarmHour = 23;
  controls_.Alarm[0].cmbAlarm = 0;
  ToControls(true);
  EXPECT_EQ(controls_.Alarm[0].txtAlarm, u"23:30:00"_s);
  EXPECT_EQ(controls_.Alarm[0].cmbAlarm, 0);
}

TEST_F(SetupControlsTest, AnAlarmTextNeedsOnlyItsHour) {
  const AlarmSettings seven{.Enable = 1, .AlarmSec = 0, .AlarmMin = 0, .AlarmHour = 7};
  EXPECT_EQ(AlarmFor(u"7"_s, 0), seven);
  const AlarmSettings sevenFive{.Enable = 1, .AlarmSec = 0, .AlarmMin = 5, .AlarmHour = 7};
  EXPECT_EQ(AlarmFor(u"7:5"_s, 0), sevenFive);
}

TEST_F(SetupControlsTest, AnAlarmHourThatNoClockHasIsShownAsFarAsItCan) {
  settings_.Alarm[1].AlarmHour = 25;
  ToControls();
  EXPECT_EQ(controls_.Alarm[1].txtAlarm, u"13:00:00"_s);
  EXPECT_EQ(controls_.Alarm[1].cmbAlarm, 0);
}

TEST_F(SetupControlsTest, TheLoggingStyleIsAModeAndTheExceptionBit) {
  controls_.optPeriodic = false;
  controls_.optFastMode = true;
  controls_.chkException = true;
  ToSettings();
  EXPECT_EQ(settings_.LoggingStyle, 130);
  controls_.optFastMode = false;
  controls_.optLogarithmic = true;
  controls_.chkException = false;
  ToSettings();
  EXPECT_EQ(settings_.LoggingStyle, 1);

  settings_.LoggingStyle = 128;
  ToControls();
  EXPECT_TRUE(controls_.optPeriodic);
  EXPECT_TRUE(controls_.chkException);
  settings_.LoggingStyle = 3;
  ToControls();
  EXPECT_TRUE(controls_.optLogarithmic);
  EXPECT_FALSE(controls_.optPeriodic || controls_.optFastMode || controls_.chkException);
}

TEST_F(SetupControlsTest, AnAnalogColumnGoesToItsFields) {
  controls_.Analog[2] = {.chkEnable = false,
                         .cmbEU = u"Feet"_s,
                         .txtHighEU = u"15.5"_s,
                         .txtLowEU = u"-3"_s,
                         .txtHighRaw = u"60000"_s,
                         .txtLowRaw = u"12"_s,
                         .txtTop = u"20"_s,
                         .txtBottom = u"-4.25"_s,
                         .cmbPrecision = 5};
  ToSettings();
  EXPECT_EQ(settings_.Analog[2], (AnalogChannelSettings{.Enable = 0,
                                                        .EngUnits = u"Feet"_s,
                                                        .DecPlaces = 5,
                                                        .RawScaleLower = 12,
                                                        .RawScaleUpper = 60000,
                                                        .LowerLimit = -3,
                                                        .UpperLimit = 15.5,
                                                        .DisplayTop = 20,
                                                        .DisplayBottom = -4.25}));
  const SetupControls before = controls_;
  controls_.Analog[2] = {};
  ToControls();
  EXPECT_EQ(controls_.Analog[2], before.Analog[2]);
}

TEST_F(SetupControlsTest, EveryFieldSurvivesTheWayThereAndBack) {
  settings_.LoggerName = u"Weir 12"_s;
  settings_.SensorWarmupTime = 60;
  settings_.FixedBaudRate = 6;
  settings_.DataWrapAroundFlag = 0;
  settings_.Deadband = 65535;
  settings_.EnableSOD = 1;
  settings_.Pulse[1] = {.Enable = 0, .EngUnits = u"Kgal"_s, .DecPlaces = 3, .PulseUnit = 0.25};
  settings_.Do = {.PO2Channel = 1,
                  .PO2Units = 1,
                  .WaterTempChannel = 2,
                  .WaterTempUnits = 1,
                  .ConductivityManualEntry = 0,
                  .ConductivityManual = 12.5,
                  .ConductivityManualEntryUnits = 1,
                  .ConductivityChannel = 3,
                  .ConductivityUnits = 1,
                  .AirPressureManualEntry = 0,
                  .AirPressureManual = 500,
                  .AirPressureManualEntryUnits = 7,
                  .AirPressureChannel = 4,
                  .AirPressureUnits = 5,
                  .EnableSalinityDisplay = 1,
                  .SalinityDisplayChannel = 5,
                  .EnableO2SaturationDisplay = 1,
                  .O2SaturationDisplayChannel = 6,
                  .EnableO2ConcentrationDisplay = 1,
                  .O2ConcentrationDisplayChannel = 0,
                  .O2ConcentrationDisplayUnits = 1};
  const LoggerSettings before = settings_;
  ToControls();
  settings_ = {};
  ToSettings();
  EXPECT_EQ(settings_, before);
  EXPECT_EQ(controls_.Do.cmbAirPressureManualEntryUnits, 7);
  EXPECT_EQ(controls_.Do.txtConductivityManualEntry, u"12.5"_s);
  EXPECT_EQ(controls_.cmbBaud, 6);
  EXPECT_EQ(controls_.txtException, u"65535"_s);
}

TEST_F(SetupControlsTest, ChannelsThatTheLoggerLacksKeepTheirRecord) {
  link_.AnalogChannelCount = 3;
  link_.PulseChannelCount = 1;
  settings_.Analog[3].EngUnits = u"kept"_s;
  settings_.Pulse[1].EngUnits = u"kept"_s;
  controls_.Analog[3].cmbEU = u"lost"_s;
  controls_.Pulse[1].cmbPulseEU = u"lost"_s;
  controls_.Analog[2].cmbEU = u"taken"_s;
  ToSettings();
  EXPECT_EQ(settings_.Analog[2].EngUnits, u"taken"_s);
  EXPECT_EQ(settings_.Analog[3].EngUnits, u"kept"_s);
  EXPECT_EQ(settings_.Pulse[1].EngUnits, u"kept"_s);
}

TEST_F(SetupControlsTest, AListWithoutASelectionEndsTheTransferThere) {
  settings_.LoggerName = u"before"_s;
  settings_.SampleInterval = u"4 hours"_s;
  controls_.txtName = u"after"_s;
  controls_.cmbWarmup = -1;
  controls_.txtSampleInterval = u"9"_s;
  ToSettings();
  EXPECT_EQ(settings_.LoggerName, u"after"_s);
  EXPECT_EQ(settings_.SensorWarmupTime, 3);
  EXPECT_EQ(settings_.SampleInterval, u"4 hours"_s);
}

TEST_F(SetupControlsTest, ANumberThatDoesNotFitEndsTheTransferThere) {
  controls_.chkWrap = false;
  controls_.txtException = u"99999999999"_s;
  controls_.cmbSampleInterval = 0;
  ToSettings();
  EXPECT_EQ(settings_.SampleInterval, u"1 second"_s);
  EXPECT_EQ(settings_.Deadband, 0);
  EXPECT_EQ(settings_.DataWrapAroundFlag, 1);
}

TEST_F(SetupControlsTest, WithoutTrappingTheFaultComesThrough) {
  link_.TrapErrors = false;
  controls_.Analog[7].cmbPrecision = -1;
  EXPECT_THROW(ToSettings(), Fault);
}

TEST_F(SetupControlsTest, DecimalsAboveSixShowSixAndStayInTheRecord) {
  settings_.Analog[0].DecPlaces = 9;
  settings_.Pulse[0].DecPlaces = 200;
  ToControls();
  EXPECT_EQ(controls_.Analog[0].cmbPrecision, 6);
  EXPECT_EQ(controls_.Pulse[0].cmbPulsePrecision, 6);
  EXPECT_EQ(settings_.Analog[0].DecPlaces, 9);
  ToSettings();
  EXPECT_EQ(settings_.Analog[0].DecPlaces, 6);
}

TEST_F(SetupControlsTest, ValuesOutsideTheirListsShowWhatTheListsCan) {
  settings_.SensorWarmupTime = 200;
  settings_.FixedBaudRate = 127;
  settings_.Do.AirPressureUnits = 9;
  link_.AnalogChannelCount = 3;
  settings_.Do.PO2Channel = 5;
  settings_.Do.WaterTempChannel = 2;
  ToControls();
  EXPECT_EQ(controls_.cmbWarmup, 60);
  EXPECT_EQ(controls_.cmbBaud, 0);
  EXPECT_EQ(controls_.Do.cmbAirPressureSourceUnits, -1);
  EXPECT_EQ(controls_.Do.cmbPO2SourceChannel, -1);
  EXPECT_EQ(controls_.Do.cmbWaterTempSourceChannel, 2);
}

TEST_F(SetupControlsTest, TheImageIsThatOfTheControlsAndOfWhatTheyDoNotShow) {
  link_.AnalogChannelCount = 3;
  settings_.Analog[5].EngUnits = u"kept"_s;
  controls_.Analog[5].cmbEU = u"lost"_s;
  controls_.txtName = u"Weir 12"_s;
  controls_.cmbWarmup = 60;
  controls_.Alarm[0] = {.chkAlarm = true, .txtAlarm = u"1:02:03"_s, .cmbAlarm = 1};
  const LoggerSettings before = settings_;
  const std::optional<ConfigImage> image = ImageOf(link_, false, controls_, settings_);
  ASSERT_TRUE(image);
  EXPECT_EQ(settings_, before);
  LoggerSettings read;
  UnpackConfigImage(link_, *image, read);
  EXPECT_EQ(read.LoggerName.trimmed(), u"Weir 12"_s);
  EXPECT_EQ(read.SensorWarmupTime, 60);
  EXPECT_EQ(read.Analog[5].EngUnits.trimmed(), u"kept"_s);
  EXPECT_EQ(read.Alarm[0],
            (AlarmSettings{.Enable = 1, .AlarmSec = 3, .AlarmMin = 2, .AlarmHour = 13}));
}

TEST_F(SetupControlsTest, ControlsThatNoImageCanHoldHaveNoneWhetherFaultsAreTrappedOrNot) {
  for (const bool trap : {true, false}) {
    link_.TrapErrors = trap;
    SetupControls open = controls_;
    open.cmbWarmup = -1;
    EXPECT_FALSE(ImageOf(link_, false, open, settings_));
    SetupControls large = controls_;
    large.txtException = u"65536"_s;
    EXPECT_FALSE(ImageOf(link_, false, large, settings_));
    EXPECT_TRUE(ImageOf(link_, false, controls_, settings_));
  }
}

TEST_F(SetupControlsTest, AnIntervalUnitBeyondItsListEndsTheTransferThere) {
  settings_.SampleInterval = u"4 hours"_s;
  EXPECT_EQ(IntervalFor(u"9"_s, 4), u"4 hours"_s);
  link_.TrapErrors = false;
  EXPECT_THROW(ToSettings(), RangeFault);
}

TEST_F(SetupControlsTest, AnIntervalTooLargeForANumberShowsZero) {
  settings_.SampleInterval = QString(400, u'9') + u" days"_s;
  ToControls();
  EXPECT_EQ(controls_.txtSampleInterval, u"0"_s);
}

}  // namespace
}  // namespace tessmar
