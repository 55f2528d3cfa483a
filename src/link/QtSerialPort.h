#pragma once

#include <QSerialPort>
#include <vector>

#include "link/PortMap.h"
#include "link/SerialPort.h"

namespace tessmar {

/// A serial device of the machine, by its port number.
///
/// Bytes that arrive while the message loop runs are kept until they are read; beyond 64 KiB that
/// nobody reads, what arrives is dropped. A device that goes away closes the port.
class QtSerialPort final : public QObject, public SerialPort {
 public:
  explicit QtSerialPort(PortMap ports = {});

  void Open(std::int16_t number, const QString& settings) override;
  void Close() override;
  bool IsOpen() const override { return !isGone_ && port_.isOpen(); }
  std::int16_t Number() const override { return number_; }
  QString Settings() const override { return settings_; }

  int InputCount() const override;
  void DiscardInput() override;
  std::uint8_t ReadByte() override;
  std::size_t Read(std::span<std::uint8_t> room) override;
  std::vector<std::uint8_t> ReadAll() override;
  void Write(std::span<const std::uint8_t> bytes) override;

  void SetDtr(bool on) override;
  void SetRts(bool on) override;
  void SetHandshaking(Handshaking handshaking) override;

 private:
  void SetLine(bool (QSerialPort::*line)(bool), bool on);
  std::size_t WriteToDevice(std::span<const std::uint8_t> bytes);
  void TakeArrived();
  void OnError(QSerialPort::SerialPortError error);
  void RequireOpen() const;

  PortMap ports_;
  QSerialPort port_;
  std::int16_t number_ = 0;
  QString settings_;
  std::vector<std::uint8_t> input_;
  std::size_t taken_ = 0;       ///< Bytes at the front of input_ that were read.
  bool isSettingLine_ = false;  ///< What fails now is a line signal.
  bool isGone_ = false;  ///< The device went away; the port is closed as soon as that is safe.
};

/// The speed at the front of a settings text such as "38400,N,8,1", in bits a second.
/// Throws ConversionFault when there is no number above 0.
int SpeedOf(const QString& settings);

}  // namespace tessmar
