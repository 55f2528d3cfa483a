#include "measure/Sample.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "base/Fault.h"

namespace tessmar {
namespace {

using Bytes = std::vector<std::uint8_t>;

const SystemLocale kAmerican{QLocale(QLocale::English, QLocale::UnitedStates)};
const SystemLocale kGerman{QLocale(QLocale::German, QLocale::Germany)};

LiveSample Stamped(std::uint32_t packed) {
  LiveSample sample;
  sample.PackedTime = packed;
  sample.HasTime = true;
  return sample;
}

// A stamp from its fields; monthIndex counts from January 2000.
std::uint32_t Pack(std::uint32_t monthIndex, std::uint32_t day, std::uint32_t hour,
                   std::uint32_t minute, std::uint32_t second) {
  return monthIndex << 22 | day << 17 | hour << 12 | minute << 6 | second;
}

// A 24-byte reply whose byte at offset i is i, so that each byte tells where it came from.
Bytes NumberedReply() {
  Bytes reply(24);
  std::iota(reply.begin(), reply.end(), std::uint8_t{0});
  return reply;
}

LinkState Trapping() {
  LinkState link;
  link.TrapErrors = true;
  return link;
}

TEST(PackedTimeStamp, UnpacksTheSixFields) {
  const TimeStampFields fields = UnpackTimeStamp(0x20F4FBDD);
  EXPECT_EQ(fields.Year, 2010);
  EXPECT_EQ(fields.Month, 12);
  EXPECT_EQ(fields.Day, 26);
  EXPECT_EQ(fields.Hour, 15);
  EXPECT_EQ(fields.Minute, 47);
  EXPECT_EQ(fields.Second, 29);
}

TEST(PackedTimeStamp, MonthIndexRunsFromJanuary2000ToApril2085) {
  const TimeStampFields first = UnpackTimeStamp(Pack(0, 1, 0, 0, 0));
  EXPECT_EQ(first.Year, 2000);
  EXPECT_EQ(first.Month, 1);
  const TimeStampFields last = UnpackTimeStamp(Pack(1023, 1, 0, 0, 0));
  EXPECT_EQ(last.Year, 2085);
  EXPECT_EQ(last.Month, 4);
}

TEST(DecodeRecord, ReadsTheStampDdFbF420As26December2010) {
  const Bytes bytes{0xDD, 0xFB, 0xF4, 0x20};
  LiveSample record;
  DecodeRecord(Trapping(), bytes, 0, 0, record);
  EXPECT_TRUE(record.HasTime);
  EXPECT_EQ(TimeText(record, kAmerican), "12/26/10 15:47:29");
}

TEST(DecodeRecord, NeverRejectsAFieldOutOfRange) {
  const Bytes bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  LiveSample record;
  DecodeRecord(Trapping(), bytes, 0, 1, record);
  EXPECT_EQ(TimeText(record, kAmerican), "5/1/85 31:63:63");
  EXPECT_EQ(record.Value[0], 65535);
}

TEST(DecodeRecord, ReadsWordsLowByteFirstFromAnOffset) {
  const Bytes bytes{9, 0xDD, 0xFB, 0xF4, 0x20, 0x34, 0x12, 0xFF, 0xFF, 0x00, 0x80, 7};
  LiveSample record;
  DecodeRecord(Trapping(), bytes, 1, 3, record);
  EXPECT_EQ(record.PackedTime, 0x20F4FBDDU);
  EXPECT_EQ(record.Value[0], 0x1234);
  EXPECT_EQ(record.Value[1], 65535);
  EXPECT_EQ(record.Value[2], 0x8000);
  EXPECT_EQ(record.Value[3], 0);
}

TEST(DecodeRecord, LeavesValuesPastTheWordCountAlone) {
  LiveSample record = LiveSample::NoSample();
  DecodeRecord(Trapping(), Bytes{0xDD, 0xFB, 0xF4, 0x20, 1, 0, 2, 0}, 0, 2, record);
  EXPECT_EQ(record.Value, (std::array<std::int32_t, 10>{1, 2, -1, -1, -1, -1, -1, -1, -1, -1}));
}

TEST(DecodeRecord, EndsTooFewBytesWithoutATimeAndWithTheValuesSoFar) {
  LiveSample record = Stamped(0x20F4FBDD);
  record.Value.fill(77);
  DecodeRecord(Trapping(), Bytes{0xDD, 0xFB, 0xF4, 0x20, 1, 2, 3}, 0, 3, record);
  EXPECT_FALSE(record.HasTime);
  EXPECT_EQ(TimeText(record, kAmerican), "");
  EXPECT_EQ(record.Value, (std::array<std::int32_t, 10>{0x0201, 0, 0, 77, 77, 77, 77, 77, 77, 77}));
}

TEST(DecodeRecord, EndsAtATornTimeStamp) {
  LiveSample record = Stamped(0x20F4FBDD);
  DecodeRecord(Trapping(), Bytes{0xDD, 0xFB, 0xF4}, 0, 1, record);
  EXPECT_FALSE(record.HasTime);
  EXPECT_EQ(record.Value[0], 0);
}

TEST(DecodeRecord, EndsAtAnOffsetOutsideTheBytes) {
  const Bytes bytes(24);
  LiveSample record;
  DecodeRecord(Trapping(), bytes, -1, 1, record);
  EXPECT_FALSE(record.HasTime);
  DecodeRecord(Trapping(), bytes, 24, 1, record);
  EXPECT_FALSE(record.HasTime);
}

TEST(DecodeRecord, MoreThanTenWordsAreOutOfRange) {
  LiveSample record = Stamped(0x20F4FBDD);
  record.Value.fill(77);
  DecodeRecord(Trapping(), Bytes(40), 0, 11, record);
  EXPECT_FALSE(record.HasTime);
  EXPECT_EQ(record.Value, (std::array<std::int32_t, 10>{}));
}

TEST(DecodeRecord, LetsFaultsThroughWhenTheyAreNotTrapped) {
  LinkState link;
  link.TrapErrors = false;
  LiveSample record;
  EXPECT_THROW(DecodeRecord(link, Bytes(5), 0, 1, record), RangeFault);
  EXPECT_THROW(DecodeRecord(link, Bytes(40), 0, 11, record), RangeFault);
}

TEST(TimeText, IsEmptyForTheNoSampleMarker) {
  const LiveSample marker = LiveSample::NoSample();
  EXPECT_EQ(TimeText(marker, kAmerican), "");
  EXPECT_EQ(marker.Value, (std::array<std::int32_t, 10>{-1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
}

TEST(TimeText, ShortensTheGermanYear) {
  EXPECT_EQ(TimeText(Stamped(0x20F4FBDD), kGerman), "26.12.10 15:47:29");
}

TEST(TimeText, WritesTwoDigitsOf24Hours) {
  EXPECT_EQ(TimeText(Stamped(Pack(131, 2, 3, 4, 5)), kAmerican), "12/2/10 03:04:05");
  EXPECT_EQ(TimeText(Stamped(Pack(131, 2, 23, 59, 59)), kAmerican), "12/2/10 23:59:59");
}

TEST(TimeText, MonthIndexZeroIsJanuary2000AndTheLargestApril2085) {
  EXPECT_EQ(TimeText(Stamped(Pack(0, 1, 0, 0, 0)), kAmerican), "1/1/00 00:00:00");
  EXPECT_EQ(TimeText(Stamped(Pack(1023, 30, 0, 0, 0)), kAmerican), "4/30/85 00:00:00");
}

TEST(TimeText, CarriesADayThatTheMonthDoesNotHave) {
  // 31 February 2001, 29 February 2001 and day 0 of March 2000 and 2001.
  EXPECT_EQ(TimeText(Stamped(Pack(13, 31, 0, 0, 0)), kAmerican), "3/3/01 00:00:00");
  EXPECT_EQ(TimeText(Stamped(Pack(13, 29, 0, 0, 0)), kAmerican), "3/1/01 00:00:00");
  EXPECT_EQ(TimeText(Stamped(Pack(2, 0, 0, 0, 0)), kAmerican), "2/29/00 00:00:00");
  EXPECT_EQ(TimeText(Stamped(Pack(14, 0, 0, 0, 0)), kAmerican), "2/28/01 00:00:00");
}

TEST(TimeText, DayZeroOfJanuaryIsTheLastDayOfTheYearBefore) {
  EXPECT_EQ(TimeText(Stamped(Pack(0, 0, 1, 2, 3)), kAmerican), "12/31/99 01:02:03");
}

TEST(TimeTextMaker, MakesTheSameTextsAsTimeText) {
  TimeTextMaker maker(kGerman);
  // The same day twice, another day, an erased stamp, no time at all, and the first day again.
  for (const std::uint32_t packed :
       {Pack(0, 0, 0, 0, 0), Pack(131, 26, 15, 47, 29), Pack(131, 26, 15, 47, 30),
        Pack(131, 27, 0, 0, 0), Pack(132, 27, 0, 0, 0), 0xFFFFFFFFU, Pack(131, 26, 1, 1, 1)}) {
    EXPECT_EQ(maker.Text(Stamped(packed)), TimeText(Stamped(packed), kGerman));
    EXPECT_EQ(maker.Text(LiveSample::NoSample()), "");
  }
}

TEST(RecordSize, IsFourBytesOfTimeAndTwoForEachChannel) {
  EXPECT_EQ(RecordSize(1, 0), 6);
  EXPECT_EQ(RecordSize(8, 2), 24);
  EXPECT_EQ(RecordSize(0, 2), 8);
}

TEST(RecordsPerArea, RoundsToTheNearestForSizesThatDoNotDivide240) {
  struct Row {
    int Size;
    int Records;
  };
  for (const Row row : {Row{6, 40}, Row{8, 30}, Row{10, 24}, Row{12, 20}, Row{14, 17}, Row{16, 15},
                        Row{18, 13}, Row{20, 12}, Row{22, 11}, Row{24, 10}})
    EXPECT_EQ(RecordsPerArea(row.Size), row.Records) << row.Size;
  EXPECT_EQ(RecordsPerArea(0), 0);
}

TEST(CompactSampleReply, WithOneChannelAndOnePulseCopiesPulseWord0ToOffset6AndIgnoresSlot7) {
  Bytes expected = NumberedReply();
  expected[6] = 20;
  expected[7] = 21;
  Bytes reply = NumberedReply();
  CompactSampleReply(reply, 1, 1);
  EXPECT_EQ(reply, expected);
}

TEST(CompactSampleReply, WithEightChannelsLeavesTheReplyAlone) {
  for (const int pulses : {0, 1, 2}) {
    Bytes reply = NumberedReply();
    CompactSampleReply(reply, 8, pulses);
    EXPECT_EQ(reply, NumberedReply()) << pulses;
  }
}

TEST(CompactSampleReply, MovesSlot7AndThePulseWordsUpBehindTheChannelsInUse) {
  Bytes expected = NumberedReply();
  expected[8] = 18;  // Channel 2, the last of three.
  expected[9] = 19;
  expected[10] = 20;
  expected[11] = 21;
  expected[12] = 22;
  expected[13] = 23;
  Bytes reply = NumberedReply();
  CompactSampleReply(reply, 3, 2);
  EXPECT_EQ(reply, expected);
}

TEST(CompactSampleReply, WithoutPulseChannelsMovesSlot7Alone) {
  Bytes expected = NumberedReply();
  expected[14] = 18;
  expected[15] = 19;
  Bytes reply = NumberedReply();
  CompactSampleReply(reply, 6, 0);
  EXPECT_EQ(reply, expected);
}

TEST(CompactSampleReply, WithSevenChannelsAndTwoPulsesShowsPulseWord1InBothFields) {
  Bytes expected = NumberedReply();
  expected[16] = 18;
  expected[17] = 19;
  expected[18] = 20;
  expected[19] = 21;
  expected[20] = 22;
  expected[21] = 23;
  Bytes reply = NumberedReply();
  CompactSampleReply(reply, 7, 2);
  EXPECT_EQ(reply, expected);

  LiveSample sample;
  DecodeRecord(Trapping(), reply, 0, 10, sample);
  EXPECT_EQ(sample.Value[7], 0x1514);
  EXPECT_EQ(sample.Value[8], 0x1716);
  EXPECT_EQ(sample.Value[9], 0x1716);
}

TEST(CompactSampleReply, KeepsThePulseWordsWhereTheLiveScreenReadsThem) {
  Bytes reply = NumberedReply();
  CompactSampleReply(reply, 4, 2);
  LiveSample sample;
  DecodeRecord(Trapping(), reply, 0, 10, sample);
  EXPECT_EQ(sample.Value[3], 0x1312);
  EXPECT_EQ(sample.Value[4], 0x1514);
  EXPECT_EQ(sample.Value[5], 0x1716);
  EXPECT_EQ(sample.Value[8], 0x1514);
  EXPECT_EQ(sample.Value[9], 0x1716);
}

TEST(CompactSampleReply, ThrowsForAReplyThatIsTooShort) {
  Bytes reply(19);
  EXPECT_THROW(CompactSampleReply(reply, 3, 0), RangeFault);
  Bytes longer(23);
  EXPECT_THROW(CompactSampleReply(longer, 1, 2), RangeFault);
}

TEST(LiveRing, HoldsTheFiveLatestNewestFirst) {
  LiveRing ring;
  for (int i = 1; i <= 7; ++i) {
    LiveSample sample;
    sample.Value[0] = i;
    ring.Push(sample);
    EXPECT_EQ(ring.Count, std::min(i, 5));
  }
  for (int i = 0; i < 5; ++i) EXPECT_EQ(ring.Samples[static_cast<std::size_t>(i)].Value[0], 7 - i);
}

}  // namespace
}  // namespace tessmar
