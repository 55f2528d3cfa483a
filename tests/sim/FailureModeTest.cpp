#include "sim/FailureMode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "HexBytes.h"
#include "sim/SimulatedLogger.h"

namespace tessmar::test {
namespace {

using sim::Bytes;
using sim::FailureMode;
using sim::Fault;
using sim::ParseFault;
using sim::SimulatedLogger;
using namespace std::chrono_literals;

/// What a logger with one fault answers to a request.
std::string AskWith(FailureMode mode, std::string_view request) {
  SimulatedLogger logger;
  logger.AddFault(mode);
  return Ask(logger, request);
}

constexpr std::string_view kGoodVersion = "FA F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9";

TEST(FailureModes, SilentCarriesOutTheRequestAndSaysNothing) {
  SimulatedLogger logger;
  logger.AddFault(FailureMode::Silent);
  EXPECT_EQ(Ask(logger, "55"), "");
  EXPECT_EQ(Ask(logger, kAskClear), "");
  EXPECT_EQ(logger.Records().Count(), 0);
}

TEST(FailureModes, RequestLostDoesNothing) {
  SimulatedLogger logger;
  logger.AddFault(FailureMode::RequestLost);
  EXPECT_EQ(Ask(logger, "55"), "");
  EXPECT_EQ(Ask(logger, kAskClear), "");
  EXPECT_EQ(logger.Records().Count(), 960);
  EXPECT_EQ(logger.Requests(0x04), 0);
}

TEST(FailureModes, AcknowledgeLostLeavesTheRest) {
  EXPECT_EQ(AskWith(FailureMode::AcknowledgeLost, kAskVersion),
            "F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9");
  EXPECT_EQ(AskWith(FailureMode::AcknowledgeLost, kAskCommit), "FC");
}

TEST(FailureModes, WrongAcknowledge) {
  EXPECT_EQ(AskWith(FailureMode::WrongAcknowledge, kAskVersion),
            "FB F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9");
}

TEST(FailureModes, CorruptCheck) {
  EXPECT_EQ(AskWith(FailureMode::CorruptCheck, kAskVersion),
            "FA F8 0A 15 08 02 00 D0 00 00 00 70 D1 F9");
}

TEST(FailureModes, WrongLengthIsOneTooSmall) {
  EXPECT_EQ(AskWith(FailureMode::WrongLength, kAskVersion),
            "FA F8 09 15 08 02 00 D0 00 00 00 71 D1 F9");
}

TEST(FailureModes, JunkAheadStandsBetweenAcknowledgeAndFrame) {
  EXPECT_EQ(AskWith(FailureMode::JunkAhead, kAskVersion),
            "FA 00 13 55 FF FA F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9");
}

TEST(FailureModes, BadEscapeIsSevenAboveTheStart) {
  EXPECT_EQ(AskWith(FailureMode::BadEscape, kAskVersion),
            "FA F8 0A FE 07 08 02 00 D0 00 00 00 71 D1 F9");
}

TEST(FailureModes, LateAnswerComesASecondAndAHalfLate) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::LateAnswer, .Count = 1});
  logger.Receive(Hex(kAskVersion), 1000ms);
  const std::vector<sim::Output> outputs = logger.TakeOutput();
  ASSERT_EQ(outputs.size(), 1U);
  EXPECT_EQ(outputs[0], (sim::Output{2500ms, Hex(kGoodVersion)}));
}

TEST(FailureModes, AnswerAfterALateOneWaitsForIt) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::LateAnswer, .Count = 1});
  logger.Receive(Hex(kAskVersion), 1000ms);
  logger.Receive(Hex(kAskVersion), 2000ms);
  logger.TakeOutput();
  logger.Receive(Hex(kAskVersion), 2400ms);
  EXPECT_EQ(logger.TakeOutput().at(0).Due, sim::Micros(2500ms));
}

TEST(FailureModes, AnswerTwice) {
  EXPECT_EQ(AskWith(FailureMode::AnswerTwice, "55"), "54 54");
  EXPECT_EQ(AskWith(FailureMode::AnswerTwice, kAskCommit), "FA FC FA FC");
}

TEST(FailureModes, NoiseStandsAheadOfTheAcknowledgeOrBehindTheAnswer) {
  EXPECT_EQ(AskWith(FailureMode::NoiseAhead, kAskCommit), "55 FF FA FC");
  EXPECT_EQ(AskWith(FailureMode::NoiseBehind, kAskCommit), "FA FC 55 FF");
}

TEST(FailureModes, HeldAnswerComesAheadOfTheNextOne) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::HeldAnswer, .Count = 1});
  EXPECT_EQ(Ask(logger, kAskCommit), "");
  EXPECT_EQ(Ask(logger, kAskVersion), std::string("FA FC ") + std::string(kGoodVersion));
  EXPECT_EQ(Ask(logger, kAskVersion), kGoodVersion);
}

TEST(FailureModes, LateCopyComesASecondAndAHalfBehindTheAnswer) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::LateCopy, .Count = 1});
  logger.Receive(Hex(kAskVersion), 1000ms);
  const std::vector<sim::Output> outputs = logger.TakeOutput();
  ASSERT_EQ(outputs.size(), 2U);
  EXPECT_EQ(outputs[0], (sim::Output{1000ms, Hex(kGoodVersion)}));
  EXPECT_EQ(outputs[1], (sim::Output{2500ms, Hex(kGoodVersion)}));
}

TEST(FailureModes, StopsMidFrame) {
  EXPECT_EQ(AskWith(FailureMode::StopsMidFrame, kAskVersion), "FA F8 0A 15 08 02 00");
}

TEST(FailureModes, StuckConfigurationByteStaysAsItWas) {
  SimulatedLogger logger;
  logger.AddFault(FailureMode::StuckConfigurationByte);
  EXPECT_EQ(Ask(logger, "F8 0B 07 A7 7A 28 00 29 00 11 01 75 8D F9"), "FA");
  EXPECT_EQ(Ask(logger, "F8 07 08 28 00 00 02 69 A0 F9"), "FA F8 07 28 00 00 0F 01 A4 36 F9");
}

TEST(FailureModes, StuckAddressCanBeChosen) {
  SimulatedLogger logger;
  logger.AddFault(FailureMode::StuckConfigurationByte);
  logger.SetStuckAddress(41);
  EXPECT_EQ(Ask(logger, "F8 0B 07 A7 7A 28 00 29 00 11 01 75 8D F9"), "FA");
  EXPECT_EQ(logger.Memory().At(40), 0x11);
  EXPECT_EQ(logger.Memory().At(41), 0x00);
}

TEST(FailureModes, CommitRefused) {
  SimulatedLogger logger;
  logger.AddFault(FailureMode::CommitRefused);
  EXPECT_EQ(Ask(logger, kAskCommit), "FA FD");
  EXPECT_EQ(logger.Commits(), 0);
}

TEST(FailureModes, IllegalVersionClaimsNineChannels) {
  EXPECT_EQ(AskWith(FailureMode::IllegalVersion, kAskVersion).substr(9, 8), "15 09 02");
}

TEST(FailureModes, IllegalBlockCountIsOneAboveTheLimit) {
  EXPECT_EQ(AskWith(FailureMode::IllegalBlockCount, kAskFirstBlock).substr(0, 11), "FA F8 F3 0B");
}

TEST(FailureModes, MoreRecordsThanPromised) {
  SimulatedLogger logger({.Records = 5});
  logger.AddFault({.Mode = FailureMode::MoreRecords, .Count = 7});
  EXPECT_EQ(Ask(logger, kAskStatus).substr(9, 2), "05");
  EXPECT_EQ(Ask(logger, kAskFirstBlock).substr(9, 2), "0A");
  EXPECT_EQ(Ask(logger, kAskNextBlock).substr(9, 2), "02");
}

TEST(FailureModes, RandomLossLosesAcknowledgesAndRepliesAtTheRate) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::RandomLoss, .Rate = 0.2});
  int whole = 0;
  int withoutAcknowledge = 0;
  int withoutReply = 0;
  int nothing = 0;
  for (int time = 0; time < 10'000; ++time) {
    const std::string answer = Ask(logger, kAskVersion);
    whole += answer == kGoodVersion ? 1 : 0;
    withoutAcknowledge += answer == kGoodVersion.substr(3) ? 1 : 0;
    withoutReply += answer == "FA" ? 1 : 0;
    nothing += answer.empty() ? 1 : 0;
  }
  EXPECT_NEAR(whole, 6400, 200);
  EXPECT_NEAR(withoutAcknowledge, 1600, 150);
  EXPECT_NEAR(withoutReply, 1600, 150);
  EXPECT_NEAR(nothing, 400, 80);
  EXPECT_EQ(whole + withoutAcknowledge + withoutReply + nothing, 10'000);
}

TEST(FailureModes, RandomLossIsTheSameForTheSameSeed) {
  const auto session = [](std::uint32_t seed) {
    SimulatedLogger logger({.Seed = seed});
    logger.AddFault(FailureMode::RandomLoss);
    std::string all;
    for (int time = 0; time < 100; ++time) all += Ask(logger, kAskVersion) + "|";
    return all;
  };
  EXPECT_EQ(session(7), session(7));
  EXPECT_NE(session(7), session(8));
}

TEST(FailureModes, ARequestThatComesTwiceIsCarriedOutTwice) {
  SimulatedLogger logger({.Records = 25});
  Ask(logger, kAskFirstBlock);
  logger.AddFault({.Mode = FailureMode::RequestTwice, .Count = 1});
  Ask(logger, kAskNextBlock);
  EXPECT_EQ(Ask(logger, kAskNextBlock).substr(9, 2), "00") << "the records are over";
  EXPECT_EQ(AskWith(FailureMode::RequestTwice, kAskCommit), "FA FC FA FC");
}

TEST(FailureModes, TheAcknowledgeComesTwiceOrBehindTheRest) {
  EXPECT_EQ(AskWith(FailureMode::AcknowledgeTwice, kAskCommit), "FA FA FC");
  EXPECT_EQ(AskWith(FailureMode::AcknowledgeBehind, kAskCommit), "FC FA");
}

TEST(FailureModes, AReplyIsLostOrLateBehindItsAcknowledge) {
  EXPECT_EQ(AskWith(FailureMode::ReplyLost, kAskVersion), "FA");
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::ReplyLate, .Count = 1});
  logger.Receive(Hex(kAskCommit), 100ms);
  const std::vector<sim::Output> expected{{100ms, {0xFA}}, {1600ms, {0xFC}}};
  EXPECT_EQ(logger.TakeOutput(), expected);
}

/// How many of 2000 damaged answers have so many bytes, and differ from the good one.
int CountDamaged(FailureMode mode, std::size_t bytes) {
  SimulatedLogger logger;
  logger.AddFault(mode);
  int damaged = 0;
  for (int time = 0; time < 2000; ++time) {
    const std::string answer = Ask(logger, kAskVersion);
    damaged += answer.size() == 3 * bytes - 1 && answer != kGoodVersion ? 1 : 0;
  }
  return damaged;
}

TEST(FailureModes, AnyByteOfAFrameIsDamagedMissingOrThereTwice) {
  EXPECT_EQ(CountDamaged(FailureMode::FlippedBits, 14), 2000);
  EXPECT_EQ(CountDamaged(FailureMode::MissingByte, 13), 2000);
  EXPECT_EQ(CountDamaged(FailureMode::DoubledByte, 15), 2000);
}

TEST(FailureModes, DamageStrikesEachByteOfTheFrameAndNotTheAcknowledge) {
  SimulatedLogger logger;
  logger.AddFault(FailureMode::FlippedBits);
  std::set<std::size_t> places;
  for (int time = 0; time < 1000; ++time) {
    const std::string answer = Ask(logger, kAskVersion);
    const auto [ours, good] = std::ranges::mismatch(answer, kGoodVersion);
    places.insert(static_cast<std::size_t>(ours - answer.begin()) / 3);
  }
  EXPECT_EQ(places, (std::set<std::size_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
}

TEST(FailureModes, AHungUpLineIsDeadForTenSeconds) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::HangUp, .Count = 1});
  EXPECT_EQ(Ask(logger, kAskVersion, 1000), "");
  EXPECT_EQ(Ask(logger, kAskVersion, 10'999), "");
  EXPECT_EQ(Ask(logger, kAskVersion, 11'000), kGoodVersion);
}

/// Everything that a host gets to see in a session that touches every kind of request.
std::vector<sim::Output> WholeSession(SimulatedLogger& logger) {
  constexpr std::array<std::string_view, 10> kRequests = {
      "55",
      kAskVersion,
      kAskStatus,
      "F8 0B 07 A7 7A 28 00 29 00 11 01 75 8D F9",
      "F8 07 08 28 00 00 02 69 A0 F9",
      kAskCommit,
      kAskFirstBlock,
      kAskNextBlock,
      kAskBlockAgain,
      kAskNextBlock};
  std::vector<sim::Output> seen;
  for (std::size_t time = 0; time < 10 * kRequests.size(); ++time) {
    logger.Receive(Hex(kRequests[time % kRequests.size()]), time * 5000ms);
    for (const sim::Output& output : logger.TakeOutput()) seen.push_back(output);
  }
  return seen;
}

TEST(FailureModes, EveryModeChangesWhatTheHostSeesAndCanBeSwitchedOff) {
  SimulatedLogger good({.Records = 25});
  const std::vector<sim::Output> goodSession = WholeSession(good);
  for (const sim::FailureModeName& mode : sim::FailureModes()) {
    SCOPED_TRACE(mode.Name);
    SimulatedLogger faulty({.Records = 25});
    faulty.AddFault(mode.Mode);
    EXPECT_NE(WholeSession(faulty), goodSession);
    SimulatedLogger mended({.Records = 25});
    mended.AddFault(mode.Mode);
    mended.ClearFaults();
    EXPECT_EQ(WholeSession(mended), goodSession);
  }
}

TEST(FailureModes, ACountedFaultEndsAfterSoManyRequests) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::Silent, .Count = 2});
  EXPECT_EQ(Ask(logger, kAskVersion), "");
  EXPECT_EQ(Ask(logger, kAskVersion), "");
  EXPECT_EQ(Ask(logger, kAskVersion), kGoodVersion);
}

TEST(FailureModes, ACountedFaultIsNotUsedUpByRequestsItCannotAffect) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::CorruptCheck, .Count = 1});
  EXPECT_EQ(Ask(logger, kAskCommit), "FA FC");
  EXPECT_EQ(Ask(logger, kAskVersion), "FA F8 0A 15 08 02 00 D0 00 00 00 70 D1 F9");
  EXPECT_EQ(Ask(logger, kAskVersion), kGoodVersion);
}

TEST(FailureModes, AFaultCanBeLimitedToAnOpcode) {
  SimulatedLogger logger;
  logger.AddFault({.Mode = FailureMode::Silent, .Opcode = 0x0C});
  EXPECT_EQ(Ask(logger, "55"), "54");
  EXPECT_EQ(Ask(logger, kAskVersion), kGoodVersion);
  EXPECT_EQ(Ask(logger, kAskStatus), "");
}

TEST(FailureModes, HaveNamesOfTheirOwnInTheOrderOfTheEnum) {
  std::set<std::string_view> names;
  int expected = 0;
  for (const sim::FailureModeName& mode : sim::FailureModes()) {
    EXPECT_EQ(static_cast<int>(mode.Mode), expected++);
    names.insert(mode.Name);
    ASSERT_TRUE(ParseFault(mode.Name));
    EXPECT_EQ(*ParseFault(mode.Name), Fault{.Mode = mode.Mode});
  }
  EXPECT_EQ(names.size(), sim::FailureModes().size());
  EXPECT_EQ(expected, static_cast<int>(FailureMode::HangUp) + 1);
}

TEST(ParseFault, ReadsCountRateAndOpcode) {
  EXPECT_EQ(ParseFault("silent:3"), (Fault{.Mode = FailureMode::Silent, .Count = 3}));
  EXPECT_EQ(ParseFault("random-loss:0.05"), (Fault{.Mode = FailureMode::RandomLoss, .Rate = 0.05}));
  EXPECT_EQ(ParseFault("corrupt-check@0x0D:3"),
            (Fault{.Mode = FailureMode::CorruptCheck, .Count = 3, .Opcode = 0x0D}));
  EXPECT_EQ(ParseFault("late-answer@13"), (Fault{.Mode = FailureMode::LateAnswer, .Opcode = 13}));
  EXPECT_EQ(ParseFault("silent:1.0"), (Fault{.Mode = FailureMode::Silent, .Rate = 1.0}));
}

TEST(ParseFault, RefusesWhatIsNone) {
  for (const std::string_view text :
       {"",           "silence",   "Silent",     "silent:",       "silent:0",         "silent:-1",
        "silent:x",   "silent:3x", "silent:0.0", "silent:1.5",    "silent:.",         "silent@",
        "silent@256", "silent@0x", "silent@q:3", "random-loss:3", "more-records:0.5", "silent:3:3",
        "silent:1e2", "silent:nan"})
    EXPECT_EQ(ParseFault(text), std::nullopt) << text;
}

}  // namespace
}  // namespace tessmar::test
