#pragma once

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <optional>

#include "base/Fault.h"

namespace tessmar {

/// The one record of the connection and of what the main window shows about it.
///
/// There is one in the process, made in Program and handed by reference. It starts zeroed;
/// start-up, the connect action and the version reply fill it. Tick counts are in ticks of 100 ms.
struct LinkState : FaultPolicy {
  bool Connected = false;              ///< A session exists.
  bool DisplayedConnected = false;     ///< Connected as the controls last showed it.
  bool Busy = false;                   ///< A logger operation holds the link.
  bool SampleContinuously = false;     ///< Continuous sampling runs.
  bool SingleSampleRequested = false;  ///< The Get Sample action waits for one sample.

  std::int16_t SampleStep = 0;         ///< Place in the sampling cycle, 0 to 13.
  std::int16_t SampleWaitTicks = 0;    ///< Time left for Get Sample; lowered by Timer2.
  std::int16_t WaitTicks = 0;          ///< Time left for every other wait; lowered by Timer1.
  std::int16_t LinkTimeoutTicks = 0;   ///< The basic wait for a reply; 10 on a direct line.
  std::int16_t ModemTimeoutTicks = 0;  ///< LinkTimeoutTicks of a modem line; 4 unless -w says more.

  std::int16_t AnalogChannelCount = 0;  ///< 1 to 8 from a logger, 0 to 8 from an image import.
  std::int16_t PulseChannelCount = 0;   ///< 0 to 2.
  std::int32_t RecordCount = 0;         ///< Records stored in the logger, 0 to 16777215.
  std::uint16_t LoggerStatusWord = 0;
  QDateTime StatusAt;  ///< The computer's clock when these two were read last; null before.
  std::uint8_t FirmwareVersion = 0;
  bool SampleOnDemandSupported = false;
  std::int16_t LoggerModelCode = 0;  ///< 220 is the model with relays.

  /// Seconds by which the logger's clock was ahead of the computer's when it was read last; nothing
  /// while it has not been read since the connection, or had no possible time.
  std::optional<std::int32_t> ClockOffsetS;

  QString LoggerTimeText;    ///< Shown in lblDateTime.
  QString LoggingStateText;  ///< Shown in lblLoggingState.
};

/// True when a foreground action may take the link: connected, not busy, not sampling continuously.
inline bool MayStartOperation(const LinkState& link) {
  return link.Connected && !link.Busy && !link.SampleContinuously;
}

/// Holds LinkState::Busy from construction to destruction, so that it is cleared on every path.
class BusyScope {
 public:
  explicit BusyScope(LinkState& link) : link_(link) { link_.Busy = true; }
  ~BusyScope() { link_.Busy = false; }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

 private:
  LinkState& link_;
};

}  // namespace tessmar
