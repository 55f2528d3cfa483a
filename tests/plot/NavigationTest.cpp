#include "plot/Navigation.h"

#include <gtest/gtest.h>

namespace tessmar {
namespace {

constexpr TimeRange kWhole{1000, 2000};

TEST(Navigation, FitsWithALittleRoom) {
  EXPECT_EQ(FittedView(kWhole), (TimeRange{980, 2020}));
  EXPECT_EQ(FittedView({5, 5}), (TimeRange{4, 6}));
}

TEST(Navigation, ZoomsAroundAPlaceThatStays) {
  EXPECT_EQ(Zoomed({1200, 1600}, 0.5, 1300, kWhole), (TimeRange{1250, 1450}));
  EXPECT_EQ(Zoomed({1250, 1450}, 2, 1300, kWhole), (TimeRange{1200, 1600}));
}

TEST(Navigation, ZoomsNoFartherThanThereIsSomethingToSee) {
  EXPECT_EQ(Zoomed({1200, 1600}, 100, 1300, kWhole), FittedView(kWhole));
  EXPECT_EQ(Zoomed({1300, 1304}, 0.001, 1301, kWhole).Length(), kNarrowestView);
  EXPECT_EQ(Zoomed({4, 6}, 0.5, 5, {5, 5}).Length(), kNarrowestView);
}

TEST(Navigation, MovesUpToTheEnds) {
  EXPECT_EQ(Moved({1200, 1600}, 0.25, kWhole), (TimeRange{1300, 1700}));
  EXPECT_EQ(Moved({1200, 1600}, -0.1, kWhole), (TimeRange{1160, 1560}));
  EXPECT_EQ(Moved({1200, 1600}, 1e9, kWhole), (TimeRange{1620, 2020}));
  EXPECT_EQ(Moved({1200, 1600}, -1e9, kWhole), (TimeRange{980, 1380}));
}

TEST(ViewHistory, GoesBackAndForth) {
  ViewHistory views;
  views.Begin({0, 100});
  EXPECT_FALSE(views.HasBack());
  views.Go({0, 50}, ViewChange::Other, 0);
  views.Go({0, 25}, ViewChange::Other, 1);
  EXPECT_EQ(views.Back(), (TimeRange{0, 50}));
  EXPECT_EQ(views.Back(), (TimeRange{0, 100}));
  EXPECT_EQ(views.Back(), (TimeRange{0, 100}));
  EXPECT_EQ(views.Forward(), (TimeRange{0, 50}));
  EXPECT_TRUE(views.HasForward());
  views.Go({10, 20}, ViewChange::Other, 2);
  EXPECT_FALSE(views.HasForward());
  EXPECT_EQ(views.Back(), (TimeRange{0, 50}));
}

TEST(ViewHistory, TurnsOfTheWheelAreOneChange) {
  ViewHistory views;
  views.Begin({0, 100});
  views.Go({0, 90}, ViewChange::Wheel, 0);
  views.Go({0, 80}, ViewChange::Wheel, 700);
  views.Go({0, 70}, ViewChange::Wheel, 1500);
  EXPECT_EQ(views.Back(), (TimeRange{0, 100}));
  views.Forward();
  // After a pause, and after something else, a turn is a change of its own.
  views.Go({0, 60}, ViewChange::Wheel, 9000);
  EXPECT_EQ(views.Back(), (TimeRange{0, 70}));
  views.Go({0, 60}, ViewChange::Wheel, 9001);
  EXPECT_EQ(views.Back(), (TimeRange{0, 70}));
}

TEST(ViewHistory, TheSameViewIsNoChange) {
  ViewHistory views;
  views.Begin({0, 100});
  views.Go({0, 100}, ViewChange::Other, 0);
  EXPECT_FALSE(views.HasBack());
}

TEST(ViewHistory, ForgetsTheOldestOfVeryMany) {
  ViewHistory views;
  views.Begin({0, 1e6});
  for (int i = 0; i < 2000; ++i) views.Go({0, 1000.0 + i}, ViewChange::Other, i);
  int back = 0;
  while (views.HasBack()) {
    views.Back();
    ++back;
  }
  EXPECT_EQ(back, 499);
  EXPECT_EQ(views.Present(), (TimeRange{0, 2500}));
}

}  // namespace
}  // namespace tessmar
