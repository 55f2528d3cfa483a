#include <gtest/gtest.h>

#include <utility>

#include "app/AppRig.h"
#include "base/Fault.h"
#include "session/PollLoop.h"
#include "support/FakeBlockSink.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class Timer2Test : public AppRig {
 protected:
  using Sent = std::pair<int, int>;

  /// Ticks since the call at which each opcode is sent.
  void RecordTimes() {
    const int start = Loop.Ticks();
    Times.clear();
    Logger.OnCommand = [this, start](std::uint8_t opcode) {
      Times.emplace_back(Loop.Ticks() - start, opcode);
    };
  }
  std::vector<Sent> Times;
};
class GetSampleTest : public Timer2Test {};

TEST_F(Timer2Test, SendsNothingWhileNobodyWantsSamples) {
  Connect();
  Loop.RunFor(3000);
  EXPECT_TRUE(Port.Writes.empty());
}

TEST_F(Timer2Test, RunsACycleOfTenTicksContinuously) {
  Connect();
  StartSampling();
  RecordTimes();
  Loop.RunFor(2000);
  EXPECT_EQ(Times, (std::vector<Sent>{
                       {1, 0x09}, {6, 0x0A}, {6, 0x0C}, {11, 0x09}, {16, 0x0A}, {16, 0x0C}}));
}

TEST_F(Timer2Test, SendsTheContinuousCycleAsItStandsOnTheWire) {
  Connect();
  StartSampling();
  Loop.RunFor(1000);
  EXPECT_EQ(Port.Writes, (std::vector<Bytes>{wire::kStart, wire::kGetSample, wire::kStatus}));
}

TEST_F(Timer2Test, KeepsRecordCountFreshDuringSampling) {
  Connect();
  StartSampling();
  Logger.Status = {6, 1, 0, 0x00, 0};
  Loop.RunFor(1000);
  EXPECT_EQ(Link.RecordCount, 262);
  EXPECT_EQ(Link.LoggingStateText, u"Not Logging"_s);
}

TEST_F(Timer2Test, PushesEachSampleToTheRing) {
  Connect();
  ASSERT_EQ(Ring.Count, 1);
  EXPECT_EQ(Ring.Samples[0].Value, (std::array<std::int32_t, 10>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  StartSampling();
  Logger.Sample[4] = 77;
  Loop.RunFor(1000);
  EXPECT_EQ(Ring.Count, 2);
  EXPECT_EQ(Ring.Samples[0].Value[0], 77);
  EXPECT_EQ(Ring.Samples[1].Value[0], 1);
}

TEST_F(Timer2Test, RearrangesTheReplyOfASmallerLogger) {
  Logger.Version = {3, 2, 1, 1, 0, 0, 0, 0};
  Connect();
  // Two analog channels: the first slot and the last, and one pulse channel behind them.
  EXPECT_EQ(Ring.Samples[0].Value[0], 1);
  EXPECT_EQ(Ring.Samples[0].Value[1], 8);
  EXPECT_EQ(Ring.Samples[0].Value[2], 9);
}

TEST_F(Timer2Test, ALoggerWithoutASampleMovesTheRingWithMarkersInEverySlot) {
  Connect();
  StartSampling();
  Logger.SampleAnswer = 0xFD;
  Loop.RunFor(1000);
  EXPECT_EQ(Ring.Count, 2);
  EXPECT_FALSE(Ring.Samples[0].HasTime);
  EXPECT_EQ(Ring.Samples[0].Value,
            (std::array<std::int32_t, 10>{-1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
  EXPECT_EQ(Ring.Samples[1].Value[0], 1);
  EXPECT_EQ(Logger.Count(0x0C), 1);
}

TEST_F(Timer2Test, AnyOtherAnswerAddsNothing) {
  Connect();
  StartSampling();
  Logger.SampleAnswer = 0x11;
  Loop.RunFor(1000);
  EXPECT_EQ(Ring.Count, 1);
  EXPECT_EQ(Logger.Count(0x0C), 1);
}

TEST_F(Timer2Test, ASilentLoggerPushesNothingAndStaysConnected) {
  Connect();
  StartSampling();
  Logger.Silent = true;
  Loop.RunFor(20000);
  EXPECT_EQ(Ring.Count, 1);
  EXPECT_TRUE(Link.Connected);
  EXPECT_TRUE(Link.SampleContinuously);
  EXPECT_EQ(Link.RecordCount, 5);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(Timer2Test, SamplingResumesWhenTheLoggerComesBack) {
  Connect();
  StartSampling();
  Logger.Silent = true;
  Loop.RunFor(10000);
  Logger.Silent = false;
  Loop.RunFor(5000);
  EXPECT_GE(Ring.Count, 2);
}

TEST_F(Timer2Test, LeavesTheLinkAloneWhileAForegroundActionHoldsIt) {
  Connect();
  StartSampling();
  Link.Busy = true;
  Loop.RunFor(2000);
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_TRUE(Link.Busy);
}

TEST_F(Timer2Test, HoldsTheLinkDuringATickOnly) {
  Connect();
  StartSampling();
  bool heldWhileSending = false;
  Logger.OnCommand = [&](std::uint8_t) { heldWhileSending = Link.Busy; };
  Poll.Timer2Tick();
  EXPECT_TRUE(heldWhileSending);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(Timer2Test, ATickDoesNotStartWithinATick) {
  Connect();
  StartSampling();
  Logger.Silent = true;
  Link.SampleWaitTicks = 20;
  bool arrived = false;
  Loop.After(250, [&] {
    arrived = true;
    EXPECT_EQ(Link.SampleStep, 1);
    Poll.Timer2Tick();
    EXPECT_EQ(Link.SampleStep, 1);
  });
  const int before = Loop.Ticks();
  Poll.Timer2Tick();
  EXPECT_TRUE(arrived);
  EXPECT_GE(Loop.Ticks() - before, 18);
  EXPECT_EQ(Link.SampleStep, 1);
  EXPECT_EQ(Link.SampleWaitTicks, 19);
  EXPECT_EQ(Port.Writes, std::vector<Bytes>{wire::kStart});
}

TEST_F(Timer2Test, ATickAfterALongOneRunsAgain) {
  Connect();
  StartSampling();
  Logger.Silent = true;
  Poll.Timer2Tick();
  Poll.Timer2Tick();
  EXPECT_EQ(Link.SampleStep, 2);
}

TEST_F(Timer2Test, TheBoxUntickedDuringATickStillEndsWithAFreeLink) {
  Connect();
  StartSampling();
  Logger.Silent = true;
  Loop.After(300, [this] { StopSampling(); });
  Poll.Timer2Tick();
  EXPECT_FALSE(Link.SampleContinuously);
  EXPECT_FALSE(Link.Busy);
  Poll.Timer1Tick();
  EXPECT_TRUE(Screen.Enabled[u"cmdSetup"_s]);
}

TEST_F(Timer2Test, ATrappedFaultEndsTheTickAndFreesTheLink) {
  Connect();
  StartSampling();
  Port.Unplug();
  EXPECT_NO_THROW(Loop.RunFor(2000));
  EXPECT_FALSE(Link.Busy);
  EXPECT_TRUE(Link.Connected);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(Timer2Test, AFaultThatLeavesATickFreesTheLinkFirst) {
  Connect();
  StartSampling();
  Link.TrapErrors = false;
  Port.Unplug();
  EXPECT_THROW(Poll.Timer2Tick(), PortFault);
  EXPECT_FALSE(Link.Busy);
  EXPECT_THROW(
      {
        for (int tick = 0; tick < 10; ++tick) Poll.Timer2Tick();
      },
      PortFault)
      << "the next tick has to run";
  EXPECT_FALSE(Link.Busy);
}

TEST_F(Timer2Test, TakesNoSamplesWhilePausedAndGoesOnBehindIt) {
  Connect();
  StartSampling();
  Poll.SetPaused(true);
  Loop.RunFor(3000);
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_FALSE(Link.Busy);
  Poll.SetPaused(false);
  Loop.RunFor(1000);
  EXPECT_FALSE(Port.Writes.empty());
}

TEST_F(Timer2Test, AWaitOnADeadLineEndsEvenWhilePaused) {
  Connect();
  Logger.Silent = true;
  Poll.SetPaused(true);
  EXPECT_FALSE(Commands.GetLoggerStatus());
}

TEST_F(Timer2Test, DoesNothingOnceTheProgramEnds) {
  Connect();
  StartSampling();
  Loop.End();
  Poll.Timer2Tick();
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_FALSE(Link.Busy);
}

TEST_F(GetSampleTest, ReadsTheLoggerAndTakesOneSample) {
  Connect();
  Poll.GetSample();
  EXPECT_EQ(Port.Writes,
            (std::vector<Bytes>{wire::kReadArea1, wire::kReadArea2, wire::kReadArea3, wire::kStatus,
                                wire::kTime, wire::kStart, wire::kStart, wire::kGetSample}));
  EXPECT_EQ(Ring.Count, 2);
  EXPECT_FALSE(Link.Busy);
  EXPECT_FALSE(Link.SingleSampleRequested);
  EXPECT_EQ(Link.SampleWaitTicks, 0);
  EXPECT_EQ(Screen.WaitCursor, 0);
  EXPECT_EQ(Screen.WaitCursorShown, 1);
}

TEST_F(GetSampleTest, TakesTheSampleAtTicks0And10And12) {
  Connect();
  Link.SampleStep = 6;
  const int before = Loop.Ticks();
  RecordTimes();
  Poll.GetSample();
  ASSERT_EQ(Times.size(), 8u);
  EXPECT_EQ((std::vector<Sent>(Times.begin() + 5, Times.end())),
            (std::vector<Sent>{{1, 0x09}, {11, 0x09}, {13, 0x0A}}));
  EXPECT_EQ(Loop.Ticks() - before, 13) << "ends with the answer";
}

TEST_F(GetSampleTest, HoldsTheLinkAndTheCursorThroughout) {
  Connect();
  int held = 0;
  Logger.OnCommand = [&](std::uint8_t) {
    if (Link.Busy && Screen.WaitCursor == 1) ++held;
  };
  Poll.GetSample();
  EXPECT_EQ(held, 8);
}

TEST_F(GetSampleTest, DoesNothingSilentlyWhenItMayNotRun) {
  Poll.GetSample();
  EXPECT_TRUE(Port.Writes.empty());
  Connect();
  Link.Busy = true;
  Poll.GetSample();
  EXPECT_TRUE(Link.Busy);
  Link.Busy = false;
  Link.SampleContinuously = true;
  Poll.GetSample();
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(Screen.WaitCursorShown, 0);
}

TEST_F(GetSampleTest, ASilentLoggerEndsItAfter25Timer2TicksWithoutAMessage) {
  Connect();
  Logger.Deaf = {0x09, 0x0A};
  int timer2Ticks = 0;
  bool inTick = false;
  Loop.OnTick = [&] {
    Poll.Timer1Tick();
    if (inTick) return;
    inTick = true;
    ++timer2Ticks;
    Poll.Timer2Tick();
    inTick = false;
  };
  Poll.GetSample();
  EXPECT_EQ(timer2Ticks, 25);
  EXPECT_EQ(Ring.Count, 1);
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_TRUE(Link.Connected);
  EXPECT_FALSE(Link.Busy);
  EXPECT_FALSE(Link.SingleSampleRequested);
  EXPECT_EQ(Logger.Count(0x09), 2);
  EXPECT_EQ(Logger.Count(0x0A), 1);
}

TEST_F(GetSampleTest, AnAnswerWithoutASampleEndsItToo) {
  Connect();
  Logger.SampleAnswer = 0xFD;
  Poll.GetSample();
  EXPECT_EQ(Ring.Count, 2);
  EXPECT_EQ(Ring.Samples[0].Value[9], -1);
  Logger.SampleAnswer = 0x11;
  RecordTimes();
  Poll.GetSample();
  EXPECT_EQ(Ring.Count, 2);
  EXPECT_EQ(Times.back().second, 0x0A);
  EXPECT_FALSE(Link.Busy);
}

TEST_F(GetSampleTest, ReadsTheStatusOnlyOnce) {
  Connect();
  Poll.GetSample();
  EXPECT_EQ(Logger.Count(0x0C), 1);
}

TEST_F(GetSampleTest, EndsAtOnceWhenTheProgramEnds) {
  Connect();
  Loop.After(350, [this] {
    Port.Close();
    Loop.End();
  });
  const qint64 before = Loop.NowMs();
  Poll.GetSample();
  EXPECT_LE(Loop.NowMs() - before, 400);
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Screen.WaitCursor, 0);
}

TEST_F(GetSampleTest, EndsWhenTheAdapterIsPulledOut) {
  Connect();
  Loop.After(350, [this] { Port.Unplug(); });
  Poll.GetSample();
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Ring.Count, 1);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(GetSampleTest, AFaultThatLeavesATickEndsTheAction) {
  Connect();
  Link.TrapErrors = false;
  Loop.After(350, [this] { Port.Unplug(); });
  EXPECT_THROW(Poll.GetSample(), PortFault);
  EXPECT_FALSE(Link.Busy);
  EXPECT_FALSE(Link.SingleSampleRequested);
  EXPECT_EQ(Link.SampleWaitTicks, 0);
  EXPECT_EQ(Screen.WaitCursor, 0);
}

TEST_F(GetSampleTest, AFaultThatTheLoopReportsEndsTheActionToo) {
  Connect();
  Link.TrapErrors = false;
  Loop.After(350, [this] { Port.Unplug(); });
  int reported = 0;
  Loop.OnTick = [&] {
    Poll.Timer1Tick();
    try {
      Poll.Timer2Tick();
    } catch (const PortFault&) {
      ++reported;
    }
  };
  Poll.GetSample();
  EXPECT_EQ(reported, 1);
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Screen.WaitCursor, 0);
}

class KeptSamples : public Timer2Test {
 protected:
  KeptSamples() { Poll.KeepSamples(Sink); }
  FakeBlockSink Sink;
};

TEST_F(KeptSamples, EachRunOfSamplingIsAnUploadOfItsSamples) {
  Connect();
  StartSampling();
  Loop.RunFor(2000);
  StopSampling();
  Loop.RunFor(200);
  EXPECT_EQ(Sink.Log, (std::vector<std::string>{"begin", "block", "block", "end"}));
  EXPECT_EQ(Sink.Starts.at(0).Kind, UploadKind::Live);
  EXPECT_EQ(Sink.Ends.at(0), UploadEnd::Complete);
  StartSampling();
  Loop.RunFor(1000);
  EXPECT_EQ(Sink.Starts.size(), 2U);
}

TEST_F(KeptSamples, ASampleIsKeptInTheShapeOfAStoredRecord) {
  Logger.Version = {3, 2, 1, 1, 0, 0, 0, 0};
  Connect();
  Logger.Sample = {0xDD, 0xFB, 0xF4, 0x20, 1, 0, 2, 0, 3, 0, 4,  0,
                   5,    0,    6,    0,    7, 0, 8, 0, 9, 0, 10, 0};
  StartSampling();
  Loop.RunFor(1000);
  // Two analog channels, the first slot and the last, and one pulse channel.
  EXPECT_EQ(Sink.Blocks,
            (std::vector<FakeBlockSink::Block>{{1, 0xDD, 0xFB, 0xF4, 0x20, 1, 0, 8, 0, 9, 0}}));
}

TEST_F(KeptSamples, ARunWithoutASampleAndASingleSampleLeaveNothing) {
  Connect();
  StartSampling();
  Logger.SampleAnswer = 0xFD;
  Loop.RunFor(1000);
  StopSampling();
  Loop.RunFor(200);
  Logger.SampleAnswer = 0xFA;
  Poll.GetSample();
  EXPECT_TRUE(Sink.Log.empty());
}

TEST_F(KeptSamples, TheEndOfTheProgramEndsTheRun) {
  Connect();
  StartSampling();
  Loop.RunFor(1000);
  Poll.StopKeeping();
  Poll.StopKeeping();
  EXPECT_EQ(Sink.Log, (std::vector<std::string>{"begin", "block", "end"}));
}

TEST_F(GetSampleTest, ButtonsPressedDuringItDoNothing) {
  Connect();
  for (int ms = 50; ms < 1400; ms += 100) Loop.After(ms, [this] { PressEverything(); });
  Poll.GetSample();
  EXPECT_EQ(Logger.Opcodes, (Bytes{8, 8, 8, 0x0C, 0, 9, 9, 0x0A}));
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(HistoryShown + SetupShown + ImportShown, 0);
  EXPECT_TRUE(Link.Connected);
}

}  // namespace
}  // namespace tessmar::test
