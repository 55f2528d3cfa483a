#include <gmock/gmock.h>

#include "link/CommandsBench.h"

namespace tessmar::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

const Bytes kAck{0xFA};
const Bytes kAckDone{0xFA, 0xFC};

TEST(ClockText, HasTwoDigitsInEveryField) {
  CommandsBench bench;
  bench.Now.Present = QDateTime(QDate(2010, 12, 27), QTime(15, 5, 12));
  EXPECT_EQ(bench.Commands.ClockText(), QStringLiteral("12/27/10 15:05:12"));
  bench.Now.Present = QDateTime(QDate(2105, 1, 2), QTime(0, 0, 3));
  EXPECT_EQ(bench.Commands.ClockText(), QStringLiteral("01/02/05 00:00:03"));
}

TEST(SetLoggerTime, SendsTheFieldsInBcd) {
  CommandsBench bench;
  bench.Answering(kAckDone);
  EXPECT_TRUE(bench.Commands.SetLoggerTime(QStringLiteral("12/27/10 15:05:12")));
  EXPECT_THAT(bench.Sent(), ElementsAre(0x01, 0x12, 0x05, 0x15, 0x01, 0x27, 0x12, 0x10));
}

TEST(SetLoggerTime, ReducesTheYearToTwoDigits) {
  CommandsBench bench;
  bench.Answering(kAckDone);
  EXPECT_TRUE(bench.Commands.SetLoggerTime(QStringLiteral("2/3/2011 4:05:06")));
  EXPECT_THAT(bench.Sent(), ElementsAre(0x01, 0x06, 0x05, 0x04, 0x01, 0x03, 0x02, 0x11));
}

TEST(SetLoggerTime, TakesTwelveHourTexts) {
  const struct {
    const char* Text;
    std::uint8_t Hour;
  } rows[] = {{"1/2/10 3:04:05 PM", 0x15},
              {"1/2/10 12:04:05 PM", 0x12},
              {"1/2/10 3:04:05 AM", 0x03},
              {"1/2/10 12:04:05 AM", 0x00},
              {"1/2/10 11:04:05 PM", 0x23}};
  for (const auto& row : rows) {
    CommandsBench bench;
    bench.Answering(kAckDone);
    EXPECT_TRUE(bench.Commands.SetLoggerTime(QString::fromLatin1(row.Text))) << row.Text;
    EXPECT_THAT(bench.Sent(), ElementsAre(0x01, 0x05, 0x04, row.Hour, 0x01, 0x02, 0x01, 0x10))
        << row.Text;
  }
}

TEST(SetLoggerTime, IsFalseForATextThatIsNoTimeAndSendsNothing) {
  CommandsBench bench;
  EXPECT_FALSE(bench.Commands.SetLoggerTime(QStringLiteral("27.12.10 15:05:12")));
  EXPECT_FALSE(bench.Commands.SetLoggerTime(QString()));
  EXPECT_TRUE(bench.Port.Written.empty());
  bench.Link.TrapErrors = false;
  EXPECT_THROW(bench.Commands.SetLoggerTime(QString()), ConversionFault);
}

TEST(SetLoggerTime, IsFalseWithoutTheDoneByte) {
  CommandsBench bench;
  bench.Answering({0xFA, 0xFD});
  EXPECT_FALSE(bench.Commands.SetLoggerTime(QStringLiteral("12/27/10 15:05:12")));
}

QString LoggerTime(const Bytes& clock, const QLocale& locale = QLocale(QLocale::English)) {
  CommandsBench bench(locale);
  bench.Answering(kAck + FrameOf(clock));
  return bench.Commands.GetLoggerTime();
}

TEST(GetLoggerTime, FollowsTheLocaleWithATwoDigitYear) {
  const Bytes clock{0x12, 0x05, 0x15, 0x02, 0x27, 0x12, 0x10};
  EXPECT_EQ(LoggerTime(clock), QStringLiteral("12/27/10 15:05:12"));
  EXPECT_EQ(LoggerTime(clock, QLocale(QLocale::German)), QStringLiteral("27.12.10 15:05:12"));
}

TEST(GetLoggerTime, KeepsTwentyFourHourTimes) {
  EXPECT_EQ(LoggerTime({0x00, 0x00, 0x00, 0x01, 0x02, 0x01, 0x10}),
            QStringLiteral("1/2/10 00:00:00"));
  EXPECT_EQ(LoggerTime({0x59, 0x59, 0x23, 0x01, 0x02, 0x01, 0x10}),
            QStringLiteral("1/2/10 23:59:59"));
}

TEST(GetLoggerTime, TakesTwelveHourTimes) {
  const struct {
    std::uint8_t Hours;
    const char* Text;
  } rows[] = {
      {0x52, "00"},  // 12 AM
      {0x41, "01"},  // 1 AM
      {0x72, "12"},  // 12 PM
      {0x61, "13"},  // 1 PM
      {0x67, "19"},  // 7 PM
      {0x68, "1:"},  // 8 PM
      {0x69, "1;"},  // 9 PM
      {0x70, "22"},  // 10 PM
      {0x71, "23"},  // 11 PM
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LoggerTime({0x00, 0x30, row.Hours, 0x01, 0x02, 0x01, 0x10}),
              QStringLiteral("1/2/10 %1:30:00").arg(QLatin1StringView(row.Text)));
  }
}

TEST(GetLoggerTime, CarriesADayThatTheMonthDoesNotHave) {
  EXPECT_EQ(LoggerTime({0x00, 0x00, 0x10, 0x01, 0x31, 0x02, 0x11}),
            QStringLiteral("3/3/11 10:00:00"));
}

// The computer's clock stands at 15:05:12 on 27 December 2010.
std::optional<std::int32_t> OffsetOf(const Bytes& clock) {
  CommandsBench bench;
  bench.Link.ClockOffsetS = 99;
  bench.Answering(kAck + FrameOf(clock));
  bench.Commands.GetLoggerTime();
  return bench.Link.ClockOffsetS;
}

TEST(GetLoggerTime, TellsHowFarTheLoggersClockIsAhead) {
  EXPECT_EQ(OffsetOf({0x12, 0x05, 0x15, 0x02, 0x27, 0x12, 0x10}), 0);
  EXPECT_EQ(OffsetOf({0x24, 0x05, 0x15, 0x02, 0x27, 0x12, 0x10}), 12);
  EXPECT_EQ(OffsetOf({0x00, 0x05, 0x15, 0x02, 0x27, 0x12, 0x10}), -12);
  EXPECT_EQ(OffsetOf({0x12, 0x05, 0x16, 0x02, 0x28, 0x12, 0x10}), 25 * 3600);
  // 8 PM of a logger that keeps twelve hours.
  EXPECT_EQ(OffsetOf({0x12, 0x05, 0x68, 0x02, 0x27, 0x12, 0x10}), 5 * 3600);
}

TEST(GetLoggerTime, KnowsNoOffsetOfATimeThatCannotBe) {
  EXPECT_EQ(OffsetOf({0x12, 0x65, 0x15, 0x02, 0x27, 0x12, 0x10}), std::nullopt);
}

TEST(GetLoggerTime, OnADeadLineLeavesTheOffsetAsItWas) {
  CommandsBench bench;
  bench.Link.ClockOffsetS = 99;
  bench.Commands.GetLoggerTime();
  EXPECT_EQ(bench.Link.ClockOffsetS, 99);
}

TEST(ReadClock, GivesWhatTheClockShows) {
  const auto read = [](const Bytes& clock) {
    CommandsBench bench;
    bench.Answering(kAck + FrameOf(clock));
    return bench.Commands.ReadClock();
  };
  const QDateTime afternoon(QDate(2010, 12, 27), QTime(20, 5, 12), Qt::UTC);
  EXPECT_EQ(read({0x12, 0x05, 0x20, 0x02, 0x27, 0x12, 0x10}), afternoon);
  EXPECT_EQ(read({0x12, 0x05, 0x68, 0x02, 0x27, 0x12, 0x10}), afternoon) << "8 PM of twelve hours";
  EXPECT_EQ(read({0x12, 0x65, 0x15, 0x02, 0x27, 0x12, 0x10}), std::nullopt);
  CommandsBench dead;
  EXPECT_EQ(dead.Commands.ReadClock(), std::nullopt);
}

TEST(GetLoggerTime, OnADeadLineIsThePlaceholderAfterOneTransmission) {
  CommandsBench bench;
  EXPECT_EQ(bench.Commands.GetLoggerTime(), QStringLiteral("00/00/00 00:00:00"));
  EXPECT_EQ(bench.Port.Writes.size(), 1u);
}

TEST(GetLoggerTime, IsThePlaceholderForABrokenReply) {
  CommandsBench bench;
  bench.Answering({0xFA, 0xF8, 0x09, 0x00});
  EXPECT_EQ(bench.Commands.GetLoggerTime(), QStringLiteral("00/00/00 00:00:00"));
}

TEST(GetLoggerStatus, ReadsARecordCountOfThreeBytes) {
  CommandsBench bench;
  bench.Answering(kAck + FrameOf({0x40, 0x0D, 0x03, 0x80, 0x00}));
  EXPECT_TRUE(bench.Commands.GetLoggerStatus());
  EXPECT_EQ(bench.Link.RecordCount, 200000);
  EXPECT_EQ(bench.Link.LoggerStatusWord, 0x0080);
}

TEST(GetLoggerStatus, NamesTheLoggingState) {
  const struct {
    Bytes Word;
    const char* Text;
  } rows[] = {
      {{0x80, 0x00}, "Logging"},
      {{0x00, 0x00}, "Not Logging"},
      {{0x80, 0x08}, "Waiting for Alarm 1"},
      {{0x80, 0x20}, "Stopped by Alarm 2"},
      {{0x80, 0x10}, "Logging Until Alarm 2"},
      {{0x80, 0x38}, "Waiting for Alarm 1"},
      {{0x80, 0x30}, "Stopped by Alarm 2"},
      {{0x7F, 0xC7}, "Not Logging"},
  };
  for (const auto& row : rows) {
    CommandsBench bench;
    bench.Answering(kAck + FrameOf({0, 0, 0, row.Word[0], row.Word[1]}));
    EXPECT_TRUE(bench.Commands.GetLoggerStatus());
    EXPECT_EQ(bench.Link.LoggingStateText, QLatin1StringView(row.Text));
  }
}

TEST(GetLoggerStatus, SaysNotLoggingWithBits11And13ButBit7Clear) {
  CommandsBench bench;
  bench.Answering(kAck + FrameOf({0, 0, 0, 0x00, 0x28}));
  EXPECT_TRUE(bench.Commands.GetLoggerStatus());
  EXPECT_EQ(bench.Link.LoggingStateText, QStringLiteral("Not Logging"));
}

TEST(GetLoggerStatus, LeavesEverythingOnFailure) {
  CommandsBench bench;
  bench.Link.RecordCount = 7;
  bench.Link.LoggerStatusWord = 9;
  bench.Link.LoggingStateText = QStringLiteral("x");
  EXPECT_FALSE(bench.Commands.GetLoggerStatus());
  EXPECT_EQ(bench.Port.Writes.size(), 3u);
  EXPECT_EQ(bench.Link.RecordCount, 7);
  EXPECT_EQ(bench.Link.LoggerStatusWord, 9);
  EXPECT_EQ(bench.Link.LoggingStateText, QStringLiteral("x"));
}

TEST(GetLoggerVersion, ReadsTheFields) {
  CommandsBench bench;
  bench.Answering(kAck + FrameOf({0x21, 2, 1, 1, 220, 9, 9, 9}));
  EXPECT_TRUE(bench.Commands.GetLoggerVersion());
  EXPECT_EQ(bench.Link.FirmwareVersion, 0x21);
  EXPECT_EQ(bench.Link.AnalogChannelCount, 2);
  EXPECT_EQ(bench.Link.PulseChannelCount, 1);
  EXPECT_TRUE(bench.Link.SampleOnDemandSupported);
  EXPECT_EQ(bench.Link.LoggerModelCode, kRelayModelCode);
}

TEST(GetLoggerVersion, TakesTheLowestAndHighestChannelCounts) {
  for (const Bytes& counts : {Bytes{1, 0}, Bytes{8, 2}}) {
    CommandsBench bench;
    bench.Answering(kAck + FrameOf({0x21, counts[0], counts[1], 0, 0, 0, 0, 0}));
    EXPECT_TRUE(bench.Commands.GetLoggerVersion());
    EXPECT_EQ(bench.Link.AnalogChannelCount, counts[0]);
    EXPECT_EQ(bench.Link.PulseChannelCount, counts[1]);
    EXPECT_FALSE(bench.Link.SampleOnDemandSupported);
  }
}

TEST(GetLoggerVersion, KeepsTheEarlierCountsForImpossibleOnesButTakesTheFirmware) {
  for (const Bytes& counts : {Bytes{0, 0}, Bytes{9, 0}, Bytes{255, 2}, Bytes{8, 3}}) {
    CommandsBench bench;
    bench.Link.AnalogChannelCount = 8;
    bench.Link.PulseChannelCount = 2;
    bench.Answering(kAck + FrameOf({0x21, counts[0], counts[1], 1, 220, 0, 0, 0}));
    EXPECT_FALSE(bench.Commands.GetLoggerVersion());
    EXPECT_EQ(bench.Link.FirmwareVersion, 0x21);
    EXPECT_EQ(bench.Link.AnalogChannelCount, 8);
    EXPECT_EQ(bench.Link.PulseChannelCount, 2);
    EXPECT_FALSE(bench.Link.SampleOnDemandSupported);
    EXPECT_EQ(bench.Link.LoggerModelCode, 0);
  }
}

TEST(DestructiveCommands, CarryTheirGuardBytesAndWantTheDoneByte) {
  const struct {
    bool (LoggerCommands::*Command)();
    Bytes Frame;
  } rows[] = {
      {&LoggerCommands::ClearHistory, {0xF8, 0x05, 0x04, 0xA4, 0x4A, 0xBA, 0xF6, 0xF9}},
      {&LoggerCommands::CommitConfiguration, {0xF8, 0x05, 0x0B, 0xAB, 0xBA, 0x8F, 0x41, 0xF9}},
      {&LoggerCommands::InitializeFlash,
       {0xF8, 0x09, 0x06, 0xA6, 0x6A, 0x00, 0x00, 0x00, 0x02, 0xE7, 0x0E, 0xF9}},
      {&LoggerCommands::ResetPulseAccumulators, {0xF8, 0x04, 0x0E, 0x03, 0x44, 0x61, 0xF9}},
  };
  for (const auto& row : rows) {
    CommandsBench good;
    good.Answering(kAckDone);
    EXPECT_TRUE((good.Commands.*row.Command)());
    EXPECT_EQ(good.Port.Written, row.Frame);

    CommandsBench refused;
    refused.Answering({0xFA, 0xFD});
    EXPECT_FALSE((refused.Commands.*row.Command)());

    CommandsBench silent;
    EXPECT_FALSE((silent.Commands.*row.Command)());
    EXPECT_THAT(silent.Port.Writes, ElementsAre(row.Frame, row.Frame, row.Frame));
  }
}

TEST(InitializeFlash, WaitsFortyFiveSeconds) {
  CommandsBench good;
  good.Answering(kAck);
  good.Arrive({0xFC}, 44'900);
  EXPECT_TRUE(good.Commands.InitializeFlash());

  CommandsBench late;
  late.Answering(kAck);
  EXPECT_FALSE(late.Commands.InitializeFlash());
  EXPECT_EQ(late.Loop.NowMs(), 45'000);
}

TEST(ClearHistory, WaitsTheTimeoutForTheDoneByte) {
  CommandsBench bench;
  bench.Answering(kAck);
  EXPECT_FALSE(bench.Commands.ClearHistory());
  EXPECT_EQ(bench.Loop.NowMs(), 1000);
}

TEST(ReadMemoryBlock, CopiesTheBytesBehindTheAddress) {
  CommandsBench bench;
  bench.Answering(kAck + FrameOf({0x08, 0x01, 0x02, 0x11, 0x22}));
  Bytes buffer{1, 2, 3};
  EXPECT_TRUE(bench.Commands.ReadMemoryBlock(buffer, 2, 2, 0x020108));
  EXPECT_THAT(bench.Sent(), ElementsAre(0x08, 0x08, 0x01, 0x02, 0x02));
  EXPECT_THAT(buffer, ElementsAre(1, 2, 0x11, 0x22));
}

TEST(ReadMemoryBlock, MakesRoomEvenWhenTheReadFails) {
  CommandsBench bench;
  Bytes buffer{1, 2, 3};
  EXPECT_FALSE(bench.Commands.ReadMemoryBlock(buffer, 4, 2, 8));
  EXPECT_THAT(buffer, ElementsAre(1, 2, 3, 0, 0, 0));
  EXPECT_EQ(bench.Port.Writes.size(), 6u);
}

TEST(ReadMemoryBlock, DoesNotShrinkALongerBuffer) {
  CommandsBench bench;
  bench.Answering(kAck + FrameOf({0x00, 0x00, 0x00, 0x11}));
  Bytes buffer{1, 2, 3};
  EXPECT_TRUE(bench.Commands.ReadMemoryBlock(buffer, 0, 1, 0));
  EXPECT_THAT(buffer, ElementsAre(0x11, 2, 3));
}

TEST(ReadMemoryBlock, SpendsAPassOnAReplyForAnotherAddress) {
  CommandsBench bench;
  bench.Answering(kAck + FrameOf({0x09, 0x00, 0x00, 0x99}));
  bench.Answering(kAck + FrameOf({0x08, 0x00, 0x00, 0x11}));
  Bytes buffer;
  EXPECT_TRUE(bench.Commands.ReadMemoryBlock(buffer, 0, 1, 8));
  EXPECT_THAT(buffer, ElementsAre(0x11));
  EXPECT_EQ(bench.Port.Writes.size(), 2u);
}

TEST(ReadMemoryBlock, FailsAfterTwoRepliesForAnotherAddress) {
  CommandsBench bench;
  bench.Answering(kAck + FrameOf({0x08, 0x01, 0x00, 0x99}));
  bench.Answering(kAck + FrameOf({0x08, 0x00, 0x01, 0x99}));
  Bytes buffer;
  EXPECT_FALSE(bench.Commands.ReadMemoryBlock(buffer, 0, 1, 8));
  EXPECT_EQ(bench.Port.Writes.size(), 2u);
}

TEST(ReadMemoryBlock, ReadsTheLargestArea) {
  CommandsBench bench;
  const Bytes area(242, 0xFE);
  bench.Answering(kAck + FrameOf(Bytes{0x08, 0x00, 0x00} + area));
  Bytes buffer;
  EXPECT_TRUE(bench.Commands.ReadMemoryBlock(buffer, 0, 242, 8));
  EXPECT_EQ(buffer, area);
  EXPECT_THAT(bench.Sent(), ElementsAre(0x08, 0x08, 0x00, 0x00, 0xF2));
}

TEST(WriteMemoryBlock, OfABlockOf128BytesHasAPayloadOf135AndALengthOf137) {
  CommandsBench bench;
  bench.Answering(kAck);
  const Bytes image(315, 0x55);
  std::uint32_t address = 8;
  EXPECT_TRUE(bench.Commands.WriteMemoryBlock(image, 0, 128, address));
  EXPECT_EQ(bench.Sent().size(), 135u);
  EXPECT_EQ(bench.Port.Written[1], 137);
  EXPECT_EQ(address, 135u);
}

TEST(WriteMemoryBlock, At136HasTheLastByteOfTheFirstAreaAsLastAddress) {
  CommandsBench bench;
  bench.Answering(kAck);
  const Bytes image(315, 0x55);
  std::uint32_t address = 136;
  EXPECT_TRUE(bench.Commands.WriteMemoryBlock(image, 128, 114, address));
  const Bytes sent = bench.Sent();
  EXPECT_THAT(Bytes(sent.begin(), sent.begin() + 7), ElementsAre(0x07, 0xA7, 0x7A, 136, 0, 249, 0));
  EXPECT_EQ(address, 249u);
}

TEST(WriteMemoryBlock, SendsTheBytesFromTheStartIndexOn) {
  CommandsBench bench;
  bench.Answering(kAck);
  std::uint32_t address = 0x0300;
  EXPECT_TRUE(bench.Commands.WriteMemoryBlock(Bytes{1, 2, 3, 4, 5}, 2, 2, address));
  EXPECT_THAT(bench.Sent(), ElementsAre(0x07, 0xA7, 0x7A, 0x00, 0x03, 0x01, 0x03, 3, 4));
}

TEST(WriteMemoryBlock, ReadsNothingButTheAcknowledge) {
  CommandsBench bench;
  bench.Answering(kAckDone);
  std::uint32_t address = 0;
  EXPECT_TRUE(bench.Commands.WriteMemoryBlock(Bytes{1}, 0, 1, address));
  EXPECT_EQ(bench.Port.InputCount(), 1);
}

TEST(StartMeasurement, TakesTheByteThatAnswersWhateverItIs) {
  CommandsBench bench;
  bench.Answering({0xFA, 0x42, 0x43});
  bench.Commands.StartMeasurement();
  EXPECT_THAT(bench.Port.Written, ElementsAre(0xF8, 0x04, 0x09, 0x01, 0xC7, 0x90, 0xF9));
  EXPECT_EQ(bench.Port.InputCount(), 1);
}

TEST(StartMeasurement, WaitsForAByteAlsoBehindAFailedSend) {
  CommandsBench bench;
  bench.Commands.StartMeasurement();
  EXPECT_EQ(bench.Port.Writes.size(), 1u);
  EXPECT_EQ(bench.Loop.NowMs(), 2000);
}

TEST(GetSample, TellsItsFourEndsApart) {
  const Bytes sample(24, 0x31);
  const struct {
    Bytes Reply;
    SampleAnswer Answer;
  } rows[] = {
      {Bytes{0xFA, 0xFA} + FrameOf(sample), SampleAnswer::Sample},
      {{0xFA, 0xFD}, SampleAnswer::NoSample},
      {{0xFA, 0xFC}, SampleAnswer::Nothing},
      {{0xFA}, SampleAnswer::Nothing},
      {{0xFA, 0xFA, 0xF8, 0x02}, SampleAnswer::Nothing},
      {{}, SampleAnswer::NotSent},
  };
  for (const auto& row : rows) {
    CommandsBench bench;
    bench.Answering(row.Reply);
    std::array<std::uint8_t, kSampleReplySize> reply{};
    EXPECT_EQ(bench.Commands.GetSample(reply), row.Answer);
    EXPECT_THAT(bench.Port.Writes, ElementsAre(Bytes{0xF8, 0x03, 0x0A, 0x80, 0x07, 0xF9}));
    if (row.Answer == SampleAnswer::Sample) {
      EXPECT_THAT(reply, ElementsAreArray(sample));
    }
  }
}

TEST(GetHistoryBlock, AsksForTheFirstTheNextAndTheSameAgain) {
  const struct {
    HistoryBlock Which;
    std::uint8_t SubCommand;
  } rows[] = {{HistoryBlock::First, 0}, {HistoryBlock::Next, 1}, {HistoryBlock::Again, 2}};
  for (const auto& row : rows) {
    CommandsBench bench;
    Bytes block(kHistoryReplySize, 0x20);
    block[0] = 10;
    bench.Answering(kAck + FrameOf(block));
    std::array<std::uint8_t, kHistoryReplySize> reply{};
    EXPECT_TRUE(bench.Commands.GetHistoryBlock(row.Which, reply));
    EXPECT_THAT(bench.Sent(), ElementsAre(0x0D, row.SubCommand));
    EXPECT_THAT(reply, ElementsAreArray(block));
  }
}

TEST(GetHistoryBlock, AskedAgainAfterAFailureGivesTheLostBlock) {
  CommandsBench bench;
  Bytes block(kHistoryReplySize, 0x20);
  block[0] = 3;
  Bytes torn = kAck + FrameOf(block);
  torn.resize(100);
  bench.Answering(torn).Answering(kAck + FrameOf(block));
  std::array<std::uint8_t, kHistoryReplySize> reply{};
  EXPECT_FALSE(bench.Commands.GetHistoryBlock(HistoryBlock::Next, reply));
  EXPECT_TRUE(bench.Commands.GetHistoryBlock(HistoryBlock::Again, reply));
  EXPECT_THAT(reply, ElementsAreArray(block));
}

TEST(LoggerCommands, FailOnAClosedPort) {
  CommandsBench bench;
  bench.Port.Close();
  Bytes buffer;
  std::uint32_t address = 0;
  std::array<std::uint8_t, kSampleReplySize> sample{};
  EXPECT_FALSE(bench.Commands.GetLoggerStatus());
  EXPECT_FALSE(bench.Commands.GetLoggerVersion());
  EXPECT_FALSE(bench.Commands.ClearHistory());
  EXPECT_FALSE(bench.Commands.InitializeFlash());
  EXPECT_FALSE(bench.Commands.ReadMemoryBlock(buffer, 0, 8, 0));
  EXPECT_FALSE(bench.Commands.WriteMemoryBlock(Bytes{1}, 0, 1, address));
  EXPECT_EQ(bench.Commands.GetSample(sample), SampleAnswer::NotSent);
  EXPECT_EQ(bench.Commands.GetLoggerTime(), QStringLiteral("00/00/00 00:00:00"));
  bench.Commands.StartMeasurement();
  EXPECT_EQ(bench.Loop.NowMs(), 0);
}

}  // namespace
}  // namespace tessmar::test
