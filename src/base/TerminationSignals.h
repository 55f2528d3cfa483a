#pragma once

#include <functional>

class QSocketNotifier;

namespace tessmar {

/// Turns the signals with which a desktop or a terminal asks a program to end (SIGTERM, SIGINT,
/// SIGHUP) into a call in the message loop.
/// A signal that the process was started to ignore, as by nohup, stays ignored. On platforms
/// without such signals it does nothing. One at a time.
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> onSignal);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  std::function<void()> onSignal_;
  QSocketNotifier* notifier_ = nullptr;
};

}  // namespace tessmar
