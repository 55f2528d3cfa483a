#include "history/HistoryUpload.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"
#include "history/Blocks.h"
#include "history/GetHistoryData.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::Block;
using Verdict = HistoryUpload::Verdict;

LinkState LinkWith(int analog, int pulse) {
  LinkState link;
  link.TrapErrors = true;
  link.AnalogChannelCount = static_cast<std::int16_t>(analog);
  link.PulseChannelCount = static_cast<std::int16_t>(pulse);
  return link;
}

/// Eight analog and two pulse channels: 24 bytes a record, ten records a block.
class HistoryUploadOfTenChannels : public testing::Test {
 protected:
  LinkState link_ = LinkWith(8, 2);
  HistoryBuffer buffer_;
  HistoryUpload upload_{link_, buffer_, 20};
};

TEST_F(HistoryUploadOfTenChannels, AsksForTheFirstBlockOnceAndThenForTheNext) {
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::First);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 11)), Verdict::GoOn);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
}

TEST_F(HistoryUploadOfTenChannels, AsksAgainAfterAFailure) {
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeFailure(true), Verdict::AskAgain);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  EXPECT_EQ(upload_.TakeFailure(true), Verdict::AskAgain);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  upload_.TakeBlock(Block(10, 10, 11));
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
}

TEST_F(HistoryUploadOfTenChannels, NeverAsksForTheFirstBlockTwiceEvenWhenItsRequestFailed) {
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::First);
  upload_.TakeFailure(false);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
}

TEST_F(HistoryUploadOfTenChannels, AFullBlockThenABlockOfZeroEndsTheUpload) {
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(0, 10, 0)), Verdict::Complete);
  EXPECT_EQ(upload_.Count(), 10);
}

TEST_F(HistoryUploadOfTenChannels, ABlockOfSevenAtALimitOfTenEndsTheUploadAtOnce) {
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(7, 10, 1)), Verdict::Complete);
  EXPECT_EQ(upload_.Count(), 7);
}

TEST_F(HistoryUploadOfTenChannels, RefusesACountAboveTheLimitAndKeepsWhatItHas) {
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(11, 10, 11)), Verdict::Failed);
  EXPECT_EQ(upload_.Count(), 10);
}

TEST_F(HistoryUploadOfTenChannels, BearsAHundredFailuresInARowAndNotOneMore) {
  upload_.NextRequest();
  for (int i = 0; i < 100; ++i) ASSERT_EQ(upload_.TakeFailure(true), Verdict::AskAgain) << i;
  EXPECT_EQ(upload_.TakeFailure(true), Verdict::Failed);
}

TEST_F(HistoryUploadOfTenChannels, ABlockBeginsTheRowOfFailuresAnewButNotTheirTotal) {
  upload_.NextRequest();
  for (int i = 0; i < 100; ++i) upload_.TakeFailure(true);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  upload_.NextRequest();
  for (int i = 0; i < 100; ++i) ASSERT_EQ(upload_.TakeFailure(true), Verdict::AskAgain) << i;
  EXPECT_EQ(upload_.TotalFailures(), 200);
  EXPECT_EQ(upload_.TakeFailure(true), Verdict::Failed);
}

TEST_F(HistoryUploadOfTenChannels, TheBarGrowsWhenMoreRecordsComeThanWerePromised) {
  EXPECT_EQ(upload_.BarMaximum(), 20);
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 11));
  EXPECT_EQ(upload_.BarMaximum(), 20);
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 21));
  EXPECT_EQ(upload_.BarMaximum(), 30);
  EXPECT_EQ(upload_.TotalRecords(), 20);
}

TEST_F(HistoryUploadOfTenChannels, IgnoresThePaddingBehindTheRecords) {
  upload_.NextRequest();
  upload_.TakeBlock(Block(1, 10, 5));
  ASSERT_EQ(upload_.Count(), 1);
  EXPECT_EQ(buffer_.Record(0).PackedTime, 5U);
  EXPECT_EQ(buffer_.Record(0).Value[9], 5);
}

TEST_F(HistoryUploadOfTenChannels, TheLineMustGoQuietAfterABlockThatFollowsAnUnansweredRequest) {
  upload_.NextRequest();
  upload_.TakeFailure(false);
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  EXPECT_TRUE(upload_.MustGoQuiet());
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 11));
  EXPECT_FALSE(upload_.MustGoQuiet());
}

TEST_F(HistoryUploadOfTenChannels, ADamagedAnswerLeavesNothingToWaitFor) {
  upload_.NextRequest();
  upload_.TakeFailure(true);
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  EXPECT_FALSE(upload_.MustGoQuiet());
}

TEST_F(HistoryUploadOfTenChannels, ListensBehindACopyOnAGoodLineAndTakesTheTrueAnswer) {
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::Listen);
  EXPECT_EQ(upload_.Count(), 10);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::Listen);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 11)), Verdict::GoOn);
  EXPECT_EQ(upload_.Count(), 20);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
  EXPECT_EQ(upload_.TotalFailures(), 0);
}

TEST_F(HistoryUploadOfTenChannels, BelievesEqualBlocksOnAGoodLineWhenNothingFollows) {
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::Listen);
  EXPECT_FALSE(upload_.BelievesEqualBlocks());
  EXPECT_EQ(upload_.TakeSilence(), Verdict::GoOn);
  EXPECT_TRUE(upload_.BelievesEqualBlocks());
  EXPECT_FALSE(upload_.MustGoQuiet());
  EXPECT_EQ(upload_.Count(), 20);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
}

TEST_F(HistoryUploadOfTenChannels, AsksAgainWhenNoiseFollowsAnEqualBlock) {
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  EXPECT_EQ(upload_.TakeNoise(), Verdict::Doubtful);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 11)), Verdict::GoOn);
  EXPECT_EQ(upload_.Count(), 20);
}

/// Ten channels and one block, on a line on which the request for it was lost once.
class HistoryUploadInDoubt : public HistoryUploadOfTenChannels {
 protected:
  HistoryUploadInDoubt() {
    upload_.NextRequest();
    upload_.TakeFailure(false);
    upload_.NextRequest();
    upload_.TakeBlock(Block(10, 10, 1));
    upload_.NextRequest();
  }
};

TEST_F(HistoryUploadInDoubt, DoesNotStoreACopyOfTheLastBlockAsTheNextOne) {
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::Doubtful);
  EXPECT_EQ(upload_.Count(), 10);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 11)), Verdict::GoOn);
  EXPECT_TRUE(upload_.MustGoQuiet());
  EXPECT_EQ(upload_.Count(), 20);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
  EXPECT_EQ(upload_.TotalFailures(), 1);
}

TEST_F(HistoryUploadInDoubt, BelievesEqualBlocksThatTheLoggerInsistsOn) {
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  EXPECT_EQ(upload_.Count(), 20);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  EXPECT_EQ(upload_.Count(), 30);

  upload_.NextRequest();
  upload_.TakeFailure(false);
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 11));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 11)), Verdict::Doubtful);
}

TEST_F(HistoryUploadInDoubt, DoesNotStoreTheRepetitionOfTheBlockBeforeALostRequest) {
  upload_.TakeFailure(false);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::Repeated);
  EXPECT_EQ(upload_.Count(), 10);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 11)), Verdict::GoOn);
  EXPECT_EQ(upload_.Count(), 20);
}

TEST_F(HistoryUploadInDoubt, AsksOnceMoreForARepetitionBehindWhichTheLineWasNotQuiet) {
  upload_.TakeFailure(false);
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.TakeNoise();
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::Repeated);
  upload_.TakeNoise();
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Next);
}

TEST_F(HistoryUploadInDoubt, StoresAnEqualBlockBehindAReplyThatWasOnlyDamaged) {
  upload_.TakeFailure(true);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  EXPECT_EQ(upload_.Count(), 20);
}

TEST_F(HistoryUploadInDoubt, BeginsAnewWhenRecordsAreMissingAtTheEnd) {
  EXPECT_EQ(upload_.TakeBlock(Block(5, 10, 11)), Verdict::BegunAnew);
  EXPECT_EQ(upload_.Count(), 0);
  EXPECT_EQ(upload_.TimesBegunAnew(), 1);
  EXPECT_EQ(upload_.TotalFailures(), 1);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::First);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(5, 10, 11)), Verdict::Complete);
  EXPECT_TRUE(upload_.IsShort());
}

// The last block of what was thrown away, late, is not the first of the new one.
TEST_F(HistoryUploadInDoubt, DoubtsTheLastBlockAsTheAnswerToTheFirstRequestAnew) {
  upload_.TakeBlock(Block(5, 10, 11));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(5, 10, 11)), Verdict::Doubtful);
  EXPECT_EQ(upload_.NextRequest(), HistoryBlock::Again);
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 1)), Verdict::GoOn);
  EXPECT_EQ(upload_.Count(), 10);
}

TEST_F(HistoryUploadInDoubt, BeginsAnewWhenAnEqualBlockWasOneTooMany) {
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  upload_.TakeBlock(Block(10, 10, 1));
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(5, 10, 11)), Verdict::BegunAnew);
}

TEST_F(HistoryUploadInDoubt, IsCompleteWithWhatWasPromised) {
  EXPECT_EQ(upload_.TakeBlock(Block(10, 10, 11)), Verdict::GoOn);
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(0, 10, 0)), Verdict::Complete);
  EXPECT_FALSE(upload_.IsShort());
}

TEST_F(HistoryUploadOfTenChannels, IsCompleteWithLessOnAGoodLine) {
  upload_.NextRequest();
  EXPECT_EQ(upload_.TakeBlock(Block(7, 10, 1)), Verdict::Complete);
  EXPECT_TRUE(upload_.IsShort());
}

TEST(ShortUploadText, SaysHowManyOfHowMany) {
  EXPECT_EQ(ShortUploadText(5, 95), u"only 5 of 95 records received"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(ShortUploadText(5, 95), u"nur 5 von 95 Datensätzen erhalten"_s);
  SetTextLanguage(kLanguageEnglish);
}

TEST(HistoryUpload, BeginsWithAnEmptyBuffer) {
  const LinkState link = LinkWith(8, 2);
  HistoryBuffer buffer;
  buffer.Append(LiveSample{});
  const HistoryUpload upload(link, buffer, 5);
  EXPECT_EQ(buffer.Count(), 0);
  EXPECT_EQ(upload.TotalFailures(), 0);
}

TEST(HistoryUpload, EndsAtExactlyTwoHundredThousandRecords) {
  const LinkState link = LinkWith(8, 2);
  HistoryBuffer buffer;
  HistoryUpload upload(link, buffer, 200000);
  for (std::uint32_t block = 0; block < 19999; ++block) {
    upload.NextRequest();
    ASSERT_EQ(upload.TakeBlock(Block(10, 10, block * 10)), Verdict::GoOn);
  }
  EXPECT_EQ(upload.TakeBlock(Block(10, 10, 199990)), Verdict::BufferFull);
  EXPECT_EQ(buffer.Count(), 200000);
}

TEST(HistoryUpload, TheLastRecordThatFitsMayStandInTheMiddleOfABlock) {
  const LinkState link = LinkWith(1, 2);  // 10 bytes a record, 24 a block
  HistoryBuffer buffer;
  HistoryUpload upload(link, buffer, 300000);
  for (std::uint32_t block = 0; block < 8333; ++block) {
    upload.NextRequest();
    ASSERT_EQ(upload.TakeBlock(Block(24, 3, block * 24)), Verdict::GoOn);
  }
  upload.NextRequest();
  EXPECT_EQ(upload.TakeBlock(Block(24, 3, 199992)), Verdict::BufferFull);
  EXPECT_EQ(buffer.Count(), 200000);
  EXPECT_EQ(buffer.Record(199999).PackedTime, 199999U);
}

TEST(HistoryUpload, TakesElevenRecordsOfNineChannelsAlthoughABlockCannotHoldThem) {
  const LinkState link = LinkWith(7, 2);  // 22 bytes a record: 242 bytes would be needed
  HistoryBuffer buffer;
  HistoryUpload upload(link, buffer, 11);
  upload.NextRequest();
  EXPECT_EQ(upload.TakeBlock(Block(11, 9, 1)), Verdict::GoOn);
  ASSERT_EQ(buffer.Count(), 11);
  EXPECT_EQ(buffer.Record(9).PackedTime, 10U);
  EXPECT_EQ(buffer.Record(9).Value[8], 10);
  // The last word of the last record lies behind the end of the reply.
  EXPECT_FALSE(buffer.Record(10).HasTime);
  EXPECT_EQ(buffer.Record(10).Value[7], 11);
  EXPECT_EQ(buffer.Record(10).Value[8], 0);
}

TEST(HistoryUpload, TenRecordsOfNineChannelsAreAShortBlock) {
  const LinkState link = LinkWith(7, 2);
  HistoryBuffer buffer;
  HistoryUpload upload(link, buffer, 100);
  upload.NextRequest();
  EXPECT_EQ(upload.TakeBlock(Block(10, 9, 1)), Verdict::Complete);
}

TEST(HistoryUpload, TheBlockLimitFollowsTheRecordSize) {
  struct Row {
    int Analog;
    int Pulse;
    int Limit;
  };
  for (const Row row : {Row{1, 0, 40}, Row{2, 0, 30}, Row{2, 1, 24}, Row{3, 1, 20}, Row{5, 0, 17},
                        Row{6, 0, 15}, Row{7, 0, 13}, Row{8, 0, 12}, Row{8, 2, 10}}) {
    const LinkState link = LinkWith(row.Analog, row.Pulse);
    const int words = row.Analog + row.Pulse;
    HistoryBuffer buffer;
    HistoryUpload upload(link, buffer, 1);
    EXPECT_EQ(upload.TakeBlock(Block(row.Limit, words, 1)), Verdict::GoOn) << words;
    EXPECT_EQ(upload.Count(), row.Limit) << words;
    EXPECT_EQ(upload.TakeBlock(Block(row.Limit + 1, words, 90)), Verdict::Failed) << words;
  }
}

TEST(UploadEndText, NamesTheCountAndTheTotal) {
  EXPECT_EQ(UploadEndText(UploadEnd::Failed, 7, 25),
            u"Error During Retrieval.  Received 7 records of 25 records."_s);
  EXPECT_EQ(UploadEndText(UploadEnd::Cancelled, 10, 300000),
            u"Retrieve Cancelled by User.  Received 10 records of 300000 records."_s);
  EXPECT_EQ(UploadEndText(UploadEnd::BufferFull, 200000, 200000),
            u"History buffer full: upload terminated."_s);
  EXPECT_EQ(UploadEndText(UploadEnd::Complete, 1, 1), u""_s);
}

TEST(UploadEndText, IsTheSameForAnErrorAndACancelInGerman) {
  SetTextLanguage(kLanguageGerman);
  const QString text = u"Abfrage durch Anwender abgebrochen. 7 von 25 Datensätzen erhalten."_s;
  EXPECT_EQ(UploadEndText(UploadEnd::Failed, 7, 25), text);
  EXPECT_EQ(UploadEndText(UploadEnd::Cancelled, 7, 25), text);
  SetTextLanguage(kLanguageEnglish);
}

}  // namespace
}  // namespace tessmar
