#include "link/QtSerialPort.h"

#include <QFileInfo>
#include <QScopedValueRollback>
#include <algorithm>

#include "base/Fault.h"
#include "link/PortTrouble.h"

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace tessmar {
namespace {

/// More than any reply; a device that talks on and on must not fill the memory.
constexpr std::size_t kInputLimit = 65536;

/// A pseudo-terminal has no line signals, and says so each time; everything else that fails on an
/// open port means that the device is gone.
bool IsHarmless(QSerialPort::SerialPortError error) {
  return error == QSerialPort::NoError || error == QSerialPort::UnsupportedOperationError ||
         error == QSerialPort::TimeoutError;
}

}  // namespace

int SpeedOf(const QString& settings) {
  bool isNumber = false;
  const int speed = settings.section(u',', 0, 0).trimmed().toInt(&isNumber);
  if (!isNumber || speed <= 0) throw ConversionFault("the settings text has no speed");
  return speed;
}

QtSerialPort::QtSerialPort(PortMap ports) : ports_(std::move(ports)) {
  connect(&port_, &QSerialPort::readyRead, this, [this] { TakeArrived(); });
  connect(&port_, &QSerialPort::errorOccurred, this,
          [this](QSerialPort::SerialPortError error) { OnError(error); });
}

void QtSerialPort::Open(std::int16_t number, const QString& settings) {
  Close();
  const int speed = SpeedOf(settings);
  const QString device = ports_.Device(number);
  if (device.isEmpty()) throw PortFault("no device has this port number");
  // A lock stands on the device itself, whatever link leads to it.
  const QString path = QFileInfo(device).canonicalFilePath();
  if (const auto holder = LockHolder(device))
    throw PortFault(PortTroubleText({PortCause::InUse, {}, holder}, device).toStdString());
  port_.setPortName(path.isEmpty() ? device : path);
  port_.setBaudRate(speed);
  port_.setDataBits(QSerialPort::Data8);
  port_.setParity(QSerialPort::NoParity);
  port_.setStopBits(QSerialPort::OneStop);
  port_.setFlowControl(QSerialPort::NoFlowControl);
  if (!port_.open(QIODevice::ReadWrite))
    throw PortFault(PortTroubleText(FindPortTrouble(device), device).toStdString());
  port_.clear();
  number_ = number;
  settings_ = settings;
}

void QtSerialPort::Close() {
  if (port_.isOpen()) {
    // What a device under flow control does not take would hold up the closing for half a minute.
    // That it is gone is no news here.
    isGone_ = true;
    port_.clear(QSerialPort::Output);
    port_.close();
  }
  isGone_ = false;
  input_.clear();
  taken_ = 0;
}

inline void QtSerialPort::RequireOpen() const {
  if (!IsOpen()) throw PortFault("the port is closed");
}

int QtSerialPort::InputCount() const {
  return IsOpen() ? static_cast<int>(input_.size() - taken_) : 0;
}

void QtSerialPort::DiscardInput() {
  RequireOpen();
  port_.clear(QSerialPort::Input);
  input_.clear();
  taken_ = 0;
}

std::uint8_t QtSerialPort::ReadByte() {
  std::uint8_t byte = 0;
  if (Read({&byte, 1}) == 0) throw PortFault("nothing to read");
  return byte;
}

std::size_t QtSerialPort::Read(std::span<std::uint8_t> room) {
  RequireOpen();
  const std::size_t count = std::min(room.size(), input_.size() - taken_);
  std::copy_n(input_.begin() + static_cast<std::ptrdiff_t>(taken_), count, room.begin());
  taken_ += count;
  if (taken_ == input_.size()) {
    input_.clear();
    taken_ = 0;
  }
  return count;
}

std::vector<std::uint8_t> QtSerialPort::ReadAll() {
  RequireOpen();
  std::vector<std::uint8_t> all(input_.begin() + static_cast<std::ptrdiff_t>(taken_), input_.end());
  input_.clear();
  taken_ = 0;
  return all;
}

void QtSerialPort::Write(std::span<const std::uint8_t> bytes) {
  RequireOpen();
  const std::size_t taken = WriteToDevice(bytes);
  const std::span<const std::uint8_t> left = bytes.subspan(taken);
  if (left.empty()) return;
  port_.write(reinterpret_cast<const char*>(left.data()), static_cast<qint64>(left.size()));
  // Out at once, and not when the message loop runs next; but a device that has just taken what it
  // had room for is not asked again before it tells.
  if (taken == 0) port_.flush();
  RequireOpen();
}

// Gives the number of bytes that the device took. QSerialPort wakes the message loop once more
// after all that goes through it, to tell that it went; a request is small and goes in one piece.
// Whatever does not is left to it, and so is every error.
std::size_t QtSerialPort::WriteToDevice(std::span<const std::uint8_t> bytes) {
#ifdef Q_OS_UNIX
  // Behind what still waits for its turn.
  if (port_.bytesToWrite() > 0) return 0;
  const ssize_t count = ::write(port_.handle(), bytes.data(), bytes.size());
  return count > 0 ? static_cast<std::size_t>(count) : 0;
#else
  (void)bytes;
  return 0;
#endif
}

void QtSerialPort::SetDtr(bool on) {
  RequireOpen();
  SetLine(&QSerialPort::setDataTerminalReady, on);
}

void QtSerialPort::SetRts(bool on) {
  RequireOpen();
  // With RTS/CTS handshaking the line is the driver's.
  if (port_.flowControl() == QSerialPort::HardwareControl) return;
  SetLine(&QSerialPort::setRequestToSend, on);
}

// Adapters without these lines fail in many ways, and carry bytes all the same. Whether the device
// is still there shows at the next byte.
void QtSerialPort::SetLine(bool (QSerialPort::*line)(bool), bool on) {
  const QScopedValueRollback setting(isSettingLine_, true);
  (port_.*line)(on);
}

void QtSerialPort::SetHandshaking(Handshaking handshaking) {
  RequireOpen();
  port_.setFlowControl(handshaking == Handshaking::RtsCts ? QSerialPort::HardwareControl
                                                          : QSerialPort::NoFlowControl);
}

void QtSerialPort::TakeArrived() {
  input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(taken_));
  taken_ = 0;
  const std::size_t held = input_.size();
  const qint64 arrived = port_.bytesAvailable();
  input_.resize(held + static_cast<std::size_t>(arrived));
  port_.read(reinterpret_cast<char*>(input_.data() + held), arrived);
  if (input_.size() > kInputLimit) input_.resize(kInputLimit);
}

void QtSerialPort::OnError(QSerialPort::SerialPortError error) {
  if (IsHarmless(error) || isSettingLine_ || isGone_ || !port_.isOpen()) return;
  isGone_ = true;
  // The port is in the middle of telling of the error, so it is closed behind that; left open it
  // would tell of it again and again.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (isGone_) Close();
      },
      Qt::QueuedConnection);
}

}  // namespace tessmar
