#include "plot/TimeTicks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "measure/StampTime.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr double kMonth = 365.25 / 12 * kSecondsPerDay;

/// A distance of ticks: of seconds, or, where that is 0, of months.
struct TickStep {
  double Seconds = 0;
  int Months = 0;
  double Length() const { return Months > 0 ? Months * kMonth : Seconds; }
};

constexpr std::array kSteps{
    TickStep{1},         TickStep{2},          TickStep{5},         TickStep{10},
    TickStep{15},        TickStep{30},         TickStep{60},        TickStep{120},
    TickStep{300},       TickStep{600},        TickStep{900},       TickStep{1800},
    TickStep{3600},      TickStep{2 * 3600},   TickStep{3 * 3600},  TickStep{6 * 3600},
    TickStep{12 * 3600}, TickStep{86400},      TickStep{2 * 86400}, TickStep{4 * 86400},
    TickStep{7 * 86400}, TickStep{14 * 86400}, TickStep{0, 1},      TickStep{0, 2},
    TickStep{0, 3},      TickStep{0, 6},       TickStep{0, 12},     TickStep{0, 24},
    TickStep{0, 60},     TickStep{0, 120},     TickStep{0, 240},    TickStep{0, 600},
    TickStep{0, 1200},   TickStep{0, 2400},    TickStep{0, 6000},   TickStep{0, 12000},
};

TickStep StepFor(TimeRange range, int most) {
  for (const TickStep& step : kSteps) {
    if (range.Length() / step.Length() <= most) return step;
  }
  return kSteps.back();
}

std::vector<double> MonthTicks(TimeRange range, int months) {
  std::vector<double> ticks;
  const CalendarTime begin = CalendarOf(range.Begin);
  // Counted from the year 0, so that years come out round.
  int month = (begin.Year * 12 + begin.Month - 1) / months * months;
  for (;; month += months) {
    const double time = MidnightOf(0, month + 1, 1);
    if (time > range.End) return ticks;
    if (time >= range.Begin) ticks.push_back(time);
  }
}

std::vector<double> EvenTicks(TimeRange range, double step) {
  std::vector<double> ticks;
  for (double n = std::ceil(range.Begin / step); n * step <= range.End; ++n)
    ticks.push_back(n * step);
  return ticks;
}

QString TimeOfDay(const CalendarTime& time, bool seconds) {
  const QString text =
      u"%1:%2"_s.arg(time.Hour, 2, 10, QLatin1Char('0')).arg(time.Minute, 2, 10, QLatin1Char('0'));
  return seconds ? text + u":%1"_s.arg(time.Second, 2, 10, QLatin1Char('0')) : text;
}

QString MonthLabel(const CalendarTime& time, int months) {
  if (months % 12 == 0) return QString::number(time.Year);
  return u"%1/%2"_s.arg(time.Month, 2, 10, QLatin1Char('0')).arg(time.Year);
}

}  // namespace

QString DateOnAxis(double seconds, const SystemLocale& locale) {
  const CalendarTime time = CalendarOf(seconds);
  return locale.StampDate(QDate(time.Year, time.Month, time.Day));
}

QString TimeOnAxis(double seconds, const SystemLocale& locale) {
  return DateOnAxis(seconds, locale) + u' ' + TimeOfDay(CalendarOf(seconds), true);
}

QString RangeText(TimeRange range, const SystemLocale& locale) {
  return TimeOnAxis(range.Begin, locale) + u" – "_s + TimeOnAxis(range.End, locale);
}

std::vector<TimeTick> TimeTicks(TimeRange range, int most, const SystemLocale& locale) {
  std::vector<TimeTick> ticks;
  if (!(range.Length() > 0)) return ticks;
  const TickStep step = StepFor(range, std::max(most, 1));
  const std::vector<double> times =
      step.Months > 0 ? MonthTicks(range, step.Months) : EvenTicks(range, step.Seconds);
  double lastDay = -1;
  for (const double time : times) {
    const CalendarTime fields = CalendarOf(time);
    QString label;
    if (step.Months > 0) {
      label = MonthLabel(fields, step.Months);
    } else if (step.Seconds >= kSecondsPerDay) {
      label = DateOnAxis(time, locale);
    } else {
      label = TimeOfDay(fields, step.Seconds < 60);
      const double day = std::floor(time / kSecondsPerDay);
      if (ticks.empty() || day != lastDay) label += u'\n' + DateOnAxis(time, locale);
      lastDay = day;
    }
    ticks.push_back({time, label});
  }
  return ticks;
}

}  // namespace tessmar
