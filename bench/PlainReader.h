#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace tessmar::bench {

/// The least that an upload can be: one descriptor, a write and blocking reads, no message loop, no
/// check, nothing stored. What it cannot do faster is the simulator and the pseudo-terminal.
class PlainReader {
 public:
  /// Throws std::runtime_error when the device cannot be opened.
  explicit PlainReader(const QString& device);
  ~PlainReader();
  PlainReader(const PlainReader&) = delete;
  PlainReader& operator=(const PlainReader&) = delete;

  /// Asks for blocks until one has fewer than `full` records. @return the number of blocks.
  int ReadAllBlocks(int full);

  qint64 Bytes() const { return bytes_; }  ///< Written and read so far.

 private:
  int ReadBlock(bool first);
  std::uint8_t NextByte();
  std::uint8_t NextUnescapedByte();

  int descriptor_;
  qint64 bytes_ = 0;
  std::vector<std::uint8_t> input_;
  std::size_t taken_ = 0;
};

}  // namespace tessmar::bench
