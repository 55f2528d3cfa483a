#include "LoggingState.h"

#include <optional>

namespace tessmar::sim {
namespace {

constexpr std::uint32_t kAlarmEnables = LoggerMemory::kFirstArea + 42;
constexpr std::uint32_t kAlarmTimes = LoggerMemory::kFirstArea + 138;
constexpr std::uint32_t kAlarmTimeSize = 4;

int FromPacked(std::uint8_t byte) {
  return (byte >> 4U) * 10 + (byte & 15U);
}

/// Second of the day at which alarm 0 or 1 goes off, if it is in use.
std::optional<int> AlarmTime(const LoggerMemory& memory, std::uint32_t alarm) {
  if (memory.At(kAlarmEnables + alarm) == 0) return std::nullopt;
  const std::uint32_t at = kAlarmTimes + alarm * kAlarmTimeSize;
  return FromPacked(memory.At(at)) + 60 * FromPacked(memory.At(at + 1)) +
         3600 * FromPacked(memory.At(at + 2));
}

}  // namespace

std::uint16_t StatusWord(const LoggerMemory& memory, CivilSeconds clock) {
  if (memory.At(LoggerMemory::kIdentifierAddress) == LoggerMemory::kErased) return 0;
  const CivilTime now = ToCivilTime(clock);
  const int second = now.Hour * 3600 + now.Minute * 60 + now.Second;
  const std::optional<int> start = AlarmTime(memory, 0);
  const std::optional<int> stop = AlarmTime(memory, 1);

  if (start && stop && *start > *stop) {  // through the night
    const bool inside = second >= *start || second < *stop;
    return kLogging | (inside ? kUntilAlarm2 : kWaitingForAlarm1);
  }
  if (start && second < *start) return kLogging | kWaitingForAlarm1;
  if (stop) return kLogging | (second < *stop ? kUntilAlarm2 : kStoppedByAlarm2);
  return kLogging;
}

}  // namespace tessmar::sim
