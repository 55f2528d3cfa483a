#pragma once

#include "plot/LiveTrend.h"
#include "plot/frmPlot.h"

namespace tessmar {

/// The plot of live readings. It scrolls with them, holds still while another stretch of time is
/// looked at, and follows again once everything is shown or its end is gone to. Not modal.
class frmTrend final : public frmPlot {
 public:
  /// How much it shows at first, in seconds.
  static constexpr double kFirstWidth = 600;

  /// @param trend  must outlive the window.
  frmTrend(LiveTrend& trend, const PlotParts& parts, QWidget* parent = nullptr);

  /// A sample was pushed.
  void TakeSample();
  bool IsFollowing() const { return following_; }

 private:
  void LookedElsewhere();
  void ShowState();

  LiveTrend& trend_;
  QLabel* lblLink_;
  bool following_ = true;
  double width_ = kFirstWidth;
};

}  // namespace tessmar
