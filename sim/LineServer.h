#pragma once

#include <chrono>
#include <map>

#include "LineDevice.h"
#include "PseudoTerminal.h"

namespace tessmar::sim {

/// Connects a device with a pseudo-terminal in real time. Sleeps until bytes come or are due.
class LineServer {
 public:
  /// From here on SIGINT, SIGTERM and SIGHUP only end Run, and SIGUSR1 lets time pass for the
  /// device.
  LineServer(PseudoTerminal& terminal, LineDevice& device);

  /// Serves until one of these signals. Throws SystemError when the terminal breaks.
  void Run();

 private:
  Micros Now() const;
  int TakeSignal();
  void OnClosed();
  void ReadRequests();
  void WriteDue();

  PseudoTerminal& terminal_;
  LineDevice& device_;
  Descriptor signals_;
  std::chrono::steady_clock::time_point start_;
  std::multimap<Micros, Bytes> later_;
  Bytes outgoing_;  ///< Due, but the terminal has not taken it yet.
};

}  // namespace tessmar::sim
