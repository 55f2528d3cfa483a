#pragma once

#include <cstdint>

#include "base/Fault.h"

namespace tessmar {

/// A calculation overflowed or had no defined result.
class CalculationFault : public Fault {
 public:
  using Fault::Fault;
};

/// Unit codes of conductivities. Codes above these count as mS/cm.
enum ConductivityUnit : std::uint8_t {
  kMicroSiemensPerCm = 0,
  kMilliSiemensPerCm = 1,
  kAlreadySalinity = 2,  ///< In no list: the value is a salinity and is used as it is.
};

/// Unit codes of pressures, in the order of the lists on the setup screen. The last two are
/// altitudes, standing for the air pressure there. Codes above these count as mbar.
enum PressureUnit : std::int16_t {
  kHectopascal = 0,
  kMillibar = 1,
  kKilopascal = 2,
  kInchesOfMercury = 3,
  kMillimetresOfMercury = 4,
  kPoundsPerSquareInch = 5,
  kAltitudeInFeet = 6,
  kAltitudeInMetres = 7,
};

/// Unit codes of water temperatures. Every code but 0 counts as Fahrenheit.
enum TemperatureUnit : std::uint8_t { kCelsius = 0, kFahrenheit = 1 };

// All functions are pure. An argument so large that a step overflows throws CalculationFault.

/// Practical salinity of water with a conductivity referred to 25 degrees Celsius.
///
/// The practical salinity scale 1978 (E. L. Lewis, IEEE J. Oceanic Eng. 5, 1980; UNESCO Technical
/// Papers in Marine Science 36 and 44), its polynomial in the conductivity ratio evaluated at 25
/// degrees, with the extension to low salinities by K. D. Hill, T. M. Dauphinee and D. J. Woods
/// (IEEE J. Oceanic Eng. 11, 1986). The ratio is taken to 53.087 mS/cm.
///
/// @param conductivity  a negative one counts as 0.
/// @param unit  a ConductivityUnit.
/// @return salinity in PSS units; 0 for 0, about 35 for sea water.
double SalinityFromConductivity(double conductivity, std::uint8_t unit);

/// Standard air pressure at an altitude.
///
/// Table of the standard atmosphere (U.S. Standard Atmosphere, 1976, as given in mmHg), linear
/// between its rows; 760 mmHg at sea level comes to 1013.25 mbar.
///
/// @param feet  taken as -2000 below it and as 30000 above it.
/// @return pressure in mbar.
double PressureFromAltitude(double feet);

/// A pressure in mbar, or the air pressure at an altitude. Never negative: a value below 0 gives 0.
///
/// @param unit  a PressureUnit.
double PressureToMbar(double value, std::int16_t unit);

/// Saturation of the water with oxygen against air of 20.95 % oxygen, saturated with water vapour.
///
/// The vapour pressure is a polynomial of fourth degree in the temperature. It runs close to the
/// saturation vapour pressure over water as tabulated by A. Wexler (J. Res. NBS 80A, 1976), 31.7
/// mbar at 25 degrees Celsius.
///
/// @param airPressure  in airUnit, a PressureUnit.
/// @param po2  partial pressure of oxygen, in po2Unit, a PressureUnit.
/// @param temperature  of the water, in temperatureUnit; below 0 degrees Celsius it counts as that.
/// @return percent, 0 to 200; 100 when the air pressure does not exceed the vapour pressure.
double OxygenSaturation(double airPressure, std::uint8_t airUnit, double po2, std::uint8_t po2Unit,
                        double temperature, std::uint8_t temperatureUnit);

/// Concentration of dissolved oxygen in mg/L.
///
/// Solubility of oxygen per mbar of its partial pressure as a polynomial in the temperature, less a
/// correction for salinity. It runs close to the solubilities of B. B. Benson and D. Krause
/// (Limnol. Oceanogr. 29, 1984). Fresh water at 0 degrees Celsius under air, with 212 mbar of
/// oxygen, holds about 14.7 mg/L. Air pressure does not enter.
///
/// @param conductivity  in conductivityUnit, a ConductivityUnit.
/// @param po2, temperature  as for OxygenSaturation.
/// @return mg/L, never negative.
double OxygenConcentration(double conductivity, std::uint8_t conductivityUnit, double po2,
                           std::uint8_t po2Unit, double temperature, std::uint8_t temperatureUnit);

}  // namespace tessmar
