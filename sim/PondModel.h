#pragma once

#include <cstdint>

#include "CivilTime.h"

namespace tessmar::sim {

/// What the sensors in the pond would read at one moment.
struct PondReading {
  double OxygenPressure = 0;    ///< hPa.
  double WaterTemperature = 0;  ///< Degrees Celsius.
  double Conductivity = 0;      ///< uS/cm at 25 degrees.
  double AirPressure = 0;       ///< mbar.
  double BatteryVoltage = 0;    ///< Volts.
};

/// A pond in a temperate summer and winter, as a pure function of time: the sun warms it by day,
/// plants fill it with oxygen until the late afternoon and use it up by night, fronts move the air
/// pressure, rain comes in spells, a solar panel charges the battery.
class PondModel {
 public:
  /// @param seed  chooses the weather.
  explicit PondModel(std::uint32_t seed) : seed_(seed) {}

  PondReading At(CivilSeconds time) const;

  /// Pulses counted in [from, to): channel 0 is a rain gauge, channel 1 a flow meter in the outlet.
  std::int64_t Pulses(int channel, CivilSeconds from, CivilSeconds to) const;

 private:
  double Weather(std::uint32_t stream, CivilSeconds time, CivilSeconds period) const;
  std::int64_t RainInFiveMinutes(std::int64_t slot) const;

  std::uint32_t seed_;
};

}  // namespace tessmar::sim
