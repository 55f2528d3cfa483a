#pragma once

#include <QString>
#include <cstdint>
#include <span>
#include <vector>

#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// The logger's configuration memory as bytes, 315 of them.
using ConfigImage = std::vector<std::uint8_t>;
inline constexpr int kConfigImageSize = 315;

/// Fills a new image from the settings and the channel counts. A value that does not fit its field
/// ends the work there, with zeros behind it.
/// @return true on success.
bool PackConfigImage(const LinkState& link, const LoggerSettings& settings, ConfigImage& image);

/// Fills the settings from an image, normally of 315 bytes. A shorter one ends the work at the
/// first field behind its end, with the fields before it taken over.
/// @return true on success.
bool UnpackConfigImage(const LinkState& link, std::span<const std::uint8_t> image,
                       LoggerSettings& settings);

/// A real number as the logger stores it: 20-bit mantissa (0 to 999999), 3-bit decimal exponent (0
/// to 7), sign in bit 23; six significant digits. Values beyond 999999 are taken as 999999. Not a
/// number throws ConversionFault.
std::uint32_t EncodeDecimal24(double value);
double DecodeDecimal24(std::uint32_t code);

/// A text in exactly length bytes, one per character (Latin-1), cut or padded with blanks.
void PutFixedText(const QString& text, std::span<std::uint8_t> image, int offset, int length);
/// Bytes 32 to 126 and 161 to 255 as characters, all others as blanks; trailing blanks removed.
QString GetFixedText(std::span<const std::uint8_t> image, int offset, int length);

/// Low byte first. A value that does not fit throws ConversionFault, an offset outside the image
/// RangeFault; the bytes ahead of the one that fails are written.
void PutByte(std::int32_t value, std::span<std::uint8_t> image, int offset);
void PutU16(std::int32_t value, std::span<std::uint8_t> image, int offset);
void PutU24(std::uint32_t value, std::span<std::uint8_t> image, int offset);

}  // namespace tessmar
