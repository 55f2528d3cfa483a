#pragma once

#include <cstdint>

#include "base/SystemLocale.h"

namespace tessmar {

/// What the user's locale says about language and clock.
struct UserLocale {
  std::int16_t Language = 0;  ///< Primary language number, 7 German, 9 English, 10 Spanish.
  bool Use24HourClock = false;
};
UserLocale DetectUserLocale(const SystemLocale& locale);

}  // namespace tessmar
