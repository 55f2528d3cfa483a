#pragma once

#include <span>

#include "settings/LoggerSettings.h"

namespace tessmar {

/// The scaled reading of an analog channel, and whether it may serve as a source. What makes it
/// available differs: a real sample on the live screen, Enable in the history table.
struct ChannelReading {
  double Value = 0;
  bool Available = false;
};

/// What an enabled channel shows: salinity, oxygen saturation, oxygen concentration or its own
/// reading, the first of these that the settings choose for it. Sources are always readings, never
/// derived values.
///
/// @param readings  of all eight analog channels; those the logger lacks are not available.
/// @return the value, computed only when all its sources are available.
ChannelReading ShownReading(const DoSettings& settings, int channel,
                            std::span<const ChannelReading, kAnalogChannels> readings);

}  // namespace tessmar
