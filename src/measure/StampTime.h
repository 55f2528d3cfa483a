#pragma once

#include <cstdint>

namespace tessmar {

/// The time of a packed stamp on an even scale: seconds since 1 January 2000, 0:00, by the logger's
/// own clock, which knows no time zone and no daylight saving. Days, hours, minutes and seconds
/// that do not exist are carried over: day 0 is the last of the month before, 31:63:63 comes eight
/// hours into the next day.
double StampSeconds(std::uint32_t packedTime);

/// The same scale for a clock that counts milliseconds since the beginning of 1970.
double SecondsOnScale(std::int64_t milliseconds);

/// The calendar's fields of a time on that scale.
struct CalendarTime {
  int Year = 2000;
  int Month = 1;
  int Day = 1;
  int Hour = 0;
  int Minute = 0;
  int Second = 0;
  bool operator==(const CalendarTime&) const = default;
};

/// @param seconds  since 1 January 2000; fractions are cut off towards the past. What lies more
///   than some thousand years away, or is not a number, gives the beginning of the scale.
CalendarTime CalendarOf(double seconds);

/// The time of midnight before a day of the proleptic Gregorian calendar.
/// @param month  counted on from the year: 13 is January of the next, 0 December of the last.
/// @param day    counted on from the month in the same way.
double MidnightOf(int year, int month, int day);

inline constexpr double kSecondsPerDay = 86400;

}  // namespace tessmar
