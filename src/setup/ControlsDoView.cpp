#include "setup/ControlsDoView.h"

#include <QStringList>
#include <array>

#include "base/Fault.h"
#include "base/MainScreen.h"
#include "setup/SetupLists.h"

namespace tessmar {
namespace {

struct ListRow {
  const char* Name;
  int DoControls::*Position;
  QStringList (*Items)();  ///< Null for a list of channels.
};
struct BoxRow {
  const char* Name;
  bool DoControls::*Checked;
};

constexpr std::array kLists{
    ListRow{"cmbPO2SourceChannel", &DoControls::cmbPO2SourceChannel, nullptr},
    ListRow{"cmbPO2SourceUnits", &DoControls::cmbPO2SourceUnits, PO2UnitItems},
    ListRow{"cmbWaterTempSourceChannel", &DoControls::cmbWaterTempSourceChannel, nullptr},
    ListRow{"cmbWaterTempSourceUnits", &DoControls::cmbWaterTempSourceUnits, WaterTempUnitItems},
    ListRow{"cmbConductivitySourceChannel", &DoControls::cmbConductivitySourceChannel, nullptr},
    ListRow{"cmbConductivitySourceUnits", &DoControls::cmbConductivitySourceUnits,
            ConductivityUnitItems},
    ListRow{"cmbAirPressureSourceChannel", &DoControls::cmbAirPressureSourceChannel, nullptr},
    ListRow{"cmbAirPressureSourceUnits", &DoControls::cmbAirPressureSourceUnits,
            AirPressureUnitItems},
    ListRow{"cmbSalinityDisplayChannel", &DoControls::cmbSalinityDisplayChannel, nullptr},
    ListRow{"cmbO2SaturationDisplayChannel", &DoControls::cmbO2SaturationDisplayChannel, nullptr},
    ListRow{"cmbO2ConcentrationDisplayChannel", &DoControls::cmbO2ConcentrationDisplayChannel,
            nullptr},
    ListRow{"cmbO2ConcentrationDisplayUnits", &DoControls::cmbO2ConcentrationDisplayUnits,
            O2ConcentrationUnitItems},
};

constexpr std::array kBoxes{
    BoxRow{"chkConductivityManualEntry", &DoControls::chkConductivityManualEntry},
    BoxRow{"chkAirPressureManualEntry", &DoControls::chkAirPressureManualEntry},
    BoxRow{"chkEnableSalinityDisplay", &DoControls::chkEnableSalinityDisplay},
    BoxRow{"chkEnableO2SaturationDisplay", &DoControls::chkEnableO2SaturationDisplay},
    BoxRow{"chkEnableO2ConcentrationDisplay", &DoControls::chkEnableO2ConcentrationDisplay},
};

[[noreturn]] void NoSuchControl() {
  throw RangeFault("the setup screen has no control of this name");
}

/// The column of an element such as "cmbEU(3)".
const AnalogColumnControls& ColumnOf(const LinkState& link, const SetupControls& controls,
                                     const char* array, const QString& name) {
  for (int channel = 0; channel < link.AnalogChannelCount && channel < kAnalogChannels; ++channel) {
    if (name == ElementName(array, channel))
      return controls.Analog[static_cast<std::size_t>(channel)];
  }
  NoSuchControl();
}

const ListRow& ListOf(const QString& name) {
  for (const ListRow& row : kLists) {
    if (name == QLatin1StringView(row.Name)) return row;
  }
  NoSuchControl();
}

// A list shows nothing for a position that it does not have.
int PositionIn(const LinkState& link, const SetupControls& controls, const ListRow& row) {
  const int position = controls.Do.*row.Position;
  const qsizetype count =
      row.Items != nullptr ? row.Items().size() : DoChannelItems(link.AnalogChannelCount).size();
  return position < count ? position : -1;
}

QString TextOf(const LinkState& link, const SetupControls& controls, const QString& name) {
  if (name.startsWith(QLatin1StringView("cmbEU(")))
    return ColumnOf(link, controls, "cmbEU", name).cmbEU;
  const ListRow& row = ListOf(name);
  return row.Items != nullptr ? row.Items().value(PositionIn(link, controls, row)) : QString();
}

bool IsChecked(const LinkState& link, const SetupControls& controls, const QString& name) {
  for (const BoxRow& row : kBoxes) {
    if (name == QLatin1StringView(row.Name)) return controls.Do.*row.Checked;
  }
  return ColumnOf(link, controls, "chkEnable", name).chkEnable;
}

}  // namespace

DoSetupView ViewOfControls(const LinkState& link, const SetupControls& controls) {
  return {
      .ListIndex = [&link, &controls](
                       const QString& name) { return PositionIn(link, controls, ListOf(name)); },
      .Text = [&link, &controls](const QString& name) { return TextOf(link, controls, name); },
      .IsChecked = [&link,
                    &controls](const QString& name) { return IsChecked(link, controls, name); }};
}

}  // namespace tessmar
