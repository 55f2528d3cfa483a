#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "base/Clock.h"

namespace tessmar {

/// The wish that the command ends: Ctrl-C, or a signal of the system.
///
/// The first asks a command to end where that loses nothing; the second ends all waits. Neither
/// cuts what may not be cut: settings on their way to the logger arrive or fail by their own rules,
/// and all waits end only when that has taken longer than kLongestFinishMs since the first wish.
class StopRequest {
 public:
  static constexpr qint64 kLongestFinishMs = 3000;

  /// @param endWaits  ends all waits on the line, for good.
  StopRequest(const Clock& clock, std::function<void()> endWaits)
      : clock_(clock), endWaits_(std::move(endWaits)) {}

  /// Called for each signal.
  void Press();
  /// Called every 100 ms.
  void Tick();

  bool Wanted() const { return presses_ > 0; }

  /// True while something may not be cut.
  std::function<bool()> IsUncut = [] { return false; };

 private:
  const Clock& clock_;
  std::function<void()> endWaits_;
  int presses_ = 0;
  std::optional<qint64> heldSince_;  ///< The first wish that was held back.
};

}  // namespace tessmar
