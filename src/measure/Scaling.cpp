#include "measure/Scaling.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

namespace tessmar {
namespace {

constexpr int kMostDecimals = 6;
constexpr int kMostPlaces = 255;
constexpr std::array<double, kMostDecimals + 1> kPowersOfTen{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
constexpr std::array<std::uint64_t, kMostDecimals + 1> kUnits{1,     10,     100,    1000,
                                                              10000, 100000, 1000000};
// Below this a scaled value keeps enough fraction bits to tell a half from its neighbours.
constexpr double kFastLimit = 1e15;
constexpr double kClosestLimits = 0.0001;
constexpr std::string_view kNotANumber = "---";

// "00" to "99", one behind the other.
constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

void WritePair(char* out, std::uint32_t number) {
  std::memcpy(out, kPairs.data() + std::size_t{2} * number, 2);
}

// Most readings have one to four digits ahead of the point.
char* WriteWhole(char* out, std::uint64_t whole) {
  if (whole >= 10000) return std::to_chars(out, out + kFormattedValueSize, whole).ptr;
  const auto number = static_cast<std::uint32_t>(whole);
  const std::uint32_t high = number / 100;
  const std::uint32_t low = number % 100;
  const std::uint32_t first = high > 0 ? high : low;
  if (first >= 10) {
    WritePair(out, first);
    out += 2;
  } else {
    *out++ = static_cast<char>('0' + first);
  }
  if (high == 0) return out;
  WritePair(out, low);
  return out + 2;
}

// Writes whole and fraction of a number of units of 10^-Decimals. Every cell of a history comes
// through here: a division by a constant costs a fraction of one by a variable, and two digits at a
// time half of one by one.
template <int Decimals>
int WriteUnits(char* out, std::uint64_t units) {
  constexpr std::uint64_t kUnit = kUnits[static_cast<std::size_t>(Decimals)];
  char* const end = WriteWhole(out, units / kUnit);
  if constexpr (Decimals == 0) return static_cast<int>(end - out);
  *end = '.';
  auto fraction = static_cast<std::uint32_t>(units % kUnit);
  for (int i = Decimals; i > 1; i -= 2) {
    WritePair(end + i - 1, fraction % 100);
    fraction /= 100;
  }
  if constexpr (Decimals % 2 == 1) end[1] = static_cast<char>('0' + fraction);
  return static_cast<int>(end - out) + 1 + Decimals;
}

int WriteUnits(char* out, std::uint64_t units, int decimals) {
  static constexpr std::array kWriters{WriteUnits<0>, WriteUnits<1>, WriteUnits<2>, WriteUnits<3>,
                                       WriteUnits<4>, WriteUnits<5>, WriteUnits<6>};
  static_assert(kWriters.size() == kMostDecimals + 1);
  return kWriters[static_cast<std::size_t>(decimals)](out, units);
}

// The same for any magnitude: rounds the exact value of the double, half to even.
int WriteExactly(char* out, double magnitude, int decimals) {
  const std::to_chars_result result =
      std::to_chars(out, out + kFormattedValueSize, magnitude, std::chars_format::fixed, decimals);
  return static_cast<int>(result.ptr - out);
}

// A magnitude rounded to units of 10^-decimals; nothing where that takes more than a product.
std::optional<std::uint64_t> RoundedUnits(double magnitude, int decimals) {
  const double scaled = magnitude * kPowersOfTen[static_cast<std::size_t>(decimals)];
  if (scaled >= kFastLimit) return std::nullopt;
  const auto below = static_cast<std::uint64_t>(scaled);
  const double fraction = scaled - static_cast<double>(below);
  // The product is off by at most half a unit in its last place; farther from the half than that,
  // the exact product lies on the same side.
  if (std::abs(fraction - 0.5) <= scaled * std::numeric_limits<double>::epsilon())
    return std::nullopt;
  return below + (fraction > 0.5 ? 1 : 0);
}

int WriteMagnitude(char* out, double magnitude, int decimals) {
  const std::optional<std::uint64_t> units = RoundedUnits(magnitude, decimals);
  return units ? WriteUnits(out, *units, decimals) : WriteExactly(out, magnitude, decimals);
}

// The double nearest to the magnitude rounded to so many places.
double RoundedTo(double magnitude, int decimals) {
  // The longest double has 309 digits ahead of its point, and a count of places is one byte.
  std::array<char, 309 + 1 + kMostPlaces> text;
  const std::to_chars_result end = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                                 std::chars_format::fixed, decimals);
  double rounded = magnitude;
  std::from_chars(text.data(), end.ptr, rounded);
  return rounded;
}

bool ShowsZero(const char* text, int length) {
  return std::all_of(text, text + length, [](char c) { return c == '0' || c == '.'; });
}

}  // namespace

double ScaleRaw(const AnalogChannelSettings& channel, std::int32_t raw) {
  const double span = channel.UpperLimit - channel.LowerLimit;
  if (std::abs(span) < kClosestLimits) return channel.UpperLimit;
  if (channel.RawScaleLower == channel.RawScaleUpper) return channel.LowerLimit;
  const std::int64_t lower = channel.RawScaleLower;
  const double fraction =
      static_cast<double>(raw - lower) / static_cast<double>(channel.RawScaleUpper - lower);
  return span * fraction + channel.LowerLimit;
}

int FormatValueTo(char* out, double value, int decimals) {
  if (!std::isfinite(value)) {
    std::copy(kNotANumber.begin(), kNotANumber.end(), out);
    return static_cast<int>(kNotANumber.size());
  }
  const int places = std::clamp(decimals, 0, kMostDecimals);
  // Two steps: the value is rounded to its own places, and what came of that to the six shown.
  if (decimals > kMostDecimals) {
    const double rounded = RoundedTo(std::abs(value), std::min(decimals, kMostPlaces));
    value = std::copysign(rounded, value);
  }
  if (!std::signbit(value)) return WriteMagnitude(out, value, places);
  const int length = WriteMagnitude(out + 1, -value, places);
  if (ShowsZero(out + 1, length)) {
    std::copy(out + 1, out + 1 + length, out);
    return length;
  }
  *out = '-';
  return length + 1;
}

std::optional<double> ShownNumber(double value, int decimals) {
  if (!std::isfinite(value)) return std::nullopt;
  const int places = std::clamp(decimals, 0, kMostDecimals);
  if (decimals <= kMostDecimals) {
    const std::optional<std::uint64_t> units = RoundedUnits(std::abs(value), places);
    // The units are below 2^53, and they and the power of ten exact as doubles. So their quotient
    // is the double nearest to the digits, as from_chars gives it, at a fraction of the cost.
    if (units) {
      const double number =
          static_cast<double>(*units) / kPowersOfTen[static_cast<std::size_t>(places)];
      return value < 0 && *units != 0 ? -number : number;
    }
  }
  std::array<char, kFormattedValueSize> text;
  const int length = FormatValueTo(text.data(), value, decimals);
  double number = 0;
  std::from_chars(text.data(), text.data() + length, number);
  return number;
}

QString FormatValue(double value, int decimals) {
  std::array<char, kFormattedValueSize> text;
  const int length = FormatValueTo(text.data(), value, decimals);
  return QString::fromLatin1(text.data(), length);
}

}  // namespace tessmar
