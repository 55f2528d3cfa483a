#pragma once

#include <QString>
#include <vector>

#include "base/SystemLocale.h"
#include "plot/PlotData.h"

namespace tessmar {

/// A labelled place on the time axis.
struct TimeTick {
  double Time = 0;
  QString Label;  ///< Up to two lines.
};

/// The ticks of a time axis: round times, as close together as the number allows, from a second to
/// a hundred years apart. A label has the time of day where ticks are less than a day apart, with
/// the date under the first one and under the first of each day; the date where they are days
/// apart, month and year where they are months apart.
/// @param most  of ticks, at least 1.
std::vector<TimeTick> TimeTicks(TimeRange range, int most, const SystemLocale& locale);

/// Date and time of a place on the axis, in the form of the table's time stamps.
QString TimeOnAxis(double seconds, const SystemLocale& locale);
/// The date alone, in that form.
QString DateOnAxis(double seconds, const SystemLocale& locale);
/// "first - last" of a range.
QString RangeText(TimeRange range, const SystemLocale& locale);

}  // namespace tessmar
