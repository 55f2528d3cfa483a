#include "setup/SetupLists.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class SetupListsTest : public testing::Test {
 protected:
  ~SetupListsTest() override { SetTextLanguage(kLanguageEnglish); }
};

TEST_F(SetupListsTest, AnalogUnitsStandInTheirOrder) {
  EXPECT_EQ(AnalogUnits(),
            (QStringList{u"mA"_s,    u"Volts"_s,  u"mV"_s,   u"Temp F"_s, u"Temp C"_s, u"degrees"_s,
                         u"%"_s,     u"Inches"_s, u"Feet"_s, u"cm"_s,     u"Meters"_s, u"NTU"_s,
                         u"hPa"_s,   u"mbar"_s,   u"ppm"_s,  u"mg/L"_s,   u"%Sat"_s,   u"uS"_s,
                         u"uS/cm"_s, u"mS/cm"_s,  u"PSS"_s,  u"MPH"_s,    u"KPH"_s}));
}

TEST_F(SetupListsTest, UnitsFollowTheLanguageButForThePercentSign) {
  SetTextLanguage(kLanguageGerman);
  const QStringList units = AnalogUnits();
  EXPECT_EQ(units.size(), 23);
  EXPECT_EQ(units[4], u"Temp.°C"_s);
  EXPECT_EQ(units[6], u"%"_s);
  EXPECT_EQ(units[22], u"km/h"_s);
  EXPECT_EQ(PulseUnits(), (QStringList{u"Impulse"_s, u"Zoll"_s, u"cm"_s, u"Kubikfuß"_s, u"Liter"_s,
                                       u"Gallonen"_s, u"Kgal"_s}));
}

TEST_F(SetupListsTest, PositionsAreTheStoredNumbers) {
  EXPECT_EQ(WarmupItems().size(), 61);
  EXPECT_EQ(WarmupItems()[60], u"60"_s);
  EXPECT_EQ(PrecisionItems(),
            (QStringList{u"0"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}));
  EXPECT_EQ(BaudItems(),
            (QStringList{u"Auto Baud Rate"_s, u"Fixed 9600"_s, u"Fixed 19200"_s, u"Fixed 28800"_s,
                         u"Fixed 38400"_s, u"Fixed 57600"_s, u"Fixed 115200"_s}));
  EXPECT_EQ(SampleIntervalItems(),
            (QStringList{u"seconds"_s, u"minutes"_s, u"hours"_s, u"days"_s}));
  EXPECT_EQ(AirPressureUnitItems(), (QStringList{u"hPa"_s, u"mbar"_s, u"kPa"_s, u"inHg"_s,
                                                 u"mmHg"_s, u"PSI"_s, u"feet"_s, u"meters"_s}));
}

TEST_F(SetupListsTest, ListsWithoutWordsAreTheSameInEveryLanguage) {
  for (const auto language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    EXPECT_EQ(AlarmHalfDayItems(), (QStringList{u"A.M."_s, u"P.M."_s}));
    EXPECT_EQ(PO2UnitItems(), (QStringList{u"hPa"_s, u"mbar"_s}));
    EXPECT_EQ(WaterTempUnitItems(), (QStringList{u"Temp C"_s, u"Temp F"_s}));
    EXPECT_EQ(ConductivityUnitItems(), (QStringList{u"uS/cm"_s, u"mS/cm"_s}));
    EXPECT_EQ(O2ConcentrationUnitItems(), (QStringList{u"mg/L"_s, u"ppm"_s}));
  }
}

TEST_F(SetupListsTest, NoDoChannelIsEverEight) {
  const QStringList seven{u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s};
  EXPECT_EQ(DoChannelItems(8), seven);
  EXPECT_EQ(DoChannelItems(7), seven);
  EXPECT_EQ(DoChannelItems(3), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
}

}  // namespace
}  // namespace tessmar
