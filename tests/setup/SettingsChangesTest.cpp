#include "setup/SettingsChanges.h"

#include <gtest/gtest.h>

#include <functional>

#include "base/TextTable.h"
#include "settings/ConfigImages.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FullLogger;
using S = LoggerSettings;

S Defaults() {
  S settings;
  LoadDefaultSettings(settings, 8);
  return settings;
}

ConfigImage Image(const S& settings) {
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
  return image;
}

std::vector<SettingsChange> Changes(const std::function<void(S&)>& change) {
  S settings = Defaults();
  change(settings);
  return ChangesBetween(Image(Defaults()), Image(settings));
}

class SettingsChangesTest : public testing::Test {
 protected:
  SettingsChangesTest() { SetTextLanguage(kLanguageEnglish); }
  ~SettingsChangesTest() override { SetTextLanguage(kLanguageEnglish); }
};

struct Row {
  std::function<void(S&)> Change;
  SettingsChange Said;
};

// clang-format off
const Row kRows[] = {
    {[](S& s) { s.Analog[0].Enable = 0; }, {u"Channel 1: Enable"_s, u"Yes"_s, u"No"_s}},
    {[](S& s) { s.Analog[2].EngUnits = u"NTU"_s; }, {u"Channel 3: Units"_s, u"%"_s, u"NTU"_s}},
    {[](S& s) { s.Analog[2].UpperLimit = 12.5; }, {u"Channel 3: High - Engr. Units"_s, u"100"_s, u"12.5"_s}},
    {[](S& s) { s.Analog[2].LowerLimit = -1; }, {u"Channel 3: Low - Engr. Units"_s, u"0"_s, u"-1"_s}},
    {[](S& s) { s.Analog[7].RawScaleUpper = 65535; }, {u"Channel 8: High - Raw Value"_s, u"62384"_s, u"65535"_s}},
    {[](S& s) { s.Analog[7].RawScaleLower = 7; }, {u"Channel 8: Low - Raw Value"_s, u"0"_s, u"7"_s}},
    {[](S& s) { s.Analog[1].DisplayTop = 50; }, {u"Channel 2: Display High Value"_s, u"100"_s, u"50"_s}},
    {[](S& s) { s.Analog[1].DisplayBottom = 5; }, {u"Channel 2: Display Low Value"_s, u"0"_s, u"5"_s}},
    {[](S& s) { s.Analog[1].DecPlaces = 6; }, {u"Channel 2: Decimal Places"_s, u"2"_s, u"6"_s}},
    {[](S& s) { s.Pulse[1].Enable = 0; }, {u"Pulse Channel 2: Enable"_s, u"Yes"_s, u"No"_s}},
    {[](S& s) { s.Pulse[0].EngUnits = u"Kgal"_s; }, {u"Pulse Channel 1: Sensor Name or Units"_s, u"Pulses"_s, u"Kgal"_s}},
    {[](S& s) { s.Pulse[0].PulseUnit = 0.25; }, {u"Pulse Channel 1: Value for Single Pulse"_s, u"1"_s, u"0.25"_s}},
    {[](S& s) { s.Pulse[0].DecPlaces = 1; }, {u"Pulse Channel 1: Decimal Places"_s, u"0"_s, u"1"_s}},
    {[](S& s) { s.LoggerName = u"Well 4"_s; }, {u"Name"_s, u"Tessmar Logger"_s, u"Well 4"_s}},
    {[](S& s) { s.SensorWarmupTime = 10; }, {u"Sensor Warmup Time"_s, u"3 seconds"_s, u"10 seconds"_s}},
    {[](S& s) { s.FixedBaudRate = 6; }, {u"Baud Rate"_s, u"Auto Baud Rate"_s, u"Fixed 115200"_s}},
    {[](S& s) { s.LoggingStyle = 1; }, {u"Logging mode"_s, u"Sample periodically every"_s, u"Logarithmic sampling"_s}},
    {[](S& s) { s.LoggingStyle = 2; }, {u"Logging mode"_s, u"Sample periodically every"_s, u"Fast sampling mode (10 times per second)"_s}},
    {[](S& s) { s.SampleInterval = u"15 minutes"_s; }, {u"Sample periodically every"_s, u"1 day"_s, u"15 minutes"_s}},
    {[](S& s) { s.LoggingStyle = 128; }, {u"Log only if channel 1 changes"_s, u"No"_s, u"Yes"_s}},
    {[](S& s) { s.Deadband = 25; }, {u"Log only if channel 1 change exceeds +/-"_s, u"0 raw units"_s, u"25 raw units"_s}},
    {[](S& s) { s.DataWrapAroundFlag = 0; }, {u"Wrap records at end of storage"_s, u"Yes"_s, u"No"_s}},
    {[](S& s) { s.EnableSOD = 1; }, {u"Enable Sample-On-Demand"_s, u"No"_s, u"Yes"_s}},
    {[](S& s) { s.Alarm[0].Enable = 1; }, {u"Use Alarm 1 To Specify Sample Start Time"_s, u"No"_s, u"Yes"_s}},
    {[](S& s) { s.Alarm[1].AlarmHour = 23; s.Alarm[1].AlarmMin = 5; }, {u"Alarm 2 Time (hh:mm:ss)"_s, u"00:00:00"_s, u"23:05:00"_s}},
    {[](S& s) { s.Do.PO2Channel = 6; }, {u"DO: O2 Sensor Channel"_s, u"1"_s, u"7"_s}},
    {[](S& s) { s.Do.PO2Units = 1; }, {u"DO: O2 Sensor, Units"_s, u"hPa"_s, u"mbar"_s}},
    {[](S& s) { s.Do.WaterTempChannel = 1; }, {u"DO: Water Temp Sensor Channel"_s, u"1"_s, u"2"_s}},
    {[](S& s) { s.Do.WaterTempUnits = 1; }, {u"DO: Water Temp Sensor, Units"_s, u"Temp C"_s, u"Temp F"_s}},
    {[](S& s) { s.Do.ConductivityChannel = 2; }, {u"DO: Conductivity Sensor Channel"_s, u"1"_s, u"3"_s}},
    {[](S& s) { s.Do.ConductivityUnits = 1; }, {u"DO: Conductivity Sensor, Units"_s, u"uS/cm"_s, u"mS/cm"_s}},
    {[](S& s) { s.Do.ConductivityManualEntry = 0; }, {u"DO: Conductivity, Manual Entry"_s, u"Yes"_s, u"No"_s}},
    {[](S& s) { s.Do.ConductivityManual = 1.25; }, {u"DO: Conductivity"_s, u"0"_s, u"1.25"_s}},
    {[](S& s) { s.Do.ConductivityManualEntryUnits = 1; }, {u"DO: Conductivity, Units"_s, u"uS/cm"_s, u"mS/cm"_s}},
    {[](S& s) { s.Do.AirPressureChannel = 3; }, {u"DO: Air Pressure Sensor Channel"_s, u"1"_s, u"4"_s}},
    {[](S& s) { s.Do.AirPressureUnits = 5; }, {u"DO: Air Pressure Sensor, Units"_s, u"hPa"_s, u"PSI"_s}},
    {[](S& s) { s.Do.AirPressureManualEntry = 0; }, {u"DO: Air Pressure, Manual Entry"_s, u"Yes"_s, u"No"_s}},
    {[](S& s) { s.Do.AirPressureManual = 500; }, {u"DO: Air Pressure"_s, u"0"_s, u"500"_s}},
    {[](S& s) { s.Do.AirPressureManualEntryUnits = 7; }, {u"DO: Air Pressure, Units"_s, u"feet"_s, u"meters"_s}},
    {[](S& s) { s.Do.EnableSalinityDisplay = 1; }, {u"DO: Enable Salinity Display"_s, u"No"_s, u"Yes"_s}},
    {[](S& s) { s.Do.SalinityDisplayChannel = 4; }, {u"DO: Salinity, Display On Channel"_s, u"1"_s, u"5"_s}},
    {[](S& s) { s.Do.EnableO2SaturationDisplay = 1; }, {u"DO: Enable O2 %Saturation Display"_s, u"No"_s, u"Yes"_s}},
    {[](S& s) { s.Do.O2SaturationDisplayChannel = 5; }, {u"DO: O2 %Saturation, Display On Channel"_s, u"1"_s, u"6"_s}},
    {[](S& s) { s.Do.EnableO2ConcentrationDisplay = 1; }, {u"DO: Enable O2 Concentration Display"_s, u"No"_s, u"Yes"_s}},
    {[](S& s) { s.Do.O2ConcentrationDisplayChannel = 6; }, {u"DO: O2 Concentration, Display On Channel"_s, u"1"_s, u"7"_s}},
    {[](S& s) { s.Do.O2ConcentrationDisplayUnits = 1; }, {u"DO: O2 Concentration, Units"_s, u"mg/L"_s, u"ppm"_s}},
};
// clang-format on

TEST_F(SettingsChangesTest, NameEachFieldAndBothItsValues) {
  for (const Row& row : kRows) {
    EXPECT_EQ(Changes(row.Change), std::vector{row.Said}) << row.Said.Field.toStdString();
  }
}

TEST_F(SettingsChangesTest, StandInTheOrderOfThePages) {
  S settings = Defaults();
  for (const Row& row : kRows) row.Change(settings);
  const std::vector<SettingsChange> all = ChangesBetween(Image(Defaults()), Image(settings));
  std::vector<QString> fields;
  for (const SettingsChange& change : all) fields.push_back(change.Field);
  const auto place = [&](const char16_t* field) {
    return std::find(fields.begin(), fields.end(), QString::fromUtf16(field)) - fields.begin();
  };
  EXPECT_LT(place(u"Channel 2: Decimal Places"), place(u"Channel 3: Units"));
  EXPECT_LT(place(u"Channel 8: Low - Raw Value"), place(u"Pulse Channel 1: Decimal Places"));
  EXPECT_LT(place(u"Pulse Channel 2: Enable"), place(u"Name"));
  EXPECT_LT(place(u"Alarm 2 Time (hh:mm:ss)"), place(u"DO: O2 Sensor Channel"));
}

TEST_F(SettingsChangesTest, CountWhatTheLoggerWouldHoldAndNotWhatWasTyped) {
  EXPECT_TRUE(Changes([](S&) {}).empty());
  EXPECT_TRUE(Changes([](S& s) { s.Analog[0].UpperLimit = 100.00001; }).empty());
  EXPECT_TRUE(Changes([](S& s) { s.SampleInterval = u"1 days"_s; }).empty());
  EXPECT_EQ(Changes([](S& s) { s.LoggerName = QString(40, u'n'); }).at(0).After, QString(32, u'n'));
}

// Whatever byte of an image is another one, somebody hears of it.
TEST_F(SettingsChangesTest, NoByteOfAnImageChangesInSilence) {
  const ConfigImage before = Image(Defaults());
  for (std::size_t place = 0; place < before.size(); ++place) {
    for (const int value : {0, 1, 2, 7, 48, 128, 255}) {
      ConfigImage after = before;
      after[place] = static_cast<std::uint8_t>(value);
      EXPECT_EQ(ChangesBetween(before, after).empty(), before == after) << place << ' ' << value;
    }
  }
}

LinkState SmallLogger() {
  LinkState link;
  link.TrapErrors = true;
  link.AnalogChannelCount = 2;
  link.PulseChannelCount = 1;
  return link;
}

TEST_F(SettingsChangesTest, OfALoggerThatIsMetAreThoseItCanHave) {
  S settings = Defaults();
  settings.Analog[1].EngUnits = u"NTU"_s;
  settings.Analog[5].Enable = settings.Analog[5].Enable == 0 ? 1 : 0;
  settings.Pulse[1].Enable = 0;
  settings.EnableSOD = 1;
  EXPECT_EQ(ChangesFound(SmallLogger(), Image(Defaults()), Image(settings)),
            (std::vector<SettingsChange>{{u"Channel 2: Units"_s, u"%"_s, u"NTU"_s}}));
}

// The channel counts, what stands behind the alarm times and what lies between the fields are not
// the operator's.
TEST_F(SettingsChangesTest, OfALoggerThatIsMetLeaveOutWhatNoPageShows) {
  ConfigImage known = Image(Defaults());
  ConfigImage found = known;
  for (const std::size_t place : {35U, 36U, 141U, 145U}) found[place] ^= 0x55U;
  EXPECT_EQ(ChangesFound(SmallLogger(), known, found), std::vector<SettingsChange>{});
  found[41] ^= 0x55U;
  EXPECT_EQ(ChangesFound(SmallLogger(), known, found).size(), 1U);
}

TEST_F(SettingsChangesTest, AreSaidInGerman) {
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(Changes([](S& s) { s.Analog[2].Enable = 0; }),
            (std::vector<SettingsChange>{
                {u"Kanal 3: "_s + GetText(TextId::Enable), u"Ja"_s, u"Nein"_s}}));
  EXPECT_EQ(ChangesSummary(0), u"Keine Einstellung weicht vom Logger ab"_s);
  EXPECT_EQ(ChangesSummary(1), u"1 Einstellung weicht vom Logger ab"_s);
  EXPECT_EQ(ChangesSummary(3), u"3 Einstellungen weichen vom Logger ab"_s);
}

TEST_F(SettingsChangesTest, AreSummedUp) {
  EXPECT_EQ(ChangesSummary(0), u"No setting differs from the logger"_s);
  EXPECT_EQ(ChangesSummary(1), u"1 setting differs from the logger"_s);
  EXPECT_EQ(ChangesSummary(3), u"3 settings differ from the logger"_s);
}

TEST_F(SettingsChangesTest, CanBeCopiedAsATable) {
  EXPECT_EQ(ChangesAsText({{u"Name"_s, u"Well 4"_s, u"Well\t5\n"_s}, {u"Units"_s, u""_s, u"m"_s}}),
            u"Setting\tIn the logger\tNew\nName\tWell 4\tWell 5 \nUnits\t\tm\n"_s);
}

}  // namespace
}  // namespace tessmar
