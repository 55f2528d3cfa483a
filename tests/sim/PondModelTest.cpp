#include "sim/PondModel.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessmar::test {
namespace {

using sim::CivilSeconds;
using sim::PondModel;
using sim::PondReading;

constexpr CivilSeconds kHour = 3600;
constexpr CivilSeconds kDay = 24 * kHour;
const CivilSeconds kJune = sim::ToCivilSeconds({2026, 6, 1, 0, 0, 0});
const CivilSeconds kJanuary = sim::ToCivilSeconds({2026, 1, 15, 0, 0, 0});

TEST(PondModel, StaysWithinWhatAPondCanBe) {
  const PondModel pond(1);
  for (CivilSeconds time = 0; time < 3650 * kDay; time += 7 * kHour) {
    const PondReading reading = pond.At(time);
    ASSERT_GT(reading.OxygenPressure, 100);
    ASSERT_LT(reading.OxygenPressure, 300);
    ASSERT_GT(reading.WaterTemperature, 0);
    ASSERT_LT(reading.WaterTemperature, 30);
    ASSERT_GT(reading.Conductivity, 500);
    ASSERT_LT(reading.Conductivity, 750);
    ASSERT_GT(reading.AirPressure, 980);
    ASSERT_LT(reading.AirPressure, 1035);
    ASSERT_GT(reading.BatteryVoltage, 12);
    ASSERT_LT(reading.BatteryVoltage, 14);
  }
}

TEST(PondModel, HasMoreOxygenInTheAfternoonThanAtDawn) {
  const PondModel pond(1);
  for (CivilSeconds day = kJune; day < kJune + 30 * kDay; day += kDay)
    EXPECT_GT(pond.At(day + 17 * kHour).OxygenPressure, pond.At(day + 5 * kHour).OxygenPressure);
}

TEST(PondModel, ReadingsMoveFromOneSecondToTheNext) {
  const PondModel pond(1);
  int moved = 0;
  for (sim::CivilSeconds second = 0; second < 60; ++second) {
    if (std::abs(pond.At(second).OxygenPressure - pond.At(second + 1).OxygenPressure) > 0.05) {
      ++moved;
    }
  }
  EXPECT_GT(moved, 30);
}

TEST(PondModel, IsWarmerInSummerThanInWinter) {
  const PondModel pond(1);
  EXPECT_GT(pond.At(kJune).WaterTemperature, pond.At(kJanuary).WaterTemperature + 5);
}

TEST(PondModel, ChargesItsBatteryByDay) {
  const PondModel pond(1);
  EXPECT_GT(pond.At(kJune + 12 * kHour).BatteryVoltage, pond.At(kJune).BatteryVoltage + 0.2);
}

TEST(PondModel, ChangesSmoothly) {
  const PondModel pond(1);
  for (CivilSeconds time = kJune; time < kJune + 10 * kDay; time += 60)
    ASSERT_NEAR(pond.At(time).WaterTemperature, pond.At(time + 60).WaterTemperature, 0.05);
}

TEST(PondModel, RainsAtTimes) {
  const PondModel pond(1);
  int wet = 0;
  int dry = 0;
  for (CivilSeconds time = kJune; time < kJune + 60 * kDay; time += 900)
    ++(pond.Pulses(0, time, time + 900) > 0 ? wet : dry);
  EXPECT_GT(wet, 60);
  EXPECT_GT(dry, 10 * wet);
}

TEST(PondModel, PulsesOfAdjoiningTimesAddUp) {
  const PondModel pond(3);
  for (const int channel : {0, 1}) {
    std::int64_t sum = 0;
    for (CivilSeconds time = kJune; time < kJune + 5 * kDay; time += 100)
      sum += pond.Pulses(channel, time, time + 100);
    EXPECT_EQ(sum, pond.Pulses(channel, kJune, kJune + 5 * kDay)) << channel;
    EXPECT_GT(sum, 0) << channel;
  }
}

TEST(PondModel, SeedChoosesTheWeather) {
  EXPECT_EQ(PondModel(5).At(kJune).AirPressure, PondModel(5).At(kJune).AirPressure);
  EXPECT_NE(PondModel(5).At(kJune).AirPressure, PondModel(6).At(kJune).AirPressure);
}

}  // namespace
}  // namespace tessmar::test
