#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <set>

#include "support/FakeSerialPort.h"

namespace tessmar::test {

/// A logger at the other end of a FakeSerialPort: 1 kB of memory and the answers to every command.
/// It answers within the write; a test takes answers away or changes what they hold.
class ScriptedLogger {
 public:
  explicit ScriptedLogger(FakeSerialPort& port) : port_(port) {
    port_.OnWrite = [this](const Bytes& bytes) { Receive(bytes); };
    PutText(0, "TM2 219 ");
  }

  void PutText(std::size_t address, const std::string& text) {
    std::copy(text.begin(), text.end(), Memory.begin() + static_cast<std::ptrdiff_t>(address));
  }

  std::array<std::uint8_t, 1024> Memory{};
  Bytes Status{5, 0, 0, 0x80, 0};                         ///< 5 records, logging.
  Bytes Version{3, 8, 2, 1, 0, 0, 0, 0};                  ///< Firmware 3, 8 and 2 channels.
  Bytes Clock{0x12, 0x05, 0x15, 0x01, 0x27, 0x12, 0x10};  ///< 2010-12-27 15:05:12.
  /// Taken 2010-12-27 15:05:20; channel n holds n, the pulse channels 9 and 10.
  Bytes Sample{0x54, 0xF1, 0xF6, 0x20, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0, 8, 0, 9, 0, 10, 0};
  std::uint8_t SampleAnswer = 0xFA;  ///< 0xFA a sample follows, 0xFD no sample.

  bool Silent = false;               ///< Answers nothing at all.
  std::set<std::uint8_t> Deaf;       ///< Opcodes that get no acknowledge.
  std::set<std::uint8_t> Failing;    ///< Opcodes acknowledged without the answer behind.
  std::set<std::size_t> StuckBytes;  ///< Addresses that keep what they hold.

  /// Opcodes of the frames received, in order, letters of the handshake left out.
  Bytes Opcodes;
  int Count(std::uint8_t opcode) const {
    return static_cast<int>(std::count(Opcodes.begin(), Opcodes.end(), opcode));
  }
  /// Runs ahead of the answer to a frame.
  std::function<void(std::uint8_t opcode)> OnCommand;

 private:
  void Receive(const Bytes& bytes) {
    if (bytes.size() == 1) {
      static const std::map<std::uint8_t, std::uint8_t> kLetters{
          {0x55, 0x54}, {0x54, 0x4D}, {0x4D, 0xFC}};
      if (!Silent) port_.Arrive({kLetters.at(bytes[0])});
      return;
    }
    const Bytes payload = PayloadOf(bytes);
    const std::uint8_t opcode = payload.at(0);
    Opcodes.push_back(opcode);
    if (OnCommand) OnCommand(opcode);
    if (Silent || Deaf.contains(opcode)) return;
    port_.Arrive({0xFA});
    if (!Failing.contains(opcode)) Answer(payload);
  }

  void Answer(const Bytes& payload) {
    switch (payload[0]) {
      case 0x00:
        return Reply(Clock);
      case 0x07:
        return Store(payload);
      case 0x08:
        return Reply(Read(payload));
      case 0x09:
        return port_.Arrive({0xFC});
      case 0x0A:
        port_.Arrive({SampleAnswer});
        if (SampleAnswer == 0xFA) Reply(Sample);
        return;
      case 0x0C:
        return Reply(Status);
      case 0x0F:
        return Reply(Version);
      default:
        return port_.Arrive({0xFC});
    }
  }

  void Store(const Bytes& payload) {
    const std::size_t first = payload[3] + 256u * payload[4];
    for (std::size_t i = 7; i < payload.size(); ++i) {
      const std::size_t address = first + i - 7;
      if (!StuckBytes.contains(address)) Memory.at(address) = payload[i];
    }
  }

  Bytes Read(const Bytes& payload) const {
    const std::size_t first = payload[1] + 256u * payload[2];
    Bytes reply(payload.begin() + 1, payload.begin() + 4);
    for (std::size_t i = 0; i < payload[4]; ++i) reply.push_back(Memory.at(first + i));
    return reply;
  }

  static Bytes PayloadOf(const Bytes& frame) {
    Bytes payload;
    for (std::size_t i = 2; i + 1 < frame.size(); ++i) {
      payload.push_back(frame[i] == 0xFE ? static_cast<std::uint8_t>(frame[++i] + 0xF8) : frame[i]);
    }
    // The check value, by bytes: of resize the compiler believes that it may grow without an end.
    payload.pop_back();
    payload.pop_back();
    return payload;
  }

  void Reply(Bytes payload) {
    Bytes frame{0xF8, static_cast<std::uint8_t>(payload.size() + 2)};
    const std::uint16_t check = CheckOf(payload);
    payload.push_back(static_cast<std::uint8_t>(check));
    payload.push_back(static_cast<std::uint8_t>(check >> 8));
    for (const std::uint8_t byte : payload) {
      if (byte >= 0xF8 && byte <= 0xFE) {
        frame.push_back(0xFE);
        frame.push_back(static_cast<std::uint8_t>(byte - 0xF8));
      } else {
        frame.push_back(byte);
      }
    }
    frame.push_back(0xF9);
    port_.Arrive(frame);
  }

  static std::uint16_t CheckOf(const Bytes& bytes) {
    unsigned check = 0;
    for (const std::uint8_t byte : bytes) {
      check ^= byte;
      for (int bit = 0; bit < 8; ++bit) check = check & 1u ? check >> 1 ^ 0xA001u : check >> 1;
    }
    return static_cast<std::uint16_t>(check);
  }

  FakeSerialPort& port_;
};

}  // namespace tessmar::test
