#pragma once

#include <QString>
#include <cstdint>
#include <span>
#include <vector>

namespace tessmar {

enum class Handshaking { None, RtsCts };

/// The platform's serial service, as far as the link needs it. 8 data bits, no parity, 1 stop bit.
///
/// Reading and writing never block. Operations on a closed port throw PortFault; a port whose
/// device has gone away closes itself.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  /// Opens port COM<number> with a settings text such as "38400,N,8,1".
  /// Throws PortFault when it cannot be opened, ConversionFault for a settings text without a
  /// speed.
  virtual void Open(std::int16_t number, const QString& settings) = 0;
  /// Closes the port; quiet if it is not open. What the device has not taken yet is dropped.
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;
  /// Number and settings text of the last Open.
  virtual std::int16_t Number() const = 0;
  virtual QString Settings() const = 0;

  /// Bytes waiting in the input queue; 0 for a closed port, without a fault.
  virtual int InputCount() const = 0;
  virtual void DiscardInput() = 0;
  /// Takes one byte from the input queue, which must not be empty.
  virtual std::uint8_t ReadByte() = 0;
  /// Takes as many bytes from the input queue as there are and have room. @return their number.
  virtual std::size_t Read(std::span<std::uint8_t> room) = 0;
  virtual std::vector<std::uint8_t> ReadAll() = 0;
  virtual void Write(std::span<const std::uint8_t> bytes) = 0;

  /// Line signals; a device that has none (a pseudo-terminal) ignores them.
  virtual void SetDtr(bool on) = 0;
  virtual void SetRts(bool on) = 0;
  virtual void SetHandshaking(Handshaking handshaking) = 0;
};

}  // namespace tessmar
