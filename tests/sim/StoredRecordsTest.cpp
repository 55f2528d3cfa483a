#include <gtest/gtest.h>

#include "HexBytes.h"
#include "sim/CivilTime.h"
#include "sim/SimulatedLogger.h"

namespace tessmar::test {
namespace {

using sim::Bytes;
using sim::SimulatedLogger;

Bytes Block(SimulatedLogger& logger, std::string_view request, std::int64_t atMs = 0) {
  logger.Receive(Hex(request), std::chrono::milliseconds(atMs));
  return ReplyPayload(AllOutput(logger));
}

/// Hexadecimal text of count bytes of a block.
std::string Part(const Bytes& block, std::size_t offset, std::size_t count) {
  const auto begin = block.begin() + static_cast<std::ptrdiff_t>(offset);
  return Text(Bytes(begin, begin + static_cast<std::ptrdiff_t>(count)));
}

TEST(PackTimeStamp, HasSecondsMinutesHoursDayAndMonthsSince2000) {
  EXPECT_EQ(sim::PackTimeStamp(sim::ToCivilSeconds({2010, 12, 26, 15, 47, 29})), 0x20F4FBDDU);
  EXPECT_EQ(sim::PackTimeStamp(0), 0x00020000U);
  EXPECT_EQ(sim::PackTimeStamp(-1), 0x00020000U);
  EXPECT_EQ(sim::PackTimeStamp(sim::ToCivilSeconds({2085, 4, 30, 23, 59, 59})), 0xFFFD7EFBU);
}

TEST(CivilTime, GoesBothWaysAcrossLeapDays) {
  const sim::CivilTime leapDay{2024, 2, 29, 23, 59, 59};
  EXPECT_EQ(sim::ToCivilTime(sim::ToCivilSeconds(leapDay)), leapDay);
  EXPECT_EQ(sim::ToCivilTime(sim::ToCivilSeconds(leapDay) + 1),
            (sim::CivilTime{2024, 3, 1, 0, 0, 0}));
  EXPECT_EQ(sim::ToCivilSeconds({2000, 1, 2, 0, 0, 1}), 86401);
  EXPECT_EQ(sim::ToCivilTime(-1), (sim::CivilTime{1999, 12, 31, 23, 59, 59}));
}

TEST(CivilTime, KnowsRealMoments) {
  EXPECT_TRUE(sim::IsRealTime({2024, 2, 29, 0, 0, 0}));
  EXPECT_FALSE(sim::IsRealTime({2023, 2, 29, 0, 0, 0}));
  EXPECT_FALSE(sim::IsRealTime({2023, 13, 1, 0, 0, 0}));
  EXPECT_FALSE(sim::IsRealTime({2023, 1, 1, 24, 0, 0}));
}

TEST(StoredRecords, BlockHasACountAndRecordsOfATimeStampAndWords) {
  SimulatedLogger logger({.Records = 5});
  const Bytes block = Block(logger, kAskFirstBlock);
  ASSERT_EQ(block.size(), 241U);
  EXPECT_EQ(block[0], 5);
  // 13:30 to 14:30 on 15 June 2026.
  EXPECT_EQ(Part(block, 1, 4), "80 D7 5E 4F");
  EXPECT_EQ(Part(block, 1 + 3 * 24, 4), "C0 E3 5E 4F");
  EXPECT_EQ(Part(block, 1 + 4 * 24, 4), "80 E7 5E 4F");
}

TEST(StoredRecords, AreAllEqualFromWhereTheClockStops) {
  SimulatedLogger logger({.Records = 5, .ClockStopsAt = 3});
  const Bytes block = Block(logger, kAskFirstBlock);
  ASSERT_EQ(block.size(), 241U);
  EXPECT_EQ(block[0], 5);
  EXPECT_NE(Part(block, 1 + 2 * 24, 24), Part(block, 1 + 3 * 24, 24));
  EXPECT_EQ(Part(block, 1 + 3 * 24, 4), "C0 E3 5E 4F");
  EXPECT_EQ(Part(block, 1 + 3 * 24, 24), Part(block, 1 + 4 * 24, 24));
}

TEST(StoredRecords, ShortBlockIsPaddedToItsFixedSize) {
  SimulatedLogger logger({.Records = 9});
  const Bytes block = Block(logger, kAskFirstBlock);
  ASSERT_EQ(block.size(), 241U);
  EXPECT_EQ(Part(block, 1 + 9 * 24, 24),
            "FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF");
}

TEST(StoredRecords, ComeInBlocksUntilAShortOne) {
  SimulatedLogger logger({.Records = 25});
  EXPECT_EQ(Block(logger, kAskFirstBlock)[0], 10);
  EXPECT_EQ(Block(logger, kAskNextBlock)[0], 10);
  EXPECT_EQ(Block(logger, kAskNextBlock)[0], 5);
  EXPECT_EQ(Block(logger, kAskNextBlock)[0], 0);
  EXPECT_EQ(Block(logger, kAskNextBlock)[0], 0);
}

TEST(StoredRecords, ExactlyOneBlockIsFollowedByACountOfZero) {
  SimulatedLogger logger({.Records = 10});
  EXPECT_EQ(Block(logger, kAskFirstBlock)[0], 10);
  const Bytes end = Block(logger, kAskNextBlock);
  EXPECT_EQ(end.size(), 241U);
  EXPECT_EQ(end[0], 0);
}

TEST(StoredRecords, AgainGivesTheLastBlockAgain) {
  SimulatedLogger logger({.Records = 25});
  Block(logger, kAskFirstBlock);
  const Bytes second = Block(logger, kAskNextBlock);
  EXPECT_EQ(Block(logger, kAskBlockAgain), second);
  EXPECT_EQ(Block(logger, kAskBlockAgain), second);
  EXPECT_EQ(Block(logger, kAskNextBlock)[0], 5);
}

TEST(StoredRecords, AgainAfterTheEndGivesTheEndAgain) {
  SimulatedLogger logger({.Records = 10});
  Block(logger, kAskFirstBlock);
  Block(logger, kAskNextBlock);
  EXPECT_EQ(Block(logger, kAskBlockAgain)[0], 0);
}

TEST(StoredRecords, AgainBeforeAnyBlockGivesTheFirst) {
  SimulatedLogger logger({.Records = 25});
  const Bytes block = Block(logger, kAskBlockAgain);
  EXPECT_EQ(block[0], 10);
  EXPECT_EQ(Block(logger, kAskFirstBlock), block);
}

TEST(StoredRecords, AgainAfterALostRequestRepeatsTheBlockBefore) {
  SimulatedLogger logger({.Records = 25});
  const Bytes first = Block(logger, kAskFirstBlock);
  logger.AddFault({.Mode = sim::FailureMode::RequestLost, .Count = 1});
  EXPECT_TRUE(Block(logger, kAskNextBlock).empty());
  EXPECT_EQ(Block(logger, kAskBlockAgain), first);
}

TEST(StoredRecords, AgainAfterALostReplyLosesNothing) {
  SimulatedLogger logger({.Records = 25});
  const Bytes first = Block(logger, kAskFirstBlock);
  logger.AddFault({.Mode = sim::FailureMode::Silent, .Count = 1});
  EXPECT_TRUE(Block(logger, kAskNextBlock).empty());
  const Bytes second = Block(logger, kAskBlockAgain);
  EXPECT_NE(second, first);
  EXPECT_EQ(Part(second, 1, 3), Part(Block(logger, kAskBlockAgain), 1, 3));
}

TEST(StoredRecords, FirstStartsOver) {
  SimulatedLogger logger({.Records = 25});
  const Bytes first = Block(logger, kAskFirstBlock);
  Block(logger, kAskNextBlock);
  EXPECT_EQ(Block(logger, kAskFirstBlock), first);
}

TEST(StoredRecords, OtherSubCommandsAreNotAnswered) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 04 0D 03 44 91 F9"), "");
}

TEST(StoredRecords, RecordsPerBlockFollowTheChannelCounts) {
  const auto most = [](int analog, int pulse) {
    SimulatedLogger logger({.AnalogChannels = analog, .PulseChannels = pulse, .Records = 100});
    return static_cast<int>(Block(logger, kAskFirstBlock)[0]);
  };
  EXPECT_EQ(most(1, 0), 40);
  EXPECT_EQ(most(3, 1), 20);
  EXPECT_EQ(most(8, 2), 10);
  EXPECT_EQ(most(4, 1), 17);
  // Eleven records of 22 bytes would be two bytes more than the area holds.
  EXPECT_EQ(most(7, 2), 10);
}

TEST(StoredRecords, ClearedHistoryHasNoBlocks) {
  SimulatedLogger logger;
  Block(logger, kAskFirstBlock);
  Ask(logger, kAskClear);
  EXPECT_EQ(Block(logger, kAskNextBlock)[0], 0);
  EXPECT_EQ(Block(logger, kAskBlockAgain)[0], 0);
}

TEST(StoredRecords, AreTheSameWheneverTheyAreAskedFor) {
  SimulatedLogger logger({.Records = 10});
  EXPECT_EQ(Block(logger, kAskFirstBlock, 0), Block(logger, kAskFirstBlock, 86'400'000));
}

TEST(StoredRecords, CountStandsStillUnlessLiveRecordsAreWanted) {
  SimulatedLogger still({.Records = 10});
  EXPECT_EQ(Ask(still, kAskStatus, 1'800'000).substr(9, 2), "0A");
  SimulatedLogger live({.Records = 10, .LiveRecords = true});
  EXPECT_EQ(Ask(live, kAskStatus, 899'999).substr(9, 2), "0A");
  EXPECT_EQ(Ask(live, kAskStatus, 900'000).substr(9, 2), "0B");
  EXPECT_EQ(Ask(live, kAskStatus, 3'600'000).substr(9, 2), "0E");
}

TEST(StoredRecords, OnASignalFollowEachOtherAlsoBehindAClear) {
  SimulatedLogger logger({.Records = 5, .RecordsOnSignal = 2});
  logger.Receive(Hex(kAskClear), std::chrono::hours(50));
  AllOutput(logger);
  logger.TimePassed();
  const Bytes block = Block(logger, kAskFirstBlock);
  EXPECT_EQ(block[0], 2);
  // 14:45 and 15:00: the last record before was that of 14:30.
  EXPECT_EQ(logger.Records().TimeOf(0), sim::ToCivilSeconds({2026, 6, 15, 14, 45, 0}));
  EXPECT_EQ(logger.Records().TimeOf(1), sim::ToCivilSeconds({2026, 6, 15, 15, 0, 0}));
}

TEST(StoredRecords, SoManyThatTheyWouldBeginBefore2000LieCloserTogether) {
  SimulatedLogger logger({.Records = 16'777'215});
  EXPECT_GE(logger.Records().TimeOf(0), 0);
  EXPECT_EQ(logger.Records().TimeOf(16'777'214), sim::ToCivilSeconds({2026, 6, 15, 14, 30, 0}));
}

}  // namespace
}  // namespace tessmar::test
