#include "ui/MessageLayout.h"

#include <gtest/gtest.h>

namespace tessmar {
namespace {

TEST(MessageLayout, OneWordGivesTheLeastWidth) {
  EXPECT_EQ(MessageWidthsFor(300, false, 60), (MessageWidths{4000, 120, 3760}));
  EXPECT_EQ(MessageWidthsFor(300, true, 60), (MessageWidths{4000, 915, 2905}));
  EXPECT_EQ(MessageWidthsFor(0, false, 0), (MessageWidths{4000, 120, 3760}));
}

TEST(MessageLayout, FollowsTheTextBetweenLeastAndMostWidth) {
  // 5000 + 240 + 60, and 735 + 5000 + 360 without the frame.
  EXPECT_EQ(MessageWidthsFor(5000, false, 60), (MessageWidths{5300, 120, 5060}));
  EXPECT_EQ(MessageWidthsFor(5000, true, 60), (MessageWidths{6095, 915, 5000}));
}

TEST(MessageLayout, CountsTheFrameOnlyWithoutAnIcon) {
  EXPECT_EQ(MessageWidthsFor(5000, false, 0).Form, 5240);
  EXPECT_EQ(MessageWidthsFor(5000, false, 150).Form, 5390);
  EXPECT_EQ(MessageWidthsFor(5000, true, 0).Form, 6095);
  EXPECT_EQ(MessageWidthsFor(5000, true, 150).Form, 6095);
}

TEST(MessageLayout, TurnsAtItsLimits) {
  EXPECT_EQ(MessageWidthsFor(3699, false, 60).Form, 4000);
  EXPECT_EQ(MessageWidthsFor(3700, false, 60).Form, 4000);
  EXPECT_EQ(MessageWidthsFor(3701, false, 60).Form, 4001);
  EXPECT_EQ(MessageWidthsFor(8414, false, 60).Form, 8714);
  EXPECT_EQ(MessageWidthsFor(8415, false, 60).Form, 8715);
  EXPECT_EQ(MessageWidthsFor(8416, false, 60).Form, 8715);
}

TEST(MessageLayout, AVeryLongTextWidensTheFormOnlyTo8715) {
  EXPECT_EQ(MessageWidthsFor(100000, false, 60), (MessageWidths{8715, 120, 8475}));
  EXPECT_EQ(MessageWidthsFor(100000, true, 60), (MessageWidths{8715, 915, 7620}));
}

TEST(MessageLayout, GrowsSoThat135RemainAboveTheButtons) {
  EXPECT_EQ(MessageGrowth(200), 0);
  EXPECT_EQ(MessageGrowth(495), 0);  // 750 - (120 + 495) is just 135.
  EXPECT_EQ(MessageGrowth(496), 1);
  EXPECT_EQ(MessageGrowth(795), 300);
  EXPECT_EQ(MessageGrowth(3000), 2505);
}

TEST(MessageLayout, CentresTheButtons) {
  using Lefts = std::vector<int>;
  EXPECT_EQ(MessageButtonLefts(1, 4000, 1155, 60), (Lefts{1392}));
  EXPECT_EQ(MessageButtonLefts(2, 4000, 1155, 60), (Lefts{762, 2022}));
  EXPECT_EQ(MessageButtonLefts(3, 4000, 1155, 60), (Lefts{132, 1392, 2652}));
  EXPECT_EQ(MessageButtonLefts(4, 8715, 1155, 60), (Lefts{1860, 3120, 4380, 5640}));
}

TEST(MessageLayout, LaysOutOneToFourButtonsOnly) {
  EXPECT_TRUE(MessageButtonLefts(0, 4000, 1155, 60).empty());
  EXPECT_TRUE(MessageButtonLefts(5, 8715, 1155, 60).empty());
}

TEST(MessageLayout, TellsTheWidthThatWideButtonsNeed) {
  EXPECT_EQ(LeastWidthForButtons(1, 1155, 0), 1365);
  EXPECT_EQ(LeastWidthForButtons(3, 2000, 60), 6480);
  EXPECT_EQ(MessageButtonLefts(3, 6480, 2000, 60).front(), 105);
}

TEST(MessageLayout, HasFifteenTwipsToAPixel) {
  EXPECT_EQ(TwipsToPixels(1155), 77);
  EXPECT_EQ(TwipsToPixels(4000), 267);
  EXPECT_EQ(TwipsToPixels(8715), 581);
  EXPECT_EQ(TwipsToPixels(7), 0);
  EXPECT_EQ(TwipsToPixels(8), 1);
  EXPECT_EQ(PixelsToTwips(37), 555);
  EXPECT_EQ(PixelsToTwips(10.01), 151);
}

}  // namespace
}  // namespace tessmar
