#include "measure/DerivedChannels.h"

#include "measure/SalinityConductivity.h"

namespace tessmar {
namespace {

using Readings = std::span<const ChannelReading, kAnalogChannels>;

/// A value with the code of its unit, from a channel or typed in.
struct Source {
  double Value = 0;
  std::uint8_t Unit = 0;
  bool Available = false;
};

// A channel number beyond the last, as a damaged set-up may hold, is a source that is missing.
Source FromChannel(Readings readings, std::uint8_t channel, std::uint8_t unit) {
  if (channel >= kAnalogChannels) return {};
  return {readings[channel].Value, unit, readings[channel].Available};
}

Source Conductivity(const DoSettings& settings, Readings readings) {
  if (settings.ConductivityManualEntry != 0)
    return {settings.ConductivityManual, settings.ConductivityManualEntryUnits, true};
  return FromChannel(readings, settings.ConductivityChannel, settings.ConductivityUnits);
}

Source AirPressure(const DoSettings& settings, Readings readings) {
  if (settings.AirPressureManualEntry != 0)
    return {settings.AirPressureManual, settings.AirPressureManualEntryUnits, true};
  return FromChannel(readings, settings.AirPressureChannel, settings.AirPressureUnits);
}

Source PO2(const DoSettings& settings, Readings readings) {
  return FromChannel(readings, settings.PO2Channel, settings.PO2Units);
}

Source WaterTemp(const DoSettings& settings, Readings readings) {
  return FromChannel(readings, settings.WaterTempChannel, settings.WaterTempUnits);
}

ChannelReading Salinity(const Source& conductivity) {
  if (!conductivity.Available) return {};
  return {SalinityFromConductivity(conductivity.Value, conductivity.Unit), true};
}

ChannelReading Saturation(const Source& air, const Source& po2, const Source& temperature) {
  if (!air.Available || !po2.Available || !temperature.Available) return {};
  return {OxygenSaturation(air.Value, air.Unit, po2.Value, po2.Unit, temperature.Value,
                           temperature.Unit),
          true};
}

ChannelReading Concentration(const Source& conductivity, const Source& po2,
                             const Source& temperature) {
  if (!conductivity.Available || !po2.Available || !temperature.Available) return {};
  return {OxygenConcentration(conductivity.Value, conductivity.Unit, po2.Value, po2.Unit,
                              temperature.Value, temperature.Unit),
          true};
}

}  // namespace

ShownQuantity QuantityShown(const DoSettings& settings, int channel) {
  if (settings.EnableSalinityDisplay != 0 && channel == settings.SalinityDisplayChannel)
    return ShownQuantity::Salinity;
  if (settings.EnableO2SaturationDisplay != 0 && channel == settings.O2SaturationDisplayChannel)
    return ShownQuantity::Saturation;
  if (settings.EnableO2ConcentrationDisplay != 0 &&
      channel == settings.O2ConcentrationDisplayChannel)
    return ShownQuantity::Concentration;
  return ShownQuantity::OwnReading;
}

ChannelReading ShownReading(const DoSettings& settings, int channel, Readings readings) {
  switch (QuantityShown(settings, channel)) {
    case ShownQuantity::Salinity:
      return Salinity(Conductivity(settings, readings));
    case ShownQuantity::Saturation:
      return Saturation(AirPressure(settings, readings), PO2(settings, readings),
                        WaterTemp(settings, readings));
    case ShownQuantity::Concentration:
      return Concentration(Conductivity(settings, readings), PO2(settings, readings),
                           WaterTemp(settings, readings));
    case ShownQuantity::OwnReading:
      break;
  }
  if (channel < 0 || channel >= kAnalogChannels) return {};
  return readings[static_cast<std::size_t>(channel)];
}

}  // namespace tessmar
