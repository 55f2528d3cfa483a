#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "base/MessageLoop.h"
#include "link/LinkState.h"
#include "link/SerialPort.h"

namespace tessmar {

/// The bytes with a meaning of their own on the line.
enum LinkByte : std::uint8_t {
  kStartOfFrame = 0xF8,
  kEndOfFrame = 0xF9,
  kAcknowledge = 0xFA,  ///< Frame received; also the sign that data follows.
  kDone = 0xFC,         ///< Command carried out.
  kNoData = 0xFD,       ///< No sample ready.
  kEscape = 0xFE,
};

/// CRC-16/ARC (polynomial 0xA001 reflected, start value 0, no final XOR) over buffer[first..last].
/// @return the check value; 0 when first is above last.
std::uint16_t Crc16(std::span<const std::uint8_t> buffer, int first, int last);

/// Frames, single bytes and waits on the one serial port.
///
/// Every operation that waits runs the message loop; the caller holds LinkState::Busy. Waits end by
/// time, by bytes, by the port closing, by the program ending and by what WaitsWhile says. Results
/// are false or -1 on failure, and nothing is shown.
class Comm {
 public:
  Comm(SerialPort& port, MessageLoop& loop, LinkState& link);

  /// Opens COM<number> with a settings text such as "38400,N,8,1", or keeps it open when it already
  /// is open so. The input queue is empty afterwards. @return true when the port is open.
  bool OpenPort(std::int16_t number, const QString& settings);

  /// Switches DTR off and closes the port; quiet if it is not open, faults ignored.
  void ClosePort();

  bool IsPortOpen() const { return port_.IsOpen(); }

  /// Waits until count bytes have arrived or the time is over; count 0 is a plain delay. Reads
  /// nothing. This is the one place that waits for the logger.
  void WaitForBytes(std::int16_t ticks, int count);

  /// Takes one byte, waiting up to ticks for it. @return 0 to 255, or -1 when nothing arrived.
  int ReadByte(std::int16_t ticks);

  /// Sends one command frame and waits for the logger's acknowledge.
  ///
  /// The frame is built once; every attempt sends the same bytes.
  ///
  /// @param payload  1 to 253 bytes; the first is the opcode.
  /// @param retries  extra attempts allowed, used up as they are made.
  /// @return true when the logger acknowledged with 0xFA within LinkTimeoutTicks of one attempt.
  bool SendFrame(std::span<const std::uint8_t> payload, int& retries);

  /// Receives one reply frame of exactly payload.size() payload bytes.
  /// @return true when a good frame of that size filled it. On false the buffer may hold part of a
  ///   frame, the line was given two ticks to go quiet and the input queue is empty.
  bool ReceiveFrame(std::span<std::uint8_t> payload);

  /// Bare bytes, for the letter handshake and the modem.
  int InputCount() const { return port_.InputCount(); }
  void DiscardInput() { port_.DiscardInput(); }
  std::vector<std::uint8_t> ReadAll() { return port_.ReadAll(); }
  void Write(std::span<const std::uint8_t> bytes) { port_.Write(bytes); }
  void SetHandshaking(Handshaking handshaking) { port_.SetHandshaking(handshaking); }
  void SetRts(bool on) { port_.SetRts(on); }

  /// For the modem's dialogue, which has a wait of its own.
  MessageLoop& Loop() { return loop_; }

 private:
  friend class WaitsWhile;
  class FrameReader;

  bool IsWanted() const { return !wanted_ || wanted_(); }
  bool SendFrameOnce(std::span<const std::uint8_t> frame);
  bool ReceiveFrameBody(std::span<std::uint8_t> payload);
  bool WaitForNextByte();
  void RequireOpen() const;

  SerialPort& port_;
  MessageLoop& loop_;
  LinkState& link_;
  std::function<bool()> wanted_;  ///< Empty: always.
};

/// For an operation that may be given up: while this lives, a wait also ends as soon as the
/// condition no longer holds, and nothing is sent any more. There is one at a time.
class WaitsWhile {
 public:
  WaitsWhile(Comm& comm, std::function<bool()> wanted) : comm_(comm) {
    comm_.wanted_ = std::move(wanted);
  }
  ~WaitsWhile() { comm_.wanted_ = nullptr; }
  WaitsWhile(const WaitsWhile&) = delete;
  WaitsWhile& operator=(const WaitsWhile&) = delete;

 private:
  Comm& comm_;
};

}  // namespace tessmar
