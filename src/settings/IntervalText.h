#pragma once

#include <QString>

#include "settings/LoggerSettings.h"

namespace tessmar {

/// The sampling interval as the main screen shows it, in the current language: the leading number
/// of SampleInterval and the word of the first unit that its text contains, or the text as it
/// stands.
QString IntervalDisplayText(const LoggerSettings& settings);

/// The unit that the logger is told for an interval's text: 0 seconds, 1 minutes, 2 hours, 3 days.
std::uint8_t StoredIntervalUnit(const QString& interval);

}  // namespace tessmar
