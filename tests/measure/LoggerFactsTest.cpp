#include "measure/LoggerFacts.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Outlook = MemoryForecast::Outlook;

// Ten channels: 24 bytes a record, 10 a page, 40880 in 4088 pages.
constexpr std::int32_t kAll = 40880;
constexpr std::uint16_t kLogging = 0x0080;

const QDateTime kReadAt(QDate(2027, 3, 3), QTime(14, 30), Qt::UTC);

struct Logger {
  LinkState Link;
  LoggerSettings Settings;
};

Logger Periodic(std::int32_t count, const QString& interval = u"15 minutes"_s) {
  Logger logger;
  logger.Link.AnalogChannelCount = 8;
  logger.Link.PulseChannelCount = 2;
  logger.Link.RecordCount = count;
  logger.Link.LoggerStatusWord = kLogging;
  logger.Link.StatusAt = kReadAt;
  logger.Settings.SampleInterval = interval;
  return logger;
}

QString Text(const Logger& logger, bool use24HourClock = true) {
  return MemoryText(ForecastMemory(logger.Link, logger.Settings), use24HourClock);
}

class ForecastTest : public testing::Test {
 protected:
  ForecastTest() { SetTextLanguage(kLanguageEnglish); }
  ~ForecastTest() override { SetTextLanguage(kLanguageEnglish); }
};

TEST(MemoryCapacity, IsThePagesTimesTheRecordsThatFitAPage) {
  EXPECT_EQ(MemoryCapacity(8, 2), 40880);
  EXPECT_EQ(MemoryCapacity(1, 0), 163520);
  EXPECT_EQ(MemoryCapacity(2, 1), 98112);
  EXPECT_EQ(MemoryCapacity(7, 2), 40880);  // 22 bytes: ten fit, not eleven
  EXPECT_EQ(MemoryCapacity(6, 1), 53144);  // 18 bytes
  EXPECT_EQ(MemoryCapacity(4, 1), 69496);  // 14 bytes
  EXPECT_EQ(MemoryCapacity(0, 0), 0);
}

TEST(SampleIntervalSeconds, ReadsTheTextAsTheLoggerIsToldIt) {
  EXPECT_EQ(SampleIntervalSeconds(u"1 second"_s), 1);
  EXPECT_EQ(SampleIntervalSeconds(u"15 minutes"_s), 900);
  EXPECT_EQ(SampleIntervalSeconds(u"2 hours"_s), 7200);
  EXPECT_EQ(SampleIntervalSeconds(u"1 day"_s), 86400);
  EXPECT_EQ(SampleIntervalSeconds(u"65535 days"_s), 5662224000);
  EXPECT_EQ(SampleIntervalSeconds(u"7 fortnights"_s), 7);
  EXPECT_EQ(SampleIntervalSeconds(u"0 second"_s), 0);
  EXPECT_EQ(SampleIntervalSeconds(u"-5 hours"_s), 0);
  EXPECT_EQ(SampleIntervalSeconds(u""_s), 0);
  EXPECT_EQ(SampleIntervalSeconds(u"1e999 days"_s), 0);
}

TEST_F(ForecastTest, PeriodicLoggingFillsTheRestOfTheMemoryOneRecordAnInterval) {
  // 880 records of 15 minutes: 9 days and 4 hours.
  EXPECT_EQ(Text(Periodic(kAll - 880)), u"memory full on 12 March 2027"_s);
  EXPECT_EQ(Text(Periodic(0)), u"memory full on 2 May 2028"_s);
  EXPECT_EQ(Text(Periodic(kAll - 880, u"1 hour"_s)), u"memory full on 9 April 2027"_s);
  const Logger logger = Periodic(kAll - 880);
  EXPECT_EQ(
      ForecastMemory(logger.Link, logger.Settings),
      (MemoryForecast{
          .Is = Outlook::FillsAt, .At = kReadAt.addDays(9).addSecs(4 * 3600), .Percent = 97}));
}

TEST_F(ForecastTest, WithinTwoDaysTheTimeOfDayIsSaid) {
  EXPECT_EQ(Text(Periodic(kAll - 191)), u"memory full on 5 March 2027, 14:15"_s);
  EXPECT_EQ(Text(Periodic(kAll - 192)), u"memory full on 5 March 2027"_s);
  EXPECT_EQ(Text(Periodic(kAll - 1), false), u"memory full on 3 March 2027, 2:45 PM"_s);
}

TEST_F(ForecastTest, WhereFewerRecordsMayComeTheDateIsTheEarliest) {
  const auto notBefore = u"memory not full before 12 March 2027: upload by then at the latest"_s;
  Logger onChange = Periodic(kAll - 880);
  onChange.Settings.LoggingStyle = kLogException;
  EXPECT_EQ(Text(onChange), notBefore);
  for (const std::size_t alarm : {0U, 1U}) {
    Logger byAlarm = Periodic(kAll - 880);
    byAlarm.Settings.Alarm[alarm].Enable = 1;
    EXPECT_EQ(Text(byAlarm), notBefore) << alarm;
  }
  for (const std::uint16_t bit : {0x0800, 0x1000}) {
    Logger waiting = Periodic(kAll - 880);
    waiting.Link.LoggerStatusWord |= bit;
    EXPECT_EQ(Text(waiting), notBefore) << bit;
  }
}

TEST_F(ForecastTest, WithWrapAroundTheOldestRecordsGiveWay) {
  Logger logger = Periodic(kAll - 880);
  logger.Settings.DataWrapAroundFlag = 1;
  EXPECT_EQ(Text(logger), u"oldest records are overwritten from 12 March 2027 on"_s);
  logger.Settings.LoggingStyle = kLogException;
  EXPECT_EQ(Text(logger),
            u"oldest records not overwritten before 12 March 2027: upload by then at the latest"_s);
  // A page may have been cleared for the records to come.
  logger.Settings.LoggingStyle = 0;
  for (const std::int32_t count : {kAll - 9, kAll}) {
    logger.Link.RecordCount = count;
    EXPECT_EQ(Text(logger), u"oldest records are being overwritten"_s) << count;
  }
  logger.Link.RecordCount = kAll - 10;
  EXPECT_EQ(Text(logger), u"oldest records are overwritten from 3 March 2027, 17:00 on"_s);
  // A logger that counts on tells how long it has been so.
  logger.Link.RecordCount = kAll + 960;
  EXPECT_EQ(Text(logger), u"oldest records are being overwritten since 21 February 2027"_s);
  logger.Settings.LoggingStyle = kLogException;
  EXPECT_EQ(Text(logger), u"oldest records are being overwritten"_s);
}

TEST_F(ForecastTest, AFullMemoryIsFullWhateverItsLoggingStyle) {
  for (const std::uint8_t style : {0, 1, 2, 3, 128, 130}) {
    Logger logger = Periodic(kAll);
    logger.Settings.LoggingStyle = style;
    EXPECT_EQ(Text(logger), u"memory full"_s) << int{style};
    logger.Link.LoggerStatusWord = 0;
    EXPECT_EQ(Text(logger), u"memory full"_s) << int{style};
    logger.Link.RecordCount = kAll + 1;
    EXPECT_EQ(Text(logger), u"memory full"_s) << int{style};
  }
}

TEST_F(ForecastTest, ALoggerThatDoesNotLogFillsNothing) {
  for (const std::uint16_t status : {0x0000, 0x2800, 0x0800, 0x2080, 0xFF7F}) {
    Logger logger = Periodic(100);
    logger.Link.LoggerStatusWord = status;
    EXPECT_EQ(Text(logger), u"not logging"_s) << status;
    logger.Settings.DataWrapAroundFlag = 1;
    logger.Link.RecordCount = kAll + 5;
    EXPECT_EQ(Text(logger), u"not logging"_s) << status;
  }
}

TEST_F(ForecastTest, LogarithmicAndFastLoggingHaveAShareAndNoDate) {
  for (const std::uint8_t style : {1, 2, 3, 129, 130}) {
    Logger logger = Periodic(kAll / 2);
    logger.Settings.LoggingStyle = style;
    EXPECT_EQ(Text(logger), u"50 % of memory used"_s) << int{style};
    logger.Settings.DataWrapAroundFlag = 1;
    EXPECT_EQ(Text(logger), u"50 % of memory used"_s) << int{style};
  }
  EXPECT_EQ(Text(Periodic(kAll - 1, u"0 second"_s)), u"99 % of memory used"_s);
  EXPECT_EQ(Text(Periodic(0, u"0 second"_s)), u"0 % of memory used"_s);
}

TEST_F(ForecastTest, NoDateIsSaidBeyondHalfACentury) {
  EXPECT_EQ(Text(Periodic(0, u"1 day"_s)), u"memory lasts for more than 50 years"_s);
  EXPECT_EQ(Text(Periodic(0, u"65535 days"_s)), u"memory lasts for more than 50 years"_s);
  // 18250 days are fifty years of 365.
  EXPECT_EQ(Text(Periodic(kAll - 18250, u"1 day"_s)), u"memory full on 18 February 2077"_s);
  EXPECT_EQ(Text(Periodic(kAll - 18251, u"1 day"_s)), u"memory lasts for more than 50 years"_s);
}

TEST_F(ForecastTest, NothingIsSaidOfALoggerThatHasNotTold) {
  Logger logger = Periodic(100);
  logger.Link.StatusAt = {};
  EXPECT_EQ(Text(logger), QString());
  logger = Periodic(100);
  logger.Link.AnalogChannelCount = 0;
  logger.Link.PulseChannelCount = 0;
  EXPECT_EQ(Text(logger), QString());
}

TEST_F(ForecastTest, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  Logger logger = Periodic(kAll - 880);
  EXPECT_EQ(Text(logger), u"Speicher voll am 12. März 2027"_s);
  logger.Settings.LoggingStyle = kLogException;
  EXPECT_EQ(Text(logger), u"Speicher frühestens am 12. März 2027 voll: spätestens dann auslesen"_s);
  logger.Settings.DataWrapAroundFlag = 1;
  EXPECT_EQ(
      Text(logger),
      u"älteste Datensätze frühestens ab 12. März 2027 überschrieben: spätestens dann auslesen"_s);
  logger.Settings.LoggingStyle = 0;
  EXPECT_EQ(Text(logger), u"älteste Datensätze werden ab 12. März 2027 überschrieben"_s);
  logger.Link.LoggerStatusWord = 0;
  EXPECT_EQ(Text(logger), u"zeichnet nicht auf"_s);
}

struct DriftRow {
  std::int32_t Offset;
  const char16_t* English;
  const char16_t* German;
};

// clang-format off
constexpr DriftRow kDrifts[] = {
    {0, u"", u""},
    {1, u"", u""},
    {-1, u"", u""},
    {2, u"clock 2 s fast", u"Uhr geht 2 s vor"},
    {-2, u"clock 2 s slow", u"Uhr geht 2 s nach"},
    {-12, u"clock 12 s slow", u"Uhr geht 12 s nach"},
    {59, u"clock 59 s fast", u"Uhr geht 59 s vor"},
    {60, u"clock 1 min fast", u"Uhr geht 1 min vor"},
    {-125, u"clock 2 min 5 s slow", u"Uhr geht 2 min 5 s nach"},
    {-3479, u"clock 57 min 59 s slow", u"Uhr geht 57 min 59 s nach"},
    {-3480, u"clock 58 min slow: daylight saving?", u"Uhr geht 58 min nach: Sommerzeit?"},
    {3600, u"clock 1 h fast: daylight saving?", u"Uhr geht 1 h vor: Sommerzeit?"},
    {-3612, u"clock 1 h 12 s slow: daylight saving?", u"Uhr geht 1 h 12 s nach: Sommerzeit?"},
    {3720, u"clock 1 h 2 min fast: daylight saving?", u"Uhr geht 1 h 2 min vor: Sommerzeit?"},
    {3721, u"clock 1 h 2 min fast", u"Uhr geht 1 h 2 min vor"},
    {7200, u"clock 2 h fast", u"Uhr geht 2 h vor"},
    {86400, u"clock 1 day fast", u"Uhr geht 1 Tag vor"},
    {-183845, u"clock 2 days 3 h slow", u"Uhr geht 2 Tage 3 h nach"},
    {-31535999, u"clock 364 days 23 h slow", u"Uhr geht 364 Tage 23 h nach"},
    {-31536000, u"clock more than a year slow", u"Uhr geht mehr als ein Jahr nach"},
    {2147483647, u"clock more than a year fast", u"Uhr geht mehr als ein Jahr vor"},
    {-2147483647 - 1, u"clock more than a year slow", u"Uhr geht mehr als ein Jahr nach"},
};
// clang-format on

TEST_F(ForecastTest, TheClocksDriftIsReadable) {
  for (const DriftRow& row : kDrifts) {
    SetTextLanguage(kLanguageEnglish);
    EXPECT_EQ(ClockDriftText(row.Offset), QString::fromUtf16(row.English)) << row.Offset;
    SetTextLanguage(kLanguageGerman);
    EXPECT_EQ(ClockDriftText(row.Offset), QString::fromUtf16(row.German)) << row.Offset;
  }
  EXPECT_EQ(ClockDriftText(std::nullopt), QString());
}

}  // namespace
}  // namespace tessmar
