#pragma once

#include <chrono>
#include <memory>

#include "FakeMessageLoop.h"
#include "FakeSerialPort.h"
#include "sim/LineDevice.h"

namespace tessmar::test {

/// The wire between a FakeSerialPort and a simulated logger or modem, in the virtual time of a
/// FakeMessageLoop. The device's own speed (LoggerOptions::BaudRate) throttles both directions.
///
///     FakeMessageLoop loop(link);
///     FakeSerialPort port;
///     sim::SimulatedLogger logger({.AnalogChannels = 8, .PulseChannels = 2, .Records = 25});
///     SimulatedLine line(port, loop, logger);
///     logger.AddFault({.Mode = sim::FailureMode::Silent, .Count = 3});
class SimulatedLine {
 public:
  SimulatedLine(FakeSerialPort& port, FakeMessageLoop& loop, sim::LineDevice& device)
      : port_(port), loop_(loop), device_(device), plugged_(std::make_shared<bool>(true)) {
    port_.OnWrite = [this](const Bytes& bytes) { Carry(bytes); };
  }
  ~SimulatedLine() {
    port_.OnWrite = nullptr;
    *plugged_ = false;
  }
  SimulatedLine(const SimulatedLine&) = delete;
  SimulatedLine& operator=(const SimulatedLine&) = delete;

  /// Takes the plug out or puts it back; what is sent meanwhile, either way, is gone.
  void SetPlugged(bool plugged) { *plugged_ = plugged; }

 private:
  void Carry(const Bytes& bytes) {
    if (!*plugged_) return;
    device_.Receive(bytes, std::chrono::milliseconds(loop_.NowMs()));
    for (const sim::Output& output : device_.TakeOutput()) {
      const auto due = std::chrono::ceil<std::chrono::milliseconds>(output.Due).count();
      // What is under way outlives the line, as the loop may run on after it.
      loop_.At(due, [&port = port_, plugged = plugged_, content = output.Content] {
        if (*plugged) port.Arrive(content);
      });
    }
  }

  FakeSerialPort& port_;
  FakeMessageLoop& loop_;
  sim::LineDevice& device_;
  std::shared_ptr<bool> plugged_;
};

}  // namespace tessmar::test
