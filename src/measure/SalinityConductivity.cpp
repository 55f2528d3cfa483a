#include "measure/SalinityConductivity.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessmar {
namespace {

struct AltitudeRow {
  double Feet;
  double MmHg;
};

// clang-format off
constexpr std::array<AltitudeRow, 33> kStandardAtmosphere{{
    {-2000, 816.4}, {-1500, 802.1}, {-1000, 787.9}, {-500, 773.9},
    {0, 760.0}, {500, 746.5}, {1000, 733.0}, {1500, 719.8},
    {2000, 706.6}, {2500, 693.9}, {3000, 681.2}, {3500, 668.8},
    {4000, 656.3}, {4500, 644.4}, {5000, 632.5}, {5500, 620.8},
    {6000, 609.1}, {6500, 597.7}, {7000, 586.5}, {7500, 575.6},
    {8000, 564.6}, {8500, 554.0}, {9000, 543.3}, {9500, 532.9},
    {10000, 522.7}, {11000, 502.9}, {12000, 483.4}, {13000, 464.8},
    {14000, 446.5}, {15000, 429.0}, {20000, 349.5}, {25000, 282.4},
    {30000, 226.1},
}};
// clang-format on

constexpr double kInchesPerMillimetre = 0.0393700787;
constexpr double kFeetPerMetre = 3.2808399;
constexpr double kInchesOfMercuryPerBar = 29.53;
constexpr double kPsiPerBar = 14.5038;
// Conductivity of the ratio 1, in mS/cm at 25 degrees Celsius.
constexpr double kReferenceConductivity = 53.087;
constexpr double kOxygenInAir = 0.2095;
constexpr double kHighestSaturation = 200;

// Coefficients from the power 0 upward.
constexpr std::array kVapourPressure{6.13, 0.416, 0.018, 8.87e-05, 6.45e-06};
constexpr std::array kSolubility{0.06925, -0.00188, 3.866e-05, -4.572e-07, 2.371e-09};
constexpr std::array kSalinityCorrection{0.0004712, -1.679e-05, 4.214e-07, -6.642e-09, 4.572e-11};

double Checked(double value) {
  if (!std::isfinite(value)) throw CalculationFault("a calculation has no finite result");
  return value;
}

// The sum from the power 0 upward, left to right; the power 0 is 1 also at 0.
template <std::size_t N>
double Polynomial(const std::array<double, N>& coefficients, double x) {
  double sum = 0;
  double power = 1;
  for (const double coefficient : coefficients) {
    sum += coefficient * power;
    power *= x;
  }
  return Checked(sum);
}

double CelsiusOfWater(double temperature, std::uint8_t unit) {
  const double celsius = unit == kCelsius ? temperature : (temperature - 32) * 5 / 9;
  return celsius < 0 ? 0 : celsius;
}

double InchesOfMercuryToMbar(double inches) {
  return inches * 1000 / kInchesOfMercuryPerBar;
}

double ConvertToMbar(double value, std::int16_t unit) {
  switch (unit) {
    case kKilopascal:
      return value * 10;
    case kInchesOfMercury:
      return InchesOfMercuryToMbar(value);
    case kMillimetresOfMercury:
      return InchesOfMercuryToMbar(value * kInchesPerMillimetre);
    case kPoundsPerSquareInch:
      return value * 1000 / kPsiPerBar;
    case kAltitudeInFeet:
      return PressureFromAltitude(value);
    case kAltitudeInMetres:
      return PressureFromAltitude(value * kFeetPerMetre);
    default:
      return value;
  }
}

}  // namespace

double SalinityFromConductivity(double conductivity, std::uint8_t unit) {
  if (unit == kAlreadySalinity) return conductivity;
  const double milliSiemens = unit == kMicroSiemensPerCm ? conductivity / 1000 : conductivity;
  const double quotient = milliSiemens / kReferenceConductivity;
  const double r = quotient < 0 ? 0 : quotient;
  const double root = std::sqrt(r);
  const double salinity = 0.012 - 0.2174 * root + 25.3283 * r + 13.7714 * (r * root) -
                          6.4788 * (r * r) + 2.5842 * (r * r * root);
  const double x = 400 * r;
  const double y = 100 * r;
  return Checked(salinity - 0.008 / (1 + 1.5 * x + x * x) -
                 0.004 / (1 + std::sqrt(y) + y * std::sqrt(y)));
}

double PressureFromAltitude(double feet) {
  const double altitude =
      std::clamp(Checked(feet), kStandardAtmosphere.front().Feet, kStandardAtmosphere.back().Feet);
  std::size_t i = 0;
  while (i + 2 < kStandardAtmosphere.size() && altitude > kStandardAtmosphere[i + 1].Feet) ++i;
  const AltitudeRow& low = kStandardAtmosphere[i];
  const AltitudeRow& high = kStandardAtmosphere[i + 1];
  const double mmHg =
      low.MmHg + (high.MmHg - low.MmHg) * (altitude - low.Feet) / (high.Feet - low.Feet);
  return InchesOfMercuryToMbar(mmHg * kInchesPerMillimetre);
}

double PressureToMbar(double value, std::int16_t unit) {
  const double mbar = Checked(ConvertToMbar(value, unit));
  return mbar < 0 ? 0 : mbar;
}

double OxygenSaturation(double airPressure, std::uint8_t airUnit, double po2, std::uint8_t po2Unit,
                        double temperature, std::uint8_t temperatureUnit) {
  const double air = PressureToMbar(airPressure, airUnit);
  const double oxygen = PressureToMbar(po2, po2Unit);
  const double vapour = Polynomial(kVapourPressure, CelsiusOfWater(temperature, temperatureUnit));
  const double dryAir = air - vapour;
  if (dryAir <= 0) return 100;
  const double saturation = Checked(oxygen * 100 / (dryAir * kOxygenInAir));
  return std::min(saturation, kHighestSaturation);
}

double OxygenConcentration(double conductivity, std::uint8_t conductivityUnit, double po2,
                           std::uint8_t po2Unit, double temperature, std::uint8_t temperatureUnit) {
  const double salinity = SalinityFromConductivity(conductivity, conductivityUnit);
  const double oxygen = PressureToMbar(po2, po2Unit);
  const double celsius = CelsiusOfWater(temperature, temperatureUnit);
  const double solubility = Polynomial(kSolubility, celsius);
  const double correction = Polynomial(kSalinityCorrection, celsius);
  const double concentration =
      Checked((solubility + (0.00295 * (salinity * salinity) - salinity) * correction) * oxygen);
  return concentration < 0 ? 0 : concentration;
}

}  // namespace tessmar
