#pragma once

#include <span>

#include "settings/LoggerSettings.h"

namespace tessmar {

/// What an analog channel shows in place of, or as, its own reading.
enum class ShownQuantity { OwnReading, Salinity, Saturation, Concentration };

/// The first of salinity, saturation and concentration that the settings show on this channel, or
/// else the channel's own reading.
///
/// @param channel  0 to 7.
ShownQuantity QuantityShown(const DoSettings& settings, int channel);

/// The scaled reading of an analog channel, and whether it may serve as a source. What makes it
/// available differs: a real sample on the live screen, Enable in the history table.
struct ChannelReading {
  double Value = 0;
  bool Available = false;
};

/// What an enabled channel shows. Sources are always readings, never derived values; a typed-in
/// source is always available, a source channel that does not exist never.
///
/// @param channel  0 to 7.
/// @param readings  of all eight analog channels; those the logger lacks are not available.
/// @return a derived value, computed only when all its sources are available and 0 otherwise, or
/// the
///   channel's own reading as it was passed. A value that overflows throws CalculationFault.
ChannelReading ShownReading(const DoSettings& settings, int channel,
                            std::span<const ChannelReading, kAnalogChannels> readings);

}  // namespace tessmar
