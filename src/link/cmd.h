#pragma once

#include <QDateTime>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "base/Clock.h"
#include "base/SystemLocale.h"
#include "link/Comm.h"
#include "link/LinkState.h"

namespace tessmar {

/// What the logger understands. 0x02, 0x03 and 0x05 are never sent.
enum class Opcode : std::uint8_t {
  GetLoggerTime = 0x00,
  SetLoggerTime = 0x01,
  ClearHistory = 0x04,
  InitializeFlash = 0x06,
  WriteMemoryBlock = 0x07,
  ReadMemoryBlock = 0x08,
  StartMeasurement = 0x09,
  GetSample = 0x0A,
  CommitConfiguration = 0x0B,
  GetLoggerStatus = 0x0C,
  GetHistoryBlock = 0x0D,
  ResetPulseAccumulators = 0x0E,
  GetLoggerVersion = 0x0F,
};

/// The model code of a logger with relays.
inline constexpr std::int16_t kRelayModelCode = 220;

inline constexpr int kSampleReplySize = 24;
inline constexpr int kHistoryReplySize = 241;

/// Sub-command of Opcode::GetHistoryBlock.
enum class HistoryBlock : std::uint8_t { First = 0, Next = 1, Again = 2 };

/// True when a status word says that the logger logs, or waits for an alarm to do so.
bool IsLogging(std::uint16_t status);

/// How a request for a live sample ended.
enum class SampleAnswer {
  NotSent,   ///< The logger did not acknowledge the request.
  Nothing,   ///< Acknowledged, but no good answer followed.
  NoSample,  ///< The logger has no sample.
  Sample,    ///< The reply holds a sample.
};

/// The logger's commands, one operation each.
///
/// The caller holds LinkState::Busy. No operation shows a message; false (or the stated value)
/// means that the logger did not answer as it should, and LinkState is left as it was.
class LoggerCommands {
 public:
  LoggerCommands(Comm& comm, LinkState& link, const Clock& clock, const SystemLocale& locale);

  /// The system's present time as SetLoggerTime takes it: "MM/dd/yy hh:mm:ss".
  QString ClockText() const;

  /// Sets the logger's clock from a text "MM/dd/yy hh:mm:ss", with an optional " AM" or " PM".
  bool SetLoggerTime(const QString& text);
  /// The logger's clock as text; "00/00/00 00:00:00" on any failure. Sets ClockOffsetS when it has
  /// been read.
  QString GetLoggerTime();
  /// The logger's clock as what it shows, without a time zone: the date and the time of day stand
  /// in a QDateTime of Qt::UTC, so that differences are those of the dials. Nothing on any failure,
  /// and for digits that no clock shows. Sets ClockOffsetS like GetLoggerTime.
  std::optional<QDateTime> ReadClock();
  /// Sets RecordCount, LoggerStatusWord, StatusAt and LoggingStateText.
  bool GetLoggerStatus();
  /// Sets FirmwareVersion and, when the channel counts are possible, the other version fields.
  bool GetLoggerVersion();

  /// The letter handshake and the version read.
  /// @param cancelled  asked after each failed pass; true ends the handshake.
  /// @return true when the logger is ready and its version reply was good.
  bool SyncWithLogger(const std::function<bool()>& cancelled);
  /// True when something answered during the last SyncWithLogger, whatever it was: what is silent
  /// is not there, what talks otherwise is no logger.
  bool HeardAnything() const { return heardAnything_; }

  bool InitializeFlash();  ///< Takes up to 45 seconds.
  bool ClearHistory();
  bool CommitConfiguration();
  bool ResetPulseAccumulators();

  /// Reads count (1 to 242) bytes of logger memory into buffer[start..]. The buffer grows, keeping
  /// its content, to start + count bytes whether or not the read succeeds.
  /// @param address  0 to 0xFFFFFF.
  bool ReadMemoryBlock(std::vector<std::uint8_t>& buffer, int start, int count,
                       std::uint32_t address);
  /// Writes buffer[start..start + count - 1], 1 to 128 bytes, to logger memory.
  /// @param address  0 to 0xFFFF; returned as the last address written.
  /// @return true when the frame was acknowledged; what the flash took is found by reading back.
  bool WriteMemoryBlock(std::span<const std::uint8_t> buffer, int start, int count,
                        std::uint32_t& address);

  /// Starts a measurement and takes the byte that answers, whatever it is.
  void StartMeasurement();
  /// Asks for the sample of the last measurement.
  SampleAnswer GetSample(std::array<std::uint8_t, kSampleReplySize>& reply);

  /// Asks for a block of stored records. @return true when a good reply filled the buffer: its
  /// first byte is the number of records, the records follow.
  bool GetHistoryBlock(HistoryBlock which, std::array<std::uint8_t, kHistoryReplySize>& reply);

 private:
  std::optional<QDateTime> NoteClock(std::span<const std::uint8_t, 7> clock);
  bool Send(std::span<const std::uint8_t> payload, int retries);
  bool SendForDone(std::span<const std::uint8_t> payload, std::int16_t ticks);
  bool ExchangeLetter(std::uint8_t letter, std::uint8_t answer);
  bool ReadClockBytes(std::array<std::uint8_t, 7>& clock);

  Comm& comm_;
  LinkState& link_;
  const Clock& clock_;
  const SystemLocale& locale_;
  bool heardAnything_ = false;
};

}  // namespace tessmar
