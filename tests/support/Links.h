#pragma once

#include <cstdint>

#include "link/LinkState.h"

namespace tessmar::test {

/// The link to a logger with so many channels, 0 to 8 and 0 to 2, that keeps faults to itself.
inline LinkState LinkWith(int analog, int pulse) {
  LinkState link;
  link.TrapErrors = true;
  link.AnalogChannelCount = static_cast<std::int16_t>(analog);
  link.PulseChannelCount = static_cast<std::int16_t>(pulse);
  return link;
}

}  // namespace tessmar::test
