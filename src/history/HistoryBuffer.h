#pragma once

#include <cstdint>
#include <vector>

#include "measure/Sample.h"

namespace tessmar {

/// The uploaded records, in the order in which they arrived. One in the process; its room is
/// allocated once, and storing a record allocates nothing.
class HistoryBuffer {
 public:
  static constexpr std::int32_t kCapacity = 200000;

  /// @param capacity  records at most; room for all of them is allocated.
  explicit HistoryBuffer(std::int32_t capacity = kCapacity);

  std::int32_t Count() const { return count_; }
  bool IsFull() const { return count_ == static_cast<std::int32_t>(records_.size()); }
  void Clear() { count_ = 0; }

  /// Stores a record behind the last. Throws RangeFault when the buffer is full.
  void Append(const LiveSample& record);
  /// Record 0 to Count() - 1. Throws RangeFault outside it.
  const LiveSample& Record(std::int32_t index) const;

 private:
  std::vector<LiveSample> records_;
  std::int32_t count_ = 0;
};

}  // namespace tessmar
