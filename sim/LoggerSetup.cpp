#include "LoggerSetup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace tessmar::sim {
namespace {

constexpr ChannelPlan kBattery = {Sensor::Battery, "Volts", 2, 62384, 0, 24, 10, 15};

// The three channels without a sensor are there to show derived values.
constexpr std::array<ChannelPlan, 8> kChannels = {{
    {Sensor::OxygenPressure, "hPa", 1, 65535, 0, 400, 0, 400},
    {Sensor::WaterTemperature, "Temp C", 2, 65535, -10, 50, 0, 40},
    {Sensor::Conductivity, "uS/cm", 0, 65535, 0, 5000, 0, 2000},
    {Sensor::AirPressure, "mbar", 1, 65535, 800, 1100, 950, 1050},
    {Sensor::None, "%Sat", 1, 65535, 0, 200, 0, 200},
    {Sensor::None, "mg/L", 2, 65535, 0, 20, 0, 20},
    {Sensor::None, "PSS", 2, 65535, 0, 2, 0, 2},
    kBattery,
}};

struct PulsePlan {
  const char* Unit;
  int Decimals;
  double PerPulse;
};
constexpr std::array<PulsePlan, 2> kPulses = {{{"Inches", 2, 0.01}, {"Liters", 0, 10}}};

/// Image offsets of the fields that are set here; the others stay 0.
enum Offset : std::size_t {
  kName = 0,
  kInterval = 32,
  kIntervalUnit = 34,
  kAnalogCount = 35,
  kPulseCount = 36,
  kAnalogEnables = 37,
  kPulseEnables = 38,
  kWrapAndBaud = 39,
  kWarmup = 40,
  kSampleOnDemand = 44,
  kUnits = 48,
  kAlarm1Constant = 141,
  kAlarm2Constant = 145,
  kDecimals = 146,
  kRawUpper = 172,
  kPulseUnit = 188,
  kLowerLimit = 194,
  kUpperLimit = 218,
  kDisplayBottom = 242,
  kDisplayTop = 266,
  kOxygen = 290,
};

class ImageWriter {
 public:
  explicit ImageWriter(Bytes& image) : image_(image) {}

  void Number(std::size_t offset, std::uint32_t value, int size) {
    for (int index = 0; index < size; ++index, value >>= 8U)
      image_[offset + static_cast<std::size_t>(index)] = static_cast<std::uint8_t>(value);
  }
  void Byte(std::size_t offset, int value) { Number(offset, static_cast<std::uint32_t>(value), 1); }
  void Decimal(std::size_t offset, double value) { Number(offset, PackDecimal(value), 3); }
  void Text(std::size_t offset, std::string_view text, std::size_t length) {
    for (std::size_t index = 0; index < length; ++index)
      image_[offset + index] = index < text.size() ? static_cast<std::uint8_t>(text[index]) : ' ';
  }

 private:
  Bytes& image_;
};

void WriteAnalog(ImageWriter& writer, const LoggerOptions& options) {
  for (std::size_t channel = 0; channel < kChannels.size(); ++channel) {
    const ChannelPlan& plan = PlanOf(static_cast<int>(channel), options.AnalogChannels);
    writer.Text(kUnits + 9 * channel, plan.Unit, 9);
    writer.Byte(kDecimals + channel, plan.Decimals);
    writer.Number(kRawUpper + 2 * channel, static_cast<std::uint32_t>(plan.RawHigh), 2);
    writer.Decimal(kLowerLimit + 3 * channel, plan.Low);
    writer.Decimal(kUpperLimit + 3 * channel, plan.High);
    writer.Decimal(kDisplayBottom + 3 * channel, plan.DisplayBottom);
    writer.Decimal(kDisplayTop + 3 * channel, plan.DisplayTop);
  }
}

void WritePulses(ImageWriter& writer) {
  for (std::size_t channel = 0; channel < kPulses.size(); ++channel) {
    writer.Text(kUnits + 9 * (8 + channel), kPulses[channel].Unit, 9);
    writer.Byte(kDecimals + 8 + channel, kPulses[channel].Decimals);
    writer.Decimal(kPulseUnit + 3 * channel, kPulses[channel].PerPulse);
  }
}

/// True when a channel (0-based) is one that carries or shows what its plan says, and not the
/// battery.
bool Has(const LoggerOptions& options, int channel) {
  return channel < options.AnalogChannels &&
         PlanOf(channel, options.AnalogChannels).Source != Sensor::Battery;
}

void WriteOxygen(ImageWriter& writer, const LoggerOptions& options) {
  constexpr int kTemperature = 1;
  constexpr int kConductivity = 2;
  constexpr int kAir = 3;
  constexpr int kSaturation = 4;
  constexpr int kConcentration = 5;
  constexpr int kSalinity = 6;
  constexpr int kFeet = 6;
  const bool conductivity = Has(options, kConductivity);
  const bool air = Has(options, kAir);

  writer.Byte(kOxygen + 0, 0);
  writer.Byte(kOxygen + 2, Has(options, kTemperature) ? kTemperature : 0);
  writer.Byte(kOxygen + 4, conductivity ? 0 : 1);
  writer.Decimal(kOxygen + 5, 600);
  writer.Byte(kOxygen + 8, conductivity ? kConductivity : 0);
  writer.Byte(kOxygen + 10, air ? 0 : 1);
  writer.Decimal(kOxygen + 11, 200);
  writer.Byte(kOxygen + 14, kFeet);
  writer.Byte(kOxygen + 15, air ? kAir : 0);
  writer.Byte(kOxygen + 16, 1);
  writer.Byte(kOxygen + 17, Has(options, kSalinity) ? 1 : 0);
  writer.Byte(kOxygen + 18, Has(options, kSalinity) ? kSalinity : 0);
  writer.Byte(kOxygen + 19, Has(options, kSaturation) ? 1 : 0);
  writer.Byte(kOxygen + 20, Has(options, kSaturation) ? kSaturation : 0);
  writer.Byte(kOxygen + 21, Has(options, kConcentration) ? 1 : 0);
  writer.Byte(kOxygen + 22, Has(options, kConcentration) ? kConcentration : 0);
}

double ValueOf(Sensor sensor, const PondReading& reading) {
  switch (sensor) {
    case Sensor::OxygenPressure:
      return reading.OxygenPressure;
    case Sensor::WaterTemperature:
      return reading.WaterTemperature;
    case Sensor::Conductivity:
      return reading.Conductivity;
    case Sensor::AirPressure:
      return reading.AirPressure;
    case Sensor::Battery:
      return reading.BatteryVoltage;
    case Sensor::None:
      break;
  }
  return 0;
}

}  // namespace

const ChannelPlan& PlanOf(int channel, int analogChannels) {
  if (channel > 0 && channel == analogChannels - 1) return kBattery;
  return kChannels.at(static_cast<std::size_t>(channel));
}

std::uint16_t RawWord(const ChannelPlan& plan, const PondReading& reading) {
  if (plan.Source == Sensor::None) return 0;
  const double fraction = (ValueOf(plan.Source, reading) - plan.Low) / (plan.High - plan.Low);
  return static_cast<std::uint16_t>(std::lround(std::clamp(fraction * plan.RawHigh, 0.0, 65535.0)));
}

Bytes ConfigurationImage(const LoggerOptions& options) {
  Bytes image(kConfigurationSize, 0);
  ImageWriter writer(image);
  writer.Text(kName, options.Name, 32);
  writer.Number(kInterval, 15, 2);
  writer.Byte(kIntervalUnit, 1);  // minutes
  writer.Byte(kAnalogCount, options.AnalogChannels);
  writer.Byte(kPulseCount, options.PulseChannels);
  writer.Byte(kAnalogEnables, (1 << options.AnalogChannels) - 1);
  writer.Byte(kPulseEnables, (1 << options.PulseChannels) - 1);
  writer.Byte(kWrapAndBaud, 1);  // wraps around, automatic speed
  writer.Number(kWarmup, 3000, 2);
  writer.Byte(kSampleOnDemand, options.SampleOnDemand ? 1 : 0);
  writer.Byte(kAlarm1Constant, 128);
  writer.Byte(kAlarm2Constant, 128);
  WriteAnalog(writer, options);
  WritePulses(writer);
  WriteOxygen(writer, options);
  return image;
}

std::uint32_t PackDecimal(double value) {
  constexpr double kLargestMantissa = 999999;
  constexpr std::uint32_t kSign = 1U << 23U;
  const double size = std::min(std::abs(value), kLargestMantissa);
  if (size == 0) return 0;
  std::uint32_t exponent = 0;
  double mantissa = std::round(size);
  for (std::uint32_t next = 1; next <= 7; ++next) {
    const double scaled = std::round(size * std::pow(10.0, next));
    if (scaled > kLargestMantissa) break;
    exponent = next;
    mantissa = scaled;
  }
  return static_cast<std::uint32_t>(mantissa) | exponent << 20U | (value < 0 ? kSign : 0U);
}

}  // namespace tessmar::sim
