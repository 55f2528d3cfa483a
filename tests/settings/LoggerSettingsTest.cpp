#include "settings/LoggerSettings.h"

#include <gtest/gtest.h>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

void ExpectGeneralChannel(const AnalogChannelSettings& channel) {
  EXPECT_EQ(channel.Enable, 1);
  EXPECT_EQ(channel.EngUnits, u"%"_s);
  EXPECT_EQ(channel.DecPlaces, 2);
  EXPECT_EQ(channel.RawScaleLower, 0);
  EXPECT_EQ(channel.RawScaleUpper, 65535);
  EXPECT_EQ(channel.LowerLimit, 0);
  EXPECT_EQ(channel.UpperLimit, 100);
  EXPECT_EQ(channel.DisplayTop, 100);
  EXPECT_EQ(channel.DisplayBottom, 0);
}

void ExpectBatteryChannel(const AnalogChannelSettings& channel) {
  EXPECT_EQ(channel.Enable, 1);
  EXPECT_EQ(channel.EngUnits, u"Volts"_s);
  EXPECT_EQ(channel.DecPlaces, 2);
  EXPECT_EQ(channel.RawScaleLower, 0);
  EXPECT_EQ(channel.RawScaleUpper, 62384);
  EXPECT_EQ(channel.LowerLimit, 0);
  EXPECT_EQ(channel.UpperLimit, 24);
  EXPECT_EQ(channel.DisplayTop, 24);
  EXPECT_EQ(channel.DisplayBottom, 0);
}

TEST(LoadDefaultSettings, PutsTheBatteryOnTheLastOfEightChannels) {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  for (int i = 0; i < 7; ++i) ExpectGeneralChannel(settings.Analog[i]);
  ExpectBatteryChannel(settings.Analog[7]);
}

TEST(LoadDefaultSettings, GivesALoggerWithOneChannelNoBatteryChannel) {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 1);
  for (const AnalogChannelSettings& channel : settings.Analog) ExpectGeneralChannel(channel);
}

TEST(LoadDefaultSettings, GivesChannelsBehindTheBatteryGeneralValues) {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 3);
  ExpectGeneralChannel(settings.Analog[0]);
  ExpectGeneralChannel(settings.Analog[1]);
  ExpectBatteryChannel(settings.Analog[2]);
  for (int i = 3; i < 8; ++i) ExpectGeneralChannel(settings.Analog[i]);
}

TEST(LoadDefaultSettings, TakesAnyChannelCount) {
  for (const int count : {-1, 0, 9, 100}) {
    LoggerSettings settings;
    LoadDefaultSettings(settings, count);
    for (const AnalogChannelSettings& channel : settings.Analog) ExpectGeneralChannel(channel);
  }
}

TEST(LoadDefaultSettings, SetsEveryFieldWhateverItHeld) {
  LoggerSettings settings;
  settings.LoggerName = u"other"_s;
  settings.SampleInterval = u"5 hours"_s;
  settings.FixedBaudRate = 4;
  settings.LoggingStyle = 130;
  settings.Deadband = 5;
  settings.EnableSOD = 1;
  settings.Alarm[1] = {1, 2, 3, 4};
  settings.Do.PO2Channel = 3;
  settings.Do.ConductivityManual = 5;
  settings.Do.AirPressureManualEntryUnits = 2;
  LoadDefaultSettings(settings, 8);

  EXPECT_EQ(settings.LoggerName, u"Tessmar Logger"_s);
  EXPECT_EQ(settings.SampleInterval, u"1 day"_s);
  EXPECT_EQ(settings.DataWrapAroundFlag, 1);
  EXPECT_EQ(settings.FixedBaudRate, 0);
  EXPECT_EQ(settings.SensorWarmupTime, 3);
  EXPECT_EQ(settings.LoggingStyle, 0);
  EXPECT_EQ(settings.Deadband, 0);
  EXPECT_EQ(settings.EnableSOD, 0);
  for (const AlarmSettings& alarm : settings.Alarm) EXPECT_EQ(alarm, AlarmSettings{});
  for (const PulseChannelSettings& pulse : settings.Pulse) {
    EXPECT_EQ(pulse.Enable, 1);
    EXPECT_EQ(pulse.EngUnits, u"Pulses"_s);
    EXPECT_EQ(pulse.DecPlaces, 0);
    EXPECT_EQ(pulse.PulseUnit, 1);
  }
  DoSettings expected;
  expected.ConductivityManualEntry = 1;
  expected.AirPressureManualEntry = 1;
  expected.AirPressureManualEntryUnits = 6;
  EXPECT_EQ(settings.Do, expected);
}

TEST(LoggerSettings, StartsWithEveryFieldZeroOrEmpty) {
  const LoggerSettings settings;
  EXPECT_TRUE(settings.LoggerName.isEmpty());
  EXPECT_TRUE(settings.SampleInterval.isEmpty());
  EXPECT_EQ(settings.Analog[7], AnalogChannelSettings{});
  EXPECT_EQ(settings.Do.AirPressureManualEntryUnits, 0);
}

TEST(LoggerSettings, WalksUnitsAndPlacesAsOneSequenceOfTen) {
  LoggerSettings settings;
  for (int i = 0; i < 10; ++i) {
    settings.EngUnits(i) = QString::number(i);
    settings.DecPlaces(i) = static_cast<std::uint8_t>(i);
  }
  EXPECT_EQ(settings.Analog[0].EngUnits, u"0"_s);
  EXPECT_EQ(settings.Analog[7].EngUnits, u"7"_s);
  EXPECT_EQ(settings.Pulse[0].EngUnits, u"8"_s);
  EXPECT_EQ(settings.Pulse[1].EngUnits, u"9"_s);
  EXPECT_EQ(settings.Analog[7].DecPlaces, 7);
  EXPECT_EQ(settings.Pulse[1].DecPlaces, 9);

  const LoggerSettings& constant = settings;
  EXPECT_EQ(constant.EngUnits(8), u"8"_s);
  EXPECT_EQ(constant.DecPlaces(8), 8);
  EXPECT_THROW(settings.EngUnits(-1), RangeFault);
  EXPECT_THROW(settings.DecPlaces(10), RangeFault);
}

TEST(LoggingStyle, SplitsIntoModeAndExceptionTest) {
  EXPECT_EQ(130 & kLogModeMask, kLogFast);
  EXPECT_NE(130 & kLogException, 0);
  EXPECT_EQ(128 & kLogModeMask, kLogPeriodic);
  EXPECT_NE(128 & kLogException, 0);
  EXPECT_EQ(2 & kLogException, 0);
}

}  // namespace
}  // namespace tessmar
