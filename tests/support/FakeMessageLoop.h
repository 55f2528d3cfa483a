#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <stdexcept>

#include "base/MessageLoop.h"
#include "link/LinkState.h"

namespace tessmar::test {

/// A message loop in virtual time. RunOnce goes to the next thing that is due, an event given by At
/// or After or the next 100 ms tick, whichever comes first, and runs it. Nothing waits for real.
class FakeMessageLoop final : public MessageLoop {
 public:
  explicit FakeMessageLoop(LinkState& link)
      : OnTick([&link] {
          if (link.WaitTicks > 0) --link.WaitTicks;
        }) {}

  void RunOnce() override {
    if (++runs_ > MostRuns) throw std::runtime_error("the loop was run without an end");
    if (!events_.empty() && events_.begin()->first <= nextTickMs_) {
      RunFirstEvent();
      return;
    }
    nowMs_ = nextTickMs_;
    nextTickMs_ += 100;
    ++ticks_;
    OnTick();
  }

  /// Runs the events that are due now.
  void RunPending() override {
    if (++runs_ > MostRuns) throw std::runtime_error("the loop was run without an end");
    while (!events_.empty() && events_.begin()->first <= nowMs_) RunFirstEvent();
  }

  bool Ending() const override { return ending_; }

  /// Runs work at a time, or after a time, in virtual milliseconds.
  void At(qint64 ms, std::function<void()> work) { events_.emplace(ms, std::move(work)); }
  void After(qint64 ms, std::function<void()> work) { At(nowMs_ + ms, std::move(work)); }

  /// Runs the loop for a time.
  void RunFor(qint64 ms) {
    bool over = false;
    After(ms, [&over] { over = true; });
    while (!over) RunOnce();
  }

  void End() { ending_ = true; }

  qint64 NowMs() const { return nowMs_; }
  /// Ticks since the start.
  int Ticks() const { return ticks_; }

  /// What a tick does; lowers WaitTicks unless a test sets more.
  std::function<void()> OnTick;
  /// A loop that was run so often has no end. Raised by who runs it for months.
  std::int64_t MostRuns = 2'000'000;

 private:
  void RunFirstEvent() {
    const auto event = events_.begin();
    nowMs_ = std::max(nowMs_, event->first);
    const std::function<void()> work = event->second;
    events_.erase(event);
    work();
  }

  std::multimap<qint64, std::function<void()>> events_;
  qint64 nowMs_ = 0;
  qint64 nextTickMs_ = 100;
  int ticks_ = 0;
  std::int64_t runs_ = 0;
  bool ending_ = false;
};

}  // namespace tessmar::test
