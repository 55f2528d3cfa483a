#include "history/PullHistory.h"

#include <gtest/gtest.h>

#include "history/UploadRig.h"

namespace tessmar {
namespace {

using sim::FailureMode;
using test::Bytes;
using test::UploadRig;

class Pull : public testing::Test {
 protected:
  HistoryBuffer buffer_;
};

TEST_F(Pull, ExactlyOneBlockOfRecordsTakesASecondRequestThatGivesZero) {
  UploadRig rig({.Records = 10}, buffer_);
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 1}));
  EXPECT_EQ(rig.Received(), rig.Stored(10));
}

TEST_F(Pull, AShortBlockEndsTheUploadWithoutAFurtherRequest) {
  UploadRig rig({.Records = 7}, buffer_);
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0}));
  EXPECT_EQ(rig.Received(), rig.Stored(7));
}

TEST_F(Pull, AFullBlockDrivesTheNextRequestWithoutAPause) {
  UploadRig rig({.Records = 9600}, buffer_);
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked().size(), 961U);
  EXPECT_EQ(rig.Loop.Ticks(), 0);
}

TEST_F(Pull, AFailureIsFollowedByFiveTicksAndARequestForTheSameBlock) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::Silent, .Count = 1});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 2, 1, 1}));
  EXPECT_EQ(rig.Received(), rig.Stored(25));
  EXPECT_EQ(rig.Upload().TotalFailures(), 1);
  // Ten ticks for the acknowledge, five of pause, and after the block 36 for answers that are late.
  EXPECT_EQ(rig.Loop.Ticks(), 10 + 5 + 36);
}

TEST_F(Pull, ADamagedReplyCostsTheFlushAndThePauseOnly) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::CorruptCheck, .Count = 1});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 2, 1, 1}));
  EXPECT_EQ(rig.Loop.Ticks(), 2 + 5);
}

TEST_F(Pull, TheHundredAndFirstFailureInARowEndsTheUpload) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault(FailureMode::CorruptCheck);
  int changes = 0;
  EXPECT_EQ(rig.Pull({[] { return true; }, [&] { ++changes; }}), UploadEnd::Failed);
  EXPECT_EQ(rig.Asked().size(), 101U);
  EXPECT_EQ(changes, 100);
  EXPECT_EQ(rig.Upload().TotalFailures(), 101);
}

TEST_F(Pull, AHundredFailuresInARowAreBorne) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::CorruptCheck, .Count = 100});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Received(), rig.Stored(25));
}

TEST_F(Pull, AnIllegalCountEndsTheUploadAtOnce) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault(FailureMode::IllegalBlockCount);
  EXPECT_EQ(rig.Pull(), UploadEnd::Failed);
  EXPECT_EQ(rig.Asked(), (std::vector{0}));
  EXPECT_EQ(buffer_.Count(), 0);
}

TEST_F(Pull, ACancelInARetryWaitEndsTheUpload) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::CorruptCheck, .Opcode = 0x0D});
  bool running = true;
  // The reply is refused at once and flushed for two ticks; the wait would be over at 700 ms.
  rig.Loop.At(450, [&] { running = false; });
  EXPECT_EQ(rig.Pull({[&] { return running; }, [] {}}), UploadEnd::Cancelled);
  EXPECT_EQ(rig.Asked(), (std::vector{0}));
  EXPECT_EQ(rig.Loop.NowMs(), 450);
}

TEST_F(Pull, ACancelBetweenBlocksKeepsWhatHasArrived) {
  UploadRig rig({.Records = 2500}, buffer_);
  const auto running = [&] { return buffer_.Count() < 30; };
  EXPECT_EQ(rig.Pull({running, [] {}}), UploadEnd::Cancelled);
  EXPECT_EQ(rig.Received(), rig.Stored(30));
}

TEST_F(Pull, ABufferThatIsFullEndsTheUploadWithWhatFits) {
  HistoryBuffer small(25);
  UploadRig rig({.Records = 40}, small);
  EXPECT_EQ(rig.Pull(), UploadEnd::BufferFull);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 1, 1}));
  EXPECT_EQ(rig.Received(), rig.Stored(25));
  // The block that did not fit whole is kept whole.
  EXPECT_EQ(rig.Sink.Log, (std::vector<std::string>{"begin", "block", "block", "block", "end"}));
  EXPECT_EQ(rig.Sink.Ends, std::vector{UploadEnd::BufferFull});
}

TEST_F(Pull, MoreRecordsThanPromisedAreTakenAsTheyCome) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::MoreRecords, .Count = 14});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Received(), rig.Stored(39));
  EXPECT_EQ(rig.Upload().BarMaximum(), 39);
  EXPECT_EQ(rig.Upload().TotalRecords(), 25);
}

// A fault that strikes from the second request on.
UploadWatcher AfterTheFirstBlock(UploadRig& rig, const sim::Fault& fault, int& blocks) {
  return {[] { return true; },
          [&rig, fault, &blocks] {
            if (++blocks == 1) rig.Logger.AddFault(fault);
          }};
}

TEST_F(Pull, TheBlockThatALoggerRepeatsAfterALostRequestIsNotStoredAgain) {
  UploadRig rig({.Records = 25}, buffer_);
  int blocks = 0;
  EXPECT_EQ(rig.Pull(AfterTheFirstBlock(
                rig, {.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D}, blocks)),
            UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 1, 2, 1, 1}));
  EXPECT_EQ(rig.Received(), rig.Stored(25));
}

TEST_F(Pull, ALostFirstRequestToALoggerThatWasNeverReadRepeatsNothing) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 2, 1, 1}));
  EXPECT_EQ(rig.Received(), rig.Stored(25));
}

TEST_F(Pull, ALostFirstRequestToALoggerThatWasReadBeforeBeginsAnew) {
  UploadRig rig({.Records = 95}, buffer_);
  ASSERT_EQ(rig.Pull(), UploadEnd::Complete);
  rig.Port.Writes.clear();
  rig.Logger.AddFault({.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 2, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(rig.Received(), rig.Stored(95));
  EXPECT_EQ(rig.Upload().TimesBegunAnew(), 1);
}

TEST_F(Pull, ALoggerThatWasReadInPartGoesOnFromThereAndIsBegunAnew) {
  UploadRig rig({.Records = 95}, buffer_);
  ASSERT_EQ(rig.Pull({[&] { return buffer_.Count() < 40; }, [] {}}), UploadEnd::Cancelled);
  rig.Port.Writes.clear();
  rig.Logger.AddFault({.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 2, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(rig.Received(), rig.Stored(95));
}

TEST_F(Pull, AnUploadIsBegunAnewSoOftenAndNotOnceMore) {
  UploadRig rig({.Records = 95}, buffer_);
  ASSERT_EQ(rig.Pull(), UploadEnd::Complete);
  // No request for the first block ever arrives.
  rig.Port.OnWrite = [answer = rig.Port.OnWrite](const test::Bytes& bytes) {
    if (bytes.size() > 3 && bytes[2] == 0x0D && bytes[3] == 0) return;
    answer(bytes);
  };
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(buffer_.Count(), 5);
  EXPECT_TRUE(rig.Upload().IsShort());
  EXPECT_EQ(rig.Upload().TimesBegunAnew(), 5);
}

TEST_F(Pull, FewerRecordsThanPromisedOnAGoodLineAreTheLoggersOwnBusiness) {
  UploadRig rig({.Records = 25}, buffer_);
  HistoryUpload upload(rig.Link, buffer_, 40);
  EXPECT_EQ(PullHistory(upload, rig.Commands, rig.Channel(), rig.Link, {[] { return true; }, [] {}},
                        rig.Sink),
            UploadEnd::Complete);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 1, 1}));
  EXPECT_TRUE(upload.IsShort());
}

TEST_F(Pull, EqualBlocksOnAGoodLineCostNoRequest) {
  for (const int baud : {0, 9600}) {
    UploadRig rig({.Records = 45, .ClockStopsAt = 0, .BaudRate = baud}, buffer_);
    EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
    EXPECT_EQ(rig.Asked(), (std::vector{0, 1, 1, 1, 1}));
    EXPECT_EQ(rig.Received(), rig.Stored(45));
  }
}

TEST_F(Pull, EqualBlocksAreAllThereAfterARequestThatWasLost) {
  UploadRig rig({.Records = 45, .ClockStopsAt = 0}, buffer_);
  int blocks = 0;
  EXPECT_EQ(rig.Pull(AfterTheFirstBlock(
                rig, {.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D}, blocks)),
            UploadEnd::Complete);
  EXPECT_EQ(rig.Received(), rig.Stored(45));
}

// Here the repeated block is a true one, which shows in the count at the end.
TEST_F(Pull, EqualBlocksAreAllThereAfterAReplyThatWasLost) {
  UploadRig rig({.Records = 45, .ClockStopsAt = 0}, buffer_);
  int blocks = 0;
  EXPECT_EQ(rig.Pull(AfterTheFirstBlock(
                rig, {.Mode = FailureMode::Silent, .Count = 1, .Opcode = 0x0D}, blocks)),
            UploadEnd::Complete);
  EXPECT_EQ(rig.Received(), rig.Stored(45));
  EXPECT_EQ(rig.Upload().TimesBegunAnew(), 1);
}

TEST_F(Pull, AnAnswerThatComesTwiceOnASlowLineIsNotStoredTwice) {
  UploadRig rig({.Records = 25, .BaudRate = 9600}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::AnswerTwice, .Count = 1, .Opcode = 0x0D});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Received(), rig.Stored(25));
}

TEST_F(Pull, AnAdapterThatIsPulledOutEndsTheUploadWithoutAWait) {
  UploadRig rig({.Records = 2500}, buffer_);
  int blocks = 0;
  const auto changed = [&] {
    if (++blocks == 3) rig.Port.Unplug();
  };
  EXPECT_EQ(rig.Pull({[] { return true; }, changed}), UploadEnd::Failed);
  EXPECT_EQ(rig.Received(), rig.Stored(30));
  EXPECT_LE(rig.Loop.Ticks(), 1);
}

TEST_F(Pull, AFaultPassesThroughWhenFaultsAreNotTrapped) {
  UploadRig rig({.Records = 2500}, buffer_);
  rig.Link.TrapErrors = false;
  const auto changed = [&] { rig.Port.Unplug(); };
  EXPECT_THROW(rig.Pull({[] { return true; }, changed}), PortFault);
}

TEST_F(Pull, ALineThatNeverGoesQuietHoldsTheUploadForOneQuietTimeOnly) {
  for (const int every : {90, 3000}) {
    UploadRig rig({.Records = 25}, buffer_);
    rig.Logger.AddFault({.Mode = FailureMode::Silent, .Count = 1});
    std::function<void()> babble = [&] {
      rig.Port.Arrive({0x55});
      rig.Loop.After(every, babble);
    };
    rig.Loop.At(1600, babble);
    int waits = 0;
    std::vector<int> lasted;
    EXPECT_EQ(rig.Pull({[] { return true; }, [] {},
                        [&](bool begins) {
                          if (begins) waits = rig.Loop.Ticks();
                          if (!begins) lasted.push_back(rig.Loop.Ticks() - waits);
                        }}),
              UploadEnd::Complete);
    EXPECT_EQ(rig.Received(), rig.Stored(25));
    ASSERT_FALSE(lasted.empty());
    for (const int ticks : lasted) EXPECT_LE(ticks, 36);
    EXPECT_LT(rig.Loop.Ticks(), 150);
  }
}

TEST_F(Pull, TellsOfTheWaitForLateAnswers) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::Silent, .Count = 1});
  std::vector<std::pair<bool, int>> told;
  EXPECT_EQ(rig.Pull({[] { return true; }, [] {},
                      [&](bool waits) { told.emplace_back(waits, rig.Loop.Ticks()); }}),
            UploadEnd::Complete);
  EXPECT_EQ(told, (std::vector<std::pair<bool, int>>{{true, 15}, {false, 51}}));
}

// Whatever an upload waits for when Stop is pressed: it is over with the next turn of the loop.
TEST_F(Pull, ACancelActsAtOnceEverywhere) {
  struct Row {
    const char* What;
    sim::FailureMode Mode;
    int Baud;
    int AtMs;
  };
  for (const Row& row : {Row{"acknowledge", FailureMode::Silent, 0, 450},
                         Row{"reply", FailureMode::RandomLoss, 0, 450},
                         Row{"flush", FailureMode::CorruptCheck, 0, 150},
                         Row{"pause", FailureMode::CorruptCheck, 0, 450},
                         Row{"block", FailureMode::JunkAhead, 300, 4000},
                         Row{"half a frame", FailureMode::StopsMidFrame, 0, 700}}) {
    SCOPED_TRACE(row.What);
    UploadRig rig({.Records = 2500, .BaudRate = row.Baud}, buffer_);
    rig.Logger.AddFault({.Mode = row.Mode, .Rate = 1.0, .Opcode = 0x0D});
    bool running = true;
    rig.Loop.At(row.AtMs, [&] { running = false; });
    EXPECT_EQ(rig.Pull({[&] { return running; }, [] {}}), UploadEnd::Cancelled);
    EXPECT_LE(rig.Loop.NowMs(), row.AtMs + 100);
    EXPECT_GE(rig.Loop.NowMs(), row.AtMs);
  }
}

TEST_F(Pull, ACancelEndsTheQuietTime) {
  UploadRig rig({.Records = 2500}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::Silent, .Count = 1});
  bool running = true;
  rig.Loop.At(1750, [&] { running = false; });
  EXPECT_EQ(rig.Pull({[&] { return running; }, [] {}}), UploadEnd::Cancelled);
  EXPECT_EQ(rig.Asked(), (std::vector{0, 2}));
  EXPECT_EQ(rig.Loop.NowMs(), 1750);
  EXPECT_EQ(rig.Received(), rig.Stored(10));
}

TEST_F(Pull, TheSinkIsToldThatTheUploadIsBegunAnew) {
  UploadRig rig({.Records = 15}, buffer_);
  ASSERT_EQ(rig.Pull(), UploadEnd::Complete);
  rig.Sink.Log.clear();
  rig.Logger.AddFault({.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D});
  ASSERT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Sink.Log,
            (std::vector<std::string>{"begin", "block", "anew", "block", "block", "end"}));
  EXPECT_EQ(rig.Sink.Ends.back(), UploadEnd::Complete);
}

TEST_F(Pull, ARepeatedBlockIsKeptOnce) {
  UploadRig rig({.Records = 25}, buffer_);
  int blocks = 0;
  rig.Pull(AfterTheFirstBlock(rig, {.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D},
                              blocks));
  EXPECT_EQ(rig.Sink.Blocks.size(), 3U);
}

// The block replies as the logger sent them, made here from its stored records.
std::vector<Bytes> BlocksOf(const UploadRig& rig, int records) {
  std::vector<Bytes> blocks;
  for (int first = 0; first <= records; first += 10) {
    Bytes block(1, static_cast<std::uint8_t>(std::min(10, records - first)));
    for (int i = first; i < std::min(first + 10, records); ++i)
      rig.Logger.Records().AppendRecord(block, i);
    blocks.push_back(block);
  }
  return blocks;
}

TEST_F(Pull, EveryBlockGoesToTheSinkBeforeItIsDecoded) {
  UploadRig rig({.Records = 25}, buffer_);
  std::vector<int> countAtBlock;
  rig.Sink.OnBlock = [&] { countAtBlock.push_back(buffer_.Count()); };
  rig.Pull();
  EXPECT_EQ(countAtBlock, (std::vector{0, 10, 20}));
  EXPECT_EQ(rig.Sink.Log, (std::vector<std::string>{"begin", "block", "block", "block", "end"}));
  EXPECT_EQ(rig.Sink.Starts.at(0).Kind, UploadKind::History);
  EXPECT_EQ(rig.Sink.Starts.at(0).Promised, 25);
  EXPECT_EQ(rig.Sink.Ends.at(0), UploadEnd::Complete);
  const std::vector<Bytes> sent = BlocksOf(rig, 25);
  for (std::size_t i = 0; i < sent.size(); ++i) {
    ASSERT_EQ(rig.Sink.Blocks.at(i).size(), 241U);
    EXPECT_TRUE(std::equal(sent[i].begin(), sent[i].end(), rig.Sink.Blocks[i].begin())) << i;
  }
}

TEST_F(Pull, AnEmptyLastBlockIsKeptToo) {
  UploadRig rig({.Records = 10}, buffer_);
  rig.Pull();
  ASSERT_EQ(rig.Sink.Blocks.size(), 2U);
  EXPECT_EQ(rig.Sink.Blocks[1][0], 0);
}

TEST_F(Pull, ABlockThatComesTwiceIsKeptOnce) {
  UploadRig rig({.Records = 25}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::AnswerTwice, .Count = std::nullopt});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Sink.Blocks.size(), 3U);
}

TEST_F(Pull, TheSinkIsToldHowTheUploadEnds) {
  {
    UploadRig rig({.Records = 25}, buffer_);
    rig.Logger.AddFault(FailureMode::CorruptCheck);
    rig.Pull();
    EXPECT_EQ(rig.Sink.Log, (std::vector<std::string>{"begin", "end"}));
    EXPECT_EQ(rig.Sink.Ends.at(0), UploadEnd::Failed);
  }
  UploadRig rig({.Records = 25}, buffer_);
  rig.Pull({[this] { return buffer_.Count() < 10; }, [] {}});
  EXPECT_EQ(rig.Sink.Log, (std::vector<std::string>{"begin", "block", "end"}));
  EXPECT_EQ(rig.Sink.Ends.at(0), UploadEnd::Cancelled);
}

TEST_F(Pull, AFaultThatLeavesTheUploadEndsItAtTheSinkAsFailed) {
  UploadRig rig({.Records = 25}, buffer_);
  EXPECT_THROW(rig.Pull({[]() -> bool { throw PortFault("gone"); }, [] {}}), PortFault);
  EXPECT_EQ(rig.Sink.Ends, std::vector{UploadEnd::Failed});
}

}  // namespace
}  // namespace tessmar
