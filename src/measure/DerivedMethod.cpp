#include "measure/DerivedMethod.h"

#include <QStringList>
#include <array>
#include <cstddef>

#include "measure/DerivedChannels.h"
#include "measure/SalinityConductivity.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kDigits = 10;

// By the code; a code beyond them counts as another, see SalinityConductivity.h.
constexpr std::array<const char*, 8> kPressures = {"hPa",  "mbar", "kPa",  "inHg",
                                                   "mmHg", "PSI",  "feet", "meters"};

QString PressureName(std::uint8_t unit) {
  return QString::fromLatin1(unit < kPressures.size() ? kPressures[unit] : "mbar");
}

QString ConductivityName(std::uint8_t unit) {
  if (unit == kMicroSiemensPerCm) return u"uS/cm"_s;
  return unit == kAlreadySalinity ? u"PSU"_s : u"mS/cm"_s;
}

bool IsAltitude(std::uint8_t unit) {
  return unit == kAltitudeInFeet || unit == kAltitudeInMetres;
}

QString FromChannel(const LoggerSettings& settings, std::uint8_t channel, const QString& unit) {
  const QString name = u"channel %1"_s.arg(channel + 1);
  if (channel >= kAnalogChannels)
    return name + u", which does not exist, so that there is no value"_s;
  if (settings.Analog[channel].Enable == 0)
    return name + u", which is off, so that there is no value"_s;
  return u"%1 in %2"_s.arg(name, unit);
}

QString TypedIn(double value, const QString& unit) {
  return u"%1 %2 as typed in"_s.arg(QString::number(value, 'g', kDigits), unit);
}

QString Conductivity(const LoggerSettings& settings) {
  const DoSettings& set = settings.Do;
  const bool typed = set.ConductivityManualEntry != 0;
  const std::uint8_t unit = typed ? set.ConductivityManualEntryUnits : set.ConductivityUnits;
  const QString what = unit == kAlreadySalinity ? u"salinity "_s : u"conductivity at 25 °C "_s;
  return what + (typed ? TypedIn(set.ConductivityManual, ConductivityName(unit))
                       : FromChannel(settings, set.ConductivityChannel, ConductivityName(unit)));
}

QString AirPressure(const LoggerSettings& settings) {
  const DoSettings& set = settings.Do;
  const bool typed = set.AirPressureManualEntry != 0;
  const std::uint8_t unit = typed ? set.AirPressureManualEntryUnits : set.AirPressureUnits;
  const QString what = IsAltitude(unit)
                           ? u"air pressure P of the standard atmosphere at the altitude "_s
                           : u"air pressure P "_s;
  return what + (typed ? TypedIn(set.AirPressureManual, PressureName(unit))
                       : FromChannel(settings, set.AirPressureChannel, PressureName(unit)));
}

QString PO2(const LoggerSettings& settings) {
  return u"partial pressure of oxygen O "_s +
         FromChannel(settings, settings.Do.PO2Channel, PressureName(settings.Do.PO2Units));
}

QString WaterTemp(const LoggerSettings& settings) {
  return u"water temperature t "_s +
         FromChannel(settings, settings.Do.WaterTempChannel,
                     settings.Do.WaterTempUnits == kCelsius ? u"°C"_s : u"°F"_s);
}

QString Put(const QString& formula, const QStringList& inputs, const QString& deviation) {
  return formula + u"; from "_s + inputs.join(u", "_s) + u"; "_s + deviation;
}

}  // namespace

QString MethodText(const LoggerSettings& settings, int channel) {
  switch (QuantityShown(settings.Do, channel)) {
    case ShownQuantity::Salinity:
      return Put(
          u"practical salinity scale 1978 with its coefficients at 25 °C, extended to low "
          "salinities after Hill, Dauphinee and Woods (1986)"_s,
          {Conductivity(settings)},
          u"largest deviation from the full scale 0.0006 for water at 25 °C up to a salinity of "
          "42"_s);
    case ShownQuantity::Saturation:
      return Put(
          u"oxygen saturation 100 O / ((P - W) 0.2095) with the pressure of water vapour W a "
          "polynomial in t"_s,
          {PO2(settings), WaterTemp(settings), AirPressure(settings)},
          u"largest deviation of W from Wexler (1976) 0.6 % from 0 to 50 °C, which moves the "
          "saturation at sea level by less than 0.02 % of its value"_s);
    case ShownQuantity::Concentration:
      return Put(
          u"oxygen solubility for each mbar of O as a polynomial in t, less a correction for "
          "salinity"_s,
          {PO2(settings), WaterTemp(settings), Conductivity(settings)},
          u"largest deviation from Benson and Krause (1984) 0.02 mg/L or 0.2 % in fresh water from "
          "0 to 30 °C, 0.07 mg/L or 0.7 % at salinities to 40 from 0 to 30 °C, 0.08 mg/L or 1.4 % "
          "at salinities to 40 from 0 to 40 °C; from Weiss (1970) 0.04 mg/L or 0.5 % in fresh "
          "water, "
          "0.07 mg/L or 1.3 % at salinities to 40 from 0 to 40 °C"_s);
    case ShownQuantity::OwnReading:
      break;
  }
  return {};
}

}  // namespace tessmar
