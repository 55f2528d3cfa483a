#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

namespace tessmar::sim {

using Bytes = std::vector<std::uint8_t>;

/// A point on the caller's clock. Milliseconds convert to it without a cast.
using Micros = std::chrono::microseconds;

/// Bytes that a device sends, and when their last one has left the wire.
struct Output {
  Micros Due{};
  Bytes Content;
  bool operator==(const Output&) const = default;
};

/// Something at the far end of a serial line. Passive: it has no timer and no port of its own, so
/// the same device runs in virtual time in tests and on a pseudo-terminal in tessmar-sim.
class LineDevice {
 public:
  virtual ~LineDevice() = default;

  /// The host has written bytes. The clock never goes back from one call to the next.
  virtual void Receive(std::span<const std::uint8_t> bytes, Micros now) = 0;

  /// Everything to be sent that was not taken yet. Due may lie in the future, also beyond that of
  /// what is taken later.
  virtual std::vector<Output> TakeOutput() = 0;

  /// Hours without a connection have passed.
  virtual void TimePassed() {}

  /// The host has closed its port, which drops the line signals.
  virtual void LineDropped() {}
};

}  // namespace tessmar::sim
