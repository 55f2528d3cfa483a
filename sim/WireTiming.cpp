#include "WireTiming.h"

#include <algorithm>
#include <utility>

namespace tessmar::sim {
namespace {
constexpr std::int64_t kBitsAByte = 10;
/// Bytes reach the host in pieces of about this long, as from an adapter's buffer.
constexpr Micros kPiece{4000};
}  // namespace

Micros WireTiming::TimeOf(std::int64_t bytes) const {
  return Micros{(bytes * kBitsAByte * 1'000'000 + baudRate_ - 1) / baudRate_};
}

Micros WireTiming::Arrival(Micros now) {
  if (baudRate_ == 0) return now;
  // Counted from the start of a burst, so that rounding does not add up.
  if (now >= inStart_ + TimeOf(inBytes_)) {
    inStart_ = now;
    inBytes_ = 0;
  }
  return inStart_ + TimeOf(++inBytes_);
}

void WireTiming::Send(const Bytes& bytes, Micros from) {
  outFree_ = std::max(outFree_, from);
  if (baudRate_ == 0) {
    Queue(bytes, outFree_);
    return;
  }
  const auto perPiece = static_cast<std::size_t>(
      std::max<std::int64_t>(1, baudRate_ * kPiece.count() / (kBitsAByte * 1'000'000)));
  const Micros start = outFree_;
  for (std::size_t sent = 0; sent < bytes.size();) {
    const std::size_t count = std::min(perPiece, bytes.size() - sent);
    const auto piece = bytes.begin() + static_cast<std::ptrdiff_t>(sent);
    sent += count;
    outFree_ = start + TimeOf(static_cast<std::int64_t>(sent));
    Queue(Bytes(piece, piece + static_cast<std::ptrdiff_t>(count)), outFree_);
  }
}

void WireTiming::Queue(Bytes bytes, Micros due) {
  if (bytes.empty()) return;
  if (!queue_.empty() && queue_.back().Due == due) {
    queue_.back().Content.insert(queue_.back().Content.end(), bytes.begin(), bytes.end());
    return;
  }
  queue_.push_back({due, std::move(bytes)});
}

}  // namespace tessmar::sim
