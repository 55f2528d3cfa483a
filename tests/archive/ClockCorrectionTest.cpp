#include "archive/ClockCorrection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDate>

namespace tessmar {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kMinute = 60 * kSecond;

std::uint32_t Stamp(int year, int month, int day, int hour, int minute, int second) {
  return static_cast<std::uint32_t>(((year - 2000) * 12 + month - 1) << 22 | day << 17 |
                                    hour << 12 | minute << 6 | second);
}

// Minutes since noon of 3 March 2026 by the logger.
std::uint32_t AtMinute(int minute) {
  return Stamp(2026, 3, 3, 12 + minute / 60, minute % 60, 0);
}

std::int64_t Noon() {
  return LoggerMilliseconds(AtMinute(0));
}

/// One upload after the other, all complete, and readings of the logger's clock.
struct Rig {
  void Upload(const std::vector<int>& minutes, bool complete = true) {
    std::vector<std::uint8_t>& bytes = Bytes.emplace_back();
    for (const int minute : minutes) {
      for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(AtMinute(minute) >> shift));
      bytes.insert(bytes.end(), {1, 0});
    }
    Complete.push_back(complete);
  }

  void Read(std::int64_t at, std::int64_t logger, int upload) {
    Readings.push_back({Noon() + at, Noon() + logger, Noon() + logger, upload});
  }
  void Set(std::int64_t at, std::int64_t before, std::int64_t after) {
    Readings.push_back({Noon() + at, Noon() + before, Noon() + after});
  }

  // Milliseconds since noon, or kNoCorrectedTime.
  std::vector<std::int64_t> Corrected() const {
    std::vector<SeriesUpload> uploads;
    for (std::size_t i = 0; i < Bytes.size(); ++i)
      uploads.push_back({.Records = Bytes[i], .RecordSize = 6, .Complete = Complete[i]});
    std::vector<std::int64_t> times = CorrectedTimes(uploads, JoinUploads(uploads), Readings);
    for (std::int64_t& time : times) time -= time == kNoCorrectedTime ? 0 : Noon();
    return times;
  }

  std::vector<std::vector<std::uint8_t>> Bytes;
  std::vector<bool> Complete;
  std::vector<ClockReading> Readings;
};

TEST(LoggerMilliseconds, IsTheCalendars) {
  for (const auto& [year, month, day] :
       {std::tuple(2000, 1, 1), std::tuple(2000, 2, 29), std::tuple(2000, 3, 1),
        std::tuple(2023, 12, 31), std::tuple(2024, 2, 29), std::tuple(2024, 3, 1),
        std::tuple(2026, 11, 21), std::tuple(2084, 2, 29), std::tuple(2085, 4, 30)}) {
    EXPECT_EQ(LoggerMilliseconds(Stamp(year, month, day, 13, 5, 7)),
              QDate(year, month, day).startOfDay(Qt::UTC).toMSecsSinceEpoch() +
                  ((13 * 60 + 5) * 60 + 7) * kSecond);
  }
}

TEST(LoggerMilliseconds, CarriesWhatTheCalendarDoesNotHave) {
  EXPECT_EQ(LoggerMilliseconds(Stamp(2026, 4, 31, 0, 0, 0)),
            LoggerMilliseconds(Stamp(2026, 5, 1, 0, 0, 0)));
  EXPECT_EQ(LoggerMilliseconds(Stamp(2026, 3, 0, 0, 0, 0)),
            LoggerMilliseconds(Stamp(2026, 2, 28, 0, 0, 0)));
  EXPECT_EQ(LoggerMilliseconds(Stamp(2026, 4, 1, 10, 63, 63)),
            LoggerMilliseconds(Stamp(2026, 4, 1, 11, 4, 3)));
}

TEST(CorrectedTimes, NeedTwoReadings) {
  Rig rig;
  rig.Upload({0, 10, 20});
  EXPECT_THAT(rig.Corrected(), Each(kNoCorrectedTime));
  rig.Read(25 * kMinute, 25 * kMinute, 0);
  EXPECT_THAT(rig.Corrected(), Each(kNoCorrectedTime));
}

TEST(CorrectedTimes, LieOnAStraightLineBetweenTwoReadingsAndNeverBeyond) {
  Rig rig;
  rig.Upload({0, 10, 20});
  rig.Upload({0, 10, 20, 30, 40, 60, 80});
  rig.Upload({0, 10, 20, 30, 40, 60, 80, 90});
  // Right at 20 minutes, two minutes fast at 80.
  rig.Read(20 * kMinute, 20 * kMinute, 0);
  rig.Read(78 * kMinute, 80 * kMinute, 1);
  EXPECT_THAT(rig.Corrected(),
              ElementsAre(kNoCorrectedTime, kNoCorrectedTime, kNoCorrectedTime,
                          29 * kMinute + 40 * kSecond, 39 * kMinute + 20 * kSecond,
                          58 * kMinute + 40 * kSecond, 78 * kMinute, kNoCorrectedTime));
}

TEST(CorrectedTimes, KnowWhenTheClockWasSet) {
  Rig rig;
  rig.Upload({0, 10});
  // At 30 by the logger, which is 20, it is set to 20; at 40 all is still right.
  rig.Upload({0, 10, 20, 30, 25, 35});
  rig.Read(10 * kMinute, 10 * kMinute, 0);
  rig.Set(20 * kMinute, 30 * kMinute, 20 * kMinute);
  rig.Read(40 * kMinute, 40 * kMinute, 1);
  EXPECT_THAT(rig.Corrected(), ElementsAre(kNoCorrectedTime, kNoCorrectedTime, 15 * kMinute,
                                           20 * kMinute, 25 * kMinute, 35 * kMinute));
}

TEST(CorrectedTimes, KnowWhenTheClockWasSetForward) {
  Rig rig;
  rig.Upload({0, 10});
  rig.Upload({0, 10, 20, 70, 80});
  rig.Read(10 * kMinute, 10 * kMinute, 0);
  rig.Set(25 * kMinute, 25 * kMinute, 65 * kMinute);
  rig.Read(40 * kMinute, 80 * kMinute, 1);
  EXPECT_THAT(rig.Corrected(), ElementsAre(kNoCorrectedTime, kNoCorrectedTime, 20 * kMinute,
                                           30 * kMinute, 40 * kMinute));
}

TEST(CorrectedTimes, AreNotMadeUpWhereTheClockWasSetBackUnseen) {
  Rig rig;
  rig.Upload({0, 10});
  rig.Upload({0, 10, 20, 30, 25, 35});
  rig.Read(10 * kMinute, 10 * kMinute, 0);
  rig.Read(40 * kMinute, 35 * kMinute, 1);
  EXPECT_THAT(rig.Corrected(), Each(kNoCorrectedTime));
}

TEST(CorrectedTimes, AnUploadThatWasBrokenOffReadTheClockAtItsNewestRecord) {
  Rig rig;
  rig.Upload({0, 10}, false);  // At 25, when there was 20 as well.
  rig.Upload({0, 10, 20, 30, 40});
  rig.Read(25 * kMinute, 25 * kMinute, 0);
  rig.Read(55 * kMinute, 45 * kMinute, 1);
  EXPECT_THAT(rig.Corrected(),
              ElementsAre(kNoCorrectedTime, kNoCorrectedTime, kNoCorrectedTime,
                          32 * kMinute + 30 * kSecond, 47 * kMinute + 30 * kSecond));
}

}  // namespace
}  // namespace tessmar
