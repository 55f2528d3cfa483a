#include "LoggerMemory.h"

#include <algorithm>

#include "LoggerSetup.h"

namespace tessmar::sim {

std::uint8_t LoggerMemory::At(std::uint32_t address) const {
  return address < kSize ? bytes_[address] : kErased;
}

Bytes LoggerMemory::Read(std::uint32_t address, std::size_t count) const {
  Bytes data(count, kErased);
  if (address >= kSize) return data;
  const auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(address);
  std::copy_n(begin, std::min(count, kSize - address), data.begin());
  return data;
}

void LoggerMemory::Write(std::uint32_t address, std::span<const std::uint8_t> data) {
  if (address >= kSize) return;
  const std::size_t count = std::min(data.size(), kSize - address);
  std::copy_n(data.begin(), count, bytes_.begin() + static_cast<std::ptrdiff_t>(address));
}

void LoggerMemory::StoreConfiguration(std::span<const std::uint8_t> image) {
  Write(kFirstArea, image.first(kFirstAreaSize));
  Write(kSecondArea, image.subspan(kFirstAreaSize, kSecondAreaSize));
  Write(kThirdArea, image.subspan(kFirstAreaSize + kSecondAreaSize));
}

Bytes LoggerMemory::Configuration() const {
  Bytes image = Read(kFirstArea, kFirstAreaSize);
  const Bytes second = Read(kSecondArea, kSecondAreaSize);
  const Bytes third = Read(kThirdArea, kConfigurationSize - kFirstAreaSize - kSecondAreaSize);
  image.insert(image.end(), second.begin(), second.end());
  image.insert(image.end(), third.begin(), third.end());
  return image;
}

}  // namespace tessmar::sim
