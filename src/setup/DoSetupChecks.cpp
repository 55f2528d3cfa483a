#include "setup/DoSetupChecks.h"

#include <array>
#include <optional>

#include "base/Fault.h"
#include "base/MainScreen.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr auto kTitle = "DO Setup Problem"_L1;
constexpr auto kParagraphEnd = "\r\n\r\n"_L1;
constexpr auto kAskToProgram = "Do you want to continue with programming?"_L1;
constexpr auto kAskToContinue = "Do you want to continue?"_L1;

enum class Kind { Units, Enable };
/// When a step is taken: always, or by a check box.
enum class When { Always, Unchecked, Checked };
enum class Warning {
  UnitsDiffer,        ///< Units of the DO page and of the channel's column.
  SourceNotEnabled,   ///< A sensor on a channel that is not enabled.
  DisplayNotEnabled,  ///< A derived value on a channel that is not enabled.
  SalinityUnits,      ///< A salinity column that is not in PSS.
  SaturationUnits,    ///< A saturation column that is not in %Sat.
};

/// One step of the check.
struct Step {
  When Condition;
  const char* Box;  ///< Check box of the condition.
  Kind What;
  const char* ChannelCombo;  ///< Its list index is the analog channel, 0 first.
  const char* UnitsCombo;    ///< Units to compare with, or
  const char* UnitsLiteral;  ///< these.
  Warning Text;
  const char* Name;    ///< In the warning.
  const char* Result;  ///< What will not be displayed, in the warning.
};

// clang-format off
constexpr const char* kNone = nullptr;
constexpr const char* kConductivityByHand = "chkConductivityManualEntry";
constexpr const char* kPressureByHand = "chkAirPressureManualEntry";
constexpr const char* kSalinity = "chkEnableSalinityDisplay";
constexpr const char* kSaturation = "chkEnableO2SaturationDisplay";
constexpr const char* kConcentration = "chkEnableO2ConcentrationDisplay";

constexpr std::array<Step, 14> kSteps{{
    {When::Always, kNone, Kind::Units, "cmbPO2SourceChannel", "cmbPO2SourceUnits", kNone,
     Warning::UnitsDiffer, "O2 Sensor Channel", kNone},
    {When::Always, kNone, Kind::Enable, "cmbPO2SourceChannel", kNone, kNone,
     Warning::SourceNotEnabled, "O2 Sensor", kNone},
    {When::Always, kNone, Kind::Units, "cmbWaterTempSourceChannel", "cmbWaterTempSourceUnits", kNone,
     Warning::UnitsDiffer, "Water Temp Sensor Channel", kNone},
    {When::Always, kNone, Kind::Enable, "cmbWaterTempSourceChannel", kNone, kNone,
     Warning::SourceNotEnabled, "Water Temperature Sensor", kNone},
    {When::Unchecked, kConductivityByHand, Kind::Units, "cmbConductivitySourceChannel", "cmbConductivitySourceUnits", kNone,
     Warning::UnitsDiffer, "Conductivity Sensor Channel", kNone},
    {When::Unchecked, kConductivityByHand, Kind::Enable, "cmbConductivitySourceChannel", kNone, kNone,
     Warning::SourceNotEnabled, "Conductivity Sensor", kNone},
    {When::Unchecked, kPressureByHand, Kind::Units, "cmbAirPressureSourceChannel", "cmbAirPressureSourceUnits", kNone,
     Warning::UnitsDiffer, "Air Pressure Sensor Channel", kNone},
    {When::Unchecked, kPressureByHand, Kind::Enable, "cmbAirPressureSourceChannel", kNone, kNone,
     Warning::SourceNotEnabled, "Air Pressure Sensor", kNone},
    {When::Checked, kSalinity, Kind::Enable, "cmbSalinityDisplayChannel", kNone, kNone,
     Warning::DisplayNotEnabled, "Salinity Display", "the salinity"},
    {When::Checked, kSalinity, Kind::Units, "cmbSalinityDisplayChannel", kNone, "PSS",
     Warning::SalinityUnits, kNone, kNone},
    {When::Checked, kSaturation, Kind::Enable, "cmbO2SaturationDisplayChannel", kNone, kNone,
     Warning::DisplayNotEnabled, "O2 Saturation Display", "the O2 saturation"},
    {When::Checked, kSaturation, Kind::Units, "cmbO2SaturationDisplayChannel", kNone, "%Sat",
     Warning::SaturationUnits, kNone, kNone},
    {When::Checked, kConcentration, Kind::Enable, "cmbO2ConcentrationDisplayChannel", kNone, kNone,
     Warning::DisplayNotEnabled, "O2 Concentration Display", "the O2 concentration"},
    {When::Checked, kConcentration, Kind::Units, "cmbO2ConcentrationDisplayChannel", "cmbO2ConcentrationDisplayUnits", kNone,
     Warning::UnitsDiffer, "O2 Concentration Display Channel", kNone},
}};
// clang-format on

/// What a warning says about the step's channel.
struct Finding {
  int Channel = 0;      ///< 1 first, as the operator counts.
  QString Units;        ///< The text compared.
  QString ColumnUnits;  ///< The text of the channel's column.
};

QString WarningText(const Step& step, const Finding& finding) {
  const QString number = QString::number(finding.Channel);
  switch (step.Text) {
    case Warning::UnitsDiffer:
      return "Warning: units for "_L1 + QLatin1StringView(step.Name) + " #"_L1 + number +
             " as configured on DO tab:"_L1 + kParagraphEnd + "     "_L1 + finding.Units +
             kParagraphEnd +
             "do not match engineering units on Analog Channels tab for the same channel:"_L1 +
             kParagraphEnd + "     "_L1 + finding.ColumnUnits + kParagraphEnd + kAskToProgram;
    case Warning::SourceNotEnabled:
      return "Warning: The "_L1 + QLatin1StringView(step.Name) + " is configured as channel #"_L1 +
             number +
             " on the DO tab, but it  does not have its checkbox enabled on the Analog Channels tab."_L1 +
             kParagraphEnd +
             "In this case calculations dependent on this input will display as No Sample."_L1 +
             kParagraphEnd + kAskToProgram;
    case Warning::DisplayNotEnabled:
      return "Warning: On the DO tab, "_L1 + QLatin1StringView(step.Name) +
             " is enabled for Channel #"_L1 + number +
             " but on the Analog Channels tab the corresponding Enable checkbox for channel #"_L1 +
             number + " is not checked."_L1 + kParagraphEnd + "In this case "_L1 +
             QLatin1StringView(step.Result) +
             " will not be displayed on the main window or in the history data."_L1 +
             kParagraphEnd + kAskToContinue;
    case Warning::SalinityUnits:
      return "Warning: engineering units for Salinity display on channel #"_L1 + number +
             " as configured on the Analog Channels tab is not PSS as expected:"_L1 +
             kParagraphEnd + "       "_L1 + finding.ColumnUnits + kParagraphEnd + kParagraphEnd +
             kAskToContinue;
    case Warning::SaturationUnits:
      return "Warning: engineering units for O2 Saturation display on channel #"_L1 + number +
             " as configured on the Analog Channels tab is not %Sat as expected."_L1 +
             kParagraphEnd + kAskToContinue;
  }
  return {};
}

bool IsDue(const Step& step, const DoSetupView& view) {
  if (step.Condition == When::Always) return true;
  return view.IsChecked(QLatin1StringView(step.Box)) == (step.Condition == When::Checked);
}

/// Asks whether to go on. @return false on Cancel.
bool Warn(const Step& step, const Finding& finding, Messages& messages) {
  return messages.MsgBox(WarningText(step, finding), kOkCancel + kInformation, kTitle) != kCancel;
}

/// @return what there is to warn of, if anything.
std::optional<Finding> CompareUnits(const Step& step, const DoSetupView& view) {
  try {
    const int channel = view.ListIndex(QLatin1StringView(step.ChannelCombo));
    Finding finding;
    finding.Channel = channel + 1;
    finding.Units = step.UnitsCombo != nullptr ? view.Text(QLatin1StringView(step.UnitsCombo))
                                               : QString(QLatin1StringView(step.UnitsLiteral));
    finding.ColumnUnits = view.Text(ElementName("cmbEU", channel));
    if (UnitsEqual(finding.Units, finding.ColumnUnits)) return std::nullopt;
    return finding;
  } catch (const Fault&) {
    // Nothing to compare with, as for a channel that the logger lacks: no mismatch either.
    return std::nullopt;
  }
}

std::optional<Finding> LookForEnable(const Step& step, const DoSetupView& view) {
  const int channel = view.ListIndex(QLatin1StringView(step.ChannelCombo));
  if (view.IsChecked(ElementName("chkEnable", channel))) return std::nullopt;
  Finding finding;
  finding.Channel = channel + 1;
  return finding;
}

/// ASCII capitals as small letters.
char16_t Folded(QChar c) {
  constexpr char16_t kCaseStep = u'a' - u'A';
  const char16_t code = c.unicode();
  return code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code + kCaseStep) : code;
}

}  // namespace

bool UnitsEqual(const QString& a, const QString& b) {
  if (a.size() != b.size()) return false;
  for (qsizetype i = 0; i < a.size(); ++i) {
    if (Folded(a.at(i)) != Folded(b.at(i))) return false;
  }
  return true;
}

bool CheckDoSetup(const DoSetupView& view, Messages& messages) {
  for (const Step& step : kSteps) {
    if (!IsDue(step, view)) continue;
    const std::optional<Finding> finding =
        step.What == Kind::Units ? CompareUnits(step, view) : LookForEnable(step, view);
    if (finding && !Warn(step, *finding, messages)) return false;
  }
  return true;
}

}  // namespace tessmar
