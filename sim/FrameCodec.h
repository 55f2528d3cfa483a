#pragma once

#include <cstdint>
#include <span>

#include "LineDevice.h"

namespace tessmar::sim {

/// Bytes with a meaning of their own on the line.
inline constexpr std::uint8_t kFrameStart = 0xF8;
inline constexpr std::uint8_t kFrameEnd = 0xF9;
inline constexpr std::uint8_t kReceived = 0xFA;       ///< Acknowledge; also: data follows.
inline constexpr std::uint8_t kCarriedOut = 0xFC;     ///< Command carried out.
inline constexpr std::uint8_t kNothingToGive = 0xFD;  ///< No data, or command not carried out.
inline constexpr std::uint8_t kEscapeByte = 0xFE;

/// Longest payload: the length byte counts the payload and two check bytes.
inline constexpr std::size_t kLongestPayload = 253;

/// CRC-16/ARC of a payload, by table.
std::uint16_t CheckValue(std::span<const std::uint8_t> payload);

/// Ways to build a frame wrongly.
struct FrameDamage {
  bool CorruptCheck = false;  ///< One bit of the check value is wrong.
  bool WrongLength = false;   ///< The length byte is one too small.
  bool BadEscape = false;     ///< The first payload byte is an escape that stands for nothing.
};

/// The wire form of a payload of 1 to 253 bytes.
Bytes EncodeFrame(std::span<const std::uint8_t> payload, FrameDamage damage = {});

/// Takes a byte stream apart: frames, and the bare bytes between them.
class FrameReceiver {
 public:
  enum class Event {
    Nothing,   ///< More bytes are needed, or a torn frame was dropped.
    BareByte,  ///< A byte outside any frame.
    Frame,     ///< A good frame; Payload() has its content.
  };

  /// @param now  a pause of more than half a second inside a frame drops what came of it.
  Event Take(std::uint8_t byte, Micros now);

  std::span<const std::uint8_t> Payload() const;

 private:
  enum class State { Outside, Length, Body, Escaped, End };

  Event TakeBody(std::uint8_t byte);
  Event Store(std::uint8_t byte);
  Event Finish(std::uint8_t byte);

  State state_ = State::Outside;
  Bytes body_;  ///< Payload and check bytes.
  std::size_t length_ = 0;
  Micros lastByte_{};
};

}  // namespace tessmar::sim
