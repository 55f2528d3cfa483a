#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessmar::sim {

/// Bytes that the logger sends, and when.
struct Output {
  std::int64_t DueMs = 0;  ///< On the caller's clock, as given to Receive.
  std::vector<std::uint8_t> Bytes;
};

}  // namespace tessmar::sim
