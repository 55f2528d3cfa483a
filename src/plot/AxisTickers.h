#pragma once

#include <algorithm>
#include <optional>

#include "base/SystemLocale.h"
#include "plot/PlottingLibrary.h"
#include "plot/TimeTicks.h"

namespace tessmar {

/// Round times, as many as have room.
class TimeTicker final : public QCPAxisTicker {
 public:
  explicit TimeTicker(const SystemLocale& locale) : locale_(locale) {}

  void SetMost(int most) { most_ = most; }

  void generate(const QCPRange& range, const QLocale& /*locale*/, QChar /*format*/,
                int /*precision*/, QVector<double>& ticks, QVector<double>* subTicks,
                QVector<QString>* labels) override {
    ticks.clear();
    if (subTicks != nullptr) subTicks->clear();
    if (labels != nullptr) labels->clear();
    for (const TimeTick& tick : TimeTicks({range.lower, range.upper}, most_, locale_)) {
      ticks.append(tick.Time);
      if (labels != nullptr) labels->append(tick.Label);
    }
  }

 private:
  const SystemLocale& locale_;
  int most_ = 8;
};

/// Round values. A label that would cover the one below, or stand out above its strip, is left
/// away: the lowest one of the strip above may hang down there.
class ValueTicker final : public QCPAxisTicker {
 public:
  /// Both outlive it.
  ValueTicker(const QCPAxisRect& strip, const QWidget& letters)
      : strip_(strip), letters_(letters) {}

  void generate(const QCPRange& range, const QLocale& locale, QChar format, int precision,
                QVector<double>& ticks, QVector<double>* subTicks,
                QVector<QString>* labels) override {
    QCPAxisTicker::generate(range, locale, format, precision, ticks, subTicks, labels);
    if (labels == nullptr || strip_.height() <= 0) return;
    const double height = range.size() * letters_.fontMetrics().height() / strip_.height();
    const auto count = std::min(ticks.size(), labels->size());
    std::optional<double> last;
    for (qsizetype i = 0; i < count; ++i) {
      if (ticks[i] < range.lower) continue;
      const bool crowded = last && ticks[i] - *last < height;
      if (crowded || ticks[i] > range.upper - height / 2) {
        (*labels)[i].clear();
      } else {
        last = ticks[i];
      }
    }
  }

 private:
  const QCPAxisRect& strip_;
  const QWidget& letters_;
};

}  // namespace tessmar
