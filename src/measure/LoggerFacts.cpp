#include "measure/LoggerFacts.h"

#include <QLocale>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "base/Fault.h"
#include "base/Numbers.h"
#include "base/TextTable.h"
#include "measure/Sample.h"
#include "settings/IntervalText.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Outlook = MemoryForecast::Outlook;

constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::int64_t kYear = 365 * kDay;
/// A forecast beyond this says only that it is far.
constexpr std::int64_t kFarAway = 50 * kYear;
/// A forecast nearer than this says the time of day.
constexpr std::int64_t kNear = 2 * kDay;

constexpr std::int32_t kLeastDrift = 2;
/// What lies so near to a whole hour is most likely a clock that was not set to summer time, or
/// back.
constexpr std::int64_t kNearTheHour = 2 * kMinute;

// Bits of the logger's status word.
constexpr std::uint16_t kLoggingBit = 1U << 7U;
constexpr std::uint16_t kWaitingBit = 1U << 11U;
constexpr std::uint16_t kUntilAlarmBit = 1U << 12U;
constexpr std::uint16_t kStoppedBit = 1U << 13U;

bool IsLogging(std::uint16_t status) {
  return (status & kLoggingBit) != 0 && (status & kStoppedBit) == 0;
}

/// True when the logger may store fewer records than there are intervals.
bool MaySkipRecords(const LinkState& link, const LoggerSettings& settings) {
  const bool byAlarm = (link.LoggerStatusWord & (kWaitingBit | kUntilAlarmBit)) != 0 ||
                       settings.Alarm[0].Enable != 0 || settings.Alarm[1].Enable != 0;
  return byAlarm || (settings.LoggingStyle & kLogException) != 0;
}

struct DriftUnit {
  std::int64_t Seconds;
  const char16_t* EnglishOne;
  const char16_t* EnglishMany;
  const char16_t* GermanOne;
  const char16_t* GermanMany;
};

constexpr std::array<DriftUnit, 4> kDriftUnits{{
    {kDay, u"day", u"days", u"Tag", u"Tage"},
    {kHour, u"h", u"h", u"h", u"h"},
    {kMinute, u"min", u"min", u"min", u"min"},
    {1, u"s", u"s", u"s", u"s"},
}};

/// The two greatest parts of a span that are not zero: "1 h 12 s".
QString SpanText(std::int64_t seconds) {
  QStringList parts;
  for (const DriftUnit& unit : kDriftUnits) {
    const std::int64_t count = seconds / unit.Seconds;
    seconds %= unit.Seconds;
    if (count == 0 || parts.size() == 2) continue;
    parts.append(QString::number(count) + u' ' +
                 (count == 1 ? InLanguage(unit.EnglishOne, unit.GermanOne)
                             : InLanguage(unit.EnglishMany, unit.GermanMany)));
  }
  return parts.join(u' ');
}

/// "3 March 2027", and "3 March 2027, 14:30" where the time matters.
QString DateText(const MemoryForecast& forecast, bool use24HourClock) {
  const bool german = TextLanguage() == kLanguageGerman;
  const QLocale words(german ? QLocale::German : QLocale::English);
  QString text = words.toString(forecast.At.date(), german ? u"d. MMMM yyyy"_s : u"d MMMM yyyy"_s);
  if (forecast.WithTime)
    text += u", "_s + forecast.At.time().toString(use24HourClock ? u"HH:mm"_s : u"h:mm AP"_s);
  return text;
}

QString FillsText(const MemoryForecast& forecast) {
  if (forecast.Is == Outlook::FillsAt) {
    return forecast.Wraps ? InLanguage(u"oldest records are overwritten from %1 on",
                                       u"älteste Datensätze werden ab %1 überschrieben")
                          : InLanguage(u"memory full on %1", u"Speicher voll am %1");
  }
  return forecast.Wraps
             ? InLanguage(
                   u"oldest records not overwritten before %1: upload by then at the latest",
                   u"älteste Datensätze frühestens ab %1 überschrieben: spätestens dann auslesen")
             : InLanguage(u"memory not full before %1: upload by then at the latest",
                          u"Speicher frühestens am %1 voll: spätestens dann auslesen");
}

}  // namespace

std::int64_t MemoryCapacity(int analogChannelCount, int pulseChannelCount) {
  if (analogChannelCount + pulseChannelCount <= 0) return 0;
  return std::int64_t{kDataPages} *
         (kRecordAreaSize / RecordSize(analogChannelCount, pulseChannelCount));
}

std::int64_t SampleIntervalSeconds(const QString& interval) {
  constexpr std::array<std::int64_t, 4> kSeconds{1, kMinute, kHour, kDay};
  try {
    const std::int32_t count = RoundToInt32(ParseLeadingNumber(interval));
    return count <= 0 ? 0 : count * kSeconds.at(StoredIntervalUnit(interval));
  } catch (const ConversionFault&) {
    return 0;
  }
}

MemoryForecast ForecastMemory(const LinkState& link, const LoggerSettings& settings) {
  MemoryForecast forecast;
  const std::int64_t capacity = MemoryCapacity(link.AnalogChannelCount, link.PulseChannelCount);
  if (!link.StatusAt.isValid() || capacity == 0) return forecast;
  const std::int64_t count = link.RecordCount;
  const std::int64_t perPage = capacity / kDataPages;
  const bool periodic = (settings.LoggingStyle & kLogModeMask) == kLogPeriodic;
  const std::int64_t interval = periodic ? SampleIntervalSeconds(settings.SampleInterval) : 0;
  const bool exact = interval > 0 && !MaySkipRecords(link, settings);
  forecast.Wraps = settings.DataWrapAroundFlag != 0;
  forecast.Percent = static_cast<int>(std::clamp<std::int64_t>(100 * count / capacity, 0, 100));

  if (!forecast.Wraps && count >= capacity) {
    forecast.Is = Outlook::Full;
  } else if (!IsLogging(link.LoggerStatusWord)) {
    forecast.Is = Outlook::NotLogging;
  } else if (forecast.Wraps && count > capacity - perPage) {
    // A page is cleared for the records that take its place, so the count may stay below the whole.
    forecast.Is = Outlook::Overwriting;
    if (exact && count > capacity)
      forecast.At = link.StatusAt.addSecs((capacity - count) * interval);
  } else if (interval == 0) {
    forecast.Is = Outlook::Share;
  } else if ((capacity - count) * interval > kFarAway) {
    forecast.Is = Outlook::Decades;
  } else {
    const std::int64_t seconds = (capacity - count) * interval;
    forecast.Is = exact ? Outlook::FillsAt : Outlook::NotBefore;
    forecast.At = link.StatusAt.addSecs(seconds);
    forecast.WithTime = seconds < kNear;
  }
  return forecast;
}

QString MemoryText(const MemoryForecast& forecast, bool use24HourClock) {
  switch (forecast.Is) {
    case Outlook::Unknown:
      return {};
    case Outlook::NotLogging:
      return InLanguage(u"not logging", u"zeichnet nicht auf");
    case Outlook::Full:
      return InLanguage(u"memory full", u"Speicher voll");
    case Outlook::Overwriting:
      if (!forecast.At.isValid())
        return InLanguage(u"oldest records are being overwritten",
                          u"älteste Datensätze werden überschrieben");
      return InLanguage(u"oldest records are being overwritten since %1",
                        u"älteste Datensätze werden seit %1 überschrieben")
          .arg(DateText(forecast, use24HourClock));
    case Outlook::FillsAt:
    case Outlook::NotBefore:
      return FillsText(forecast).arg(DateText(forecast, use24HourClock));
    case Outlook::Share:
      return InLanguage(u"%1 % of memory used", u"Speicher zu %1 % belegt").arg(forecast.Percent);
    case Outlook::Decades:
      return InLanguage(u"memory lasts for more than 50 years",
                        u"Speicher reicht für mehr als 50 Jahre");
  }
  return {};
}

QString ClockDriftText(std::optional<std::int32_t> offsetS) {
  if (!offsetS) return {};
  const std::int64_t seconds = std::llabs(*offsetS);
  if (seconds < kLeastDrift) return {};
  const QString span =
      seconds >= kYear ? InLanguage(u"more than a year", u"mehr als ein Jahr") : SpanText(seconds);
  QString text = *offsetS > 0 ? InLanguage(u"clock %1 fast", u"Uhr geht %1 vor")
                              : InLanguage(u"clock %1 slow", u"Uhr geht %1 nach");
  text = text.arg(span);
  if (std::llabs(seconds - kHour) <= kNearTheHour)
    text += InLanguage(u": daylight saving?", u": Sommerzeit?");
  return text;
}

}  // namespace tessmar
