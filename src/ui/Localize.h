#pragma once

#include <QString>
#include <cstdint>

#include "settings/LoggerSettings.h"
#include "ui/SystemLocale.h"

namespace tessmar {

/// What the user's locale says about language and clock.
struct UserLocale {
  std::int16_t Language = 0;  ///< Primary language number, 7 German, 9 English, 10 Spanish.
  bool Use24HourClock = false;
};
UserLocale DetectUserLocale(const SystemLocale& locale);

/// The sampling interval as the main screen shows it, in the current language: the leading number
/// of SampleInterval and the word of the first unit that its text contains, or the text as it
/// stands.
QString IntervalDisplayText(const LoggerSettings& settings);

}  // namespace tessmar
