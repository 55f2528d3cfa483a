#pragma once

#include <deque>

#include "link/Comm.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeSerialPort.h"

namespace tessmar::test {

/// A reply or command frame around a payload, made the other way round than the program makes it:
/// the check value comes from a table of half-bytes.
inline Bytes FrameOf(const Bytes& payload) {
  static constexpr std::uint16_t kHalfByte[16] = {0x0000, 0xCC01, 0xD801, 0x1400, 0xF001, 0x3C00,
                                                  0x2800, 0xE401, 0xA001, 0x6C00, 0x7800, 0xB401,
                                                  0x5000, 0x9C01, 0x8801, 0x4400};
  unsigned check = 0;
  for (const unsigned byte : payload) {
    check = check >> 4 ^ kHalfByte[(check ^ byte) & 0xF];
    check = check >> 4 ^ kHalfByte[(check ^ byte >> 4) & 0xF];
  }
  Bytes covered = payload;
  covered.push_back(check & 0xFF);
  covered.push_back(check >> 8 & 0xFF);
  Bytes frame{0xF8, static_cast<std::uint8_t>(payload.size() + 2)};
  for (const std::uint8_t byte : covered) {
    if (byte >= 0xF8 && byte != 0xFF) {
      frame.insert(frame.end(), {0xFE, static_cast<std::uint8_t>(byte - 0xF8)});
    } else {
      frame.push_back(byte);
    }
  }
  frame.push_back(0xF9);
  return frame;
}

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// An open port in virtual time, with a scripted logger at its other end: each thing written takes
/// the next answer, which arrives after its delay.
struct LinkBench {
  struct Answer {
    Bytes Reply;
    qint64 DelayMs = 10;
  };

  LinkBench() {
    Link.TrapErrors = true;
    Link.LinkTimeoutTicks = 10;
    Port.Open(3, QStringLiteral("38400,N,8,1"));
    Port.OnWrite = [this](const Bytes&) {
      if (Answers.empty()) return;
      const Answer answer = Answers.front();
      Answers.pop_front();
      Arrive(answer.Reply, answer.DelayMs);
    };
  }

  /// Lets bytes arrive after a time.
  void Arrive(const Bytes& bytes, qint64 delayMs) {
    if (!bytes.empty()) Loop.After(delayMs, [this, bytes] { Port.Arrive(bytes); });
  }

  /// Lets the next thing written be answered so; empty is silence.
  LinkBench& Answering(const Bytes& reply, qint64 delayMs = 10) {
    Answers.push_back({reply, delayMs});
    return *this;
  }

  LinkState Link;
  FakeMessageLoop Loop{Link};
  FakeSerialPort Port;
  Comm Channel{Port, Loop, Link};
  std::deque<Answer> Answers;
};

}  // namespace tessmar::test
