#include "base/Localize.h"

namespace tessmar {

UserLocale DetectUserLocale(const SystemLocale& locale) {
  return {.Language = locale.PrimaryLanguage(), .Use24HourClock = locale.Uses24HourClock()};
}

}  // namespace tessmar
