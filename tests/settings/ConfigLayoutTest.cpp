#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "settings/ConfigImages.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::EmptyImage;
using test::EmptySettings;
using test::FullLogger;
using test::Overwrite;
using S = LoggerSettings;
using Bytes = std::vector<std::uint8_t>;

/// A value of a field and the bytes that stand for it.
struct FieldRow {
  const char* Name;
  int Offset;
  Bytes Stored;
  std::function<void(S&)> Set;
};

const std::vector<FieldRow>& HeadRows() {
  static const std::vector<FieldRow> rows{
      {"name, one character", 0, {'x'}, [](S& s) { s.LoggerName = u"x"_s; }},
      {"name, 32 characters", 0, Bytes(32, 'n'), [](S& s) { s.LoggerName = QString(32, u'n'); }},
      {"count 1", 32, {0x01, 0x00, 0}, [](S& s) { s.SampleInterval = u"1 second"_s; }},
      {"count 65535", 32, {0xFF, 0xFF, 0}, [](S& s) { s.SampleInterval = u"65535 seconds"_s; }},
      {"unit minute", 32, {0x02, 0x00, 1}, [](S& s) { s.SampleInterval = u"2 minutes"_s; }},
      {"unit hour", 32, {0x00, 0x01, 2}, [](S& s) { s.SampleInterval = u"256 hours"_s; }},
      {"unit day", 32, {0x01, 0x00, 3}, [](S& s) { s.SampleInterval = u"1 day"_s; }},
      {"analog 1", 37, {0x01}, [](S& s) { s.Analog[0].Enable = 1; }},
      {"analog 8", 37, {0x80}, [](S& s) { s.Analog[7].Enable = 1; }},
      {"pulse 1", 38, {0x01}, [](S& s) { s.Pulse[0].Enable = 1; }},
      {"pulse 2", 38, {0x02}, [](S& s) { s.Pulse[1].Enable = 1; }},
      {"wrap", 39, {0x01}, [](S& s) { s.DataWrapAroundFlag = 1; }},
      {"baud 1", 39, {0x02}, [](S& s) { s.FixedBaudRate = 1; }},
      {"baud 127", 39, {0xFE}, [](S& s) { s.FixedBaudRate = 127; }},
      {"warm-up 1", 40, {0xE8, 0x03}, [](S& s) { s.SensorWarmupTime = 1; }},
      {"warm-up 60", 40, {0x60, 0xEA}, [](S& s) { s.SensorWarmupTime = 60; }},
      {"alarm 1", 42, {0x01}, [](S& s) { s.Alarm[0].Enable = 1; }},
      {"alarm 2", 43, {0x01}, [](S& s) { s.Alarm[1].Enable = 1; }},
      {"sample on demand", 44, {0xFF}, [](S& s) { s.EnableSOD = 255; }},
      {"fast and exception", 45, {0x82}, [](S& s) { s.LoggingStyle = 130; }},
      {"style 255", 45, {0xFF}, [](S& s) { s.LoggingStyle = 255; }},
      {"deadband 1", 46, {0x01, 0x00}, [](S& s) { s.Deadband = 1; }},
      {"deadband 65535", 46, {0xFF, 0xFF}, [](S& s) { s.Deadband = 65535; }},
      {"alarm 1 second 59", 138, {0x59}, [](S& s) { s.Alarm[0].AlarmSec = 59; }},
      {"alarm 1 minute 8", 139, {0x08}, [](S& s) { s.Alarm[0].AlarmMin = 8; }},
      {"alarm 1 hour 23", 140, {0x23}, [](S& s) { s.Alarm[0].AlarmHour = 23; }},
      {"alarm 2 second 10", 142, {0x10}, [](S& s) { s.Alarm[1].AlarmSec = 10; }},
      {"alarm 2 minute 59", 143, {0x59}, [](S& s) { s.Alarm[1].AlarmMin = 59; }},
      {"alarm 2 hour 159", 144, {0xF9}, [](S& s) { s.Alarm[1].AlarmHour = 159; }},
      {"pulse unit 1", 188, {0xA0, 0x86, 0x51}, [](S& s) { s.Pulse[0].PulseUnit = 1; }},
      {"pulse unit 2", 191, {0x3F, 0x42, 0x8F}, [](S& s) { s.Pulse[1].PulseUnit = -999999; }},
  };
  return rows;
}

const std::vector<FieldRow>& DoRows() {
  static const std::vector<FieldRow> rows{
      {"PO2Channel", 290, {6}, [](S& s) { s.Do.PO2Channel = 6; }},
      {"PO2Units", 291, {1}, [](S& s) { s.Do.PO2Units = 1; }},
      {"WaterTempChannel", 292, {6}, [](S& s) { s.Do.WaterTempChannel = 6; }},
      {"WaterTempUnits", 293, {1}, [](S& s) { s.Do.WaterTempUnits = 1; }},
      {"ConductivityManualEntry", 294, {1}, [](S& s) { s.Do.ConductivityManualEntry = 1; }},
      {"ConductivityManual", 295, {0x70, 0x64, 0xD8}, [](S& s) { s.Do.ConductivityManual = -5.5; }},
      {"ConductivityChannel", 298, {6}, [](S& s) { s.Do.ConductivityChannel = 6; }},
      {"ConductivityUnits", 299, {1}, [](S& s) { s.Do.ConductivityUnits = 1; }},
      {"AirPressureManualEntry", 300, {1}, [](S& s) { s.Do.AirPressureManualEntry = 1; }},
      {"AirPressureManual", 301, {0xA0, 0x86, 0x31}, [](S& s) { s.Do.AirPressureManual = 100; }},
      {"AirPressureManualEntryUnits", 304, {7}, [](S& s) { s.Do.AirPressureManualEntryUnits = 7; }},
      {"AirPressureChannel", 305, {6}, [](S& s) { s.Do.AirPressureChannel = 6; }},
      {"AirPressureUnits", 306, {7}, [](S& s) { s.Do.AirPressureUnits = 7; }},
      {"EnableSalinityDisplay", 307, {1}, [](S& s) { s.Do.EnableSalinityDisplay = 1; }},
      {"SalinityDisplayChannel", 308, {6}, [](S& s) { s.Do.SalinityDisplayChannel = 6; }},
      {"EnableO2SaturationDisplay", 309, {1}, [](S& s) { s.Do.EnableO2SaturationDisplay = 1; }},
      {"O2SaturationDisplayChannel", 310, {6}, [](S& s) { s.Do.O2SaturationDisplayChannel = 6; }},
      {"EnableO2ConcentrationDisplay",
       311,
       {1},
       [](S& s) { s.Do.EnableO2ConcentrationDisplay = 1; }},
      {"O2ConcentrationDisplayChannel",
       312,
       {6},
       [](S& s) { s.Do.O2ConcentrationDisplayChannel = 6; }},
      {"O2ConcentrationDisplayUnits", 313, {1}, [](S& s) { s.Do.O2ConcentrationDisplayUnits = 1; }},
      {"ConductivityManualEntryUnits",
       314,
       {1},
       [](S& s) { s.Do.ConductivityManualEntryUnits = 1; }},
  };
  return rows;
}

std::vector<FieldRow> AllRows() {
  std::vector<FieldRow> rows = HeadRows();
  rows.insert(rows.end(), DoRows().begin(), DoRows().end());
  for (int i = 0; i < 8; ++i) {
    rows.push_back(
        {"analog units", 48 + 9 * i, {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i'}, [i](S& s) {
           s.Analog[i].EngUnits = u"abcdefghi"_s;
         }});
    rows.push_back({"analog places", 146 + i, {6}, [i](S& s) { s.Analog[i].DecPlaces = 6; }});
    rows.push_back(
        {"raw lower", 156 + 2 * i, {0x01, 0x00}, [i](S& s) { s.Analog[i].RawScaleLower = 1; }});
    rows.push_back({"raw lower, highest", 156 + 2 * i, {0xFF, 0xFF}, [i](S& s) {
                      s.Analog[i].RawScaleLower = 65535;
                    }});
    rows.push_back(
        {"raw upper", 172 + 2 * i, {0xB0, 0xF3}, [i](S& s) { s.Analog[i].RawScaleUpper = 62384; }});
    rows.push_back({"raw upper, highest", 172 + 2 * i, {0xFF, 0xFF}, [i](S& s) {
                      s.Analog[i].RawScaleUpper = 65535;
                    }});
    rows.push_back({"lower limit", 194 + 3 * i, {0x3F, 0x42, 0x8F}, [i](S& s) {
                      s.Analog[i].LowerLimit = -999999;
                    }});
    rows.push_back({"upper limit", 218 + 3 * i, {0x80, 0xA9, 0x43}, [i](S& s) {
                      s.Analog[i].UpperLimit = 24;
                    }});
    rows.push_back({"upper limit, highest", 218 + 3 * i, {0x3F, 0x42, 0x0F}, [i](S& s) {
                      s.Analog[i].UpperLimit = 999999;
                    }});
    rows.push_back({"display bottom", 242 + 3 * i, {0x70, 0x64, 0xD8}, [i](S& s) {
                      s.Analog[i].DisplayBottom = -5.5;
                    }});
    rows.push_back({"display top", 266 + 3 * i, {0xA0, 0x86, 0x31}, [i](S& s) {
                      s.Analog[i].DisplayTop = 100;
                    }});
  }
  for (int i = 0; i < 2; ++i) {
    rows.push_back({"pulse units", 120 + 9 * i, {'K', 'g', 'a', 'l'}, [i](S& s) {
                      s.Pulse[i].EngUnits = u"Kgal"_s;
                    }});
    rows.push_back({"pulse places", 154 + i, {0xFF}, [i](S& s) { s.Pulse[i].DecPlaces = 255; }});
  }
  return rows;
}

TEST(PackConfigImage, StoresEachFieldAtItsPlaceAndNothingElse) {
  for (const FieldRow& row : AllRows()) {
    LoggerSettings settings;
    row.Set(settings);
    ConfigImage expected = EmptyImage();
    Overwrite(expected, row.Offset, row.Stored);
    ConfigImage image;
    EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image)) << row.Name;
    EXPECT_EQ(image, expected) << row.Name << " at " << row.Offset;
  }
}

TEST(UnpackConfigImage, TakesEachFieldFromItsPlaceAndNothingElse) {
  for (const FieldRow& row : AllRows()) {
    ConfigImage image = EmptyImage();
    Overwrite(image, row.Offset, row.Stored);
    LoggerSettings expected = EmptySettings();
    row.Set(expected);
    LoggerSettings settings;
    EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings)) << row.Name;
    EXPECT_EQ(settings, expected) << row.Name << " at " << row.Offset;
  }
}

TEST(PackConfigImage, ReplacesWhatTheImageHeld) {
  ConfigImage image(400, 0xAA);
  EXPECT_TRUE(PackConfigImage(FullLogger(), LoggerSettings{}, image));
  EXPECT_EQ(image, EmptyImage());
}

TEST(PackConfigImage, StoresTheChannelCountsOfTheLogger) {
  LinkState link = FullLogger();
  link.AnalogChannelCount = 3;
  link.PulseChannelCount = 1;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(link, LoggerSettings{}, image));
  EXPECT_EQ(image[35], 3);
  EXPECT_EQ(image[36], 1);
}

TEST(PackConfigImage, WritesEnablesOfChannelsThatTheLoggerLacks) {
  LinkState link = FullLogger();
  link.AnalogChannelCount = 3;
  link.PulseChannelCount = 0;
  LoggerSettings settings;
  for (AnalogChannelSettings& channel : settings.Analog) channel.Enable = 7;
  for (PulseChannelSettings& channel : settings.Pulse) channel.Enable = 255;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(link, settings, image));
  EXPECT_EQ(image[37], 0xFF);
  EXPECT_EQ(image[38], 0x03);

  EXPECT_TRUE(UnpackConfigImage(link, image, settings));
  const int enables[8] = {1, 1, 1, 0, 0, 0, 0, 0};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(settings.Analog[i].Enable, enables[i]) << i;
  EXPECT_EQ(settings.Pulse[0].Enable, 0);
  EXPECT_EQ(settings.Pulse[1].Enable, 0);
}

TEST(PackConfigImage, PadsAShortNameAndCutsALongOne) {
  LoggerSettings settings;
  settings.LoggerName = u"ABC"_s;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
  EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(image.data()), 32),
            "ABC" + QByteArray(29, ' '));
  settings.LoggerName = QString(32, u'a') + QString(8, u'b');
  EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
  EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(image.data()), 33),
            QByteArray(32, 'a') + '\0');
}

TEST(PackConfigImage, LooksForUnitsInItsOwnOrder) {
  struct {
    const char16_t* Text;
    Bytes Stored;
  } const rows[] = {
      {u"1 day", {0x01, 0x00, 0x03}},      {u"7 fortnights", {0x07, 0x00, 0x00}},
      {u"5 Minutes", {0x05, 0x00, 0x00}},  {u"5 day min hour", {0x05, 0x00, 0x01}},
      {u"5 day hour", {0x05, 0x00, 0x02}}, {u"2.5 hours", {0x02, 0x00, 0x02}},
      {u"3.5 hours", {0x04, 0x00, 0x02}},  {u"", {0x00, 0x00, 0x00}},
      {u"seconds", {0x00, 0x00, 0x00}},
  };
  for (const auto& row : rows) {
    LoggerSettings settings;
    settings.SampleInterval = QString::fromUtf16(row.Text);
    ConfigImage image;
    EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
    EXPECT_EQ(Bytes(image.begin() + 32, image.begin() + 35), row.Stored)
        << settings.SampleInterval.toStdString();
  }
}

QString IntervalOf(const Bytes& stored) {
  ConfigImage image = EmptyImage();
  Overwrite(image, 32, stored);
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  return settings.SampleInterval;
}

TEST(UnpackConfigImage, WritesTheIntervalInWords) {
  EXPECT_EQ(IntervalOf({1, 0, 3}), u"1 day"_s);
  EXPECT_EQ(IntervalOf({2, 0, 1}), u"2 minutes"_s);
  EXPECT_EQ(IntervalOf({0, 0, 0}), u"0 second"_s);
  EXPECT_EQ(IntervalOf({0xFF, 0xFF, 2}), u"65535 hours"_s);
  EXPECT_EQ(IntervalOf({2, 0, 255}), u"2 days"_s);
}

TEST(UnpackConfigImage, ReadsAnUnknownUnitAsDaysWhichPackAsDays) {
  EXPECT_EQ(IntervalOf({1, 0, 9}), u"1 day"_s);
  LoggerSettings settings;
  settings.SampleInterval = u"1 day"_s;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
  EXPECT_EQ(image[34], 3);
}

std::uint8_t WarmupOf(std::uint8_t low, std::uint8_t high) {
  ConfigImage image = EmptyImage();
  Overwrite(image, 40, {low, high});
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  return settings.SensorWarmupTime;
}

TEST(UnpackConfigImage, TakesAWarmupAboveAMinuteAsAMinute) {
  EXPECT_EQ(WarmupOf(0x60, 0xEA), 60);
  EXPECT_EQ(WarmupOf(0xFF, 0xFF), 60);
  EXPECT_EQ(WarmupOf(0x61, 0xEA), 60);
  EXPECT_EQ(WarmupOf(0x5F, 0xEA), 59);
  EXPECT_EQ(WarmupOf(0xE7, 0x03), 0);
}

TEST(UnpackConfigImage, ReadsControlCharactersOfANameAsBlanks) {
  ConfigImage image = EmptyImage();
  Overwrite(image, 0, {'W', 0x00, 'e', 0x1F, 'l', 0xA0, 'l', 0xA1, 0x7F});
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.LoggerName, u"W e l l\u00A1"_s);
}

TEST(UnpackConfigImage, IgnoresCountsAndConstants) {
  ConfigImage image = EmptyImage();
  image[35] = 0xFF;
  image[36] = 0xFF;
  image[141] = 0;
  image[145] = 0xFF;
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings, EmptySettings());
}

TEST(UnpackConfigImage, TakesAnyByteThatIsNotZeroForAnAlarmInUse) {
  ConfigImage image = EmptyImage();
  image[42] = 0x80;
  image[43] = 0xFF;
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Alarm[0].Enable, 1);
  EXPECT_EQ(settings.Alarm[1].Enable, 1);
  image[42] = 0;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Alarm[0].Enable, 0);
}

TEST(UnpackConfigImage, SwitchesSampleOnDemandOffWhereTheLoggerLacksIt) {
  LinkState link = FullLogger();
  link.SampleOnDemandSupported = false;
  ConfigImage image = EmptyImage();
  image[44] = 1;
  LoggerSettings settings;
  settings.EnableSOD = 1;
  EXPECT_TRUE(UnpackConfigImage(link, image, settings));
  EXPECT_EQ(settings.EnableSOD, 0);
}

TEST(ConfigImage, BringsAnAlarmHourBack) {
  LoggerSettings settings;
  settings.Alarm[0].AlarmHour = 23;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
  EXPECT_EQ(image[140], 0x23);
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Alarm[0].AlarmHour, 23);
}

TEST(ConfigImage, ReproducesARecordButForWhatItCannotHold) {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 3);
  settings.LoggerName = u" Well 4 "_s + QString(30, u'x');
  settings.SampleInterval = u"15 min"_s;
  settings.Analog[0].EngUnits = u"Gal   "_s;
  settings.Analog[1].EngUnits = u"Gallons per day"_s;
  settings.Analog[0].UpperLimit = 1.23456789;
  settings.Pulse[1].PulseUnit = 0.25;
  settings.Alarm[1] = {1, 5, 30, 6};
  settings.Deadband = 25;
  LinkState link = FullLogger();
  link.AnalogChannelCount = 3;
  link.PulseChannelCount = 1;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(link, settings, image));
  LoggerSettings back;
  EXPECT_TRUE(UnpackConfigImage(link, image, back));

  LoggerSettings expected = settings;
  expected.LoggerName = u" Well 4 "_s + QString(24, u'x');
  expected.SampleInterval = u"15 minutes"_s;
  expected.Analog[0].EngUnits = u"Gal"_s;
  expected.Analog[1].EngUnits = u"Gallons p"_s;
  expected.Analog[0].UpperLimit = 123457.0 / 10 / 10 / 10 / 10 / 10;
  for (int i = 3; i < 8; ++i) expected.Analog[i].Enable = 0;
  expected.Pulse[1].Enable = 0;
  EXPECT_EQ(back, expected);
}

}  // namespace
}  // namespace tessmar
