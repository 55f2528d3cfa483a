#include "history/HistoryBuffer.h"

#include "base/Fault.h"

namespace tessmar {

HistoryBuffer::HistoryBuffer(std::int32_t capacity)
    : records_(static_cast<std::size_t>(capacity)) {}

void HistoryBuffer::Append(const LiveSample& record) {
  if (IsFull()) throw RangeFault("the history buffer is full");
  records_[static_cast<std::size_t>(count_++)] = record;
}

const LiveSample& HistoryBuffer::Record(std::int32_t index) const {
  if (index < 0 || index >= count_) throw RangeFault("no such record in the history buffer");
  return records_[static_cast<std::size_t>(index)];
}

}  // namespace tessmar
