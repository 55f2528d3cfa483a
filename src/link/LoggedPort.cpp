#include "link/LoggedPort.h"

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::uint8_t kFrameStart = 0xF8;
constexpr std::uint8_t kFirstLetter = 0x55;
/// Bytes of one line of the log; a reply of the logger has fewer.
constexpr std::size_t kLongestLine = 512;

}  // namespace

LoggedPort::LoggedPort(SerialPort& port, const SupportLog& log, bool trace)
    : port_(port), log_(log), trace_(trace) {}

void LoggedPort::Open(std::int16_t number, const QString& settings) {
  const QString name = u"port COM%1"_s.arg(number);
  talksToModem_ = true;
  try {
    port_.Open(number, settings);
  } catch (const Fault& fault) {
    log_.Write(name + u" not opened: "_s + QString::fromUtf8(fault.what()));
    throw;
  }
  log_.Write(name + u" opened, "_s + settings);
}

void LoggedPort::Close() {
  const bool wasOpen = port_.IsOpen();
  WriteReceived();
  port_.Close();
  if (wasOpen) log_.Write(u"port COM%1 closed"_s.arg(port_.Number()));
}

std::uint8_t LoggedPort::ReadByte() {
  const std::uint8_t byte = port_.ReadByte();
  Received({&byte, 1});
  return byte;
}

std::vector<std::uint8_t> LoggedPort::ReadAll() {
  std::vector<std::uint8_t> bytes = port_.ReadAll();
  Received(bytes);
  return bytes;
}

void LoggedPort::Write(std::span<const std::uint8_t> bytes) {
  WriteReceived();
  const bool toLogger = !bytes.empty() && (bytes[0] == kFrameStart ||
                                           (bytes.size() == 1 && bytes[0] == kFirstLetter));
  const bool letter = !talksToModem_ && bytes.size() == 1;
  talksToModem_ = !toLogger && !letter;
  if (trace_) Trace("->", bytes);
  port_.Write(bytes);
}

void LoggedPort::Received(std::span<const std::uint8_t> bytes) {
  if (!trace_) return;
  received_.insert(received_.end(), bytes.begin(), bytes.end());
  if (received_.size() >= kLongestLine) WriteReceived();
}

void LoggedPort::WriteReceived() {
  if (!received_.empty()) Trace("<-", received_);
  received_.clear();
}

void LoggedPort::Trace(const char* arrow, std::span<const std::uint8_t> bytes) const {
  const QByteArray raw(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<qsizetype>(bytes.size()));
  const QString shown = talksToModem_ ? u"%1 bytes of a modem"_s.arg(raw.size())
                                      : QString::fromLatin1(raw.toHex(' ').toUpper());
  log_.Write(QLatin1StringView(arrow) + u' ' + shown);
}

}  // namespace tessmar
