#pragma once

#include <cstdint>
#include <span>

#include "LineDevice.h"

namespace tessmar::sim {

/// The logger's addressable memory: 64 KiB, 0xFF where nothing was written.
class LoggerMemory {
 public:
  static constexpr std::size_t kSize = 65536;
  static constexpr std::uint8_t kErased = 0xFF;
  /// Where the identifier and the three parts of the configuration lie.
  static constexpr std::uint32_t kIdentifierAddress = 0;
  static constexpr std::uint32_t kFirstArea = 8;
  static constexpr std::uint32_t kSecondArea = 256;
  static constexpr std::uint32_t kThirdArea = 768;
  static constexpr std::size_t kFirstAreaSize = 242;
  static constexpr std::size_t kSecondAreaSize = 48;

  LoggerMemory() : bytes_(kSize, kErased) {}

  void Erase() { bytes_.assign(kSize, kErased); }

  /// What is stored from address on; erased memory beyond the end.
  Bytes Read(std::uint32_t address, std::size_t count) const;
  std::uint8_t At(std::uint32_t address) const;

  /// Bytes beyond the end are dropped.
  void Write(std::uint32_t address, std::span<const std::uint8_t> data);

  /// Stores a 315-byte configuration in its three areas.
  void StoreConfiguration(std::span<const std::uint8_t> image);
  /// The configuration as the three areas hold it, 315 bytes.
  Bytes Configuration() const;

 private:
  Bytes bytes_;
};

}  // namespace tessmar::sim
