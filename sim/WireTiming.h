#pragma once

#include <utility>
#include <vector>

#include "LineDevice.h"

namespace tessmar::sim {

/// The time that bytes take on a wire: 10 bits each, one after another, or none at all.
class WireTiming {
 public:
  /// @param baudRate  bits a second in each direction; 0 for a wire without delay.
  explicit WireTiming(int baudRate) : baudRate_(baudRate) {}

  /// When the next byte of a host that has written it by now is fully received.
  Micros Arrival(Micros now);

  /// Queues bytes to leave from a moment on, after whatever is still leaving.
  void Send(const Bytes& bytes, Micros from);

  std::vector<Output> Take() { return std::exchange(queue_, {}); }

 private:
  /// Time of so many bytes, rounded up.
  Micros TimeOf(std::int64_t bytes) const;
  void Queue(Bytes bytes, Micros due);

  int baudRate_;
  Micros inStart_{};
  std::int64_t inBytes_ = 0;
  Micros outFree_{};
  std::vector<Output> queue_;
};

}  // namespace tessmar::sim
