// The rule of the series on small examples, written out by hand.

#include "archive/LoggerSeries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SeriesRig.h"

namespace tessmar {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The series as text: "|" where records may be missing, "?" where the overlap is unsure, "!" behind
// a record that one of the uploads lacks.
std::string Text(const std::vector<PlainUpload>& uploads) {
  const std::vector<SeriesRecord> series = Joined(uploads);
  const std::vector<std::uint32_t> numbers = Numbers(uploads, series);
  std::string text;
  for (std::size_t i = 0; i < series.size(); ++i) {
    if (i > 0) text += ' ';
    if (series[i].AfterSeam && i > 0) text += "| ";
    if (series[i].OverlapUnsure) text += "? ";
    text += std::to_string(numbers[i]);
    if (series[i].Disputed) text += '!';
  }
  return text;
}

TEST(LoggerSeries, OfNothingIsEmpty) {
  EXPECT_THAT(JoinUploads({}).Records, IsEmpty());
  EXPECT_THAT(Joined({{}, {}}), IsEmpty());
}

TEST(LoggerSeries, OfOneUploadIsTheUpload) {
  EXPECT_EQ(Text({{{10, 12, 14}}}), "10 12 14");
}

TEST(LoggerSeries, KeepsRepetitionsWithinAnUpload) {
  EXPECT_EQ(Text({{{10, 10, 12, 10, 10}}}), "10 10 12 10 10");
}

TEST(LoggerSeries, TakesTheSameUploadOnce) {
  EXPECT_EQ(Text({{{10, 12, 14}}, {{10, 12, 14}}, {{10, 12, 14}}}), "10 12 14");
}

TEST(LoggerSeries, GoesOnWhereTheLastUploadEnded) {
  EXPECT_EQ(Text({{{10, 12, 14}}, {{10, 12, 14, 16, 18}}}), "10 12 14 16 18");
}

TEST(LoggerSeries, GoesOnWhenTheOldestAreGone) {
  EXPECT_EQ(Text({{{10, 12, 14, 16}}, {{14, 16, 18, 20}}}), "10 12 14 16 18 20");
}

TEST(LoggerSeries, TellsWhereRecordsMayBeMissing) {
  EXPECT_EQ(Text({{{10, 12}}, {{16, 18}}}), "10 12 | 16 18");
}

TEST(LoggerSeries, AnUploadThatWasBrokenOffAddsNothing) {
  EXPECT_EQ(Text({{{10, 12, 14, 16}}, {.Records = {12, 14}, .Complete = false}}), "10 12 14 16");
}

TEST(LoggerSeries, AnUploadThatWasBrokenOffIsGoneOnWith) {
  EXPECT_EQ(Text({{.Records = {10, 12}, .Complete = false}, {{10, 12, 14, 16}}}), "10 12 14 16");
}

TEST(LoggerSeries, AClockSetBackKeepsTheLoggersOrder) {
  EXPECT_EQ(Text({{{10, 12, 14, 11, 13}}, {{14, 11, 13, 15, 17}}}), "10 12 14 11 13 15 17");
}

TEST(LoggerSeries, TheSameTimesWithOtherValuesAreOtherRecords) {
  // 10 and 11 share the stamp, and so on.
  EXPECT_EQ(Text({{{10, 12, 14}}, {{11, 13, 15}}}), "10 12 14 | 11 13 15");
}

TEST(LoggerSeries, FastLoggingKeepsEachOfItsEqualRecords) {
  EXPECT_EQ(Text({{{10, 10, 10, 12, 12, 12, 14}}, {{12, 12, 14, 14, 14, 16}}}),
            "10 10 10 12 12 12 14 14 14 16");
}

TEST(LoggerSeries, SaysWhereAnOverlapOfEqualRecordsIsUnsure) {
  // Three of them, four or five? The longest overlap is taken, and said.
  EXPECT_EQ(Text({{{10, 12, 12, 12}}, {{12, 12, 14}}}), "10 12 12 12 ? 14");
}

TEST(LoggerSeries, WhereTwoUploadsDisagreeBothStayAndTheLengthierGoesOn) {
  EXPECT_EQ(Text({{{10, 12, 14, 16, 18}}, {{10, 12, 15, 16, 18, 20}}}), "10 12 14! 15! 16 18 20");
  EXPECT_EQ(Text({{{10, 12, 14, 17}}, {{10, 12, 14, 16, 18, 20}}}), "10 12 14 17! 16 18 20");
  EXPECT_EQ(Text({{{10, 12, 14, 16, 18}}, {.Records = {10, 12, 15}, .Complete = false}}),
            "10 12 15! 14 16 18");
  EXPECT_EQ(Text({{{10, 12, 14, 16, 18}}, {{13, 14, 16, 18, 20}}}), "10 12 13! 14 16 18 20");
}

TEST(LoggerSeries, ARecordThatOneUploadLacksStaysAndIsMarked) {
  EXPECT_EQ(Text({{{10, 12, 14, 16, 18}}, {{10, 12, 16, 18, 20}}}), "10 12 14! 16 18 20");
  EXPECT_EQ(Text({{{10, 12, 16, 18}}, {{10, 12, 14, 16, 18, 20}}}), "10 12 14! 16 18 20");
}

TEST(LoggerSeries, AnImageFillsTheHoleBetweenTwoUploads) {
  EXPECT_EQ(Text({{{10, 12}}, {{18, 20}}, {.Records = {12, 14, 16, 18}, .Undated = true}}),
            "10 12 14 16 18 20");
}

TEST(LoggerSeries, AnImageOfOlderRecordsGoesBeforeThem) {
  EXPECT_EQ(Text({{{14, 16, 18}}, {.Records = {10, 12, 14, 16}, .Undated = true}}),
            "10 12 14 16 18");
  EXPECT_EQ(Text({{{14, 16}}, {{30, 32}}, {.Records = {20, 22}, .Undated = true}}),
            "14 16 | 20 22 | 30 32");
  EXPECT_EQ(Text({{{14, 16}}, {.Records = {4, 6}, .Undated = true}}), "4 6 | 14 16");
  EXPECT_EQ(Text({{{14, 16}}, {.Records = {40, 42}, .Undated = true}}), "14 16 | 40 42");
}

TEST(LoggerSeries, UploadsWithAClearingBetweenShareNothing) {
  EXPECT_EQ(Text({{.Records = {10, 12, 14}, .Era = 0}, {.Records = {10, 12, 14}, .Era = 1}}),
            "10 12 14 | 10 12 14");
  EXPECT_EQ(Text({{.Records = {10, 12, 14}, .Era = 0},
                  {.Records = {10, 12, 14}, .Era = 1},
                  {.Records = {10, 12, 14, 16}, .Era = 1}}),
            "10 12 14 | 10 12 14 16");
}

TEST(LoggerSeries, AFewRecordsThatHappenToBeAlikeMakeNoOverlap) {
  EXPECT_EQ(Text({{{10, 12, 14, 16, 18}}, {{20, 22, 14, 26, 28}}}),
            "10 12 14 16 18 | 20 22 14 26 28");
}

TEST(LoggerSeries, RecordsOfAnotherShapeAreOthers) {
  const std::vector<std::uint8_t> narrow = {1, 0, 0, 0, 5, 0, 2, 0, 0, 0, 5, 0};
  const std::vector<std::uint8_t> wide = {1, 0, 0, 0, 5, 0, 0, 0, 2, 0, 0, 0, 5, 0, 0, 0};
  const std::vector<SeriesUpload> uploads = {{.Records = narrow, .RecordSize = 6},
                                             {.Records = wide, .RecordSize = 8}};
  EXPECT_THAT(JoinUploads(uploads).Records,
              ElementsAre(SeriesRecord{0, 0, false, true}, SeriesRecord{0, 1},
                          SeriesRecord{1, 0, false, true}, SeriesRecord{1, 1}));
}

TEST(LoggerSeries, ATornRecordAtTheEndIsLeftOut) {
  const std::vector<std::uint8_t> bytes = {1, 0, 0, 0, 5, 0, 2, 0, 0};
  EXPECT_THAT(JoinUploads(std::vector<SeriesUpload>{{.Records = bytes, .RecordSize = 6}}).Records,
              ElementsAre(SeriesRecord{0, 0, false, true}));
  EXPECT_THAT(JoinUploads(std::vector<SeriesUpload>{{.Records = bytes, .RecordSize = 0}}).Records,
              IsEmpty());
}

TEST(LoggerSeries, SaysWhereEachUploadEnds) {
  const std::vector<PlainUpload> uploads = {{{10, 12}}, {}, {{12, 14, 16}}, {{12, 14}, false}};
  EXPECT_THAT(JoinUploads(UploadBytes(uploads).Uploads()).UploadEnds, ElementsAre(2, -1, 4, 3));
}

TEST(LoggerSeries, GivesTheUploadThatHadARecordFirst) {
  EXPECT_THAT(Joined({{{10, 12}}, {{12, 14}}}),
              ElementsAre(SeriesRecord{0, 0, false, true}, SeriesRecord{0, 1}, SeriesRecord{1, 1}));
}

}  // namespace
}  // namespace tessmar
