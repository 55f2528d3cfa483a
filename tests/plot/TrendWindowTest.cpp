#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QTemporaryDir>

#include "history/TableRig.h"
#include "plot/PlotCanvas.h"
#include "plot/frmTrend.h"
#include "support/FakeOutside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class TrendWindow : public testing::Test {
 protected:
  TrendWindow() {
    rig_.EnableAnalog(0, u"mg/L"_s);
    rig_.Link.Connected = true;
    rig_.Link.SampleContinuously = true;
    display_.RefreshMainScreen();
    display_.SamplePushed = [this] {
      if (window_) window_->TakeSample();
    };
    Open();
  }

  void Open() {
    window_.reset();
    trend_.emplace(rig_.Link, rig_.Settings, display_);
    window_.emplace(*trend_, PlotParts{.Message = messages_,
                                       .Dialogs = dialogs_,
                                       .Time = clock_,
                                       .Locale = rig_.Locale,
                                       .Memory = PlotMemory(folder_.filePath(u"store.ini"_s)),
                                       .Program = {},
                                       .AppPath = {}});
  }
  void Push(int second) {
    LiveSample sample;
    sample.HasTime = true;
    // Minutes and seconds of the stamp's fields.
    sample.PackedTime = 0x00020000U + static_cast<std::uint32_t>(second / 60 * 64 + second % 60);
    sample.Value[0] = second;
    display_.PushLiveSample(sample);
  }
  PlotCanvas& Canvas() const {
    return *static_cast<PlotCanvas*>(window_->findChild<QWidget*>(u"pltPlot"_s));
  }
  QString State() const { return window_->findChild<QLabel*>(u"lblLink"_s)->text(); }

  test::TableRig rig_{2, 0};
  LiveRing ring_;
  test::FakeMainScreen screen_;
  LiveDisplay display_{rig_.Link, rig_.Settings, ring_, screen_, rig_.Locale};
  test::FakeMessages messages_;
  test::FakeFileDialogs dialogs_;
  test::FakeClock clock_;
  QTemporaryDir folder_;
  std::optional<LiveTrend> trend_;
  std::optional<frmTrend> window_;
};

TEST_F(TrendWindow, ScrollsWithTheReadings) {
  EXPECT_FALSE(window_->isModal());
  EXPECT_EQ(window_->windowTitle(), u"Live Trend"_s);
  EXPECT_EQ(State(), u"Waiting for the first reading"_s);
  for (int second = 0; second < 1000; ++second) Push(second);
  EXPECT_EQ(State(), u"Following the readings"_s);
  EXPECT_EQ(Canvas().View().End, FittedView({0, 999}).End);
  EXPECT_EQ(Canvas().View().Length(), 600);
}

TEST_F(TrendWindow, HoldsStillWhileAnotherStretchIsLookedAt) {
  for (int second = 0; second < 1000; ++second) Push(second);
  Canvas().Go({100, 200}, ViewChange::Wheel);
  EXPECT_FALSE(window_->IsFollowing());
  EXPECT_EQ(State(), u"Holding still: Show All follows again"_s);
  Push(1000);
  EXPECT_EQ(Canvas().View(), (TimeRange{100, 200}));
  EXPECT_EQ(trend_->Data().RecordCount(), 1001U);
  Canvas().Fit();
  EXPECT_TRUE(window_->IsFollowing());
  Push(1001);
  EXPECT_EQ(Canvas().View(), FittedView({0, 1001}));
}

TEST_F(TrendWindow, FollowsFromTheEndAsWideAsItWas) {
  for (int second = 0; second < 1000; ++second) Push(second);
  Canvas().Go({100, 200}, ViewChange::Wheel);
  Canvas().Go(Moved(Canvas().View(), 1e9, trend_->Data().Whole()), ViewChange::Other);
  EXPECT_TRUE(window_->IsFollowing());
  Push(1000);
  EXPECT_NEAR(Canvas().View().Length(), 100, 1e-6);
  EXPECT_GT(Canvas().View().End, 1000);
}

TEST_F(TrendWindow, BeginsAnewWithOtherChannels) {
  Push(1);
  rig_.EnableAnalog(1, u"%"_s);
  display_.RefreshMainScreen();
  Push(2);
  EXPECT_EQ(window_->findChild<QListWidget*>(u"lstChannels"_s)->count(), 2);
  EXPECT_EQ(Canvas().Units(), (QStringList{u"mg/L"_s, u"%"_s}));
}

// As it is opened before a logger is connected.
TEST_F(TrendWindow, BeginsWithTheFirstReadingWhereThereWasNoChannel) {
  rig_.Settings.Analog[0].Enable = 0;
  Open();
  ASSERT_EQ(trend_->Data().ChannelCount(), 0);
  window_->show();
  rig_.EnableAnalog(0, u"mg/L"_s);
  display_.RefreshMainScreen();
  Push(1);
  EXPECT_EQ(Canvas().Units(), (QStringList{u"mg/L"_s}));
  EXPECT_EQ(window_->findChild<QListWidget*>(u"lstChannels"_s)->count(), 1);
}

TEST_F(TrendWindow, LetsGoOfTheCursorWithTheChannelsThatWentAway) {
  rig_.EnableAnalog(1, u"%"_s);
  display_.RefreshMainScreen();
  Push(1);
  window_->show();
  Canvas().SetCursor(0);
  rig_.Settings.Analog[0].Enable = 0;
  rig_.Settings.Analog[1].Enable = 0;
  display_.RefreshMainScreen();
  Push(2);
  EXPECT_FALSE(Canvas().CursorRecord());
  EXPECT_EQ(window_->findChild<QLabel*>(u"lblCursor"_s)->text(), QString());
  EXPECT_EQ(Canvas().Units(), QStringList());
}

}  // namespace
}  // namespace tessmar
