#include "settings/ImageFields.h"

#include <algorithm>
#include <cmath>

#include "base/Fault.h"
#include "base/Numbers.h"
#include "settings/config.h"

namespace tessmar {
namespace {

constexpr int kDecimal24Size = 3;
constexpr double kLargestMantissa = 999999;
constexpr std::uint32_t kMantissaMask = 0xFFFFF;
constexpr int kExponentShift = 20;
constexpr std::uint32_t kExponentMask = 7;
constexpr int kMostExponent = 7;
constexpr std::uint32_t kNegative = 0x800000;

bool IsKeptCharacter(std::uint8_t code) {
  constexpr std::uint8_t kFirstPrintable = 32;
  constexpr std::uint8_t kLastAscii = 126;
  constexpr std::uint8_t kFirstHighPrintable = 161;
  return (code >= kFirstPrintable && code <= kLastAscii) || code >= kFirstHighPrintable;
}

}  // namespace

std::uint8_t ByteAt(std::span<const std::uint8_t> image, int offset) {
  if (offset < 0 || offset >= static_cast<int>(image.size())) {
    throw RangeFault("the image ends ahead of this field");
  }
  return image[offset];
}

std::int32_t GetU16(std::span<const std::uint8_t> image, int offset) {
  return ByteAt(image, offset) + ByteAt(image, offset + 1) * 0x100;
}

std::uint32_t GetU24(std::span<const std::uint8_t> image, int offset) {
  std::uint32_t value = 0;
  for (int i = kDecimal24Size - 1; i >= 0; --i) value = value * 0x100 + ByteAt(image, offset + i);
  return value;
}

std::uint32_t EncodeDecimal24(double value) {
  if (std::isnan(value)) throw ConversionFault("not a number");
  if (value == 0) return 0;
  const bool negative = value < 0;
  double scaled = std::min(std::abs(value), kLargestMantissa);
  std::uint32_t exponent = 0;
  while (scaled < 99999.95 && exponent < kMostExponent) {
    scaled *= 10;
    ++exponent;
  }
  scaled += 0.5;
  // By way of its text, so that 123456.99999999999 counts as 123457.
  scaled = std::trunc(ParseLeadingNumber(FormatInvariantNumber(scaled)));
  const auto mantissa = static_cast<std::uint32_t>(std::min(scaled, kLargestMantissa));
  return mantissa + (exponent << kExponentShift) + (negative ? kNegative : 0);
}

double DecodeDecimal24(std::uint32_t code) {
  if (code == 0) return 0;
  double value = code & kMantissaMask;
  const std::uint32_t exponent = code >> kExponentShift & kExponentMask;
  // One division by a power of ten would differ in the last digits.
  for (std::uint32_t i = 0; i < exponent; ++i) value /= 10;
  return (code & kNegative) != 0 ? -value : value;
}

void PutFixedText(const QString& text, std::span<std::uint8_t> image, int offset, int length) {
  const QByteArray bytes = text.left(length).toLatin1().leftJustified(length, ' ');
  for (int i = 0; i < length; ++i) {
    PutByte(static_cast<std::uint8_t>(bytes.at(i)), image, offset + i);
  }
}

QString GetFixedText(std::span<const std::uint8_t> image, int offset, int length) {
  QString text;
  for (int i = 0; i < length; ++i) {
    const std::uint8_t code = ByteAt(image, offset + i);
    text.append(IsKeptCharacter(code) ? QChar(code) : QChar(u' '));
  }
  while (text.endsWith(u' ')) text.chop(1);
  return text;
}

void PutByte(std::int32_t value, std::span<std::uint8_t> image, int offset) {
  if (offset < 0 || offset >= static_cast<int>(image.size())) {
    throw RangeFault("the image has no such offset");
  }
  if (value < 0 || value > 0xFF) throw ConversionFault("a value does not fit its byte");
  image[offset] = static_cast<std::uint8_t>(value);
}

void PutU16(std::int32_t value, std::span<std::uint8_t> image, int offset) {
  PutByte(value & 0xFF, image, offset);
  PutByte(value >> 8, image, offset + 1);
}

void PutU24(std::uint32_t value, std::span<std::uint8_t> image, int offset) {
  PutByte(static_cast<std::int32_t>(value & 0xFF), image, offset);
  PutByte(static_cast<std::int32_t>(value >> 8 & 0xFF), image, offset + 1);
  PutByte(static_cast<std::int32_t>(value >> 16), image, offset + 2);
}

}  // namespace tessmar
