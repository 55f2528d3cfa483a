#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "base/Fault.h"
#include "settings/ConfigImages.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::EmptyImage;
using test::EmptySettings;
using test::FullLogger;
using test::Overwrite;
using S = LoggerSettings;

/// A record in which every byte of the image is other than zero, where a field allows it.
LoggerSettings FilledSettings() {
  LoggerSettings settings;
  settings.LoggerName = QString(32, u'n');
  settings.SampleInterval = u"4369 days"_s;
  settings.DataWrapAroundFlag = 1;
  settings.FixedBaudRate = 6;
  settings.SensorWarmupTime = 3;
  settings.LoggingStyle = 130;
  settings.Deadband = 0x1111;
  settings.EnableSOD = 1;
  for (AnalogChannelSettings& channel : settings.Analog) {
    channel = {1, QString(9, u'u'), 2, 0x1111, 0x2222, 24, 24, 24, 24};
  }
  for (PulseChannelSettings& channel : settings.Pulse) channel = {1, QString(9, u'p'), 2, 24};
  for (AlarmSettings& alarm : settings.Alarm) alarm = {1, 11, 12, 13};
  settings.Do = {1, 1, 1, 1, 1, 24, 1, 1, 1, 1, 24, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  return settings;
}

struct Region {
  int First;
  int Last;
};

/// A value that does not fit, and the bytes that are not reached because of it, in image offsets.
struct FaultRow {
  const char* Name;
  std::function<void(S&)> Spoil;
  int FieldOffset;
  int FieldSize;
  std::vector<Region> Unreached;
};

const std::vector<Region> kBehindCount{{34, 314}};
const std::vector<Region> kBehindBaud{{40, 314}};
const std::vector<Region> kBehindWarmup{{42, 314}};
const std::vector<Region> kBehindDeadband{{146, 314}};
const std::vector<Region> kDisplayAndDo{{242, 314}};

std::vector<FaultRow> FaultRows() {
  std::vector<FaultRow> rows{
      {"count above", [](S& s) { s.SampleInterval = u"65536 days"_s; }, 32, 2, kBehindCount},
      {"count below", [](S& s) { s.SampleInterval = u"-1 day"_s; }, 32, 2, kBehindCount},
      {"count above 32 bits", [](S& s) { s.SampleInterval = u"9999999999"_s; }, 32, 2,
       kBehindCount},
      {"count above a double", [](S& s) { s.SampleInterval = u"1e999"_s; }, 32, 2, kBehindCount},
      {"baud 128", [](S& s) { s.FixedBaudRate = 128; }, 39, 1, kBehindBaud},
      {"warm-up 66", [](S& s) { s.SensorWarmupTime = 66; }, 40, 2, kBehindWarmup},
      {"deadband above", [](S& s) { s.Deadband = 65536; }, 46, 2, kBehindDeadband},
      {"deadband 70000", [](S& s) { s.Deadband = 70000; }, 46, 2, kBehindDeadband},
      {"deadband below", [](S& s) { s.Deadband = -1; }, 46, 2, kBehindDeadband},
  };
  for (const int bad : {160, -1, 32767, -32768}) {
    const auto value = static_cast<std::int16_t>(bad);
    for (int alarm = 0; alarm < 2; ++alarm) {
      const int at = 138 + 4 * alarm;
      rows.push_back({"alarm second",
                      [=](S& s) { s.Alarm[alarm].AlarmSec = value; },
                      at,
                      1,
                      {{at + 1, 145}, {44, 47}, {146, 314}}});
      rows.push_back({"alarm minute",
                      [=](S& s) { s.Alarm[alarm].AlarmMin = value; },
                      at + 1,
                      1,
                      {{at + 2, 145}, {44, 47}, {146, 314}}});
      rows.push_back({"alarm hour",
                      [=](S& s) { s.Alarm[alarm].AlarmHour = value; },
                      at + 2,
                      1,
                      {{at + 3, 145}, {44, 47}, {146, 314}}});
    }
  }
  for (const int bad : {65536, -1}) {
    for (int i = 0; i < 8; ++i) {
      rows.push_back({"raw lower",
                      [=](S& s) { s.Analog[i].RawScaleLower = bad; },
                      156 + 2 * i,
                      2,
                      {{158 + 2 * i, 187}, {242, 314}}});
      std::vector<Region> behind{{242, 314}};
      if (i < 7) behind.push_back({174 + 2 * i, 187});
      rows.push_back(
          {"raw upper", [=](S& s) { s.Analog[i].RawScaleUpper = bad; }, 172 + 2 * i, 2, behind});
    }
  }
  return rows;
}

TEST(PackConfigImage, LeavesZerosBehindAFieldThatDoesNotFit) {
  ConfigImage whole;
  ASSERT_TRUE(PackConfigImage(FullLogger(), FilledSettings(), whole));
  for (const FaultRow& row : FaultRows()) {
    LoggerSettings settings = FilledSettings();
    row.Spoil(settings);
    ConfigImage image;
    EXPECT_FALSE(PackConfigImage(FullLogger(), settings, image)) << row.Name;
    ASSERT_EQ(image.size(), 315U);

    ConfigImage expected = whole;
    for (const Region& region : row.Unreached) {
      std::fill(expected.begin() + region.First, expected.begin() + region.Last + 1, 0);
    }
    // Of the field itself only the first byte may have been written.
    for (int i = 0; i < row.FieldSize; ++i) {
      expected[row.FieldOffset + i] = 0;
      if (i == 0) image[row.FieldOffset] = 0;
    }
    EXPECT_EQ(image, expected) << row.Name << " at " << row.FieldOffset;
  }
}

TEST(PackConfigImage, TakesTheHighestValuesThatFit) {
  LoggerSettings settings = FilledSettings();
  settings.SampleInterval = u"65535 days"_s;
  settings.FixedBaudRate = 127;
  settings.DataWrapAroundFlag = 1;
  settings.SensorWarmupTime = 65;
  settings.Deadband = 65535;
  settings.Alarm[0] = {255, 159, 159, 159};
  settings.Analog[7].RawScaleUpper = 65535;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
  EXPECT_EQ(image[39], 0xFF);
  EXPECT_EQ(image[40], 0xE8);
  EXPECT_EQ(image[41], 0xFD);
  EXPECT_EQ(image[42], 0xFF);
  EXPECT_EQ(image[138], 0xF9);
  EXPECT_EQ(image[186], 0xFF);
  EXPECT_EQ(image[187], 0xFF);
}

TEST(PackConfigImage, LetsTheFaultThroughWhenFaultsAreNotTrapped) {
  LinkState link = FullLogger();
  link.TrapErrors = false;
  LoggerSettings settings;
  settings.Deadband = 70000;
  ConfigImage image;
  EXPECT_THROW(PackConfigImage(link, settings, image), ConversionFault);
}

/// The fields that an image of a length delivers: those that UnpackConfigImage reads ahead of the
/// first one that is not wholly there.
TEST(UnpackConfigImage, StopsAtTheFirstFieldBehindTheEnd) {
  ConfigImage whole;
  ASSERT_TRUE(PackConfigImage(FullLogger(), FilledSettings(), whole));
  struct {
    int Length;
    std::function<void(S&)> Undo;  ///< Back to an empty record, from this field on.
  } const rows[] = {
      {0, [](S& s) { s = S{}; }},
      {31, [](S& s) { s = S{}; }},
      {32,
       [](S& s) {
         const QString name = s.LoggerName;
         s = S{};
         s.LoggerName = name;
       }},
      {34,
       [](S& s) {
         const QString name = s.LoggerName;
         s = S{};
         s.LoggerName = name;
       }},
      {37,
       [](S& s) {
         const S full = s;
         s = S{};
         s.LoggerName = full.LoggerName;
         s.SampleInterval = full.SampleInterval;
       }},
      // Everything between 42 and 47 is read behind the units, so it is missing too.
      {137,
       [](S& s) {
         const S full = s;
         s = S{};
         s.LoggerName = full.LoggerName;
         s.SampleInterval = full.SampleInterval;
         s.DataWrapAroundFlag = full.DataWrapAroundFlag;
         s.FixedBaudRate = full.FixedBaudRate;
         s.SensorWarmupTime = full.SensorWarmupTime;
         for (int i = 0; i < 8; ++i) {
           s.Analog[i].Enable = full.Analog[i].Enable;
           s.Analog[i].EngUnits = full.Analog[i].EngUnits;
         }
         for (int i = 0; i < 2; ++i) s.Pulse[i].Enable = full.Pulse[i].Enable;
         s.Pulse[0].EngUnits = full.Pulse[0].EngUnits;
       }},
      {290, [](S& s) { s.Do = DoSettings::Defaults(); }},
  };
  for (const auto& row : rows) {
    LoggerSettings expected = FilledSettings();
    row.Undo(expected);
    LoggerSettings settings;
    EXPECT_FALSE(UnpackConfigImage(FullLogger(), std::span(whole).first(row.Length), settings))
        << row.Length;
    EXPECT_EQ(settings, expected) << row.Length;
  }
}

TEST(UnpackConfigImage, FailsForEveryShorterImage) {
  ConfigImage whole;
  ASSERT_TRUE(PackConfigImage(FullLogger(), FilledSettings(), whole));
  for (int length = 0; length < 315; ++length) {
    LoggerSettings settings;
    EXPECT_FALSE(UnpackConfigImage(FullLogger(), std::span(whole).first(length), settings))
        << length;
  }
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), whole, settings));
  EXPECT_EQ(settings, FilledSettings());
}

TEST(UnpackConfigImage, LeavesTheDoDefaultsOfAnImageOf291Bytes) {
  ConfigImage image = EmptyImage();
  image.resize(291);
  LoggerSettings settings;
  settings.Do.PO2Channel = 5;
  EXPECT_FALSE(UnpackConfigImage(FullLogger(), image, settings));
  DoSettings expected = DoSettings::Defaults();
  expected.PO2Channel = 0;
  EXPECT_EQ(settings.Do, expected);

  image[290] = 6;
  EXPECT_FALSE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Do.PO2Channel, 6);
  EXPECT_EQ(settings.Do.AirPressureManualEntryUnits, 6);
}

TEST(UnpackConfigImage, ReadsTheLastByteAheadOfTheAirPressure) {
  ConfigImage image = EmptyImage();
  image.resize(314);
  LoggerSettings settings;
  EXPECT_FALSE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Do.ConductivityManualEntry, 0);
  EXPECT_EQ(settings.Do.AirPressureManualEntry, 1);
}

TEST(UnpackConfigImage, LetsTheFaultThroughWhenFaultsAreNotTrapped) {
  LinkState link = FullLogger();
  link.TrapErrors = false;
  const ConfigImage image = EmptyImage();
  LoggerSettings settings;
  EXPECT_THROW(UnpackConfigImage(link, std::span(image).first(100), settings), RangeFault);
}

TEST(UnpackConfigImage, KeepsTheDoDefaultsInErasedMemory) {
  ConfigImage image = EmptyImage();
  std::fill(image.begin() + 290, image.end(), 0xFF);
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Do, DoSettings::Defaults());
}

TEST(UnpackConfigImage, ReadsZerosInTheDoRegionAsZeros) {
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), EmptyImage(), settings));
  EXPECT_EQ(settings.Do.ConductivityManualEntry, 0);
  EXPECT_EQ(settings.Do.AirPressureManualEntry, 0);
  EXPECT_EQ(settings.Do.AirPressureManualEntryUnits, 0);
}

TEST(UnpackConfigImage, TakesTheOxygenChannelAsTheTestOfItsRegion) {
  ConfigImage image = EmptyImage();
  image[290] = 7;
  image[292] = 3;
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Do, DoSettings::Defaults());
}

TEST(UnpackConfigImage, KeepsTheDefaultOfADoFieldBeyondItsList) {
  ConfigImage image = EmptyImage();
  image[304] = 9;
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Do.AirPressureManualEntryUnits, 6);

  Overwrite(image, 290, std::vector<std::uint8_t>(25, 0xFE));
  image[290] = 0;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Do.PO2Units, 0);
  EXPECT_EQ(settings.Do.WaterTempChannel, 0);
  EXPECT_EQ(settings.Do.ConductivityManualEntry, 0);
  EXPECT_EQ(settings.Do.AirPressureManualEntry, 0);
  EXPECT_EQ(settings.Do.AirPressureManualEntryUnits, 6);
  EXPECT_EQ(settings.Do.AirPressureUnits, 0);
  EXPECT_EQ(settings.Do.O2ConcentrationDisplayChannel, 0);
  EXPECT_EQ(settings.Do.ConductivityManualEntryUnits, 0);

  Overwrite(image, 290, std::vector<std::uint8_t>(25, 7));
  image[290] = 6;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), image, settings));
  EXPECT_EQ(settings.Do.PO2Units, 1);
  EXPECT_EQ(settings.Do.WaterTempChannel, 0);
  EXPECT_EQ(settings.Do.AirPressureManualEntryUnits, 7);
  EXPECT_EQ(settings.Do.AirPressureChannel, 0);
  EXPECT_EQ(settings.Do.AirPressureUnits, 7);
  EXPECT_EQ(settings.Do.SalinityDisplayChannel, 0);
  EXPECT_EQ(settings.Do.O2ConcentrationDisplayUnits, 1);
}

TEST(UnpackConfigImage, TakesAnyBytesWithoutHarm) {
  const ConfigImage erased(315, 0xFF);
  LoggerSettings settings;
  EXPECT_TRUE(UnpackConfigImage(FullLogger(), erased, settings));
  EXPECT_EQ(settings.LoggerName, QString(32, QChar(0xFF)));
  EXPECT_EQ(settings.SampleInterval, u"65535 days"_s);
  EXPECT_EQ(settings.SensorWarmupTime, 60);
  EXPECT_EQ(settings.FixedBaudRate, 127);
  EXPECT_EQ(settings.Alarm[0].AlarmHour, 165);
  EXPECT_EQ(settings.Deadband, 65535);
  EXPECT_EQ(settings.Analog[0].RawScaleLower, 65535);
  EXPECT_NEAR(settings.Analog[7].DisplayTop, -0.1048575, 1e-15);
}

}  // namespace
}  // namespace tessmar
