#pragma once

#include <cstdint>

namespace tessmar::sim {

/// Seconds since 2000-01-01 00:00:00 on the logger's clock, which knows no time zones.
using CivilSeconds = std::int64_t;

/// A moment in calendar fields. Month and Day start at 1.
struct CivilTime {
  int Year = 2000;
  int Month = 1;
  int Day = 1;
  int Hour = 0;
  int Minute = 0;
  int Second = 0;
  bool operator==(const CivilTime&) const = default;
};

CivilTime ToCivilTime(CivilSeconds seconds);

/// The fields must name a real moment.
CivilSeconds ToCivilSeconds(const CivilTime& time);

/// True when the fields name a moment that the calendar has.
bool IsRealTime(const CivilTime& time);

/// The 32-bit time stamp of a record: seconds in bits 0-5, minutes 6-11, hours 12-16, day 17-21,
/// months since January 2000 in bits 22-31. Moments before 2000 give the first second of 2000.
std::uint32_t PackTimeStamp(CivilSeconds seconds);

}  // namespace tessmar::sim
