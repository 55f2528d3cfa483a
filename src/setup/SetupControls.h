#pragma once

#include <QString>
#include <array>
#include <optional>

#include "link/LinkState.h"
#include "settings/LoggerSettings.h"
#include "settings/config.h"

namespace tessmar {

/// What the setup screen's controls hold, as plain values under the controls' names: texts, checks
/// and list positions. A list without a selection, or whose typed text is not one of its items, has
/// the position -1.

/// The controls of one analog channel's column.
struct AnalogColumnControls {
  bool chkEnable = false;
  QString cmbEU;
  QString txtHighEU;
  QString txtLowEU;
  QString txtHighRaw;
  QString txtLowRaw;
  QString txtTop;
  QString txtBottom;
  int cmbPrecision = -1;
  bool operator==(const AnalogColumnControls&) const = default;
};

/// The controls of one pulse channel.
struct PulseControls {
  bool chkPulseEnable = false;
  QString cmbPulseEU;
  QString txtPulseUnit;
  int cmbPulsePrecision = -1;
  bool operator==(const PulseControls&) const = default;
};

/// The controls of one alarm; cmbAlarm is 0 for A.M. and 1 for P.M.
struct AlarmControls {
  bool chkAlarm = false;
  QString txtAlarm;
  int cmbAlarm = 0;
  bool operator==(const AlarmControls&) const = default;
};

/// The controls of the DO page.
struct DoControls {
  int cmbPO2SourceChannel = -1;
  int cmbPO2SourceUnits = -1;
  int cmbWaterTempSourceChannel = -1;
  int cmbWaterTempSourceUnits = -1;
  bool chkConductivityManualEntry = false;
  QString txtConductivityManualEntry;
  int cmbConductivityManualEntryUnits = -1;
  int cmbConductivitySourceChannel = -1;
  int cmbConductivitySourceUnits = -1;
  bool chkAirPressureManualEntry = false;
  QString txtAirPressureManualEntry;
  int cmbAirPressureManualEntryUnits = -1;
  int cmbAirPressureSourceChannel = -1;
  int cmbAirPressureSourceUnits = -1;
  bool chkEnableSalinityDisplay = false;
  int cmbSalinityDisplayChannel = -1;
  bool chkEnableO2SaturationDisplay = false;
  int cmbO2SaturationDisplayChannel = -1;
  bool chkEnableO2ConcentrationDisplay = false;
  int cmbO2ConcentrationDisplayChannel = -1;
  int cmbO2ConcentrationDisplayUnits = -1;
  bool operator==(const DoControls&) const = default;
};

/// All controls of the setup screen. Only the first LinkState::AnalogChannelCount columns and
/// LinkState::PulseChannelCount pulse groups count.
struct SetupControls {
  QString txtName;
  int cmbWarmup = -1;  ///< The position is the number of seconds.
  std::array<AlarmControls, kAlarms> Alarm;
  bool optPeriodic = true;
  bool optFastMode = false;
  bool optLogarithmic = false;
  bool chkException = false;
  QString txtSampleInterval;
  int cmbSampleInterval = -1;  ///< 0 seconds, 1 minutes, 2 hours, 3 days.
  QString txtException;
  bool chkWrap = false;
  int cmbBaud = -1;
  bool chkSOD = false;
  std::array<AnalogColumnControls, kAnalogChannels> Analog;
  std::array<PulseControls, kPulseChannels> Pulse;
  DoControls Do;
  bool operator==(const SetupControls&) const = default;
};

/// Moves the controls' values into the record. Channels at or above the channel counts keep what
/// the record holds for them.
///
/// A control that cannot deliver its value, a list without a selection or a number that does not
/// fit its field, ends the transfer there with the fields before it moved; with TrapErrors off it
/// throws ConversionFault instead.
void ControlsToSettings(const LinkState& link, bool use24HourClock, const SetupControls& controls,
                        LoggerSettings& settings);

/// Moves the record into the controls' values. Columns at or above the channel counts are left as
/// they are. A number that its list does not hold gives the last item for the decimal places and
/// the warm-up, automatic for the baud rate, and no selection for the lists of the DO page.
void SettingsToControls(const LinkState& link, bool use24HourClock, const LoggerSettings& settings,
                        SetupControls& controls);

/// The image that these controls would program; nothing when one of them holds what no image can.
/// Changes nothing, and never throws.
/// @param settings  what the controls do not show.
std::optional<ConfigImage> ImageOf(const LinkState& link, bool use24HourClock,
                                   const SetupControls& controls, LoggerSettings settings);

}  // namespace tessmar
