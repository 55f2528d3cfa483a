#include "FrameCodec.h"

#include <array>

namespace tessmar::sim {
namespace {

using namespace std::chrono_literals;
constexpr Micros kLongestPause = 500ms;
constexpr std::size_t kCheckBytes = 2;

constexpr std::array<std::uint16_t, 256> MakeCheckTable() {
  std::array<std::uint16_t, 256> table{};
  for (std::size_t index = 0; index < table.size(); ++index) {
    auto value = static_cast<std::uint16_t>(index);
    for (int bit = 0; bit < 8; ++bit) {
      const bool low = (value & 1U) != 0;
      value = static_cast<std::uint16_t>(value >> 1U);
      if (low) value ^= 0xA001U;
    }
    table[index] = value;
  }
  return table;
}

constexpr auto kCheckTable = MakeCheckTable();

bool NeedsEscape(std::uint8_t byte) {
  return byte >= kFrameStart && byte <= kEscapeByte;
}

void AppendEscaped(Bytes& frame, std::uint8_t byte) {
  if (NeedsEscape(byte)) {
    frame.push_back(kEscapeByte);
    byte = static_cast<std::uint8_t>(byte - kFrameStart);
  }
  frame.push_back(byte);
}

}  // namespace

std::uint16_t CheckValue(std::span<const std::uint8_t> payload) {
  std::uint16_t value = 0;
  for (const std::uint8_t byte : payload)
    value = static_cast<std::uint16_t>((value >> 8U) ^ kCheckTable[(value ^ byte) & 0xFFU]);
  return value;
}

Bytes EncodeFrame(std::span<const std::uint8_t> payload, FrameDamage damage) {
  Bytes frame;
  frame.reserve(2 * payload.size() + 8);
  frame.push_back(kFrameStart);
  const std::size_t length = payload.size() + kCheckBytes - (damage.WrongLength ? 1 : 0);
  frame.push_back(static_cast<std::uint8_t>(length));
  for (std::size_t index = 0; index < payload.size(); ++index) {
    if (index == 0 && damage.BadEscape) {
      frame.push_back(kEscapeByte);
      frame.push_back(7);
    } else {
      AppendEscaped(frame, payload[index]);
    }
  }
  const auto check =
      static_cast<std::uint16_t>(CheckValue(payload) ^ (damage.CorruptCheck ? 1U : 0U));
  AppendEscaped(frame, static_cast<std::uint8_t>(check & 0xFFU));
  AppendEscaped(frame, static_cast<std::uint8_t>(check >> 8U));
  frame.push_back(kFrameEnd);
  return frame;
}

FrameReceiver::Event FrameReceiver::Take(std::uint8_t byte, Micros now) {
  if (now - lastByte_ > kLongestPause) state_ = State::Outside;
  lastByte_ = now;
  switch (state_) {
    case State::Outside:
      if (byte != kFrameStart) return Event::BareByte;
      state_ = State::Length;
      return Event::Nothing;
    case State::Length:
      body_.clear();
      length_ = byte;
      state_ = length_ > kCheckBytes ? State::Body : State::Outside;
      return Event::Nothing;
    case State::Body:
      return TakeBody(byte);
    case State::Escaped:
      if (byte > kEscapeByte - kFrameStart) {
        state_ = State::Outside;
        return Event::Nothing;
      }
      state_ = State::Body;
      return Store(static_cast<std::uint8_t>(byte + kFrameStart));
    case State::End:
      return Finish(byte);
  }
  return Event::Nothing;
}

FrameReceiver::Event FrameReceiver::TakeBody(std::uint8_t byte) {
  if (byte == kEscapeByte) {
    state_ = State::Escaped;
    return Event::Nothing;
  }
  // A start byte is never bare inside a frame: the frame before it was torn, a new one begins.
  if (byte == kFrameStart) {
    state_ = State::Length;
    return Event::Nothing;
  }
  if (NeedsEscape(byte)) {
    state_ = State::Outside;
    return Event::Nothing;
  }
  return Store(byte);
}

FrameReceiver::Event FrameReceiver::Store(std::uint8_t byte) {
  body_.push_back(byte);
  if (body_.size() == length_) state_ = State::End;
  return Event::Nothing;
}

FrameReceiver::Event FrameReceiver::Finish(std::uint8_t byte) {
  state_ = byte == kFrameStart ? State::Length : State::Outside;
  if (byte != kFrameEnd) return Event::Nothing;
  const std::uint16_t check = CheckValue(Payload());
  const std::size_t end = body_.size() - kCheckBytes;
  const bool good = body_[end] == (check & 0xFFU) && body_[end + 1] == (check >> 8U);
  return good ? Event::Frame : Event::Nothing;
}

std::span<const std::uint8_t> FrameReceiver::Payload() const {
  return std::span(body_).first(body_.size() - kCheckBytes);
}

}  // namespace tessmar::sim
