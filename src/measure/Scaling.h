#pragma once

#include <QString>
#include <cstdint>

#include "settings/LoggerSettings.h"

namespace tessmar {

/// Raw count to engineering units, linear through the channel's two points; extrapolates beyond
/// them. Equal raw points give LowerLimit, limits closer than 0.0001 give UpperLimit.
double ScaleRaw(const AnalogChannelSettings& channel, std::int32_t raw);

/// A number rounded half to even to 0 to 6 decimals, with a point, without grouping. Never shows a
/// negative zero.
QString FormatValue(double value, int decimals);

}  // namespace tessmar
