#include "plot/Navigation.h"

#include <algorithm>

namespace tessmar {
namespace {

constexpr double kRoomBeside = 0.02;  // Of the whole, on each side.
constexpr std::size_t kMostViews = 500;

// Into the bounds of everything: first as wide as allowed, then moved to touch it.
TimeRange Bounded(TimeRange view, TimeRange whole) {
  const TimeRange widest = FittedView(whole);
  const double length =
      std::clamp(view.Length(), kNarrowestView, std::max(widest.Length(), kNarrowestView));
  const double centre = std::clamp((view.Begin + view.End) / 2, widest.Begin + length / 2,
                                   std::max(widest.End - length / 2, widest.Begin + length / 2));
  return {centre - length / 2, centre + length / 2};
}

}  // namespace

TimeRange FittedView(TimeRange whole) {
  const double room = std::max(whole.Length() * kRoomBeside, kNarrowestView / 2);
  return {whole.Begin - room, whole.End + room};
}

TimeRange Zoomed(TimeRange view, double factor, double around, TimeRange whole) {
  const double length = std::clamp(view.Length() * factor, kNarrowestView,
                                   std::max(FittedView(whole).Length(), kNarrowestView));
  const double part = view.Length() > 0 ? (around - view.Begin) / view.Length() : 0.5;
  const double begin = around - part * length;
  return Bounded({begin, begin + length}, whole);
}

TimeRange Moved(TimeRange view, double part, TimeRange whole) {
  const double by = part * view.Length();
  return Bounded({view.Begin + by, view.End + by}, whole);
}

void ViewHistory::Begin(TimeRange view) {
  views_.assign(1, view);
  place_ = 0;
  wheeling_ = false;
}

void ViewHistory::Go(TimeRange view, ViewChange change, std::int64_t nowMs) {
  if (view == views_[place_]) return;
  views_.resize(place_ + 1);
  const bool same =
      change == ViewChange::Wheel && wheeling_ && place_ > 0 && nowMs - lastMs_ <= kOneGestureMs;
  if (!same) {
    if (views_.size() == kMostViews) views_.erase(views_.begin());
    views_.push_back(view);
    place_ = views_.size() - 1;
  }
  views_[place_] = view;
  wheeling_ = change == ViewChange::Wheel;
  lastMs_ = nowMs;
}

TimeRange ViewHistory::Back() {
  if (HasBack()) --place_;
  wheeling_ = false;
  return Present();
}

TimeRange ViewHistory::Forward() {
  if (HasForward()) ++place_;
  wheeling_ = false;
  return Present();
}

}  // namespace tessmar
