#include <gmock/gmock.h>

#include "link/CommandsBench.h"

namespace tessmar::test {
namespace {

using testing::ElementsAre;

const Bytes kU{0x55};
const Bytes kT{0x54};
const Bytes kM{0x4D};
const Bytes kDoneByte{0xFC};
const Bytes kVersionRequest{0xF8, 0x03, 0x0F, 0x40, 0x04, 0xF9};

Bytes VersionReply(std::uint8_t analog = 8, std::uint8_t pulse = 2) {
  return Bytes{0xFA} + FrameOf({0x21, analog, pulse, 1, 0, 0, 0, 0});
}

bool Sync(CommandsBench& bench) {
  return bench.Commands.SyncWithLogger([] { return false; });
}

void AnswerLetters(CommandsBench& bench) {
  bench.Answering(kT).Answering(kM).Answering(kDoneByte);
}

TEST(SyncWithLogger, SendsTheLettersAndReadsTheVersion) {
  CommandsBench bench;
  AnswerLetters(bench);
  bench.Answering(VersionReply(2, 1));
  EXPECT_TRUE(Sync(bench));
  EXPECT_THAT(bench.Port.Writes, ElementsAre(kU, kT, kM, kVersionRequest));
  EXPECT_EQ(bench.Link.AnalogChannelCount, 2);
  EXPECT_EQ(bench.Link.PulseChannelCount, 1);
  // Each answer is handled when it arrives.
  EXPECT_LT(bench.Loop.NowMs(), 100);
}

TEST(SyncWithLogger, TellsASilentLineFromOneThatTalksOtherwise) {
  CommandsBench silent;
  EXPECT_FALSE(Sync(silent));
  EXPECT_FALSE(silent.Commands.HeardAnything());
  CommandsBench foreign;
  foreign.Answering({0x41});
  EXPECT_FALSE(Sync(foreign));
  EXPECT_TRUE(foreign.Commands.HeardAnything());
  CommandsBench impossible;
  AnswerLetters(impossible);
  impossible.Answering(VersionReply(9, 0));
  EXPECT_FALSE(Sync(impossible));
  EXPECT_TRUE(impossible.Commands.HeardAnything());
}

TEST(SyncWithLogger, FailsThePassWhenTheAnswerComesTwiceInOneWait) {
  CommandsBench bench;
  bench.Answering({0x54, 0x54});
  AnswerLetters(bench);
  bench.Answering(VersionReply());
  EXPECT_TRUE(Sync(bench));
  EXPECT_THAT(bench.Port.Writes, ElementsAre(kU, kU, kT, kM, kVersionRequest));
}

TEST(SyncWithLogger, StartsAgainForAWrongByteInAnyPlace) {
  CommandsBench bench;
  bench.Answering({0x55});
  bench.Answering(kT).Answering({0x54});
  bench.Answering(kT).Answering(kM).Answering({0xFA});
  AnswerLetters(bench);
  bench.Answering(VersionReply());
  EXPECT_TRUE(Sync(bench));
  EXPECT_THAT(bench.Port.Writes, ElementsAre(kU, kU, kT, kU, kT, kM, kU, kT, kM, kVersionRequest));
}

TEST(SyncWithLogger, AcceptsALoggerThatIsPastItsHandshake) {
  CommandsBench bench;
  bench.Port.OnWrite = [&](const Bytes& written) {
    if (written == kVersionRequest) bench.Arrive(VersionReply(), 10);
  };
  EXPECT_TRUE(Sync(bench));
  EXPECT_EQ(bench.Port.Writes.size(), 11u);
  EXPECT_EQ(bench.Loop.NowMs(), 10'000 + 10);
}

TEST(SyncWithLogger, TakesThirteenSecondsOnADeadLine) {
  CommandsBench bench;
  EXPECT_FALSE(Sync(bench));
  EXPECT_EQ(bench.Port.Writes.size(), 13u);
  EXPECT_EQ(bench.Loop.NowMs(), 13'000);
}

TEST(SyncWithLogger, EndsAfterThePassInWhichCancelWasPressed) {
  CommandsBench bench;
  bool cancelled = false;
  bench.Loop.After(2'500, [&] { cancelled = true; });
  EXPECT_FALSE(bench.Commands.SyncWithLogger([&] { return cancelled; }));
  EXPECT_EQ(bench.Port.Writes.size(), 3u);
  EXPECT_EQ(bench.Loop.NowMs(), 3'000);
}

TEST(SyncWithLogger, IgnoresCancelOnceTheLettersAreRight) {
  CommandsBench bench;
  AnswerLetters(bench);
  bench.Answering(VersionReply());
  EXPECT_TRUE(bench.Commands.SyncWithLogger([] { return true; }));
}

TEST(SyncWithLogger, FailsForImpossibleChannelCountsWithoutAnotherPass) {
  for (const auto& [analog, pulse] : {std::pair{0, 0}, {9, 0}, {10, 2}, {8, 3}, {1, 255}}) {
    CommandsBench bench;
    bench.Link.AnalogChannelCount = 8;
    bench.Link.PulseChannelCount = 2;
    AnswerLetters(bench);
    bench.Answering(
        VersionReply(static_cast<std::uint8_t>(analog), static_cast<std::uint8_t>(pulse)));
    EXPECT_FALSE(Sync(bench));
    EXPECT_THAT(bench.Port.Writes, ElementsAre(kU, kT, kM, kVersionRequest));
    EXPECT_EQ(bench.Link.AnalogChannelCount, 8);
    EXPECT_EQ(bench.Link.PulseChannelCount, 2);
  }
}

TEST(SyncWithLogger, DropsALateAnswerAheadOfEachPass) {
  CommandsBench bench;
  // Together with what is there already the right answers would be one byte too many.
  bench.Port.Arrive({0x54});
  bench.Answering({0x99});
  AnswerLetters(bench);
  bench.Answering(VersionReply());
  const auto arriveBetweenPasses = [&] {
    bench.Port.Arrive({0x54});
    return false;
  };
  EXPECT_TRUE(bench.Commands.SyncWithLogger(arriveBetweenPasses));
  EXPECT_THAT(bench.Port.Writes, ElementsAre(kU, kU, kT, kM, kVersionRequest));
}

TEST(SyncWithLogger, FailsThePassForALateAnswerInsideIt) {
  CommandsBench bench;
  bench.Answering({});
  bench.Loop.At(999, [&] { bench.Port.Arrive({0x99}); });
  AnswerLetters(bench);
  bench.Answering(VersionReply());
  EXPECT_TRUE(Sync(bench));
  EXPECT_THAT(bench.Port.Writes, ElementsAre(kU, kU, kT, kM, kVersionRequest));
}

TEST(SyncWithLogger, EndsAtOnceWhenTheAdapterIsPulledOut) {
  CommandsBench bench;
  bench.Loop.After(1'300, [&] { bench.Port.Unplug(); });
  EXPECT_FALSE(Sync(bench));
  EXPECT_EQ(bench.Loop.NowMs(), 1'300);
  EXPECT_EQ(bench.Port.Writes.size(), 2u);
}

TEST(SyncWithLogger, EndsAtOnceWhenTheProgramEnds) {
  CommandsBench bench;
  bench.Loop.After(1'300, [&] { bench.Loop.End(); });
  EXPECT_FALSE(Sync(bench));
  EXPECT_EQ(bench.Loop.NowMs(), 1'300);
}

TEST(SyncWithLogger, IsFalseAtOnceOnAClosedPort) {
  CommandsBench bench;
  bench.Port.Close();
  EXPECT_FALSE(Sync(bench));
  EXPECT_EQ(bench.Loop.NowMs(), 0);
}

}  // namespace
}  // namespace tessmar::test
