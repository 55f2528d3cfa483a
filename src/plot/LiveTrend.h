#pragma once

#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

#include "base/SystemLocale.h"
#include "link/LinkState.h"
#include "measure/LiveDisplay.h"
#include "measure/Sample.h"
#include "measure/Series.h"
#include "plot/PlotData.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// Live readings as a growing plot: what the main screen shows of the enabled channels, by the
/// logger's time, from the moment the trend is made. Without a sample there is a gap.
class LiveTrend {
 public:
  /// When it holds so many records the older half is forgotten.
  static constexpr std::size_t kMostRecords = 200000;
  /// A logger that has not answered for so long, in milliseconds, is missed.
  static constexpr std::int64_t kPatienceMs = 6000;

  /// All must outlive it. It takes the samples that are in the ring already.
  LiveTrend(const LinkState& link, const LoggerSettings& settings, LiveDisplay& display);

  PlotData& Data() { return data_; }

  /// Takes a sample that was just pushed. @return true when the channels are no longer the same and
  /// the plot has begun anew, as after programming or with another logger.
  bool Take(const QDateTime& now);

  /// What there is to say of the readings: that sampling is off, the session has ended, or the
  /// logger has not answered for a while; empty while they come.
  QString StateText(const QDateTime& now, const SystemLocale& locale) const;

 private:
  SeriesSet EmptySet() const;
  bool IsSameSet() const;
  void AppendEntry(std::size_t entry);
  double ValueOf(const Series& series, std::size_t entry) const;

  const LinkState& link_;
  const LoggerSettings& settings_;
  LiveDisplay& display_;
  PlotData data_;
  std::optional<QDateTime> lastSample_;
};

}  // namespace tessmar
