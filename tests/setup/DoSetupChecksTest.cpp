#include "setup/DoSetupChecks.h"

#include <gtest/gtest.h>

#include <QHash>
#include <QSet>

#include "base/Fault.h"
#include "support/FakeOutside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FakeMessages;

/// The controls of a setup screen on which nothing contradicts anything: oxygen, temperature,
/// conductivity and pressure on channels 1 to 4, salinity, saturation and concentration on 5 to 7.
class SetupControls {
 public:
  SetupControls() {
    Channel = {{u"cmbPO2SourceChannel"_s, 0},
               {u"cmbWaterTempSourceChannel"_s, 1},
               {u"cmbConductivitySourceChannel"_s, 2},
               {u"cmbAirPressureSourceChannel"_s, 3},
               {u"cmbSalinityDisplayChannel"_s, 4},
               {u"cmbO2SaturationDisplayChannel"_s, 5},
               {u"cmbO2ConcentrationDisplayChannel"_s, 6}};
    Units = {{u"cmbPO2SourceUnits"_s, u"hPa"_s},
             {u"cmbWaterTempSourceUnits"_s, u"Temp C"_s},
             {u"cmbConductivitySourceUnits"_s, u"mS/cm"_s},
             {u"cmbAirPressureSourceUnits"_s, u"feet"_s},
             {u"cmbO2ConcentrationDisplayUnits"_s, u"mg/L"_s},
             {u"cmbEU(0)"_s, u"hPa"_s},
             {u"cmbEU(1)"_s, u"Temp C"_s},
             {u"cmbEU(2)"_s, u"mS/cm"_s},
             {u"cmbEU(3)"_s, u"Feet"_s},
             {u"cmbEU(4)"_s, u"PSS"_s},
             {u"cmbEU(5)"_s, u"%Sat"_s},
             {u"cmbEU(6)"_s, u"mg/L"_s},
             {u"cmbEU(7)"_s, u"Volts"_s}};
    for (const char* box : {"chkConductivityManualEntry", "chkAirPressureManualEntry"}) {
      Checked[QLatin1StringView(box)] = false;
    }
    for (const char* box : {"chkEnableSalinityDisplay", "chkEnableO2SaturationDisplay",
                            "chkEnableO2ConcentrationDisplay"}) {
      Checked[QLatin1StringView(box)] = true;
    }
    for (int i = 0; i < 8; ++i) Checked[ElementName("chkEnable", i)] = true;
  }

  void RemoveColumn(int channel) {
    Units.remove(ElementName("cmbEU", channel));
    Checked.remove(ElementName("chkEnable", channel));
  }

  DoSetupView View() {
    const auto find = [this](const auto& controls, const QString& name) {
      Read.append(name);
      const auto control = controls.find(name);
      if (control == controls.end()) throw RangeFault(name.toStdString());
      return *control;
    };
    return {[this, find](const QString& combo) { return find(Channel, combo); },
            [this, find](const QString& combo) { return find(Units, combo); },
            [this, find](const QString& box) { return find(Checked, box); }};
  }

  QHash<QString, int> Channel;
  QHash<QString, QString> Units;
  QHash<QString, bool> Checked;
  QStringList Read;
};

/// Everything wrong: no column is enabled and none holds the units that the DO page names.
SetupControls Contradictions() {
  SetupControls controls;
  for (int i = 0; i < 8; ++i) {
    controls.Checked[ElementName("chkEnable", i)] = false;
    controls.Units[ElementName("cmbEU", i)] = u"mA"_s;
  }
  return controls;
}

const QString kWarnings[14] = {
    u"Warning: units for O2 Sensor Channel #1 as configured on DO tab:\r\n\r\n     hPa\r\n\r\n"
    "do not match engineering units on Analog Channels tab for the same channel:\r\n\r\n     mA"
    "\r\n\r\nDo you want to continue with programming?"_s,
    u"Warning: The O2 Sensor is configured as channel #1 on the DO tab, but it  does not have its "
    "checkbox enabled on the Analog Channels tab.\r\n\r\nIn this case calculations dependent on "
    "this input will display as No Sample.\r\n\r\nDo you want to continue with programming?"_s,
    u"Warning: units for Water Temp Sensor Channel #2 as configured on DO tab:\r\n\r\n     Temp C"
    "\r\n\r\ndo not match engineering units on Analog Channels tab for the same channel:\r\n\r\n"
    "     mA\r\n\r\nDo you want to continue with programming?"_s,
    u"Warning: The Water Temperature Sensor is configured as channel #2 on the DO tab, but it  "
    "does not have its checkbox enabled on the Analog Channels tab.\r\n\r\nIn this case "
    "calculations dependent on this input will display as No Sample.\r\n\r\nDo you want to "
    "continue with programming?"_s,
    u"Warning: units for Conductivity Sensor Channel #3 as configured on DO tab:\r\n\r\n     "
    "mS/cm\r\n\r\ndo not match engineering units on Analog Channels tab for the same channel:"
    "\r\n\r\n     mA\r\n\r\nDo you want to continue with programming?"_s,
    u"Warning: The Conductivity Sensor is configured as channel #3 on the DO tab, but it  does "
    "not have its checkbox enabled on the Analog Channels tab.\r\n\r\nIn this case calculations "
    "dependent on this input will display as No Sample.\r\n\r\nDo you want to continue with "
    "programming?"_s,
    u"Warning: units for Air Pressure Sensor Channel #4 as configured on DO tab:\r\n\r\n     feet"
    "\r\n\r\ndo not match engineering units on Analog Channels tab for the same channel:\r\n\r\n"
    "     mA\r\n\r\nDo you want to continue with programming?"_s,
    u"Warning: The Air Pressure Sensor is configured as channel #4 on the DO tab, but it  does "
    "not have its checkbox enabled on the Analog Channels tab.\r\n\r\nIn this case calculations "
    "dependent on this input will display as No Sample.\r\n\r\nDo you want to continue with "
    "programming?"_s,
    u"Warning: On the DO tab, Salinity Display is enabled for Channel #5 but on the Analog "
    "Channels tab the corresponding Enable checkbox for channel #5 is not checked.\r\n\r\nIn this "
    "case the salinity will not be displayed on the main window or in the history data.\r\n\r\n"
    "Do you want to continue?"_s,
    u"Warning: engineering units for Salinity display on channel #5 as configured on the Analog "
    "Channels tab is not PSS as expected:\r\n\r\n       mA\r\n\r\n\r\n\r\nDo you want to "
    "continue?"_s,
    u"Warning: On the DO tab, O2 Saturation Display is enabled for Channel #6 but on the Analog "
    "Channels tab the corresponding Enable checkbox for channel #6 is not checked.\r\n\r\nIn this "
    "case the O2 saturation will not be displayed on the main window or in the history data."
    "\r\n\r\nDo you want to continue?"_s,
    u"Warning: engineering units for O2 Saturation display on channel #6 as configured on the "
    "Analog Channels tab is not %Sat as expected.\r\n\r\nDo you want to continue?"_s,
    u"Warning: On the DO tab, O2 Concentration Display is enabled for Channel #7 but on the "
    "Analog Channels tab the corresponding Enable checkbox for channel #7 is not checked.\r\n\r\n"
    "In this case the O2 concentration will not be displayed on the main window or in the history "
    "data.\r\n\r\nDo you want to continue?"_s,
    u"Warning: units for O2 Concentration Display Channel #7 as configured on DO tab:\r\n\r\n     "
    "mg/L\r\n\r\ndo not match engineering units on Analog Channels tab for the same channel:"
    "\r\n\r\n     mA\r\n\r\nDo you want to continue with programming?"_s,
};

QStringList Prompts(const FakeMessages& messages) {
  QStringList prompts;
  for (const FakeMessages::Asked& asked : messages.All) prompts.append(asked.Prompt);
  return prompts;
}

QStringList Warnings(std::initializer_list<int> steps) {
  QStringList warnings;
  for (const int step : steps) warnings.append(kWarnings[step - 1]);
  return warnings;
}

TEST(UnitsEqual, FoldsAsciiLettersOnly) {
  EXPECT_TRUE(UnitsEqual(u"FEET"_s, u"feet"_s));
  EXPECT_TRUE(UnitsEqual(u"mS/cm"_s, u"MS/CM"_s));
  EXPECT_TRUE(UnitsEqual(u""_s, u""_s));
  EXPECT_FALSE(UnitsEqual(u"\u00C4"_s, u"\u00E4"_s));
  EXPECT_FALSE(UnitsEqual(u"@[`{"_s, u"`{@["_s));
  EXPECT_FALSE(UnitsEqual(u"Temp C"_s, u"Temp.\u00B0C"_s));
  EXPECT_FALSE(UnitsEqual(u"Feet"_s, u"Foot"_s));
}

TEST(UnitsEqual, CountsBlanks) {
  EXPECT_FALSE(UnitsEqual(u"Feet "_s, u"Feet"_s));
  EXPECT_FALSE(UnitsEqual(u" Feet"_s, u"Feet "_s));
}

TEST(CheckDoSetup, SaysNothingWhenEverySelectionIsRight) {
  SetupControls controls;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  EXPECT_TRUE(messages.All.empty());
}

TEST(CheckDoSetup, SkipsExactlyTheStepsOfWhatIsEnteredByHand) {
  SetupControls controls = Contradictions();
  controls.Checked[u"chkConductivityManualEntry"_s] = true;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  EXPECT_EQ(Prompts(messages), Warnings({1, 2, 3, 4, 7, 8, 9, 10, 11, 12, 13, 14}));

  controls = Contradictions();
  controls.Checked[u"chkAirPressureManualEntry"_s] = true;
  messages.All.clear();
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  EXPECT_EQ(Prompts(messages), Warnings({1, 2, 3, 4, 5, 6, 9, 10, 11, 12, 13, 14}));
}

TEST(CheckDoSetup, SkipsExactlyTheStepsOfADisplayThatIsOff) {
  struct {
    QString Box;
    QStringList Expected;
  } const rows[] = {
      {u"chkEnableSalinityDisplay"_s, Warnings({1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 14})},
      {u"chkEnableO2SaturationDisplay"_s, Warnings({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 13, 14})},
      {u"chkEnableO2ConcentrationDisplay"_s, Warnings({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})},
  };
  for (const auto& row : rows) {
    SetupControls controls = Contradictions();
    controls.Checked[row.Box] = false;
    FakeMessages messages;
    EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
    EXPECT_EQ(Prompts(messages), row.Expected) << row.Box.toStdString();
  }
}

TEST(CheckDoSetup, LetsASetupFullOfContradictionsThroughWhenEachIsAccepted) {
  SetupControls controls = Contradictions();
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  ASSERT_EQ(messages.All.size(), 14U);
  for (int step = 0; step < 14; ++step) {
    EXPECT_EQ(messages.All[step].Prompt, kWarnings[step]) << step + 1;
    EXPECT_EQ(messages.All[step].Title, u"DO Setup Problem"_s);
    EXPECT_EQ(messages.All[step].Buttons, 65);
  }
}

TEST(CheckDoSetup, EndsAtTheFirstCancel) {
  for (int cancelled = 0; cancelled < 14; ++cancelled) {
    SetupControls controls = Contradictions();
    FakeMessages messages;
    messages.Answers.assign(cancelled, kOk);
    messages.Answers.push_back(kCancel);
    EXPECT_FALSE(CheckDoSetup(controls.View(), messages));
    EXPECT_EQ(messages.All.size(), static_cast<std::size_t>(cancelled) + 1);
  }
}

TEST(CheckDoSetup, TakesUnitsThatDifferInCaseAsEqual) {
  SetupControls controls;
  controls.Units[u"cmbAirPressureSourceUnits"_s] = u"feet"_s;
  controls.Units[u"cmbEU(3)"_s] = u"Feet"_s;
  controls.Units[u"cmbEU(4)"_s] = u"pss"_s;
  controls.Units[u"cmbEU(5)"_s] = u"%sat"_s;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  EXPECT_TRUE(messages.All.empty());
}

TEST(CheckDoSetup, WarnsOfTheGermanTemperatureUnit) {
  SetupControls controls;
  controls.Units[u"cmbEU(1)"_s] = u"Temp.\u00B0C"_s;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  ASSERT_EQ(messages.All.size(), 1U);
  EXPECT_EQ(messages.All[0].Prompt,
            u"Warning: units for Water Temp Sensor Channel #2 as configured on DO tab:\r\n\r\n"
            "     Temp C\r\n\r\ndo not match engineering units on Analog Channels tab for the same "
            "channel:\r\n\r\n     Temp.\u00B0C\r\n\r\nDo you want to continue with programming?"_s);
}

TEST(CheckDoSetup, WarnsOfAUnitWithABlankAtItsEnd) {
  SetupControls controls;
  controls.Units[u"cmbEU(4)"_s] = u"PSS "_s;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  ASSERT_EQ(messages.All.size(), 1U);
  EXPECT_TRUE(messages.All[0].Prompt.contains(u"\r\n\r\n       PSS \r\n"_s));
}

TEST(CheckDoSetup, WarnsTwiceOfADisabledSalinityColumnInOtherUnits) {
  SetupControls controls;
  controls.Channel[u"cmbSalinityDisplayChannel"_s] = 2;
  controls.Channel[u"cmbConductivitySourceChannel"_s] = 3;
  controls.Units[u"cmbConductivitySourceUnits"_s] = u"Feet"_s;
  controls.Checked[u"chkEnable(2)"_s] = false;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  ASSERT_EQ(messages.All.size(), 2U);
  EXPECT_TRUE(messages.All[0].Prompt.startsWith(
      u"Warning: On the DO tab, Salinity Display is enabled for Channel #3 but"_s));
  EXPECT_TRUE(messages.All[1].Prompt.startsWith(
      u"Warning: engineering units for Salinity display on channel #3 as"_s));
}

TEST(CheckDoSetup, NamesEachRoleOfAChannelThatServesTwo) {
  SetupControls controls;
  controls.Channel[u"cmbWaterTempSourceChannel"_s] = 0;
  controls.Units[u"cmbWaterTempSourceUnits"_s] = u"hPa"_s;
  controls.Checked[u"chkEnable(0)"_s] = false;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  ASSERT_EQ(messages.All.size(), 2U);
  EXPECT_TRUE(messages.All[0].Prompt.startsWith(
      u"Warning: The O2 Sensor is configured as channel #1 on"_s));
  EXPECT_TRUE(messages.All[1].Prompt.startsWith(
      u"Warning: The Water Temperature Sensor is configured as channel #1 on"_s));
}

TEST(CheckDoSetup, PassesOverUnitsOfAColumnThatDoesNotExist) {
  SetupControls controls;
  controls.Units.remove(u"cmbEU(0)"_s);
  controls.Units.remove(u"cmbEU(4)"_s);
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(controls.View(), messages));
  EXPECT_TRUE(messages.All.empty());
  EXPECT_TRUE(controls.Read.contains(u"chkEnable(6)"_s)) << "the later steps run";
}

TEST(CheckDoSetup, FaultsOnTheEnableBoxOfAColumnThatDoesNotExist) {
  SetupControls controls;
  controls.RemoveColumn(0);
  FakeMessages messages;
  EXPECT_THROW(CheckDoSetup(controls.View(), messages), RangeFault);
  EXPECT_TRUE(messages.All.empty());
}

TEST(CheckDoSetup, FaultsOnAListWithoutASelectionInTheEnableStepOnly) {
  SetupControls controls;
  controls.Channel[u"cmbWaterTempSourceChannel"_s] = -1;
  FakeMessages messages;
  EXPECT_THROW(CheckDoSetup(controls.View(), messages), RangeFault);
  EXPECT_TRUE(controls.Read.contains(u"cmbEU(-1)"_s)) << "the units step failed quietly first";
  EXPECT_EQ(controls.Read.last(), u"chkEnable(-1)"_s);
}

}  // namespace
}  // namespace tessmar
