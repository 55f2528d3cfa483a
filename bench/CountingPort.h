#pragma once

#include "link/SerialPort.h"

namespace tessmar::bench {

/// A port that counts the bytes which go through another one, escapes and all.
class CountingPort final : public SerialPort {
 public:
  explicit CountingPort(SerialPort& port) : port_(port) {}

  void Open(std::int16_t number, const QString& settings) override { port_.Open(number, settings); }
  void Close() override { port_.Close(); }
  bool IsOpen() const override { return port_.IsOpen(); }
  std::int16_t Number() const override { return port_.Number(); }
  QString Settings() const override { return port_.Settings(); }

  int InputCount() const override { return port_.InputCount(); }
  void DiscardInput() override { port_.DiscardInput(); }
  std::uint8_t ReadByte() override {
    ++Bytes;
    return port_.ReadByte();
  }
  std::size_t Read(std::span<std::uint8_t> room) override {
    const std::size_t count = port_.Read(room);
    Bytes += static_cast<qint64>(count);
    return count;
  }
  std::vector<std::uint8_t> ReadAll() override {
    std::vector<std::uint8_t> all = port_.ReadAll();
    Bytes += static_cast<qint64>(all.size());
    return all;
  }
  void Write(std::span<const std::uint8_t> bytes) override {
    Bytes += static_cast<qint64>(bytes.size());
    port_.Write(bytes);
  }

  void SetDtr(bool on) override { port_.SetDtr(on); }
  void SetRts(bool on) override { port_.SetRts(on); }
  void SetHandshaking(Handshaking handshaking) override { port_.SetHandshaking(handshaking); }

  qint64 Bytes = 0;  ///< Written and read so far.

 private:
  SerialPort& port_;
};

}  // namespace tessmar::bench
