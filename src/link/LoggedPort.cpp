#include "link/LoggedPort.h"

#include <QStringList>
#include <string_view>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::uint8_t kFrameStart = 0xF8;
constexpr std::uint8_t kFirstLetter = 0x55;
/// Bytes of one line of the log; a reply of the logger has fewer.
constexpr std::size_t kLongestLine = 512;
/// So many digits may be a phone number.
constexpr int kDigitsOfNumber = 4;

/// True for each byte that is not to be seen; empty when all may be.
using Marks = std::vector<bool>;

bool IsDigit(std::uint8_t byte) {
  return byte >= '0' && byte <= '9';
}

/// What people and modems put between the digits of a number.
bool IsBetweenDigits(std::uint8_t byte) {
  return std::string_view(" -+()./").find(static_cast<char>(byte)) != std::string_view::npos;
}

Marks DigitsOfNumbers(std::span<const std::uint8_t> bytes) {
  Marks marks(bytes.size());
  for (std::size_t begin = 0; begin < bytes.size();) {
    std::size_t end = begin;
    int digits = 0;
    for (; end < bytes.size() && (IsDigit(bytes[end]) || IsBetweenDigits(bytes[end])); ++end)
      digits += IsDigit(bytes[end]) ? 1 : 0;
    for (std::size_t i = begin; i < end && digits >= kDigitsOfNumber; ++i)
      marks[i] = IsDigit(bytes[i]);
    begin = end + 1;
  }
  return marks;
}

QString HexText(std::span<const std::uint8_t> bytes, const Marks& hidden) {
  QStringList shown;
  shown.reserve(static_cast<qsizetype>(bytes.size()));
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool isHidden = !hidden.empty() && hidden[i];
    shown.append(isHidden ? u"**"_s : u"%1"_s.arg(bytes[i], 2, 16, QChar(u'0')).toUpper());
  }
  return shown.join(u' ');
}

}  // namespace

LoggedPort::LoggedPort(SerialPort& port, const SupportLog& log, bool trace)
    : port_(port), log_(log), trace_(trace) {}

void LoggedPort::Open(std::int16_t number, const QString& settings) {
  const QString name = u"port COM%1"_s.arg(number);
  talksToModem_ = true;
  hasModem_ = false;
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

std::size_t LoggedPort::Read(std::span<std::uint8_t> room) {
  const std::size_t count = port_.Read(room);
  Received(room.first(count));
  return count;
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
  hasModem_ = hasModem_ || talksToModem_;
  if (trace_) Trace("->", bytes, false);
  port_.Write(bytes);
}

void LoggedPort::Received(std::span<const std::uint8_t> bytes) {
  if (!trace_) return;
  received_.insert(received_.end(), bytes.begin(), bytes.end());
  if (received_.size() >= kLongestLine) WriteReceived();
}

void LoggedPort::WriteReceived() {
  if (!received_.empty()) Trace("<-", received_, hasModem_);
  received_.clear();
}

void LoggedPort::Trace(const char* arrow, std::span<const std::uint8_t> bytes,
                       bool hideNumbers) const {
  QString shown = u"%1 bytes of a modem"_s.arg(bytes.size());
  if (!talksToModem_) shown = HexText(bytes, hideNumbers ? DigitsOfNumbers(bytes) : Marks());
  log_.Write(QLatin1StringView(arrow) + u' ' + shown);
}

}  // namespace tessmar
