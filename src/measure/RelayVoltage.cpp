#include "measure/RelayVoltage.h"

#include <algorithm>

#include "base/Fault.h"
#include "base/Numbers.h"

namespace tessmar {
namespace {

constexpr int kStepMillivolts = 50;
constexpr int kHighestCode = 80;  // Four digits of base 3.

// Voltage is float or double: each compares with the limits in its own precision.
template <typename Voltage>
bool EncodesRelays(Voltage volts) {
  return volts >= static_cast<Voltage>(0.025) && volts <= static_cast<Voltage>(4.095);
}

std::array<RelayState, kRelayCount> StatesOf(std::int16_t millivolts) {
  int code = (millivolts + kStepMillivolts / 2) / kStepMillivolts;
  if (code > 0) --code;
  code = std::min(code, kHighestCode);
  std::array<RelayState, kRelayCount> states{};
  for (RelayState& state : states) {
    state = static_cast<RelayState>(code % 3 + 1);
    code /= 3;
  }
  return states;
}

}  // namespace

std::array<RelayState, kRelayCount> DecodeRelays(float volts) {
  if (!EncodesRelays(volts)) return {};
  return StatesOf(RoundToInt16(volts * 1000));
}

QString RelayStateText(RelayState state) {
  switch (state) {
    case RelayState::Off:
      return QStringLiteral("Off");
    case RelayState::On:
      return QStringLiteral("On");
    case RelayState::Pulse:
      return QStringLiteral("Pulse");
    case RelayState::Unknown:
      break;
  }
  return QStringLiteral("Unknown");
}

QString RelayCellText(double volts, std::int16_t relay) {
  if (relay < 0 || relay >= kRelayCount) throw RangeFault("there are four relays");
  if (!EncodesRelays(volts)) return QStringLiteral("---");
  return RelayStateText(StatesOf(RoundToInt16(volts * 1000))[static_cast<std::size_t>(relay)]);
}

}  // namespace tessmar
