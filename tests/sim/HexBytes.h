#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sim/LineDevice.h"

namespace tessmar::test {

/// Bytes from their hexadecimal text, "F8 03 0F".
inline std::vector<std::uint8_t> Hex(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t at = 0; at + 1 < text.size(); at += 3)
    bytes.push_back(
        static_cast<std::uint8_t>(std::stoi(std::string(text.substr(at, 2)), nullptr, 16)));
  return bytes;
}

/// Hexadecimal text of bytes, as Hex reads it; failures are readable that way.
inline std::string Text(const std::vector<std::uint8_t>& bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 15U];
  }
  return text;
}

/// Everything that a device has to send, whenever it is due.
inline std::vector<std::uint8_t> AllOutput(sim::LineDevice& device) {
  std::vector<std::uint8_t> all;
  for (const sim::Output& output : device.TakeOutput())
    all.insert(all.end(), output.Content.begin(), output.Content.end());
  return all;
}

/// The payload of the reply frame in an answer, with its escapes undone; the frame is not checked.
inline std::vector<std::uint8_t> ReplyPayload(const std::vector<std::uint8_t>& answer) {
  std::vector<std::uint8_t> payload;
  const auto start = std::find(answer.begin(), answer.end(), 0xF8);
  for (auto at = start; at < answer.end(); ++at) {
    if (at < start + 2) continue;
    payload.push_back(*at == 0xFE ? static_cast<std::uint8_t>(*++at + 0xF8) : *at);
  }
  if (payload.size() >= 3) payload.resize(payload.size() - 3);  // check value and end
  return payload;
}

/// The answer to a request in hexadecimal text, at a time in milliseconds.
inline std::string Ask(sim::LineDevice& device, std::string_view request, std::int64_t atMs = 0) {
  device.Receive(Hex(request), std::chrono::milliseconds(atMs));
  return Text(AllOutput(device));
}

/// The request frames that the tests use most.
inline constexpr std::string_view kAskTime = "F8 03 00 00 00 F9";
inline constexpr std::string_view kAskStatus = "F8 03 0C 00 05 F9";
inline constexpr std::string_view kAskVersion = "F8 03 0F 40 04 F9";
inline constexpr std::string_view kAskSample = "F8 03 0A 80 07 F9";
inline constexpr std::string_view kAskMeasurement = "F8 04 09 01 C7 90 F9";
inline constexpr std::string_view kAskFirstBlock = "F8 04 0D 00 04 90 F9";
inline constexpr std::string_view kAskNextBlock = "F8 04 0D 01 C5 50 F9";
inline constexpr std::string_view kAskBlockAgain = "F8 04 0D 02 85 51 F9";
inline constexpr std::string_view kAskClear = "F8 05 04 A4 4A BA F6 F9";
inline constexpr std::string_view kAskCommit = "F8 05 0B AB BA 8F 41 F9";
inline constexpr std::string_view kAskInitialize = "F8 09 06 A6 6A 00 00 00 02 E7 0E F9";
inline constexpr std::string_view kAskResetPulses = "F8 04 0E 03 44 61 F9";

}  // namespace tessmar::test
