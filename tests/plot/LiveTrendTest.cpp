#include "plot/LiveTrend.h"

#include <gtest/gtest.h>

#include "history/TableRig.h"
#include "measure/StampTime.h"
#include "support/FakeOutside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class LiveTrendTest : public testing::Test {
 protected:
  LiveTrendTest() {
    rig_.EnableAnalog(0, u"mg/L"_s);
    rig_.EnablePulse(1, u"mm"_s, 0.5, 1);
    rig_.Settings.LoggerName = u"Well 7"_s;
    rig_.Link.Connected = true;
    rig_.Link.SampleContinuously = true;
    display_.RefreshMainScreen();
  }

  LiveSample Sample(int second, int word) const {
    LiveSample sample;
    sample.HasTime = true;
    sample.PackedTime = 0x00020000U + static_cast<std::uint32_t>(second);
    sample.Value[0] = word;
    sample.Value[9] = 2 * word;
    return sample;
  }
  void Push(LiveTrend& trend, const LiveSample& sample) {
    display_.PushLiveSample(sample);
    anew_ = trend.Take(now_);
  }

  test::TableRig rig_{2, 2};
  LiveRing ring_;
  test::FakeMainScreen screen_;
  LiveDisplay display_{rig_.Link, rig_.Settings, ring_, screen_, rig_.Locale};
  QDateTime now_{QDate(2010, 12, 27), QTime(15, 5, 12)};
  bool anew_ = false;
};

TEST_F(LiveTrendTest, BeginsWithTheSamplesThatAreThere) {
  display_.PushLiveSample(Sample(1, 100));
  display_.PushLiveSample(Sample(2, 200));
  LiveTrend trend(rig_.Link, rig_.Settings, display_);
  EXPECT_EQ(trend.Data().Set().LoggerName, u"Well 7"_s);
  EXPECT_EQ(trend.Data().Set().Times, (std::vector<double>{1, 2}));
  ASSERT_EQ(trend.Data().ChannelCount(), 2);
  EXPECT_EQ(trend.Data().Channel(0).Place, u"a1"_s);
  EXPECT_EQ(trend.Data().Channel(0).Values, (std::vector<double>{1, 2}));
  EXPECT_EQ(trend.Data().Channel(1).Place, u"p2"_s);
  // The logger counts on until it is told to begin anew.
  EXPECT_TRUE(trend.Data().Channel(1).IsPulse());
  EXPECT_FALSE(trend.Data().Channel(1).IsCounted());
  EXPECT_EQ(trend.Data().Channel(1).Values, (std::vector<double>{100, 200}));
}

TEST_F(LiveTrendTest, AppendsWhatTheMainScreenShows) {
  LiveTrend trend(rig_.Link, rig_.Settings, display_);
  Push(trend, Sample(1, 834));
  EXPECT_FALSE(anew_);
  EXPECT_EQ(screen_.Captions[u"lblValue(0)"_s], u"8.34"_s);
  EXPECT_DOUBLE_EQ(trend.Data().Value(0, 0), 8.34);
}

TEST_F(LiveTrendTest, AReplyWithoutASampleIsAGap) {
  LiveTrend trend(rig_.Link, rig_.Settings, display_);
  Push(trend, Sample(1, 1));
  Push(trend, LiveSample::NoSample());
  Push(trend, Sample(3, 3));
  Push(trend, Sample(4, 4));
  Push(trend, Sample(11, 4));
  EXPECT_EQ(trend.Data().RecordCount(), 5U);
  EXPECT_FALSE(trend.Data().Joins(0, 1));
  EXPECT_FALSE(trend.Data().Joins(0, 2));
  EXPECT_TRUE(trend.Data().Joins(0, 3));
  EXPECT_FALSE(trend.Data().Joins(0, 4));  // Seven seconds without a word.
}

TEST_F(LiveTrendTest, BeginsAnewWhenTheChannelsAreOthers) {
  LiveTrend trend(rig_.Link, rig_.Settings, display_);
  Push(trend, Sample(1, 1));
  rig_.Settings.Analog[0].EngUnits = u"%"_s;
  Push(trend, Sample(2, 1));
  EXPECT_TRUE(anew_);
  EXPECT_EQ(trend.Data().RecordCount(), 1U);
  EXPECT_EQ(trend.Data().Channel(0).Unit, u"%"_s);
  rig_.Settings.LoggerName = u"Well 8"_s;
  Push(trend, Sample(3, 1));
  EXPECT_TRUE(anew_);
  Push(trend, Sample(4, 1));
  EXPECT_FALSE(anew_);
}

TEST_F(LiveTrendTest, SaysWhenTheLinkIsLost) {
  LiveTrend trend(rig_.Link, rig_.Settings, display_);
  EXPECT_EQ(trend.StateText(now_, rig_.Locale), u"Waiting for the first reading"_s);
  Push(trend, Sample(1, 1));
  EXPECT_EQ(trend.StateText(now_.addSecs(6), rig_.Locale), u""_s);
  EXPECT_EQ(trend.StateText(now_.addSecs(7), rig_.Locale),
            u"The logger has not answered since 3:05:12 PM"_s);
  rig_.Link.SampleContinuously = false;
  EXPECT_EQ(trend.StateText(now_, rig_.Locale), u"Sampling is off"_s);
  rig_.Link.Connected = false;
  EXPECT_EQ(trend.StateText(now_, rig_.Locale), u"Disconnected"_s);
}

TEST_F(LiveTrendTest, ForgetsTheOlderHalfWhenItIsFull) {
  LiveTrend trend(rig_.Link, rig_.Settings, display_);
  const std::vector<double> values{1, 2};
  for (std::size_t i = 0; i < LiveTrend::kMostRecords; ++i)
    trend.Data().Append(static_cast<double>(i), values);
  Push(trend, Sample(5, 1));
  EXPECT_EQ(trend.Data().RecordCount(), LiveTrend::kMostRecords / 2 + 1);
}

}  // namespace
}  // namespace tessmar
