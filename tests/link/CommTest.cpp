#include "link/Comm.h"

#include <gmock/gmock.h>

#include <array>
#include <string_view>

#include "base/Fault.h"
#include "link/LinkBench.h"

namespace tessmar::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QString kSettings = QStringLiteral("38400,N,8,1");

/// The acknowledge alone.
const Bytes kAck{0xFA};

bool Send(LinkBench& bench, const Bytes& payload, int retries = 0) {
  return bench.Channel.SendFrame(payload, retries);
}

TEST(Crc16, GivesThePublishedCheckValueOfTheNineDigits) {
  const std::string_view digits = "123456789";
  const Bytes bytes(digits.begin(), digits.end());
  EXPECT_EQ(Crc16(bytes, 0, 8), 0xBB3D);
}

TEST(Crc16, CoversOnlyTheGivenRange) {
  const std::string_view digits = "x123456789x";
  const Bytes bytes(digits.begin(), digits.end());
  EXPECT_EQ(Crc16(bytes, 1, 9), 0xBB3D);
}

TEST(Crc16, IsZeroWhenTheFirstIndexIsAboveTheLast) {
  EXPECT_EQ(Crc16(Bytes{1, 2, 3}, 1, 0), 0);
  EXPECT_EQ(Crc16(Bytes{}, 0, -1), 0);
}

TEST(OpenPort, OpensSwitchesTheLinesOnAndEmptiesTheInput) {
  LinkBench bench;
  bench.Port.Close();
  bench.Port.Log.clear();
  EXPECT_TRUE(bench.Channel.OpenPort(5, kSettings));
  EXPECT_THAT(bench.Port.Log, ElementsAre("open", "dtr on", "rts on"));
  EXPECT_EQ(bench.Port.Number(), 5);
  EXPECT_EQ(bench.Port.Settings(), kSettings);
}

TEST(OpenPort, KeepsAPortThatIsOpenSoAndEmptiesItsInput) {
  LinkBench bench;
  bench.Port.Log.clear();
  bench.Port.Arrive({1, 2, 3});
  EXPECT_TRUE(bench.Channel.OpenPort(3, kSettings));
  EXPECT_THAT(bench.Port.Log, IsEmpty());
  EXPECT_EQ(bench.Port.InputCount(), 0);
}

TEST(OpenPort, ClosesAPortThatIsOpenAtAnotherSpeed) {
  LinkBench bench;
  bench.Port.Log.clear();
  EXPECT_TRUE(bench.Channel.OpenPort(3, QStringLiteral("9600,N,8,1")));
  EXPECT_THAT(bench.Port.Log, ElementsAre("dtr off", "close", "open", "dtr on", "rts on"));
}

TEST(OpenPort, ClosesAnotherPortThatIsOpen) {
  LinkBench bench;
  bench.Port.Log.clear();
  EXPECT_TRUE(bench.Channel.OpenPort(4, kSettings));
  EXPECT_THAT(bench.Port.Log, ElementsAre("dtr off", "close", "open", "dtr on", "rts on"));
  EXPECT_EQ(bench.Port.Number(), 4);
}

TEST(OpenPort, IsFalseForAPortThatCannotBeOpened) {
  LinkBench bench;
  bench.Port.Close();
  bench.Port.RefuseToOpen = true;
  EXPECT_FALSE(bench.Channel.OpenPort(3, kSettings));
  EXPECT_FALSE(bench.Channel.IsPortOpen());
}

TEST(OpenPort, LetsTheFaultThroughWhenFaultsAreNotTrapped) {
  LinkBench bench;
  bench.Port.Close();
  bench.Port.RefuseToOpen = true;
  bench.Link.TrapErrors = false;
  EXPECT_THROW(bench.Channel.OpenPort(3, kSettings), PortFault);
}

TEST(ClosePort, SwitchesDtrOffAndCloses) {
  LinkBench bench;
  bench.Port.Log.clear();
  bench.Channel.ClosePort();
  EXPECT_THAT(bench.Port.Log, ElementsAre("dtr off", "close"));
}

TEST(ClosePort, IsQuietForAPortThatIsNotOpen) {
  LinkBench bench;
  bench.Port.Close();
  bench.Port.Log.clear();
  bench.Channel.ClosePort();
  EXPECT_THAT(bench.Port.Log, IsEmpty());
}

TEST(WaitForBytes, WithCountZeroLastsItsFullTimeEvenIfBytesArrive) {
  LinkBench bench;
  bench.Arrive({1, 2, 3}, 50);
  bench.Channel.WaitForBytes(7, 0);
  EXPECT_EQ(bench.Loop.NowMs(), 700);
  EXPECT_EQ(bench.Port.InputCount(), 3);
}

TEST(WaitForBytes, EndsWithTheBytesAndNotWithTheNextTick) {
  LinkBench bench;
  bench.Arrive({1}, 20);
  bench.Arrive({2}, 42);
  bench.Channel.WaitForBytes(10, 2);
  EXPECT_EQ(bench.Loop.NowMs(), 42);
}

TEST(WaitForBytes, EndsWithItsTime) {
  LinkBench bench;
  bench.Arrive({1}, 20);
  bench.Channel.WaitForBytes(4, 2);
  EXPECT_EQ(bench.Loop.NowMs(), 400);
  EXPECT_EQ(bench.Port.InputCount(), 1);
}

TEST(WaitForBytes, RunsTheLoopOnceEvenForBytesThatAreThere) {
  LinkBench bench;
  bench.Port.Arrive({1});
  bool ran = false;
  bench.Loop.After(0, [&] { ran = true; });
  bench.Channel.WaitForBytes(10, 1);
  EXPECT_TRUE(ran);
  EXPECT_EQ(bench.Loop.Ticks(), 0);
}

TEST(WaitForBytes, RunsTheLoopOnceForNoTimeAtAll) {
  LinkBench bench;
  bench.Channel.WaitForBytes(0, 1);
  EXPECT_EQ(bench.Loop.Ticks(), 1);
}

TEST(WaitForBytes, EndsWhenThePortCloses) {
  LinkBench bench;
  bench.Loop.After(120, [&] { bench.Port.Unplug(); });
  bench.Channel.WaitForBytes(50, 0);
  EXPECT_EQ(bench.Loop.NowMs(), 120);
}

TEST(WaitForBytes, EndsWhenTheProgramEnds) {
  LinkBench bench;
  bench.Loop.After(120, [&] { bench.Loop.End(); });
  bench.Channel.WaitForBytes(450, 1);
  EXPECT_EQ(bench.Loop.NowMs(), 120);
}

TEST(ReadByte, TakesAWaitingByteWithoutRunningTheLoop) {
  LinkBench bench;
  bench.Port.Arrive({0xFC, 0x01});
  EXPECT_EQ(bench.Channel.ReadByte(10), 0xFC);
  EXPECT_EQ(bench.Loop.NowMs(), 0);
  EXPECT_EQ(bench.Port.InputCount(), 1);
}

TEST(ReadByte, WaitsForAByte) {
  LinkBench bench;
  bench.Arrive({0xFF}, 330);
  EXPECT_EQ(bench.Channel.ReadByte(10), 0xFF);
  EXPECT_EQ(bench.Loop.NowMs(), 330);
}

TEST(ReadByte, IsMinusOneWhenNothingArrives) {
  LinkBench bench;
  EXPECT_EQ(bench.Channel.ReadByte(5), -1);
  EXPECT_EQ(bench.Loop.NowMs(), 500);
}

TEST(ReadByte, IsMinusOneOnAClosedPort) {
  LinkBench bench;
  bench.Port.Close();
  EXPECT_EQ(bench.Channel.ReadByte(5), -1);
  bench.Link.TrapErrors = false;
  EXPECT_THROW(bench.Channel.ReadByte(5), PortFault);
}

TEST(SendFrame, GivesAOneBytePayloadTheLengthThree) {
  LinkBench bench;
  EXPECT_TRUE(Send(bench.Answering(kAck), {0x0F}));
  EXPECT_THAT(bench.Port.Written, ElementsAre(0xF8, 0x03, 0x0F, 0x40, 0x04, 0xF9));
}

TEST(SendFrame, MakesTheFramesOfTheFixedCommands) {
  const struct {
    Bytes Payload;
    Bytes Frame;
  } rows[] = {
      {{0x0F}, {0xF8, 0x03, 0x0F, 0x40, 0x04, 0xF9}},
      {{0x0C}, {0xF8, 0x03, 0x0C, 0x00, 0x05, 0xF9}},
      {{0x00}, {0xF8, 0x03, 0x00, 0x00, 0x00, 0xF9}},
      {{0x09, 0x01}, {0xF8, 0x04, 0x09, 0x01, 0xC7, 0x90, 0xF9}},
      {{0x0A}, {0xF8, 0x03, 0x0A, 0x80, 0x07, 0xF9}},
      {{0x04, 0xA4, 0x4A}, {0xF8, 0x05, 0x04, 0xA4, 0x4A, 0xBA, 0xF6, 0xF9}},
      {{0x0B, 0xAB, 0xBA}, {0xF8, 0x05, 0x0B, 0xAB, 0xBA, 0x8F, 0x41, 0xF9}},
      {{0x06, 0xA6, 0x6A, 0x00, 0x00, 0x00, 0x02},
       {0xF8, 0x09, 0x06, 0xA6, 0x6A, 0x00, 0x00, 0x00, 0x02, 0xE7, 0x0E, 0xF9}},
      {{0x0E, 0x03}, {0xF8, 0x04, 0x0E, 0x03, 0x44, 0x61, 0xF9}},
  };
  for (const auto& row : rows) {
    LinkBench bench;
    EXPECT_TRUE(Send(bench.Answering(kAck), row.Payload));
    EXPECT_EQ(bench.Port.Written, row.Frame);
  }
}

TEST(SendFrame, SendsFfAsItselfAndEscapesF8AndFe) {
  LinkBench bench;
  EXPECT_TRUE(Send(bench.Answering(kAck), {0xFF, 0xF8, 0xFE}));
  const Bytes head(bench.Port.Written.begin(), bench.Port.Written.begin() + 7);
  EXPECT_THAT(head, ElementsAre(0xF8, 0x05, 0xFF, 0xFE, 0x00, 0xFE, 0x06));
}

TEST(SendFrame, EscapesEachByteOfTheRangeAndNoOther) {
  LinkBench bench;
  EXPECT_TRUE(Send(bench.Answering(kAck), {0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF}));
  const Bytes head(bench.Port.Written.begin(), bench.Port.Written.begin() + 18);
  EXPECT_THAT(head, ElementsAre(0xF8, 0x0B, 0xF7, 0xFE, 0x00, 0xFE, 0x01, 0xFE, 0x02, 0xFE, 0x03,
                                0xFE, 0x04, 0xFE, 0x05, 0xFE, 0x06, 0xFF));
}

TEST(SendFrame, EscapesACheckByteLikeAnyOther) {
  // The check values are 0xFE81 and 0xC3FD.
  LinkBench high;
  EXPECT_TRUE(Send(high.Answering(kAck), {0x08, 0x00, 0x50}));
  EXPECT_THAT(high.Port.Written, ElementsAre(0xF8, 0x05, 0x08, 0x00, 0x50, 0x81, 0xFE, 0x06, 0xF9));
  LinkBench low;
  EXPECT_TRUE(Send(low.Answering(kAck), {0x08, 0x50, 0x03}));
  EXPECT_THAT(low.Port.Written, ElementsAre(0xF8, 0x05, 0x08, 0x50, 0x03, 0xFE, 0x05, 0xC3, 0xF9));
}

TEST(SendFrame, LeavesALengthByteOfTheEscapeRangeAsItIs) {
  LinkBench bench;
  EXPECT_TRUE(Send(bench.Answering(kAck), Bytes(246, 0x00)));
  EXPECT_EQ(bench.Port.Written[1], 0xF8);
  EXPECT_EQ(bench.Port.Written.size(), 1u + 1u + 246u + 2u + 1u);
}

TEST(SendFrame, TakesTheLargestPayloadAndRefusesALarger) {
  LinkBench bench;
  EXPECT_TRUE(Send(bench.Answering(kAck), Bytes(253, 0xF8)));
  EXPECT_EQ(bench.Port.Written[1], 0xFF);
  EXPECT_FALSE(Send(bench, Bytes(254, 0x00)));
  EXPECT_EQ(bench.Port.Writes.size(), 1u);
}

TEST(SendFrame, IsTrueAsSoonAsTheAcknowledgeArrives) {
  LinkBench bench;
  EXPECT_TRUE(Send(bench.Answering(kAck, 35), {0x0F}));
  EXPECT_EQ(bench.Loop.NowMs(), 35);
}

TEST(SendFrame, LeavesWhatFollowsTheAcknowledgeInTheQueue) {
  LinkBench bench;
  EXPECT_TRUE(Send(bench.Answering({0xFA, 0xFC}), {0x0E, 0x03}));
  EXPECT_EQ(bench.Port.InputCount(), 1);
}

TEST(SendFrame, WithoutRetriesFailsOnASingleMissingAcknowledgeAfterTheTimeout) {
  LinkBench bench;
  int retries = 0;
  EXPECT_FALSE(bench.Channel.SendFrame(Bytes{0x0F}, retries));
  EXPECT_EQ(bench.Loop.NowMs(), 1000);
  EXPECT_EQ(bench.Port.Writes.size(), 1u);
  EXPECT_EQ(retries, 0);
}

TEST(SendFrame, WithTwoRetriesMakesThreeTransmissionsOfTheSameBytes) {
  LinkBench bench;
  int retries = 2;
  EXPECT_FALSE(bench.Channel.SendFrame(Bytes{0x0C}, retries));
  EXPECT_EQ(retries, 0);
  const Bytes frame{0xF8, 0x03, 0x0C, 0x00, 0x05, 0xF9};
  EXPECT_THAT(bench.Port.Writes, ElementsAre(frame, frame, frame));
  EXPECT_EQ(bench.Loop.NowMs(), 3000);
}

TEST(SendFrame, UsesUpOnlyTheRetriesThatItMakes) {
  LinkBench bench;
  bench.Answering({}).Answering(kAck);
  int retries = 2;
  EXPECT_TRUE(bench.Channel.SendFrame(Bytes{0x0C}, retries));
  EXPECT_EQ(retries, 1);
}

TEST(SendFrame, CountsAnyByteButTheAcknowledgeAsAFailedAttempt) {
  LinkBench bench;
  bench.Answering({0x00, 0xFA}).Answering(kAck);
  int retries = 1;
  EXPECT_TRUE(bench.Channel.SendFrame(Bytes{0x0C}, retries));
  EXPECT_EQ(retries, 0);
  // What came behind the wrong byte costs the two ticks of the next attempt.
  EXPECT_EQ(bench.Loop.NowMs(), 200 + 10);
}

TEST(SendFrame, GivesATalkingDeviceTimeToFinish) {
  LinkBench bench;
  bench.Port.Arrive({1, 2});
  bench.Arrive({3}, 150);
  EXPECT_TRUE(Send(bench.Answering(kAck), {0x0F}));
  // Two ticks, then four more since it went on talking, then the answer.
  EXPECT_EQ(bench.Loop.NowMs(), 200 + 400 + 10);
}

TEST(SendFrame, DropsAReplyToTheFirstTryThatComesBeforeTheSecond) {
  LinkBench bench;
  bench.Answering({}).Answering(kAck, 30);
  bench.Arrive({0x00, 0x11}, 999);
  int retries = 1;
  EXPECT_TRUE(bench.Channel.SendFrame(Bytes{0x0C}, retries));
  EXPECT_EQ(bench.Port.InputCount(), 0);
}

TEST(SendFrame, TakesALateAcknowledgeOfTheFirstTryAsThatOfTheSecond) {
  LinkBench bench;
  bench.Answering(kAck, 1500);
  int retries = 2;
  EXPECT_TRUE(bench.Channel.SendFrame(Bytes{0x0C}, retries));
  EXPECT_EQ(bench.Port.Writes.size(), 2u);
  EXPECT_EQ(retries, 1);
}

TEST(SendFrame, IsFalseAtOnceOnAClosedPort) {
  LinkBench bench;
  bench.Port.Close();
  EXPECT_FALSE(Send(bench, {0x0F}, 2));
  EXPECT_EQ(bench.Loop.NowMs(), 0);
  bench.Link.TrapErrors = false;
  EXPECT_THROW(Send(bench, {0x0F}, 2), PortFault);
}

TEST(SendFrame, EndsAtOnceWhenTheAdapterIsPulledOut) {
  LinkBench bench;
  bench.Loop.After(250, [&] { bench.Port.Unplug(); });
  EXPECT_FALSE(Send(bench, {0x0F}, 2));
  EXPECT_EQ(bench.Loop.NowMs(), 250);
  EXPECT_EQ(bench.Port.Writes.size(), 1u);
}

TEST(SendFrame, EndsAtOnceWhenTheProgramEnds) {
  LinkBench bench;
  bench.Loop.After(250, [&] { bench.Loop.End(); });
  EXPECT_FALSE(Send(bench, {0x0F}, 2));
  EXPECT_EQ(bench.Loop.NowMs(), 250);
}

TEST(WaitsWhile, EndsAWaitAsSoonAsItsConditionNoLongerHolds) {
  LinkBench bench;
  bool wanted = true;
  bench.Loop.After(250, [&] { wanted = false; });
  {
    const WaitsWhile scope(bench.Channel, [&] { return wanted; });
    EXPECT_FALSE(Send(bench, {0x0F}, 2));
    EXPECT_EQ(bench.Loop.NowMs(), 250);
    EXPECT_EQ(bench.Port.Writes.size(), 1u);
    // And nothing more goes out.
    EXPECT_FALSE(Send(bench, {0x0F}, 2));
    EXPECT_EQ(bench.Port.Writes.size(), 1u);
    bench.Channel.WaitForBytes(30, 0);
    EXPECT_EQ(bench.Loop.NowMs(), 250);
  }
  bench.Answering(kAck);
  EXPECT_TRUE(Send(bench, {0x0F}));
}

TEST(WaitsWhile, LeavesWhatHasArrivedToBeTaken) {
  LinkBench bench;
  bool wanted = true;
  const WaitsWhile scope(bench.Channel, [&] { return wanted; });
  bench.Port.Arrive(FrameOf({1, 2, 3}));
  wanted = false;
  Bytes payload(3);
  EXPECT_TRUE(bench.Channel.ReceiveFrame(payload));
  EXPECT_THAT(payload, ElementsAre(1, 2, 3));
}

}  // namespace
}  // namespace tessmar::test
