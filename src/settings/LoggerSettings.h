#pragma once

#include <QString>
#include <array>
#include <cstdint>

namespace tessmar {

inline constexpr int kAnalogChannels = 8;
inline constexpr int kPulseChannels = 2;
inline constexpr int kAlarms = 2;

/// Characters that the logger keeps of its name and of a unit.
inline constexpr int kLoggerNameLength = 32;
inline constexpr int kUnitsLength = 9;

/// Set-up of one analog channel. Scaling is linear through (RawScaleLower, LowerLimit) and
/// (RawScaleUpper, UpperLimit).
struct AnalogChannelSettings {
  std::uint8_t Enable = 0;         ///< 1: displayed and stored in history.
  QString EngUnits;                ///< Up to 9 characters in the logger.
  std::uint8_t DecPlaces = 0;      ///< 0 to 6 on the screen.
  std::int32_t RawScaleLower = 0;  ///< Raw count, 0 to 65535.
  std::int32_t RawScaleUpper = 0;
  double LowerLimit = 0;  ///< Engineering units, -999999 to 999999.
  double UpperLimit = 0;
  double DisplayTop = 0;  ///< Top of the meter on the main screen.
  double DisplayBottom = 0;
  bool operator==(const AnalogChannelSettings&) const = default;
};

/// Set-up of one pulse channel.
struct PulseChannelSettings {
  std::uint8_t Enable = 0;
  QString EngUnits;
  std::uint8_t DecPlaces = 0;
  double PulseUnit = 0;  ///< Engineering value of one pulse.
  bool operator==(const PulseChannelSettings&) const = default;
};

/// A time of day in 24-hour form.
struct AlarmSettings {
  std::uint8_t Enable = 0;
  std::int16_t AlarmSec = 0;
  std::int16_t AlarmMin = 0;
  std::int16_t AlarmHour = 0;
  bool operator==(const AlarmSettings&) const = default;
};

/// How salinity and dissolved oxygen are derived. Channel fields are 0-based analog channels; unit
/// fields are positions in the lists of the DO page.
struct DoSettings {
  std::uint8_t PO2Channel = 0;
  std::uint8_t PO2Units = 0;
  std::uint8_t WaterTempChannel = 0;
  std::uint8_t WaterTempUnits = 0;  ///< 0 Celsius, otherwise Fahrenheit.
  std::uint8_t ConductivityManualEntry = 0;
  double ConductivityManual = 0;
  std::uint8_t ConductivityManualEntryUnits = 0;
  std::uint8_t ConductivityChannel = 0;
  std::uint8_t ConductivityUnits = 0;
  std::uint8_t AirPressureManualEntry = 0;
  double AirPressureManual = 0;
  std::uint8_t AirPressureManualEntryUnits = 0;
  std::uint8_t AirPressureChannel = 0;
  std::uint8_t AirPressureUnits = 0;
  std::uint8_t EnableSalinityDisplay = 0;
  std::uint8_t SalinityDisplayChannel = 0;
  std::uint8_t EnableO2SaturationDisplay = 0;
  std::uint8_t O2SaturationDisplayChannel = 0;
  std::uint8_t EnableO2ConcentrationDisplay = 0;
  std::uint8_t O2ConcentrationDisplayChannel = 0;
  std::uint8_t O2ConcentrationDisplayUnits = 0;
  bool operator==(const DoSettings&) const = default;

  /// The DO set-up of a logger that has none stored: both manual entries on, altitude in feet.
  static DoSettings Defaults();
};

/// The three ways of logging, in the low two bits of LoggerSettings::LoggingStyle.
enum LoggingStyleBits : std::uint8_t {
  kLogPeriodic = 0,
  kLogLogarithmic = 1,
  kLogFast = 2,
  kLogModeMask = 3,
  kLogException = 128,  ///< Log only when channel 1 has changed by more than Deadband.
};

/// The set-up of the connected logger. One in the process; every field zero or empty at first.
struct LoggerSettings {
  QString LoggerName;      ///< Up to 32 characters in the logger.
  QString SampleInterval;  ///< A count, a blank and a unit word, such as "15 minutes".
  std::uint8_t DataWrapAroundFlag = 0;
  std::uint8_t FixedBaudRate = 0;     ///< 0 automatic, 1 to 6 fixed at 9600 to 115200.
  std::uint8_t SensorWarmupTime = 0;  ///< Seconds, 0 to 60.
  std::uint8_t LoggingStyle = 0;      ///< LoggingStyleBits.
  std::int32_t Deadband = 0;          ///< Raw counts, 0 to 65535.
  std::uint8_t EnableSOD = 0;
  std::array<AnalogChannelSettings, kAnalogChannels> Analog;
  std::array<PulseChannelSettings, kPulseChannels> Pulse;
  std::array<AlarmSettings, kAlarms> Alarm;  ///< 0 starts the sampling, 1 stops it.
  DoSettings Do;
  bool operator==(const LoggerSettings&) const = default;

  /// Units and decimal places as one sequence of ten: 0 to 7 analog, 8 and 9 pulse.
  /// Throws RangeFault outside it.
  QString& EngUnits(int entry);
  const QString& EngUnits(int entry) const;
  std::uint8_t& DecPlaces(int entry);
  std::uint8_t DecPlaces(int entry) const;
};

/// Sets the whole record to the defaults of a new logger.
/// @param analogChannelCount  the battery is on the last of these channels, unless it is the first.
void LoadDefaultSettings(LoggerSettings& settings, int analogChannelCount);

}  // namespace tessmar
