#include "CivilTime.h"

#include <algorithm>
#include <chrono>

namespace tessmar::sim {
namespace {

constexpr std::int64_t kSecondsADay = 86400;
constexpr std::chrono::sys_days kEpoch{std::chrono::year{2000} / 1 / 1};

std::chrono::year_month_day DateOf(const CivilTime& time) {
  return std::chrono::year{time.Year} / time.Month / time.Day;
}

bool Between(int value, int least, int most) {
  return value >= least && value <= most;
}

}  // namespace

CivilTime ToCivilTime(CivilSeconds seconds) {
  std::int64_t days = seconds / kSecondsADay;
  std::int64_t rest = seconds % kSecondsADay;
  if (rest < 0) {
    rest += kSecondsADay;
    --days;
  }
  const std::chrono::year_month_day date{kEpoch + std::chrono::days{days}};
  CivilTime time;
  time.Year = static_cast<int>(date.year());
  time.Month = static_cast<int>(static_cast<unsigned>(date.month()));
  time.Day = static_cast<int>(static_cast<unsigned>(date.day()));
  time.Hour = static_cast<int>(rest / 3600);
  time.Minute = static_cast<int>(rest / 60 % 60);
  time.Second = static_cast<int>(rest % 60);
  return time;
}

CivilSeconds ToCivilSeconds(const CivilTime& time) {
  const auto days = (std::chrono::sys_days{DateOf(time)} - kEpoch).count();
  return ((days * 24 + time.Hour) * 60 + time.Minute) * 60 + time.Second;
}

bool IsRealTime(const CivilTime& time) {
  return DateOf(time).ok() && Between(time.Hour, 0, 23) && Between(time.Minute, 0, 59) &&
         Between(time.Second, 0, 59);
}

std::uint32_t PackTimeStamp(CivilSeconds seconds) {
  const CivilTime time = ToCivilTime(std::max<CivilSeconds>(seconds, 0));
  const auto field = [](int value, int shift) {
    return static_cast<std::uint32_t>(value) << shift;
  };
  return field(time.Second, 0) | field(time.Minute, 6) | field(time.Hour, 12) |
         field(time.Day, 17) | field((time.Year - 2000) * 12 + time.Month - 1, 22);
}

}  // namespace tessmar::sim
