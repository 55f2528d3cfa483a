#include "archive/ClockReadings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/UploadsRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

constexpr std::int64_t kNoon = 1772539200000;  // 3 March 2026, 12:00 UTC.
constexpr std::int64_t kHour = 3600000;

class ReadingsOfAClock : public testing::Test {
 protected:
  ReadingsOfAClock() { qputenv("TZ", "UTC"); }

  static std::vector<std::int64_t> Times(const std::vector<ClockReading>& readings) {
    std::vector<std::int64_t> times;
    for (const ClockReading& reading : readings)
      times.insert(times.end(), {reading.At - kNoon, reading.Before - kNoon, reading.After - kNoon,
                                 reading.Upload});
    return times;
  }
};

TEST_F(ReadingsOfAClock, ComeFromUploadsAndFromSettingIt) {
  const std::vector<UploadRow> uploads{
      {.Id = 7, .Started = Hour(14), .ClockOffsetS = 30},
      {.Started = Hour(15)},                                                // Nobody knows.
      {.Kind = UploadKind::Image, .Started = Hour(15), .ClockOffsetS = 5},  // Read long after.
      {.Kind = UploadKind::Live, .Started = Hour(15), .ClockOffsetS = 5},
      {.Id = 9, .Started = Hour(12), .ClockOffsetS = -2}};
  const std::vector<UploadRow> series{{.Id = 5}, {.Id = 7}};
  const std::vector<EventRow> events{{.At = Hour(13),
                                      .Entry = {.Kind = EventKind::Synced,
                                                .Before = R"({"clock_offset_s":10})",
                                                .After = R"({"clock_offset_s":0})"}},
                                     {.At = Hour(13), .Entry = {.Kind = EventKind::Cleared}},
                                     {.At = Hour(13), .Entry = {.Kind = EventKind::Synced}}};
  EXPECT_THAT(Times(ClockReadingsOf(uploads, events, series)),
              ElementsAre(0, -2000, -2000, ClockReading::kNoUpload,              //
                          kHour, kHour + 10000, kHour, ClockReading::kNoUpload,  //
                          2 * kHour, 2 * kHour + 30000, 2 * kHour + 30000, 1));
}

TEST_F(ReadingsOfAClock, TellWhatTheLoggerShowedAtAMoment) {
  // Right at noon, set from 10 s fast to right at one, 30 s fast at two.
  const std::vector<ClockReading> readings{
      {kNoon, kNoon, kNoon},
      {kNoon + kHour, kNoon + kHour + 10000, kNoon + kHour},
      {kNoon + 2 * kHour, kNoon + 2 * kHour + 30000, kNoon + 2 * kHour + 30000}};
  const auto at = [&](int minute) {
    return LoggerTimeAt(readings, Hour(12).addSecs(qint64{60} * minute)) - kNoon;
  };
  EXPECT_EQ(at(-60), -kHour);
  EXPECT_EQ(at(0), 0);
  EXPECT_EQ(at(30), kHour / 2 + 5000);
  EXPECT_EQ(at(60), kHour);
  EXPECT_EQ(at(90), kHour * 3 / 2 + 15000);
  EXPECT_EQ(at(180), 3 * kHour + 30000);
  EXPECT_EQ(LoggerTimeAt({}, Hour(12)), kNoon);
}

}  // namespace
}  // namespace tessmar::test
