#include "link/cmd.h"

#include <QDate>
#include <algorithm>
#include <cmath>

#include "base/Fault.h"
#include "base/Numbers.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

constexpr int kUsualRetries = 2;
constexpr int kReadPasses = 2;
constexpr double kMillisecondsPerSecond = 1000;
constexpr int kHandshakePasses = 10;

/// Erasing the whole flash memory takes up to 45 seconds.
constexpr std::int16_t kInitializeFlashTicks = 450;

constexpr std::uint8_t kTwelveHourClock = 0x40;
constexpr std::uint8_t kAfternoon = 0x20;
constexpr std::uint8_t kTwelveHourMask = 0x1F;
constexpr std::uint8_t kTwelve = 0x12;

constexpr std::uint16_t kStatusLogging = 1 << 7;
constexpr std::uint16_t kStatusWaitingForAlarm1 = 1 << 11;
constexpr std::uint16_t kStatusLoggingUntilAlarm2 = 1 << 12;
constexpr std::uint16_t kStatusStoppedByAlarm2 = 1 << 13;

constexpr std::uint8_t Code(Opcode opcode) {
  return static_cast<std::uint8_t>(opcode);
}

/// The guard bytes that the destructive and programming commands carry behind their opcode.
constexpr std::uint8_t FirstGuard(Opcode opcode) {
  return static_cast<std::uint8_t>(0xA0 + Code(opcode));
}
constexpr std::uint8_t SecondGuard(Opcode opcode) {
  return static_cast<std::uint8_t>(Code(opcode) << 4 | 0x0A);
}

constexpr std::uint8_t Byte(std::uint32_t value, int index) {
  return static_cast<std::uint8_t>(value >> (8 * index) & 0xFF);
}

TextId LoggingState(std::uint16_t status) {
  if (!IsLogging(status)) return TextId::NotLogging;
  if ((status & kStatusWaitingForAlarm1) != 0) return TextId::WaitingForAlarm1;
  if ((status & kStatusStoppedByAlarm2) != 0) return TextId::StoppedByAlarm2;
  if ((status & kStatusLoggingUntilAlarm2) != 0) return TextId::LoggingUntilAlarm2;
  return TextId::Logging;
}

/// Takes what stands before a separator off the front of a text, as a whole number.
int TakeNumber(QString& text, QChar separator) {
  const qsizetype end = text.indexOf(separator);
  if (end < 0) throw ConversionFault("the time text lacks a separator");
  const int number = RoundToInt16(ParseLeadingNumber(text.left(end)));
  text.remove(0, end + 1);
  return number;
}

/// The fields of a time text, in the order in which the logger takes them.
struct TimeFields {
  int Second = 0;
  int Minute = 0;
  int Hour = 0;
  int Day = 0;
  int Month = 0;
  int Year = 0;
};

TimeFields ParseTimeText(const QString& text) {
  QString rest = text;
  TimeFields time;
  time.Month = TakeNumber(rest, u'/');
  time.Day = TakeNumber(rest, u'/');
  time.Year = TakeNumber(rest, u' ') % 100;
  time.Hour = TakeNumber(rest, u':');
  time.Minute = TakeNumber(rest, u':');
  const qsizetype end = rest.indexOf(u' ');
  time.Second = RoundToInt16(ParseLeadingNumber(end < 0 ? rest : rest.left(end)));
  if (text.contains(QStringLiteral("PM")) && time.Hour != 12) time.Hour += 12;
  if (text.contains(QStringLiteral("AM")) && time.Hour == 12) time.Hour = 0;
  return time;
}

/// The hours byte of the logger's clock as it goes into the text. In the 12-hour form twelve is
/// added as a plain number and not in BCD, so that 8 PM reads "1:"; loggers set by this program
/// keep 24-hour time.
std::uint8_t HoursForText(std::uint8_t hours) {
  if ((hours & kTwelveHourClock) == 0) return hours;
  const auto hour = static_cast<std::uint8_t>(hours & kTwelveHourMask);
  if ((hours & kAfternoon) != 0) {
    return hour == kTwelve ? hour : static_cast<std::uint8_t>(hour + kTwelve);
  }
  return hour == kTwelve ? std::uint8_t{0} : hour;
}

/// The date on the logger's clock; a day that the month does not have is carried over.
QDate DateOnDial(std::span<const std::uint8_t, 7> clock) {
  return CarriedDate(2000 + FromBcd(clock[6]), FromBcd(clock[5]), FromBcd(clock[4]));
}

}  // namespace

bool IsLogging(std::uint16_t status) {
  return (status & kStatusLogging) != 0;
}

LoggerCommands::LoggerCommands(Comm& comm, LinkState& link, const Clock& clock,
                               const SystemLocale& locale)
    : comm_(comm), link_(link), clock_(clock), locale_(locale) {}

QString LoggerCommands::ClockText() const {
  const QDateTime now = clock_.Now();
  const QDate date = now.date();
  const QTime time = now.time();
  const auto twoDigits = [](int value) {
    return QStringLiteral("%1").arg(value, 2, 10, QChar(u'0'));
  };
  return twoDigits(date.month()) + u'/' + twoDigits(date.day()) + u'/' +
         twoDigits(date.year() % 100) + u' ' + twoDigits(time.hour()) + u':' +
         twoDigits(time.minute()) + u':' + twoDigits(time.second());
}

bool LoggerCommands::Send(std::span<const std::uint8_t> payload, int retries) {
  return comm_.SendFrame(payload, retries);
}

bool LoggerCommands::SendForDone(std::span<const std::uint8_t> payload, std::int16_t ticks) {
  return Send(payload, kUsualRetries) && comm_.ReadByte(ticks) == kDone;
}

bool LoggerCommands::SetLoggerTime(const QString& text) {
  return Trapped(link_, [&] {
    const TimeFields time = ParseTimeText(text);
    constexpr std::uint8_t kDayOfWeek = 1;
    const std::array<std::uint8_t, 8> payload{Code(Opcode::SetLoggerTime),
                                              ToBcd(time.Second),
                                              ToBcd(time.Minute),
                                              ToBcd(time.Hour),
                                              kDayOfWeek,
                                              ToBcd(time.Day),
                                              ToBcd(time.Month),
                                              ToBcd(time.Year)};
    return SendForDone(payload, link_.LinkTimeoutTicks);
  });
}

// Both clocks show local time, so that what lies between them is none of the time zone's affair.
std::optional<QDateTime> LoggerCommands::NoteClock(std::span<const std::uint8_t, 7> clock) {
  const QDate date = DateOnDial(clock);
  const QTime time(FromBcd(HoursForText(clock[2])), FromBcd(clock[1]), FromBcd(clock[0]));
  link_.ClockOffsetS.reset();
  if (!date.isValid() || !time.isValid()) return std::nullopt;
  const QDateTime dial(date, time, Qt::UTC);
  const QDateTime now = clock_.Now();
  const qint64 ms = QDateTime(now.date(), now.time(), Qt::UTC).msecsTo(dial);
  const double seconds = std::round(static_cast<double>(ms) / kMillisecondsPerSecond);
  if (std::abs(seconds) <= INT32_MAX) link_.ClockOffsetS = static_cast<std::int32_t>(seconds);
  return dial;
}

bool LoggerCommands::ReadClockBytes(std::array<std::uint8_t, 7>& clock) {
  constexpr std::array kRequest{Code(Opcode::GetLoggerTime)};
  return Send(kRequest, 0) && comm_.ReceiveFrame(clock);
}

QString LoggerCommands::GetLoggerTime() {
  std::array<std::uint8_t, 7> clock{};
  if (!ReadClockBytes(clock)) return QStringLiteral("00/00/00 00:00:00");
  NoteClock(clock);
  return locale_.StampDate(DateOnDial(clock)) + u' ' + BcdToText(HoursForText(clock[2])) + u':' +
         BcdToText(clock[1]) + u':' + BcdToText(clock[0]);
}

std::optional<QDateTime> LoggerCommands::ReadClock() {
  std::array<std::uint8_t, 7> clock{};
  if (!ReadClockBytes(clock)) return std::nullopt;
  return NoteClock(clock);
}

bool LoggerCommands::GetLoggerStatus() {
  constexpr std::array kRequest{Code(Opcode::GetLoggerStatus)};
  std::array<std::uint8_t, 5> status{};
  if (!Send(kRequest, kUsualRetries) || !comm_.ReceiveFrame(status)) return false;
  link_.RecordCount = status[0] | status[1] << 8 | status[2] << 16;
  link_.LoggerStatusWord = static_cast<std::uint16_t>(status[3] | status[4] << 8);
  link_.LoggingStateText = GetText(LoggingState(link_.LoggerStatusWord));
  link_.StatusAt = clock_.Now();
  return true;
}

bool LoggerCommands::GetLoggerVersion() {
  constexpr std::array kRequest{Code(Opcode::GetLoggerVersion)};
  std::array<std::uint8_t, 8> version{};
  if (!Send(kRequest, kUsualRetries)) return false;
  heardAnything_ = true;
  if (!comm_.ReceiveFrame(version)) return false;
  link_.FirmwareVersion = version[0];
  const std::uint8_t analogChannels = version[1];
  const std::uint8_t pulseChannels = version[2];
  if (analogChannels < 1 || analogChannels > 8 || pulseChannels > 2) return false;
  link_.AnalogChannelCount = analogChannels;
  link_.PulseChannelCount = pulseChannels;
  link_.SampleOnDemandSupported = version[3] > 0;
  link_.LoggerModelCode = version[4];
  return true;
}

bool LoggerCommands::SyncWithLogger(const std::function<bool()>& cancelled) {
  heardAnything_ = false;
  return Trapped(link_, [&] {
    for (int pass = 0; pass < kHandshakePasses; ++pass) {
      comm_.DiscardInput();
      if (ExchangeLetter('U', 'T') && ExchangeLetter('T', 'M') && ExchangeLetter('M', kDone)) {
        return GetLoggerVersion();
      }
      if (comm_.Loop().Ending() || cancelled()) return false;
    }
    return GetLoggerVersion();
  });
}

bool LoggerCommands::ExchangeLetter(std::uint8_t letter, std::uint8_t answer) {
  comm_.Write(std::array{letter});
  comm_.WaitForBytes(link_.LinkTimeoutTicks, 1);
  if (comm_.Loop().Ending()) return false;
  const std::vector<std::uint8_t> arrived = comm_.ReadAll();
  if (!arrived.empty()) heardAnything_ = true;
  return arrived.size() == 1 && arrived.front() == answer;
}

bool LoggerCommands::InitializeFlash() {
  constexpr Opcode kOpcode = Opcode::InitializeFlash;
  constexpr std::array<std::uint8_t, 7> kRequest{
      Code(kOpcode), FirstGuard(kOpcode), SecondGuard(kOpcode), 0x00, 0x00, 0x00, 0x02};
  return SendForDone(kRequest, kInitializeFlashTicks);
}

bool LoggerCommands::ClearHistory() {
  constexpr Opcode kOpcode = Opcode::ClearHistory;
  constexpr std::array kRequest{Code(kOpcode), FirstGuard(kOpcode), SecondGuard(kOpcode)};
  return SendForDone(kRequest, link_.LinkTimeoutTicks);
}

bool LoggerCommands::CommitConfiguration() {
  constexpr Opcode kOpcode = Opcode::CommitConfiguration;
  constexpr std::array kRequest{Code(kOpcode), FirstGuard(kOpcode), SecondGuard(kOpcode)};
  return SendForDone(kRequest, link_.LinkTimeoutTicks);
}

bool LoggerCommands::ResetPulseAccumulators() {
  constexpr std::array<std::uint8_t, 2> kRequest{Code(Opcode::ResetPulseAccumulators), 0x03};
  return SendForDone(kRequest, link_.LinkTimeoutTicks);
}

bool LoggerCommands::ReadMemoryBlock(std::vector<std::uint8_t>& buffer, int start, int count,
                                     std::uint32_t address) {
  constexpr std::size_t kAddressSize = 3;
  const std::array request{Code(Opcode::ReadMemoryBlock), Byte(address, 0), Byte(address, 1),
                           Byte(address, 2), static_cast<std::uint8_t>(count)};
  const std::size_t end = static_cast<std::size_t>(start) + static_cast<std::size_t>(count);
  if (buffer.size() < end) buffer.resize(end);

  std::vector<std::uint8_t> reply(static_cast<std::size_t>(count) + kAddressSize);
  for (int pass = 0; pass < kReadPasses; ++pass) {
    if (Send(request, kUsualRetries) && comm_.ReceiveFrame(reply) &&
        std::equal(reply.begin(), reply.begin() + kAddressSize, request.begin() + 1)) {
      std::copy(reply.begin() + kAddressSize, reply.end(), buffer.begin() + start);
      return true;
    }
  }
  return false;
}

bool LoggerCommands::WriteMemoryBlock(std::span<const std::uint8_t> buffer, int start, int count,
                                      std::uint32_t& address) {
  constexpr Opcode kOpcode = Opcode::WriteMemoryBlock;
  const std::uint32_t first = address;
  address += static_cast<std::uint32_t>(count) - 1;
  std::vector<std::uint8_t> payload{Code(kOpcode),   FirstGuard(kOpcode), SecondGuard(kOpcode),
                                    Byte(first, 0),  Byte(first, 1),      Byte(address, 0),
                                    Byte(address, 1)};
  const auto data =
      buffer.subspan(static_cast<std::size_t>(start), static_cast<std::size_t>(count));
  payload.insert(payload.end(), data.begin(), data.end());
  return Send(payload, kUsualRetries);
}

void LoggerCommands::StartMeasurement() {
  constexpr std::array<std::uint8_t, 2> kRequest{Code(Opcode::StartMeasurement), 0x01};
  // The byte is taken off the line also behind a failed send; what it says does not matter.
  Send(kRequest, 0);
  comm_.ReadByte(link_.LinkTimeoutTicks);
}

SampleAnswer LoggerCommands::GetSample(std::array<std::uint8_t, kSampleReplySize>& reply) {
  constexpr std::array kRequest{Code(Opcode::GetSample)};
  if (!Send(kRequest, 0)) return SampleAnswer::NotSent;
  switch (comm_.ReadByte(link_.LinkTimeoutTicks)) {
    case kAcknowledge:
      return comm_.ReceiveFrame(reply) ? SampleAnswer::Sample : SampleAnswer::Nothing;
    case kNoData:
      return SampleAnswer::NoSample;
    default:
      return SampleAnswer::Nothing;
  }
}

bool LoggerCommands::GetHistoryBlock(HistoryBlock which,
                                     std::array<std::uint8_t, kHistoryReplySize>& reply) {
  const std::array request{Code(Opcode::GetHistoryBlock), static_cast<std::uint8_t>(which)};
  return Send(request, 0) && comm_.ReceiveFrame(reply);
}

}  // namespace tessmar
