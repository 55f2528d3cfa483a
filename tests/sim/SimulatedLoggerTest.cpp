#include "sim/SimulatedLogger.h"

#include <gtest/gtest.h>

#include "HexBytes.h"
#include "sim/LoggerMemory.h"

namespace tessmar::test {
namespace {

using sim::LoggerOptions;
using sim::SimulatedLogger;

TEST(SimulatedLogger, AnswersTheThreeLetters) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "55"), "54");
  EXPECT_EQ(Ask(logger, "54"), "4D");
  EXPECT_EQ(Ask(logger, "4D"), "FC");
}

TEST(SimulatedLogger, IgnoresOtherBareBytes) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "75 41 0D 00 FF FA"), "");
}

TEST(SimulatedLogger, PastItsHandshakeIsDeafToLettersButAnswersFrames) {
  SimulatedLogger logger({.PastHandshake = true});
  EXPECT_EQ(Ask(logger, "55"), "");
  EXPECT_EQ(Ask(logger, kAskVersion), "FA F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9");
}

TEST(SimulatedLogger, ReportsFirmwareCountsSampleOnDemandAndModel) {
  SimulatedLogger logger({.AnalogChannels = 2,
                          .PulseChannels = 1,
                          .Firmware = 33,
                          .ModelCode = 220,
                          .SampleOnDemand = true});
  EXPECT_EQ(Ask(logger, kAskVersion), "FA F8 0A 21 02 01 01 DC 00 00 00 E7 95 F9");
}

TEST(SimulatedLogger, ReportsItsClockInPackedDecimal) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, kAskTime), "FA F8 09 00 30 14 01 15 06 26 A7 B1 F9");
}

TEST(SimulatedLogger, ClockRuns) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, kAskTime, 61'999).substr(0, 14), "FA F8 09 01 31");
}

TEST(SimulatedLogger, TwelveHourClockSetsBitsSixAndFive) {
  SimulatedLogger logger({.TwelveHourClock = true});
  EXPECT_EQ(Ask(logger, kAskTime), "FA F8 09 00 30 62 01 15 06 26 6E 7A F9");
}

TEST(SimulatedLogger, TwelveHourClockHasTwelveAtMidnightAndNoon) {
  const auto hour = [](int at) {
    SimulatedLogger logger(
        {.TwelveHourClock = true, .ClockAtStart = sim::ToCivilSeconds({2026, 6, 15, at, 0, 0})});
    return Ask(logger, kAskTime).substr(15, 2);
  };
  EXPECT_EQ(hour(0), "52");
  EXPECT_EQ(hour(1), "41");
  EXPECT_EQ(hour(11), "51");
  EXPECT_EQ(hour(12), "72");
  EXPECT_EQ(hour(23), "71");
}

TEST(SimulatedLogger, TakesTheClockThatIsSet) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 0A 01 00 30 16 01 27 12 10 31 64 F9", 5000), "FA FC");
  EXPECT_EQ(Ask(logger, kAskTime, 7000).substr(6, 23), "09 02 30 16 01 27 12 10");
}

TEST(SimulatedLogger, SettingTheClockChoosesTheHourForm) {
  SimulatedLogger logger({.TwelveHourClock = true});
  Ask(logger, "F8 0A 01 00 30 16 01 27 12 10 31 64 F9");
  EXPECT_EQ(Ask(logger, kAskTime).substr(15, 2), "16");
  EXPECT_EQ(Ask(logger, "F8 0A 01 00 15 68 01 27 12 10 1E 5B F9"), "FA FC");
  EXPECT_EQ(Ask(logger, kAskTime).substr(15, 2), "68");
}

TEST(SimulatedLogger, RefusesAnImpossibleClock) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 0A 01 00 00 99 01 27 12 10 61 4B F9"), "FA FD");
  EXPECT_EQ(Ask(logger, kAskTime).substr(15, 2), "14");
}

TEST(SimulatedLogger, ReportsRecordCountLowByteFirstAndLogging) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, kAskStatus), "FA F8 07 C0 03 00 80 00 61 95 F9");
}

TEST(SimulatedLogger, ReportsMoreThanSixteenBitsOfRecords) {
  SimulatedLogger logger({.Records = 0x030201});
  EXPECT_EQ(Ask(logger, kAskStatus).substr(9, 8), "01 02 03");
}

TEST(SimulatedLogger, BlankFlashIsErasedAndDoesNotLog) {
  SimulatedLogger logger({.BlankFlash = true});
  EXPECT_EQ(Ask(logger, kAskStatus), "FA F8 07 00 00 00 00 00 00 00 F9");
  EXPECT_EQ(Ask(logger, "F8 07 08 00 00 00 08 E0 07 F9").substr(9, 32),
            "00 00 00 FF FF FF FF FF FF FF FF");
}

TEST(SimulatedLogger, ClearHistoryEmptiesTheRecords) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, kAskClear), "FA FC");
  EXPECT_EQ(Ask(logger, kAskStatus), "FA F8 07 00 00 00 80 00 61 C0 F9");
}

TEST(SimulatedLogger, CommitIsCarriedOut) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, kAskCommit), "FA FC");
  EXPECT_EQ(logger.Commits(), 1);
}

TEST(SimulatedLogger, WrongGuardBytesAreNotAnsweredAndDoNothing) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 05 04 A4 4B 7B 36 F9"), "");
  EXPECT_EQ(Ask(logger, "F8 09 06 A6 6B 00 00 00 02 DA CE F9"), "");
  EXPECT_EQ(Ask(logger, "F8 0B 07 A7 7B 00 02 01 02 FE 00 FF 7C D5 F9"), "");
  EXPECT_EQ(Ask(logger, "F8 05 0B AB BB 4E 81 F9"), "");
  EXPECT_EQ(logger.Records().Count(), 960);
  EXPECT_EQ(logger.Memory().At(0), 'T');
  EXPECT_EQ(logger.Memory().At(0x0200), 0xFF);
  EXPECT_EQ(logger.Commits(), 0);
}

TEST(SimulatedLogger, UnknownOpcodesAreNotAnswered) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 03 02 81 C1 F9"), "");
  EXPECT_EQ(Ask(logger, "F8 03 10 01 CC F9"), "");
}

TEST(SimulatedLogger, ReadsTheIdentifier) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 07 08 00 00 00 08 E0 07 F9"),
            "FA F8 0D 00 00 00 54 4D 32 20 32 31 39 20 50 E1 F9");
}

TEST(SimulatedLogger, ReadsZeroOrTooManyBytesNotAtAll) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 07 08 00 00 00 00 E1 C1 F9"), "");
  EXPECT_EQ(Ask(logger, "F8 07 08 00 00 00 FE 03 A0 42 F9"), "");
}

TEST(SimulatedLogger, WritesMemoryAndAnswersWithTheAcknowledgeAlone) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 0B 07 A7 7A 00 02 01 02 FE 00 FF 6C 15 F9"), "FA");
  EXPECT_EQ(Ask(logger, "F8 07 08 00 02 00 02 C1 C0 F9"), "FA F8 07 00 02 00 FE 00 FF 02 38 F9");
}

TEST(SimulatedLogger, RefusesAWriteWhoseLastAddressDoesNotFit) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, "F8 0B 07 A7 7A 00 02 02 02 FE 00 FF 6C 51 F9"), "");
  EXPECT_EQ(Ask(logger, "F8 07 08 00 02 00 02 C1 C0 F9"), "FA F8 07 00 02 00 FF FF 00 08 F9");
}

TEST(SimulatedLogger, InitializingErasesAfterAWhileAndIsDeafMeanwhile) {
  SimulatedLogger logger;
  logger.Receive(Hex(kAskInitialize), std::chrono::milliseconds(1000));
  const std::vector<sim::Output> outputs = logger.TakeOutput();
  ASSERT_EQ(outputs.size(), 2U);
  EXPECT_EQ(outputs[0], (sim::Output{std::chrono::milliseconds(1000), {0xFA}}));
  EXPECT_EQ(outputs[1], (sim::Output{std::chrono::milliseconds(3000), {0xFC}}));
  EXPECT_EQ(Ask(logger, kAskVersion, 2000), "");
  EXPECT_EQ(Ask(logger, kAskStatus, 3000), "FA F8 07 00 00 00 00 00 00 00 F9");
  EXPECT_EQ(logger.Memory().Configuration(), sim::Bytes(315, 0xFF));
}

TEST(SimulatedLogger, HasNoSampleBeforeAMeasurement) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, kAskSample), "FA FD");
}

TEST(SimulatedLogger, HasASampleThreeTenthsOfASecondAfterTheStart) {
  SimulatedLogger logger;
  EXPECT_EQ(Ask(logger, kAskMeasurement), "FA FC");
  EXPECT_EQ(Ask(logger, kAskSample, 299), "FA FD");
  // 15 June 2026, 14:30:00: month index 317.
  EXPECT_EQ(Ask(logger, kAskSample, 300).substr(0, 23), "FA FA F8 1A 80 E7 5E 4F");
}

TEST(SimulatedLogger, KeepsItsSampleWhileTheNextIsMeasured) {
  SimulatedLogger logger;
  Ask(logger, kAskMeasurement, 0);
  Ask(logger, kAskMeasurement, 1000);
  EXPECT_EQ(Ask(logger, kAskSample, 1200).substr(12, 2), "80");
  EXPECT_EQ(Ask(logger, kAskSample, 1300).substr(12, 2), "81");
}

TEST(SimulatedLogger, SampleIsAlwaysOfTwentyFourBytesWithTheLastChannelInSlotSeven) {
  SimulatedLogger logger({.AnalogChannels = 3, .PulseChannels = 0});
  Ask(logger, kAskMeasurement);
  logger.Receive(Hex(kAskSample), std::chrono::seconds(1));
  const sim::Bytes sample = ReplyPayload(AllOutput(logger));
  ASSERT_EQ(sample.size(), 24U);
  const auto word = [&](std::size_t offset) { return sample[offset] + 256 * sample[offset + 1]; };
  EXPECT_EQ(word(8), 0);
  // About 12 of 24 volts, where 62384 is 24 volts.
  EXPECT_GT(word(18), 30000);
  EXPECT_LT(word(18), 37000);
  EXPECT_EQ(word(20), 0);
  EXPECT_EQ(word(22), 0);
}

TEST(SimulatedLogger, PulsesAddUpUntilTheyAreReset) {
  SimulatedLogger logger;
  const auto flow = [&](std::int64_t atMs) {
    Ask(logger, kAskMeasurement, atMs);
    logger.Receive(Hex(kAskSample), std::chrono::milliseconds(atMs + 300));
    const sim::Bytes sample = ReplyPayload(AllOutput(logger));
    return sample.at(22) + 256 * sample.at(23);
  };
  const int before = flow(0);
  EXPECT_EQ(flow(110'000), before + 10);
  EXPECT_EQ(Ask(logger, kAskResetPulses, 110'300), "FA FC");
  EXPECT_EQ(flow(220'000), 10);
}

TEST(SimulatedLogger, AThrottledLineTakesTenBitsAByteBothWays) {
  SimulatedLogger logger({.BaudRate = 9600});
  logger.Receive(Hex(kAskVersion), sim::Micros{0});
  const std::vector<sim::Output> outputs = logger.TakeOutput();
  ASSERT_FALSE(outputs.empty());
  // 6 bytes there, 14 bytes back, 10/9600 s each.
  EXPECT_EQ(outputs.back().Due, sim::Micros{20834});
  std::size_t total = 0;
  for (const sim::Output& output : outputs) total += output.Content.size();
  EXPECT_EQ(total, 14U);
  EXPECT_LE(outputs.front().Due, sim::Micros{10000});
}

TEST(SimulatedLogger, AnswersARequestThatComesByteByByte) {
  SimulatedLogger logger;
  std::string answer;
  for (const std::uint8_t byte : Hex(kAskVersion)) {
    logger.Receive(std::span(&byte, 1), std::chrono::seconds(1));
    answer += Text(AllOutput(logger));
  }
  EXPECT_EQ(answer, "FA F8 0A 15 08 02 00 D0 00 00 00 71 D1 F9");
}

}  // namespace
}  // namespace tessmar::test
