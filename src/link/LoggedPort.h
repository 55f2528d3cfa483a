#pragma once

#include <vector>

#include "base/SupportLog.h"
#include "link/SerialPort.h"

namespace tessmar {

/// A port that writes into the log for support when it is opened and closed and why it could not
/// be, and, when it traces, what goes over the line, in hexadecimal.
///
/// What is said to a modem, and what it says, is only counted: it holds phone numbers and may hold
/// passwords. A frame or the first letter of the handshake ends the talk with the modem. Behind a
/// modem what comes then may still be the modem's, which tells who calls: of four and more digits
/// in a row, signs between them or not, "**" is written.
class LoggedPort final : public SerialPort {
 public:
  LoggedPort(SerialPort& port, const SupportLog& log, bool trace);

  void Open(std::int16_t number, const QString& settings) override;
  void Close() override;
  bool IsOpen() const override { return port_.IsOpen(); }
  std::int16_t Number() const override { return port_.Number(); }
  QString Settings() const override { return port_.Settings(); }
  int InputCount() const override { return port_.InputCount(); }
  void DiscardInput() override { port_.DiscardInput(); }
  std::uint8_t ReadByte() override;
  std::size_t Read(std::span<std::uint8_t> room) override;
  std::vector<std::uint8_t> ReadAll() override;
  void Write(std::span<const std::uint8_t> bytes) override;
  void SetDtr(bool on) override { port_.SetDtr(on); }
  void SetRts(bool on) override { port_.SetRts(on); }
  void SetHandshaking(Handshaking handshaking) override { port_.SetHandshaking(handshaking); }

 private:
  void Received(std::span<const std::uint8_t> bytes);
  void WriteReceived();
  void Trace(const char* arrow, std::span<const std::uint8_t> bytes, bool hideNumbers) const;

  SerialPort& port_;
  const SupportLog& log_;
  bool trace_;
  bool talksToModem_ = true;  ///< Until the first byte for a logger.
  bool hasModem_ = false;     ///< Something was said to one since the port was opened.
  std::vector<std::uint8_t> received_;
};

}  // namespace tessmar
