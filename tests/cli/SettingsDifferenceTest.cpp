#include "cli/SettingsDifference.h"

#include <gtest/gtest.h>

#include <QTemporaryFile>

#include "base/TextTable.h"
#include "cli/SettingsSource.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class CompareSettingsTest : public testing::Test {
 protected:
  CompareSettingsTest() {
    SetTextLanguage(kLanguageEnglish);
    LoadDefaultSettings(Before, 4);
    After = Before;
  }
  std::vector<SettingsChange> Compare(const ComparedParts& parts = {}) {
    const auto changes = CompareSettings(Before, After, parts);
    EXPECT_TRUE(changes.has_value());
    return changes.value_or(std::vector<SettingsChange>());
  }
  LoggerSettings Before;
  LoggerSettings After;
};

TEST_F(CompareSettingsTest, FindsNothingWhereNothingDiffers) {
  EXPECT_TRUE(Compare().empty());
}

TEST_F(CompareSettingsTest, SpeaksAsTheSetupScreenDoesInTheOrderOfItsPages) {
  After.LoggerName = u"Weir"_s;
  Before.LoggerName = u"Pond"_s;
  After.Analog[1].EngUnits = u"Feet"_s;
  Before.Analog[1].EngUnits = u"Inches"_s;
  Before.Pulse[0].DecPlaces = 1;
  After.Pulse[0].DecPlaces = 3;
  Before.Alarm[1].AlarmHour = 5;
  After.Alarm[1].AlarmHour = 17;
  Before.Do.PO2Units = 0;
  After.Do.PO2Units = 1;
  EXPECT_EQ(Compare(), (std::vector<SettingsChange>{
                           {u"Channel 2: Units"_s, u"Inches"_s, u"Feet"_s},
                           {u"Pulse Channel 1: Decimal Places"_s, u"1"_s, u"3"_s},
                           {u"Name"_s, u"Pond"_s, u"Weir"_s},
                           {u"Alarm 2 Time (hh:mm:ss)"_s, u"05:00:00"_s, u"17:00:00"_s},
                           {u"DO: O2 Sensor, Units"_s, u"hPa"_s, u"mbar"_s}}));
  EXPECT_EQ(Compare({.Derived = false}).size(), 4U) << "an image file has no DO set-up";
}

TEST_F(CompareSettingsTest, ComparesWhatALoggerWouldHold) {
  Before.Analog[0].UpperLimit = 123.456;
  After.Analog[0].UpperLimit = 123.4560001;
  Before.LoggerName = QString(32, u'a');
  After.LoggerName = QString(40, u'a');
  EXPECT_TRUE(Compare().empty());
}

TEST_F(CompareSettingsTest, LeavesOutWhatTheLoggerLacks) {
  After.Analog[4].EngUnits = u"Feet"_s;
  After.Analog[4].Enable = 0;
  After.Pulse[1].EngUnits = u"Feet"_s;
  After.EnableSOD = 1;
  EXPECT_EQ(Compare().size(), 4U);
  EXPECT_TRUE(Compare({.Analog = 4, .Pulse = 1, .SampleOnDemand = false}).empty());
}

TEST_F(CompareSettingsTest, KnowsNothingOfWhatNoMemoryTakes) {
  After.Deadband = 70000;
  EXPECT_EQ(CompareSettings(Before, After, {}), std::nullopt);
}

struct CountsRow {
  const char* What;
  ReadSettings One;
  ReadSettings Other;
  int Analog;
  int Pulse;
};

class PartsOfTest : public testing::Test {
 protected:
  static ReadSettings Device(int analog, int pulse) {
    ReadSettings read;
    read.Analog = analog;
    read.Pulse = pulse;
    return read;
  }
  ReadSettings File(std::optional<int> analog, std::optional<int> pulse) {
    ReadSettings read;
    read.Setup.emplace(Path.fileName());
    read.Analog = analog;
    read.Pulse = pulse;
    return read;
  }
  PartsOfTest() { EXPECT_TRUE(Path.open()); }
  QTemporaryFile Path;
};

TEST_F(PartsOfTest, TheLoggerDecidesAndElseTheGreaterOne) {
  const CountsRow rows[] = {
      {"a logger beside a file for more", Device(4, 1), File(8, 2), 4, 1},
      {"a file for fewer beside a logger", File(2, 0), Device(4, 1), 4, 1},
      {"two files", File(4, 0), File(6, 1), 6, 1},
      {"two files of which one says nothing", File(4, 0), File({}, {}), 8, 2},
      {"two loggers", Device(2, 2), Device(4, 0), 4, 2},
  };
  for (const CountsRow& row : rows) {
    const ComparedParts parts = PartsOf(row.One, row.Other);
    EXPECT_EQ(parts.Analog, row.Analog) << row.What;
    EXPECT_EQ(parts.Pulse, row.Pulse) << row.What;
  }
}

TEST_F(PartsOfTest, WhatOneSideLacksIsNotCompared) {
  ReadSettings image = Device(8, 2);
  image.HasDerived = false;
  EXPECT_FALSE(PartsOf(image, File(8, 2)).Derived);
  EXPECT_FALSE(PartsOf(File(8, 2), image).Derived);
  ReadSettings old = Device(8, 2);
  old.HasSampleOnDemand = false;
  EXPECT_FALSE(PartsOf(File(8, 2), old).SampleOnDemand);
  EXPECT_TRUE(PartsOf(File(8, 2), Device(8, 2)).SampleOnDemand);
}

}  // namespace
}  // namespace tessmar::test
