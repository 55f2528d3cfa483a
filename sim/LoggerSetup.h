#pragma once

#include <cstdint>

#include "LineDevice.h"
#include "LoggerOptions.h"
#include "PondModel.h"

namespace tessmar::sim {

/// The sensor on an analog channel.
enum class Sensor { OxygenPressure, WaterTemperature, Conductivity, AirPressure, None, Battery };

/// How one analog channel is wired and scaled: raw 0 stands for Low, raw RawHigh for High.
struct ChannelPlan {
  Sensor Source = Sensor::None;
  const char* Unit = "";
  int Decimals = 0;
  int RawHigh = 65535;
  double Low = 0;
  double High = 0;
  double DisplayBottom = 0;
  double DisplayTop = 0;
};

/// The plan of a channel, 0-based. The last of two or more channels is the battery.
const ChannelPlan& PlanOf(int channel, int analogChannels);

/// The raw count, 0 to 65535, with which a channel reports a reading.
std::uint16_t RawWord(const ChannelPlan& plan, const PondReading& reading);

inline constexpr int kConfigurationSize = 315;

/// The configuration memory of the pond's logger, 315 bytes.
Bytes ConfigurationImage(const LoggerOptions& options);

/// A real number in the logger's 24 bits: mantissa up to 999999 in bits 0-19, decimal exponent in
/// bits 20-22, sign in bit 23.
std::uint32_t PackDecimal(double value);

}  // namespace tessmar::sim
