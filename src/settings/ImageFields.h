#pragma once

#include <cstdint>
#include <span>

namespace tessmar {

/// Bytes of an image as numbers, low byte first. A field that is not wholly inside the image throws
/// RangeFault.
std::uint8_t ByteAt(std::span<const std::uint8_t> image, int offset);
std::int32_t GetU16(std::span<const std::uint8_t> image, int offset);
std::uint32_t GetU24(std::span<const std::uint8_t> image, int offset);

}  // namespace tessmar
