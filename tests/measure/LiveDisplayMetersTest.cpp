#include "base/Fault.h"
#include "measure/LiveDisplayFixture.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class LiveDisplayMeters : public test::LiveDisplayTest {
 protected:
  double Fraction(int channel) const { return screen_.Meters[channel].Fraction; }

  bool IsVisible(const char* label, int channel) const {
    return screen_.Visible.value(ElementName(label, channel), false);
  }
};

constexpr const char* kLabels[] = {"lblMax", "lblMin", "lblUnits", "lblValue", "lblHistory"};

TEST_F(LiveDisplayMeters, RiseWithTheNewestReading) {
  Show();
  Push(2500);
  display_.DrawMeters();
  EXPECT_FLOAT_EQ(Fraction(0), 0.25F);
  EXPECT_TRUE(screen_.Meters[0].Enabled);
  // A quarter of 2340 twips below the top at 480.
  EXPECT_EQ(display_.View(0).LastMeterY, 480 + 2340 - 585);
  Push(7500);
  display_.DrawMeters();
  EXPECT_FLOAT_EQ(Fraction(0), 0.75F);
}

TEST_F(LiveDisplayMeters, PaintNothingWhileNothingChanges) {
  Show();
  Push(2500);
  display_.DrawMeters();
  const int before = screen_.Paints;
  for (int tick = 0; tick < 100; ++tick) display_.DrawMeters();
  Push(2500);
  display_.DrawMeters();
  EXPECT_EQ(screen_.Paints, before);
}

TEST_F(LiveDisplayMeters, PaintOnlyTheColumnThatChanged) {
  Show();
  Push(2500);
  display_.DrawMeters();
  const int before = screen_.Paints;
  LiveSample sample = Sample(2500);
  sample.Value[3] = 2600;
  display_.PushLiveSample(sample);
  display_.DrawMeters();
  EXPECT_EQ(screen_.Paints, before + 1);
  EXPECT_FLOAT_EQ(Fraction(3), 0.26F);
}

TEST_F(LiveDisplayMeters, AChangeBelowOneTwipPaintsNothing) {
  settings_.Analog[0].DisplayTop = 10000;
  Show();
  Push(2500);
  display_.DrawMeters();
  const int before = screen_.Paints;
  LiveSample sample = Sample(2500);
  sample.Value[0] = 2501;
  display_.PushLiveSample(sample);
  display_.DrawMeters();
  EXPECT_EQ(screen_.Paints, before);
  EXPECT_EQ(Value(0), "25.01");
}

TEST_F(LiveDisplayMeters, EqualEndsOfTheMeterLeaveItEmptyAndDivideByNothing) {
  settings_.Analog[0].DisplayTop = 50;
  settings_.Analog[0].DisplayBottom = 50;
  Show();
  for (const std::int32_t raw : {0, 5000, 10000}) {
    Push(raw);
    display_.DrawMeters();
    EXPECT_EQ(Fraction(0), 0) << raw;
  }
  EXPECT_EQ(display_.View(0).LastMeterY, 480 + 2340);
}

TEST_F(LiveDisplayMeters, ATopBelowTheBottomRaisesTheColumnOfAFallingValue) {
  settings_.Analog[0].DisplayTop = 0;
  settings_.Analog[0].DisplayBottom = 100;
  Show();
  Push(7500);
  display_.DrawMeters();
  EXPECT_FLOAT_EQ(Fraction(0), 0.25F);
  Push(2500);
  display_.DrawMeters();
  EXPECT_FLOAT_EQ(Fraction(0), 0.75F);
}

TEST_F(LiveDisplayMeters, AValueAboveTheTopFillsTheColumnAndShowsItsTrueText) {
  settings_.Analog[0].DisplayTop = 40;
  Show();
  Push(7138);
  display_.DrawMeters();
  EXPECT_EQ(Fraction(0), 1);
  EXPECT_EQ(Value(0), "71.38");
}

TEST_F(LiveDisplayMeters, AValueBelowTheBottomLeavesTheColumnEmptyAndShowsItsTrueText) {
  settings_.Analog[0].DisplayBottom = 80;
  Show();
  Push(7138);
  display_.DrawMeters();
  EXPECT_EQ(Fraction(0), 0);
  EXPECT_EQ(Value(0), "71.38");
}

TEST_F(LiveDisplayMeters, AFullColumnReachesToItsTop) {
  Show();
  Push(10000);
  display_.DrawMeters();
  EXPECT_EQ(Fraction(0), 1);
  EXPECT_EQ(display_.View(0).LastMeterY, 480);
}

TEST_F(LiveDisplayMeters, WithoutASampleStandAtTheLowerLimit) {
  settings_.Analog[0].LowerLimit = 30;
  Show();
  display_.PushLiveSample(LiveSample::NoSample());
  display_.DrawMeters();
  EXPECT_FLOAT_EQ(Fraction(0), 0.3F);
}

TEST_F(LiveDisplayMeters, ADisabledChannelBetweenEnabledOnesLeavesAGap) {
  Show();
  Push(7500);
  display_.DrawMeters();
  settings_.Analog[2].Enable = 0;
  display_.RefreshMainScreen();
  display_.DrawMeters();
  for (const char* label : kLabels) {
    EXPECT_TRUE(IsVisible(label, 1)) << label;
    EXPECT_FALSE(IsVisible(label, 2)) << label;
    EXPECT_TRUE(IsVisible(label, 3)) << label;
  }
  EXPECT_FALSE(screen_.Meters[2].Enabled);
  EXPECT_EQ(Fraction(2), 0);
  EXPECT_TRUE(screen_.Meters[1].Enabled);
  EXPECT_TRUE(screen_.Meters[3].Enabled);

  const int before = screen_.Paints;
  Push(7500);
  display_.DrawMeters();
  EXPECT_EQ(screen_.Paints, before);
}

TEST_F(LiveDisplayMeters, LabelsComeAndGoOnlyWhenAChannelDoes) {
  Show();
  for (const char* label : kLabels) EXPECT_TRUE(IsVisible(label, 0)) << label;
  screen_.Visible.clear();
  display_.DrawMeters();
  EXPECT_TRUE(screen_.Visible.isEmpty());
}

TEST_F(LiveDisplayMeters, HidingTheChannelsEmptiesAllColumnsAndHidesTheirLabels) {
  Show();
  Push(7500);
  display_.DrawMeters();
  display_.HideChannels();
  display_.DrawMeters();
  for (int ch = 0; ch < kAnalogChannels; ++ch) {
    EXPECT_FALSE(screen_.Meters[ch].Enabled) << ch;
    for (const char* label : kLabels) EXPECT_FALSE(IsVisible(label, ch)) << label << ch;
  }
}

TEST_F(LiveDisplayMeters, AColumnThatTheNextLoggerLacksIsEmptied) {
  Show();
  Push(7500);
  display_.DrawMeters();
  display_.HideChannels();
  link_.AnalogChannelCount = 3;
  Show();
  EXPECT_TRUE(screen_.Meters[2].Enabled);
  for (int ch = 3; ch < kAnalogChannels; ++ch) {
    EXPECT_FALSE(screen_.Meters[ch].Enabled) << ch;
    EXPECT_EQ(Fraction(ch), 0) << ch;
    EXPECT_FALSE(IsVisible("lblValue", ch)) << ch;
  }
}

TEST_F(LiveDisplayMeters, ARedrawPaintsEveryColumnOnce) {
  Show();
  Push(2500);
  display_.DrawMeters();
  const int before = screen_.Paints;
  display_.RedrawMeters();
  EXPECT_EQ(screen_.Paints, before);
  display_.DrawMeters();
  EXPECT_EQ(screen_.Paints, before + 8);
  display_.DrawMeters();
  EXPECT_EQ(screen_.Paints, before + 8);
}

TEST_F(LiveDisplayMeters, ALoggerWithoutAnalogChannelsDrawsNone) {
  link_.AnalogChannelCount = 0;
  Show();
  display_.DrawMeters();
  EXPECT_EQ(screen_.Paints, 0);
}

TEST_F(LiveDisplayMeters, ThereAreEightViews) {
  EXPECT_THROW(display_.View(8), RangeFault);
  EXPECT_THROW(display_.View(-1), RangeFault);
}

}  // namespace
}  // namespace tessmar
