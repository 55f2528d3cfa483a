#include "sim/LoggerSetup.h"

#include <gtest/gtest.h>

#include "HexBytes.h"
#include "sim/LoggerMemory.h"
#include "sim/LoggingState.h"

namespace tessmar::test {
namespace {

using sim::Bytes;
using sim::LoggerMemory;

std::string Part(const Bytes& image, std::size_t offset, std::size_t count) {
  const auto begin = image.begin() + static_cast<std::ptrdiff_t>(offset);
  return Text(Bytes(begin, begin + static_cast<std::ptrdiff_t>(count)));
}

TEST(PackDecimal, HasMantissaExponentAndSign) {
  EXPECT_EQ(sim::PackDecimal(0), 0U);
  EXPECT_EQ(sim::PackDecimal(1), 0x5186A0U);
  EXPECT_EQ(sim::PackDecimal(100), 0x3186A0U);
  EXPECT_EQ(sim::PackDecimal(24), 0x43A980U);
  EXPECT_EQ(sim::PackDecimal(-5.5), 0xD86470U);
  EXPECT_EQ(sim::PackDecimal(1e9), 0x0F423FU);
}

TEST(ConfigurationImage, HasNameIntervalCountsAndFlagsInTheirPlaces) {
  const Bytes image = sim::ConfigurationImage({});
  ASSERT_EQ(image.size(), 315U);
  EXPECT_EQ(Part(image, 0, 13), "4D 69 6C 6C 20 50 6F 6E 64 20 33 20 20");
  EXPECT_EQ(Part(image, 30, 2), "20 20");
  EXPECT_EQ(Part(image, 32, 10), "0F 00 01 08 02 FF 03 01 B8 0B");
  EXPECT_EQ(Part(image, 42, 6), "00 00 00 00 00 00");
  EXPECT_EQ(Part(image, 138, 8), "00 00 00 80 00 00 00 80");
}

TEST(ConfigurationImage, HasUnitsAndDecimalPlacesOfTenChannels) {
  const Bytes image = sim::ConfigurationImage({});
  EXPECT_EQ(Part(image, 48, 9), "68 50 61 20 20 20 20 20 20");
  EXPECT_EQ(Part(image, 57, 9), "54 65 6D 70 20 43 20 20 20");
  EXPECT_EQ(Part(image, 111, 9), "56 6F 6C 74 73 20 20 20 20");
  EXPECT_EQ(Part(image, 120, 9), "49 6E 63 68 65 73 20 20 20");
  EXPECT_EQ(Part(image, 129, 9), "4C 69 74 65 72 73 20 20 20");
  EXPECT_EQ(Part(image, 146, 10), "01 02 00 01 01 02 02 02 02 00");
}

TEST(ConfigurationImage, HasScaling) {
  const Bytes image = sim::ConfigurationImage({});
  EXPECT_EQ(Part(image, 156, 16), "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  EXPECT_EQ(Part(image, 172, 16), "FF FF FF FF FF FF FF FF FF FF FF FF FF FF B0 F3");
  EXPECT_EQ(Part(image, 188, 6), "A0 86 71 A0 86 41");
  EXPECT_EQ(Part(image, 194, 12), "00 00 00 A0 86 C1 00 00 00 00 35 3C");
  EXPECT_EQ(Part(image, 218, 12), "80 1A 36 20 A1 47 20 A1 27 B0 AD 21");
  EXPECT_EQ(Part(image, 239, 3), "80 A9 43");
  EXPECT_EQ(Part(image, 242, 3), "00 00 00");
  EXPECT_EQ(Part(image, 263, 3), "A0 86 41");
  EXPECT_EQ(Part(image, 266, 3), "80 1A 36");
  EXPECT_EQ(Part(image, 287, 3), "F0 49 42");
}

TEST(ConfigurationImage, DerivesOxygenAndSalinityFromItsSensors) {
  const Bytes image = sim::ConfigurationImage({});
  EXPECT_EQ(Part(image, 290, 25),
            "00 00 01 00 00 C0 27 39 02 00 00 40 0D 33 06 03 01 01 06 01 04 01 05 00 00");
}

TEST(ConfigurationImage, WithFewerChannelsEntersWhatNoSensorGives) {
  const Bytes image = sim::ConfigurationImage({.AnalogChannels = 3, .PulseChannels = 1});
  EXPECT_EQ(Part(image, 35, 4), "03 01 07 01");
  // The third channel is the battery, so conductivity and air pressure are entered ones.
  EXPECT_EQ(Part(image, 66, 9), "56 6F 6C 74 73 20 20 20 20");
  EXPECT_EQ(Part(image, 290, 25),
            "00 00 01 00 01 C0 27 39 00 00 01 40 0D 33 06 00 01 00 00 00 00 00 00 00 00");
}

TEST(PlanOf, LastOfSeveralChannelsIsTheBattery) {
  for (int count = 2; count <= 8; ++count) {
    EXPECT_EQ(sim::PlanOf(count - 1, count).Source, sim::Sensor::Battery) << count;
    EXPECT_EQ(sim::PlanOf(0, count).Source, sim::Sensor::OxygenPressure) << count;
  }
  EXPECT_EQ(sim::PlanOf(0, 1).Source, sim::Sensor::OxygenPressure);
}

TEST(RawWord, ScalesBetweenTheTwoPointsAndStopsAtSixteenBits) {
  const sim::ChannelPlan& temperature = sim::PlanOf(1, 8);
  EXPECT_EQ(sim::RawWord(temperature, {.WaterTemperature = -10}), 0);
  EXPECT_EQ(sim::RawWord(temperature, {.WaterTemperature = 20}), 32768);
  EXPECT_EQ(sim::RawWord(temperature, {.WaterTemperature = 50}), 65535);
  EXPECT_EQ(sim::RawWord(temperature, {.WaterTemperature = 90}), 65535);
  EXPECT_EQ(sim::RawWord(temperature, {.WaterTemperature = -40}), 0);
  EXPECT_EQ(sim::RawWord(sim::PlanOf(7, 8), {.BatteryVoltage = 12}), 31192);
}

TEST(LoggerMemory, KeepsTheConfigurationInThreeAreas) {
  Bytes image(315);
  for (std::size_t index = 0; index < image.size(); ++index)
    image[index] = static_cast<std::uint8_t>(index % 251);
  LoggerMemory memory;
  memory.StoreConfiguration(image);
  EXPECT_EQ(memory.At(7), 0xFF);
  EXPECT_EQ(memory.At(8), 0);
  EXPECT_EQ(memory.At(249), 241);
  EXPECT_EQ(memory.At(250), 0xFF);
  EXPECT_EQ(memory.At(255), 0xFF);
  EXPECT_EQ(memory.At(256), 242);
  EXPECT_EQ(memory.At(303), 289 - 251);
  EXPECT_EQ(memory.At(304), 0xFF);
  EXPECT_EQ(memory.At(768), 290 - 251);
  EXPECT_EQ(memory.At(792), 314 - 251);
  EXPECT_EQ(memory.At(793), 0xFF);
  EXPECT_EQ(memory.Configuration(), image);
}

TEST(LoggerMemory, IsErasedBeyondItsEnd) {
  LoggerMemory memory;
  memory.Write(65535, Hex("12 34"));
  EXPECT_EQ(Text(memory.Read(65535, 2)), "12 FF");
  EXPECT_EQ(memory.At(0xFFFFFF), 0xFF);
  memory.Write(70000, Hex("12"));
  EXPECT_EQ(Text(memory.Read(70000, 1)), "FF");
}

/// A memory with an identifier, alarm enables and alarm times of second, minute and hour.
LoggerMemory WithAlarms(std::string_view enables, std::string_view first, std::string_view second) {
  LoggerMemory memory;
  memory.Write(0, Hex("54"));
  memory.Write(50, Hex(enables));
  memory.Write(146, Hex(first));
  memory.Write(150, Hex(second));
  return memory;
}

sim::CivilSeconds At(int hour, int minute) {
  return sim::ToCivilSeconds({2026, 6, 15, hour, minute, 0});
}

TEST(StatusWord, WithoutAnIdentifierDoesNotLog) {
  EXPECT_EQ(sim::StatusWord(LoggerMemory(), At(12, 0)), 0);
}

TEST(StatusWord, WithoutAlarmsLogs) {
  EXPECT_EQ(sim::StatusWord(WithAlarms("00 00", "00 00 00", "00 00 00"), At(12, 0)), 0x0080);
}

TEST(StatusWord, AlarmsStartAndStopTheDaysLogging) {
  const LoggerMemory memory = WithAlarms("01 01", "00 30 08", "00 00 17");
  EXPECT_EQ(sim::StatusWord(memory, At(8, 29)), 0x0880);
  EXPECT_EQ(sim::StatusWord(memory, At(8, 30)), 0x1080);
  EXPECT_EQ(sim::StatusWord(memory, At(16, 59)), 0x1080);
  EXPECT_EQ(sim::StatusWord(memory, At(17, 0)), 0x2080);
}

TEST(StatusWord, OneAlarmAloneStartsOrStops) {
  const LoggerMemory start = WithAlarms("01 00", "00 00 08", "00 00 00");
  EXPECT_EQ(sim::StatusWord(start, At(7, 0)), 0x0880);
  EXPECT_EQ(sim::StatusWord(start, At(9, 0)), 0x0080);
  const LoggerMemory stop = WithAlarms("00 01", "00 00 00", "00 00 17");
  EXPECT_EQ(sim::StatusWord(stop, At(9, 0)), 0x1080);
  EXPECT_EQ(sim::StatusWord(stop, At(18, 0)), 0x2080);
}

TEST(StatusWord, AlarmsReachThroughTheNight) {
  const LoggerMemory memory = WithAlarms("01 01", "00 00 22", "00 00 05");
  EXPECT_EQ(sim::StatusWord(memory, At(23, 0)), 0x1080);
  EXPECT_EQ(sim::StatusWord(memory, At(4, 0)), 0x1080);
  EXPECT_EQ(sim::StatusWord(memory, At(12, 0)), 0x0880);
}

}  // namespace
}  // namespace tessmar::test
