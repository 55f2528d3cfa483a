#pragma once

#include <cstdint>

#include "CivilTime.h"
#include "LoggerMemory.h"

namespace tessmar::sim {

/// Bits of the status word.
enum StatusBit : std::uint16_t {
  kLogging = 1U << 7U,
  kWaitingForAlarm1 = 1U << 11U,
  kUntilAlarm2 = 1U << 12U,
  kStoppedByAlarm2 = 1U << 13U,
};

/// The status word of a logger with this memory at this time on its clock. Without an identifier
/// the logger does not log; alarm 1 starts and alarm 2 stops it at their times of day.
std::uint16_t StatusWord(const LoggerMemory& memory, CivilSeconds clock);

}  // namespace tessmar::sim
