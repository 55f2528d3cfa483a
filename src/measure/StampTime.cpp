#include "measure/StampTime.h"

#include <cmath>

#include "measure/Sample.h"

namespace tessmar {
namespace {

constexpr std::int64_t kDaysOfEra = 146097;  // 400 years.
constexpr int kYearsOfEra = 400;
constexpr double kFarthest = 1e12;
constexpr std::int64_t kFrom1970To2000 = 946684800000;  // Milliseconds.

std::int64_t FloorDivide(std::int64_t value, std::int64_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}

// Years that begin on 1 March have their odd day at the end, and months of 31, 30, 31, 30, 31 days
// that repeat: the day of the year is then (153 * month + 2) / 5. Days are counted from
// 1 January 2000.
std::int64_t DayNumber(std::int64_t year, std::int64_t month, std::int64_t day) {
  const std::int64_t months = year * 12 + (month - 1) - 2;
  const std::int64_t marchYear = FloorDivide(months, 12);
  const std::int64_t marchMonth = months - marchYear * 12;
  const std::int64_t era = FloorDivide(marchYear, kYearsOfEra);
  const std::int64_t yearOfEra = marchYear - era * kYearsOfEra;
  const std::int64_t dayOfYear = (153 * marchMonth + 2) / 5;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  constexpr std::int64_t kFirstMarchOf2000 = 5 * kDaysOfEra;
  constexpr std::int64_t kJanuaryAndFebruary = 60;
  return era * kDaysOfEra + dayOfEra - kFirstMarchOf2000 + kJanuaryAndFebruary + day - 1;
}

}  // namespace

double StampSeconds(std::uint32_t packedTime) {
  const TimeStampFields fields = UnpackTimeStamp(packedTime);
  return MidnightOf(fields.Year, fields.Month, fields.Day) + fields.Hour * 3600.0 +
         fields.Minute * 60.0 + fields.Second;
}

double SecondsOnScale(std::int64_t milliseconds) {
  return static_cast<double>(milliseconds - kFrom1970To2000) / 1000;
}

double MidnightOf(int year, int month, int day) {
  return static_cast<double>(DayNumber(year, month, day)) * kSecondsPerDay;
}

CalendarTime CalendarOf(double seconds) {
  if (!(std::abs(seconds) < kFarthest)) return {};
  const auto whole = static_cast<std::int64_t>(std::floor(seconds));
  const std::int64_t days = FloorDivide(whole, 86400);
  const auto inDay = static_cast<int>(whole - days * 86400);
  CalendarTime time{.Hour = inDay / 3600, .Minute = inDay / 60 % 60, .Second = inDay % 60};

  const std::int64_t sinceMarch = days - 60 + 5 * kDaysOfEra;
  const std::int64_t era = FloorDivide(sinceMarch, kDaysOfEra);
  const std::int64_t dayOfEra = sinceMarch - era * kDaysOfEra;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
  time.Day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
  time.Month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
  time.Year = static_cast<int>(era * kYearsOfEra + yearOfEra + (time.Month <= 2 ? 1 : 0));
  return time;
}

}  // namespace tessmar
