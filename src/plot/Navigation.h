#pragma once

#include <cstdint>
#include <vector>

#include "plot/PlotData.h"

namespace tessmar {

/// The narrowest view, in seconds: a stamp counts whole seconds.
inline constexpr double kNarrowestView = 2;

/// The view of everything, with a little room on both sides.
TimeRange FittedView(TimeRange whole);
/// A view narrower (factor below 1) or wider around a time that keeps its place; not narrower than
/// kNarrowestView, not wider than FittedView, and never quite beside what there is.
TimeRange Zoomed(TimeRange view, double factor, double around, TimeRange whole);
/// A view moved by a part of its own length, to the right when positive, within the same bounds.
TimeRange Moved(TimeRange view, double part, TimeRange whole);

/// How a view was left for another. Turns of the wheel shortly after each other are one change.
enum class ViewChange { Wheel, Other };

/// The views that were looked at, to go back and forth between.
class ViewHistory {
 public:
  /// Wheel turns that come within this time of each other are one change.
  static constexpr std::int64_t kOneGestureMs = 800;

  /// Forgets all and begins with this view.
  void Begin(TimeRange view);
  /// Takes a new view; what lay ahead is forgotten.
  /// @param nowMs  any clock that only goes forward, in milliseconds.
  void Go(TimeRange view, ViewChange change, std::int64_t nowMs);
  bool HasBack() const { return place_ > 0; }
  bool HasForward() const { return place_ + 1 < views_.size(); }
  /// The view before, and the one after; the present one where there is none.
  TimeRange Back();
  TimeRange Forward();
  TimeRange Present() const { return views_[place_]; }

 private:
  std::vector<TimeRange> views_{TimeRange{}};
  std::size_t place_ = 0;
  bool wheeling_ = false;
  std::int64_t lastMs_ = 0;
};

}  // namespace tessmar
