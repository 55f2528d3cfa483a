#include "settings/IntervalText.h"

#include <array>

#include "base/Fault.h"
#include "base/Numbers.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

struct IntervalUnit {
  QLatin1StringView Mark;  ///< What the interval's text contains, in lower case.
  TextId One;
  TextId Many;
};

constexpr std::array<IntervalUnit, 4> kIntervalUnits{{
    {"sec"_L1, TextId::Second, TextId::Seconds},
    {"min"_L1, TextId::Minute, TextId::Minutes},
    {"hour"_L1, TextId::Hour, TextId::Hours},
    {"day"_L1, TextId::Day, TextId::Days},
}};

/// The interval's count; 0 for one that no 32-bit integer holds.
std::int32_t LeadingCount(const QString& interval) {
  try {
    return RoundToInt32(ParseLeadingNumber(interval));
  } catch (const ConversionFault&) {
    return 0;
  }
}

}  // namespace

std::uint8_t StoredIntervalUnit(const QString& interval) {
  if (interval.contains("min"_L1)) return 1;
  if (interval.contains("hour"_L1)) return 2;
  if (interval.contains("day"_L1)) return 3;
  return 0;
}

QString IntervalDisplayText(const LoggerSettings& settings) {
  const QString& interval = settings.SampleInterval;
  for (const IntervalUnit& unit : kIntervalUnits) {
    if (!interval.contains(unit.Mark)) continue;
    const std::int32_t count = LeadingCount(interval);
    return QString::number(count) + u' ' + GetText(count == 1 ? unit.One : unit.Many);
  }
  return interval;
}

}  // namespace tessmar
