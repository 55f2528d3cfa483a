#include <gmock/gmock.h>

#include "base/Fault.h"
#include "link/Comm.h"
#include "link/LinkBench.h"

namespace tessmar::test {
namespace {

using testing::ElementsAre;

// The check value of 01 02 03 is 0xA110.
const Bytes kPayload{0x01, 0x02, 0x03};
const Bytes kFrame{0xF8, 0x05, 0x01, 0x02, 0x03, 0x10, 0xA1, 0xF9};

// The check value of F8 FF 10 is 0xCDC1; one payload byte is escaped.
const Bytes kEscapedPayload{0xF8, 0xFF, 0x10};
const Bytes kEscapedFrame{0xF8, 0x05, 0xFE, 0x00, 0xFF, 0x10, 0xC1, 0xCD, 0xF9};

/// A stream that comes in two pieces: so many bytes 10 ms from now, the rest later.
void ArriveSplit(LinkBench& bench, const Bytes& stream, std::size_t split, qint64 restAt) {
  const auto middle = stream.begin() + static_cast<long>(split);
  bench.Arrive(Bytes(stream.begin(), middle), 10);
  bench.Arrive(Bytes(middle, stream.end()), restAt);
}

TEST(ReceiveFrame, TakesAGoodFrame) {
  LinkBench bench;
  bench.Arrive(kFrame, 15);
  Bytes payload(3);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(payload, kPayload);
  EXPECT_EQ(bench.Loop.NowMs(), 15);
}

TEST(ReceiveFrame, TakesEscapedPayloadAndCheckBytes) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x05, 0x08, 0x00, 0x50, 0x81, 0xFE, 0x06, 0xF9}, 15);
  Bytes payload(3);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_THAT(payload, ElementsAre(0x08, 0x00, 0x50));

  bench.Arrive({0xF8, 0x05, 0x08, 0x50, 0x03, 0xFE, 0x05, 0xC3, 0xF9}, 15);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_THAT(payload, ElementsAre(0x08, 0x50, 0x03));
}

TEST(ReceiveFrame, TakesEveryByteValue) {
  Bytes all(200);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(56 + i);
  LinkBench bench;
  bench.Arrive(FrameOf(all), 15);
  Bytes payload(200);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(payload, all);
}

TEST(ReceiveFrame, TakesALengthByteThatEqualsTheStartByte) {
  const Bytes zeros(246, 0x00);
  LinkBench bench;
  bench.Arrive(Bytes{0xF8, 0xF8} + zeros + Bytes{0x00, 0x00, 0xF9}, 15);
  Bytes payload(246, 0x55);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(payload, zeros);
}

TEST(ReceiveFrame, TakesAFrameSplitAtEveryPoint) {
  for (const auto& [frame, expected] :
       {std::pair{kFrame, kPayload}, std::pair{kEscapedFrame, kEscapedPayload}}) {
    for (std::size_t split = 0; split <= frame.size(); ++split) {
      SCOPED_TRACE(split);
      LinkBench bench;
      ArriveSplit(bench, frame, split, 910);
      Bytes payload(3);
      EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
      EXPECT_EQ(payload, expected);
    }
  }
}

TEST(ReceiveFrame, TakesAFrameThatComesByteByByteBehindNoise) {
  LinkBench bench;
  qint64 when = 10;
  for (const std::uint8_t byte : Bytes{0x00, 0x54, 0xFA} + kEscapedFrame) {
    bench.Arrive({byte}, when);
    when += 90;
  }
  Bytes payload(3);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(payload, kEscapedPayload);
}

TEST(ReceiveFrame, SkipsNoiseAheadOfTheStartWhereverTheStreamIsSplit) {
  const Bytes stream = Bytes{0x00, 0xF9, 0xFA, 0xFE, 0xFF} + kFrame + Bytes{0x77, 0xF8};
  // The first part holds at least the noise: the hunt for the start ends with an empty queue.
  for (std::size_t split = 6; split <= stream.size(); ++split) {
    SCOPED_TRACE(split);
    LinkBench bench;
    ArriveSplit(bench, stream, split, 500);
    Bytes payload(3);
    EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
    EXPECT_EQ(payload, kPayload);
  }
}

TEST(ReceiveFrame, LeavesWhatFollowsTheFrameInTheQueueWhereverTheStreamIsSplit) {
  for (const auto& [frame, expected] :
       {std::pair{kFrame, kPayload}, std::pair{kEscapedFrame, kEscapedPayload}}) {
    const Bytes stream = frame + Bytes{0x77, 0xFA, 0xF9};
    for (std::size_t split = 1; split <= stream.size(); ++split) {
      SCOPED_TRACE(split);
      LinkBench bench;
      ArriveSplit(bench, stream, split, 500);
      Bytes payload(3);
      EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
      EXPECT_EQ(payload, expected);
      bench.Loop.RunFor(1000);
      EXPECT_THAT(bench.Channel.ReadAll(), ElementsAre(0x77, 0xFA, 0xF9));
    }
  }
}

TEST(ReceiveFrame, FailsWhenOnlyNoiseHasCome) {
  LinkBench bench;
  bench.Arrive({1, 2, 3, 4, 5}, 10);
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  // At once, but for the two ticks of quiet.
  EXPECT_EQ(bench.Loop.NowMs(), 200);
}

TEST(ReceiveFrame, WaitsThreeTicksMoreThanTheTimeoutForTheBeginning) {
  LinkBench bench;
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(bench.Loop.NowMs(), 1300 + 200);
}

TEST(ReceiveFrame, GoesOnWithFewerThanFourBytesWhenTheTimeIsOver) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x05, 0x01}, 10);
  bench.Arrive({0x02, 0x03, 0x10, 0xA1, 0xF9}, 2200);
  Bytes payload(3);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(bench.Loop.NowMs(), 2200);
}

TEST(ReceiveFrame, WaitsOnceMoreForEachByteAndThenFails) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x05, 0x01, 0x02}, 10);
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(bench.Loop.NowMs(), 1000 + 200);
}

TEST(ReceiveFrame, RefusesALengthOneTooSmallAtOnceAndFlushesTheRest) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x04, 0x01, 0x02, 0x10, 0xA1, 0xF9}, 10);
  bench.Arrive({0x33, 0x44}, 150);
  Bytes payload(3, 0x99);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  EXPECT_THAT(payload, ElementsAre(0x99, 0x99, 0x99));
  EXPECT_EQ(bench.Loop.NowMs(), 200);
  EXPECT_EQ(bench.Port.InputCount(), 0);
}

TEST(ReceiveFrame, RefusesALengthOneTooLarge) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x06, 0x01, 0x02, 0x03, 0x10, 0xA1, 0xF9}, 10);
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
}

TEST(ReceiveFrame, FailsOnSevenBehindAnEscape) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x05, 0xFE, 0x07, 0xFF, 0x10, 0xC1, 0xCD, 0xF9}, 10);
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  EXPECT_EQ(bench.Port.InputCount(), 0);
}

// Whether any of an answer has come is told by the first byte of the buffer.
TEST(ReceiveFrame, WritesNothingOfAByteThatIsCutInItsEscape) {
  for (const Bytes& cut : {Bytes{0xF8, 0x05, 0xFE}, Bytes{0xF8, 0x05, 0xFE, 0x07, 0x01}}) {
    LinkBench bench;
    bench.Arrive(cut, 15);
    Bytes payload(3, 0x55);
    EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
    EXPECT_THAT(payload, ElementsAre(0x55, 0x55, 0x55));
  }
}

TEST(ReceiveFrame, TakesSixBehindAnEscape) {
  LinkBench bench;
  bench.Arrive(FrameOf({0xFE, 0x00, 0x00}), 10);
  Bytes payload(3);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_THAT(payload, ElementsAre(0xFE, 0x00, 0x00));
}

TEST(ReceiveFrame, FailsWithoutTheEndByte) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x05, 0x01, 0x02, 0x03, 0x10, 0xA1, 0xF8}, 10);
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
}

TEST(ReceiveFrame, FailsOnAWrongCheckValueInEitherByte) {
  for (const Bytes& frame : {Bytes{0xF8, 0x05, 0x01, 0x02, 0x03, 0x11, 0xA1, 0xF9},
                             Bytes{0xF8, 0x05, 0x01, 0x02, 0x03, 0x10, 0xA0, 0xF9}}) {
    LinkBench bench;
    bench.Arrive(frame, 10);
    Bytes payload(3);
    EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  }
}

TEST(ReceiveFrame, FailsOnEachSingleByteThatIsWrong) {
  for (std::size_t wrong = 0; wrong < kFrame.size(); ++wrong) {
    SCOPED_TRACE(wrong);
    Bytes frame = kFrame;
    frame[wrong] ^= 0x01;
    LinkBench bench;
    bench.Arrive(frame, 10);
    Bytes payload(3);
    EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
    EXPECT_EQ(bench.Port.InputCount(), 0);
  }
}

TEST(ReceiveFrame, FailsOnAClosedPort) {
  LinkBench bench;
  bench.Port.Close();
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  bench.Link.TrapErrors = false;
  EXPECT_THROW(bench.Channel.ReceiveFrame(payload), PortFault);
}

TEST(ReceiveFrame, EndsWhenTheAdapterIsPulledOutInAFrame) {
  LinkBench bench;
  bench.Arrive({0xF8, 0x05, 0x01, 0x02}, 10);
  bench.Loop.After(350, [&] { bench.Port.Unplug(); });
  Bytes payload(3);
  EXPECT_FALSE(bench.Channel.ReceiveFrame(payload));
  EXPECT_LE(bench.Loop.NowMs(), 400);
}

TEST(ReceiveFrame, HoldsTheLongestTimeoutThereIs) {
  LinkBench bench;
  bench.Link.LinkTimeoutTicks = 32767;
  bench.Arrive(kFrame, 2'000);
  Bytes payload(3);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
}

}  // namespace
}  // namespace tessmar::test
