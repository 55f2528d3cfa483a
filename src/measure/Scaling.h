#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "settings/LoggerSettings.h"

namespace tessmar {

/// Raw count to engineering units, linear through the channel's two points; extrapolates beyond
/// them. Equal raw points give LowerLimit, limits closer than 0.0001 give UpperLimit.
///
/// @param raw  a word of a record, 0 to 65535; never the no-sample marker.
double ScaleRaw(const AnalogChannelSettings& channel, std::int32_t raw);

/// Room that FormatValueTo needs for any double: 309 digits, a sign, a point and six decimals.
inline constexpr int kFormattedValueSize = 320;

/// A number rounded half to even to its decimals and shown with 0 to 6 of them, with a point,
/// without grouping or exponent. Never shows a negative zero.
///
/// What is rounded is the double itself: only a value that lies exactly between two results
/// is a tie. So 0.125 with two decimals is a tie and gives "0.12", but 2.675, whose nearest double
/// lies a little below, gives "2.67" and 2.665, a little above, "2.67" too. Beyond 15 digits the
/// digits are those of the double, not zeros. A value that is not finite gives "---".
///
/// @param decimals  below 0 counts as 0. With more than 6, which only a file or a logger can ask
/// for, the value is rounded to that many first and what comes of it to the 6 that are shown.
QString FormatValue(double value, int decimals);

/// The same into a buffer of kFormattedValueSize characters, without a zero at the end.
/// Allocates nothing.
/// @return the number of characters written.
int FormatValueTo(char* out, double value, int decimals);

/// The number that FormatValue shows: the double nearest to its digits, never a negative zero.
/// Nothing for a value that is not finite.
std::optional<double> ShownNumber(double value, int decimals);

}  // namespace tessmar
