#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <vector>

#include "base/MessageLoop.h"
#include "link/Comm.h"
#include "link/SerialPort.h"
#include "link/cmd.h"

namespace tessmar::bench {

/// A message loop in which nothing ever happens.
class IdleLoop final : public MessageLoop {
 public:
  void RunOnce() override {}
  void RunPending() override {}
  bool Ending() const override { return false; }
};

/// A port whose input queue is one answer, as often as it is asked for.
class EchoPort final : public SerialPort {
 public:
  explicit EchoPort(std::vector<std::uint8_t> answer) : answer_(std::move(answer)) {}

  void Open(std::int16_t, const QString&) override {}
  void Close() override {}
  bool IsOpen() const override { return true; }
  std::int16_t Number() const override { return 1; }
  QString Settings() const override { return {}; }
  int InputCount() const override { return static_cast<int>(answer_.size() - taken_); }
  void DiscardInput() override { taken_ = answer_.size(); }
  std::uint8_t ReadByte() override { return answer_[taken_++]; }
  std::size_t Read(std::span<std::uint8_t> room) override {
    const std::size_t count = std::min(room.size(), answer_.size() - taken_);
    std::copy_n(answer_.begin() + static_cast<std::ptrdiff_t>(taken_), count, room.begin());
    taken_ += count;
    return count;
  }
  std::vector<std::uint8_t> ReadAll() override { return {}; }
  void Write(std::span<const std::uint8_t>) override { taken_ = 0; }
  void SetDtr(bool) override {}
  void SetRts(bool) override {}
  void SetHandshaking(Handshaking) override {}

  void Again() { taken_ = 0; }

 private:
  std::vector<std::uint8_t> answer_;
  std::size_t taken_ = 0;
};

/// What a block carries.
inline std::array<std::uint8_t, kHistoryReplySize> BlockPayload() {
  std::array<std::uint8_t, kHistoryReplySize> payload{};
  std::iota(payload.begin(), payload.end(), std::uint8_t{10});
  return payload;
}

/// Every byte value is in it, so that seven of them are escaped.
inline std::vector<std::uint8_t> BlockFrame() {
  const auto payload = BlockPayload();
  const std::uint16_t check = Crc16(payload, 0, kHistoryReplySize - 1);
  std::vector<std::uint8_t> frame{kStartOfFrame, kHistoryReplySize + 2};
  const auto append = [&frame](std::uint8_t byte) {
    const bool escaped = byte >= kStartOfFrame && byte <= kEscape;
    if (escaped) frame.push_back(kEscape);
    frame.push_back(escaped ? static_cast<std::uint8_t>(byte - kStartOfFrame) : byte);
  };
  for (const std::uint8_t byte : payload) append(byte);
  append(static_cast<std::uint8_t>(check & 0xFF));
  append(static_cast<std::uint8_t>(check >> 8));
  frame.push_back(kEndOfFrame);
  return frame;
}

}  // namespace tessmar::bench
