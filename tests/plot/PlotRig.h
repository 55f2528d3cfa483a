#pragma once

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "measure/Series.h"
#include "plot/PlotData.h"

namespace tessmar::test {

inline constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

/// A set of one channel, logged every so many seconds (0: whenever something happens).
inline SeriesSet OneChannel(std::vector<double> times, std::vector<double> values,
                            double interval = 60) {
  SeriesSet set;
  set.LoggerName = QStringLiteral("Well 7");
  set.Times = std::move(times);
  set.Stretches = {{.First = 0, .Interval = interval}};
  set.Channels.push_back({.Place = QStringLiteral("a1"),
                          .Unit = QStringLiteral("mg/L"),
                          .Decimals = 2,
                          .Values = std::move(values)});
  return set;
}

/// Records as bad as they come: holes, missing values, equal times, steps back, records without a
/// time, and values that jump.
inline SeriesSet WildSet(unsigned seed, int records) {
  std::mt19937 luck(seed);
  std::vector<double> times;
  std::vector<double> values;
  double time = 1000;
  for (int i = 0; i < records; ++i) {
    const unsigned kind = luck() % 40;
    if (kind == 0) {
      time -= static_cast<double>(luck() % 2000);
    } else if (kind == 1) {
      time += static_cast<double>(luck() % 5000);
    } else if (kind > 4) {
      time += 60;
    }
    times.push_back(luck() % 50 == 0 ? kNone : time);
    values.push_back(luck() % 15 == 0 ? kNone : static_cast<double>(luck() % 1000) - 300);
  }
  return OneChannel(times, values);
}

}  // namespace tessmar::test
