#include "setup/CalibrationNotes.h"

#include <gtest/gtest.h>

#include "settings/ConfigImages.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FullLogger;

class CalibrationNotesTest : public testing::Test {
 protected:
  CalibrationNotesTest() {
    LoadDefaultSettings(Settings, 8);
    Before = Image();
  }
  ConfigImage Image() const {
    ConfigImage image;
    EXPECT_TRUE(PackConfigImage(FullLogger(), Settings, image));
    return image;
  }
  /// The wizard wrote its points to the screen, and they were programmed.
  void Calibrate(int channel, const Calibration::Texts& points) {
    Notes.Add(channel, points);
    AnalogChannelSettings& settings = Settings.Analog[static_cast<std::size_t>(channel)];
    settings.UpperLimit = points.HighEU.toDouble();
    settings.LowerLimit = points.LowEU.toDouble();
    settings.RawScaleUpper = points.HighRaw.toInt();
    settings.RawScaleLower = points.LowRaw.toInt();
  }
  std::optional<LogbookEntry> Take() {
    SetupControls controls;
    SettingsToControls(FullLogger(), true, Settings, controls);
    return Notes.Take(controls, Before, Image());
  }

  LoggerSettings Settings;
  ConfigImage Before;
  CalibrationNotes Notes;
};

QByteArray Bytes(const ConfigImage& image) {
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

TEST_F(CalibrationNotesTest, TellBothPointsAndBothScales) {
  Calibrate(2, {u"12.5"_s, u"60123"_s, u"0.5"_s, u"345"_s});
  const std::optional<LogbookEntry> entry = Take();
  ASSERT_TRUE(entry.has_value());
  EXPECT_EQ(entry->Kind, EventKind::Calibrated);
  EXPECT_EQ(entry->Text,
            u"Channel 3 (%): 0.5 at 345, 12.5 at 60123; before: 0 at 0, 100 at 65535"_s);
  EXPECT_EQ(entry->Before, Bytes(Before));
  EXPECT_EQ(entry->After, Bytes(Image()));
  EXPECT_EQ(entry->After.size(), 315);
}

TEST_F(CalibrationNotesTest, MakeNoScaleOfSettingsThatWereNotRead) {
  Calibrate(2, {u"12.5"_s, u"60123"_s, u"0.5"_s, u"345"_s});
  Before.clear();
  const std::optional<LogbookEntry> entry = Take();
  ASSERT_TRUE(entry.has_value());
  EXPECT_EQ(entry->Text, u"Channel 3 (%): 0.5 at 345, 12.5 at 60123; before: unknown"_s);
  EXPECT_EQ(entry->Before, QByteArray());
  const LogbookEntry programmed = ProgrammedEntry(Before, Image());
  EXPECT_EQ(programmed.Text, u"the settings before could not be read"_s);
  EXPECT_EQ(programmed.Before, QByteArray());
  EXPECT_EQ(programmed.After, Bytes(Image()));
}

TEST_F(CalibrationNotesTest, TellEveryChannelOnceInItsOrder) {
  Calibrate(7, {u"24"_s, u"62000"_s, u"0"_s, u"0"_s});
  Calibrate(2, {u"1"_s, u"1000"_s, u"0"_s, u"0"_s});
  Calibrate(2, {u"2"_s, u"1000"_s, u"0"_s, u"0"_s});
  EXPECT_EQ(Take()->Text,
            u"Channel 3 (%): 0 at 0, 2 at 1000; before: 0 at 0, 100 at 65535\n"
            u"Channel 8 (Volts): 0 at 0, 24 at 62000; before: 0 at 0, 24 at 62384"_s);
  EXPECT_FALSE(Take().has_value());
}

TEST_F(CalibrationNotesTest, TellNothingOfPointsThatWereNotProgrammed) {
  EXPECT_FALSE(Take().has_value());
  Calibrate(2, {u"12.5"_s, u"60123"_s, u"0.5"_s, u"345"_s});
  Settings.Analog[2].UpperLimit = 100;
  EXPECT_FALSE(Take().has_value());
}

}  // namespace
}  // namespace tessmar
