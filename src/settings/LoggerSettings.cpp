#include "settings/LoggerSettings.h"

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::uint8_t kFeet = 6;
/// The raw count at which the battery channel reads 24 volts.
constexpr std::int32_t kBatteryRawUpper = 62384;

AnalogChannelSettings GeneralChannel() {
  AnalogChannelSettings channel;
  channel.Enable = 1;
  channel.EngUnits = u"%"_s;
  channel.DecPlaces = 2;
  channel.RawScaleUpper = 65535;
  channel.UpperLimit = 100;
  channel.DisplayTop = 100;
  return channel;
}

AnalogChannelSettings BatteryChannel() {
  AnalogChannelSettings channel = GeneralChannel();
  channel.EngUnits = u"Volts"_s;
  channel.RawScaleUpper = kBatteryRawUpper;
  channel.UpperLimit = 24;
  channel.DisplayTop = 24;
  return channel;
}

PulseChannelSettings PulseChannel() {
  PulseChannelSettings channel;
  channel.Enable = 1;
  channel.EngUnits = u"Pulses"_s;
  channel.PulseUnit = 1;
  return channel;
}

/// Units and places of the ten channels as one sequence: Analog, then Pulse.
template <typename Settings>
auto& ChannelField(Settings& settings, int entry, auto analogField, auto pulseField) {
  if (entry < 0 || entry >= kAnalogChannels + kPulseChannels) {
    throw RangeFault("there are ten channels");
  }
  if (entry < kAnalogChannels) return settings.Analog[entry].*analogField;
  return settings.Pulse[entry - kAnalogChannels].*pulseField;
}

}  // namespace

DoSettings DoSettings::Defaults() {
  DoSettings defaults;
  defaults.ConductivityManualEntry = 1;
  defaults.AirPressureManualEntry = 1;
  defaults.AirPressureManualEntryUnits = kFeet;
  return defaults;
}

QString& LoggerSettings::EngUnits(int entry) {
  return ChannelField(*this, entry, &AnalogChannelSettings::EngUnits,
                      &PulseChannelSettings::EngUnits);
}

const QString& LoggerSettings::EngUnits(int entry) const {
  return ChannelField(*this, entry, &AnalogChannelSettings::EngUnits,
                      &PulseChannelSettings::EngUnits);
}

std::uint8_t& LoggerSettings::DecPlaces(int entry) {
  return ChannelField(*this, entry, &AnalogChannelSettings::DecPlaces,
                      &PulseChannelSettings::DecPlaces);
}

std::uint8_t LoggerSettings::DecPlaces(int entry) const {
  return ChannelField(*this, entry, &AnalogChannelSettings::DecPlaces,
                      &PulseChannelSettings::DecPlaces);
}

void LoadDefaultSettings(LoggerSettings& settings, int analogChannelCount) {
  settings = LoggerSettings{};
  settings.LoggerName = u"Tessmar Logger"_s;
  settings.SampleInterval = u"1 day"_s;
  settings.DataWrapAroundFlag = 1;
  settings.SensorWarmupTime = 3;
  settings.Analog.fill(GeneralChannel());
  const int battery = analogChannelCount - 1;
  if (battery > 0 && battery < kAnalogChannels) settings.Analog[battery] = BatteryChannel();
  settings.Pulse.fill(PulseChannel());
  settings.Do = DoSettings::Defaults();
}

}  // namespace tessmar
