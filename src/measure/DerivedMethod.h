#pragma once

#include <QString>

#include "settings/LoggerSettings.h"

namespace tessmar {

/// How the value that a channel shows was made: for salinity, saturation and concentration the
/// formula, its inputs as these settings have them, and its largest deviation from the published
/// equations (the manual's page on the formulas has the same numbers). In English, in one line: it
/// goes into files that travel.
///
/// @param channel  an analog channel, 0 to 7.
/// @return empty for a channel that shows its own reading.
QString MethodText(const LoggerSettings& settings, int channel);

}  // namespace tessmar
