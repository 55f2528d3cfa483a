#include "measure/Series.h"

#include <array>

#include "base/Fault.h"
#include "base/Numbers.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

struct UnitSeconds {
  QLatin1StringView Mark;  ///< What the interval's text contains, in lower case.
  double Seconds;
};

// In the order in which the interval's text is searched everywhere.
constexpr std::array<UnitSeconds, 4> kUnits{
    {{"sec"_L1, 1}, {"min"_L1, 60}, {"hour"_L1, 3600}, {"day"_L1, 86400}}};

double LeadingCount(const QString& interval) {
  try {
    return ParseLeadingNumber(interval);
  } catch (const ConversionFault&) {
    return 0;
  }
}

}  // namespace

double LoggedInterval(const LoggerSettings& settings) {
  const bool periodic = (settings.LoggingStyle & kLogModeMask) == kLogPeriodic;
  if (!periodic || (settings.LoggingStyle & kLogException) != 0) return 0;
  for (const UnitSeconds& unit : kUnits) {
    if (!settings.SampleInterval.contains(unit.Mark)) continue;
    const double seconds = LeadingCount(settings.SampleInterval) * unit.Seconds;
    return seconds > 0 ? seconds : 0;
  }
  return 0;
}

}  // namespace tessmar
