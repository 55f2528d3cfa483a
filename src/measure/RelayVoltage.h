#pragma once

#include <QString>
#include <array>
#include <cstdint>

namespace tessmar {

inline constexpr int kRelayCount = 4;

/// State of one relay, as decoded from the voltage of analog channel 1.
enum class RelayState : std::int16_t { Unknown = 0, Off = 1, On = 2, Pulse = 3 };

/// The states of the four relays from the voltage that encodes them: steps of 50 mV, the first at
/// 0.05 V, counted in base 3 with relay 0 as the lowest digit. All unknown outside 0.025 to 4.095.
///
/// Single precision, because the voltage is taken from what the screen shows.
std::array<RelayState, kRelayCount> DecodeRelays(float volts);

/// "Off", "On", "Pulse" or "Unknown", in every language.
QString RelayStateText(RelayState state);

/// The state of one relay in a history cell: "Off", "On", "Pulse", or "---" for a voltage outside
/// 0.025 to 4.095. Throws RangeFault for a relay above 3.
QString RelayCellText(double volts, std::int16_t relay);

}  // namespace tessmar
