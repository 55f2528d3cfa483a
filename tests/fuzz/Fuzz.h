#pragma once

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

namespace tessmar::fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Ends the process where a property does not hold, and names it; whoever feeds the inputs keeps
/// the one that is at work.
inline void Hold(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

/// An input as the bytes of a file.
inline QByteArray FileOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

/// Takes an input apart from its front. What lies behind its end reads as 0 and as empty.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  bool AtEnd() const { return rest_.empty(); }
  int Byte() {
    if (rest_.empty()) return 0;
    const int byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }
  /// 0 to count - 1; count is at most 256.
  int Below(int count) { return Byte() % count; }
  bool Flag() { return (Byte() & 1) != 0; }
  /// Low byte first.
  std::int64_t Number(int bytes) {
    std::uint64_t number = 0;
    for (int i = 0; i < bytes; ++i) number |= static_cast<std::uint64_t>(Byte()) << 8 * i;
    return static_cast<std::int64_t>(number);
  }
  Bytes Take(std::size_t count) {
    const auto taken = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return {taken.begin(), taken.end()};
  }
  /// So many bytes as the first one says.
  Bytes TakeCounted() { return Take(static_cast<std::size_t>(Byte())); }
  QByteArray TakeFile() {
    const Bytes bytes = TakeCounted();
    return FileOf(bytes.data(), bytes.size());
  }
  Bytes Rest() { return Take(rest_.size()); }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace tessmar::fuzz
