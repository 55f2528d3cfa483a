#include "PondModel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessmar::sim {
namespace {

constexpr CivilSeconds kHour = 3600;
constexpr CivilSeconds kDay = 24 * kHour;
constexpr double kDaysAYear = 365.25;
constexpr CivilSeconds kRainSlot = 300;
constexpr CivilSeconds kSecondsPerFlowPulse = 11;
/// Water and air pass a probe in parcels: readings wander from one second to the next.
constexpr CivilSeconds kParcel = 5;

/// Streams of the seeded noise.
enum Stream : std::uint32_t {
  kTemperature = 1,
  kClouds,
  kFronts,
  kMinerals,
  kSpells,
  kDrops,
  kLoad,
  kEddies,
  kGusts
};

/// A well-mixed number in [0, 1) for a place in a stream.
double Hashed(std::uint32_t seed, std::uint32_t stream, std::int64_t index) {
  auto value = (static_cast<std::uint64_t>(seed) << 32U) ^ stream * 0x9E3779B97F4A7C15ULL;
  value ^= static_cast<std::uint64_t>(index) * 0xD1B54A32D192ED03ULL;
  value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  value = (value ^ (value >> 27U)) * 0x94D049BB133111EBULL;
  value ^= value >> 31U;
  return std::ldexp(static_cast<double>(value >> 11U), -53);
}

/// Whole periods up to time, also before the epoch.
std::int64_t FloorDivide(std::int64_t value, std::int64_t by) {
  return value >= 0 ? value / by : -((-value + by - 1) / by);
}

/// A wave of one day, 1 at its peak.
double DailyWave(CivilSeconds time, double peakHour) {
  const double hour = static_cast<double>(time - FloorDivide(time, kDay) * kDay) / kHour;
  return std::cos(2 * std::numbers::pi * (hour - peakHour) / 24);
}

/// A wave of one year, 1 in late July.
double YearlyWave(CivilSeconds time) {
  const double days = static_cast<double>(time) / kDay;
  return std::cos(2 * std::numbers::pi * (days - 205) / kDaysAYear);
}

/// Vapour pressure over water in hPa, after Magnus; temperature in degrees Celsius.
double VapourPressure(double temperature) {
  return 6.112 * std::exp(17.62 * temperature / (243.12 + temperature));
}

}  // namespace

PondReading PondModel::At(CivilSeconds time) const {
  PondReading reading;
  const double clouds = 0.5 + 0.5 * Weather(kClouds, time, 5 * kHour);
  const double season = YearlyWave(time);
  const double sun = std::max(0.0, DailyWave(time, 12.5)) * (1 - 0.6 * clouds);

  reading.WaterTemperature = 12.5 + 8.5 * season + (1.1 + 0.6 * season) * DailyWave(time, 16) +
                             1.3 * Weather(kTemperature, time, 30 * kHour);
  reading.WaterTemperature = std::max(0.3, reading.WaterTemperature);
  reading.AirPressure = 1006 + 14 * Weather(kFronts, time, 40 * kHour);
  reading.Conductivity =
      610 + 25 * Weather(kMinerals, time, 50 * kHour) - 18 * season + 4 * DailyWave(time, 7);

  const double saturation =
      0.92 + (0.17 + 0.07 * season) * DailyWave(time, 17) - 0.07 * (clouds - 0.5);
  reading.OxygenPressure =
      saturation * 0.2095 * (reading.AirPressure - VapourPressure(reading.WaterTemperature));
  reading.BatteryVoltage = 12.35 + 1.1 * sun + 0.03 * Weather(kLoad, time, kHour / 2);

  const double eddy = Weather(kEddies, time, kParcel);
  const double gust = Weather(kGusts, time, kParcel);
  reading.OxygenPressure += 0.9 * eddy;
  reading.WaterTemperature = std::max(0.3, reading.WaterTemperature + 0.018 * eddy);
  reading.Conductivity += 1.5 * eddy;
  reading.AirPressure += 0.15 * gust;
  reading.BatteryVoltage += 0.01 * gust;
  return reading;
}

std::int64_t PondModel::Pulses(int channel, CivilSeconds from, CivilSeconds to) const {
  if (channel != 0)
    return FloorDivide(to, kSecondsPerFlowPulse) - FloorDivide(from, kSecondsPerFlowPulse);
  std::int64_t pulses = 0;
  const std::int64_t end = FloorDivide(to, kRainSlot);
  for (std::int64_t slot = FloorDivide(from, kRainSlot); slot < end; ++slot)
    pulses += RainInFiveMinutes(slot);
  return pulses;
}

/// Smooth noise in [-1, 1] that changes within a period.
double PondModel::Weather(std::uint32_t stream, CivilSeconds time, CivilSeconds period) const {
  const std::int64_t index = FloorDivide(time, period);
  const double place = static_cast<double>(time - index * period) / static_cast<double>(period);
  const double blend = place * place * (3 - 2 * place);
  const double before = Hashed(seed_, stream, index);
  const double after = Hashed(seed_, stream, index + 1);
  return 2 * (before + (after - before) * blend) - 1;
}

std::int64_t PondModel::RainInFiveMinutes(std::int64_t slot) const {
  const double spell = Weather(kSpells, slot * kRainSlot, 9 * kHour) - 0.6;
  if (spell <= 0) return 0;
  return static_cast<std::int64_t>(5 * spell * Hashed(seed_, kDrops, slot) + 0.3);
}

}  // namespace tessmar::sim
