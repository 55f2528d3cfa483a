#include "setup/FieldRules.h"

#include <algorithm>
#include <array>

#include "base/Blanks.h"
#include "base/Fault.h"
#include "base/Numbers.h"
#include "settings/LoggerSettings.h"
#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr double kNumberLimit = 1000000;
constexpr double kLargestNumber = 999999;

// clang-format off
constexpr std::array kFieldRules{
    FieldRule{"txtName",                    FieldKind::Text,         0, kLoggerNameLength},
    FieldRule{"cmbEU",                      FieldKind::Text,         0, kUnitsLength},
    FieldRule{"cmbPulseEU",                 FieldKind::Text,         0, kUnitsLength},
    FieldRule{"cmbWarmup",                  FieldKind::ListNumber,   0, 60},
    FieldRule{"cmbPrecision",               FieldKind::ListNumber,   0, 6},
    FieldRule{"cmbPulsePrecision",          FieldKind::ListNumber,   0, 6},
    FieldRule{"txtHighRaw",                 FieldKind::RawCount,     0, 65535},
    FieldRule{"txtLowRaw",                  FieldKind::RawCount,     0, 65535},
    FieldRule{"txtHighEU",                  FieldKind::Number},
    FieldRule{"txtLowEU",                   FieldKind::Number},
    FieldRule{"txtTop",                     FieldKind::Number},
    FieldRule{"txtBottom",                  FieldKind::Number},
    FieldRule{"txtPulseUnit",               FieldKind::Number},
    FieldRule{"txtConductivityManualEntry", FieldKind::NumberOrZero},
    FieldRule{"txtAirPressureManualEntry",  FieldKind::NumberOrZero},
    FieldRule{"txtSampleInterval",          FieldKind::Integer,      1, 65535, TextId::SampleIntervalRange},
    FieldRule{"txtException",               FieldKind::Integer,      0, 65535, TextId::ExceptionRange},
    FieldRule{"txtAlarm",                   FieldKind::AlarmTime},
};

constexpr FieldRule kCalibrationValue{
    "txtCalibrate", FieldKind::NumberBetween, -1000000, 1000000, TextId::FloatRange,
    TextId::BadNumber, kOkOnly + kExclamation};
constexpr FieldRule kCalibrationReading{
    "txtCalibrate", FieldKind::Integer, 0, 65535, TextId::IntegerRange,
    TextId::BadNumber, kOkOnly + kExclamation};
// clang-format on

FieldVerdict Accept(const QString& text) {
  return {true, text, std::nullopt, std::nullopt};
}

FieldVerdict Refuse(const QString& text, std::optional<TextId> message = std::nullopt) {
  return {false, text, std::nullopt, message};
}

/// The text of a number as the logger will hold it.
QString StoredNumber(double value) {
  return FormatInvariantNumber(DecodeDecimal24(EncodeDecimal24(value)));
}

FieldVerdict CheckListNumber(const FieldRule& rule, const QString& text, const QLocale& locale) {
  std::int32_t value = 0;
  if (!TryParseInteger(text, locale, value) || value < rule.Lowest) return Refuse(text);
  value = std::min(value, rule.Highest);
  FieldVerdict verdict = Accept(QString::number(value));
  if (rule.Kind == FieldKind::ListNumber) verdict.ListIndex = value;
  return verdict;
}

FieldVerdict CheckInteger(const FieldRule& rule, const QString& text, const QLocale& locale) {
  std::int32_t value = 0;
  if (!TryParseInteger(text, locale, value) || value < rule.Lowest || value > rule.Highest) {
    return Refuse(text, rule.Message);
  }
  return Accept(QString::number(value));
}

/// The test goes by the locale, the value by the point alone: with a decimal comma "1,5" is a
/// number and reads as 1.
FieldVerdict CheckNumber(const FieldRule& rule, const QString& text, const QLocale& locale) {
  if (!IsNumeric(text, locale)) {
    return rule.Kind == FieldKind::NumberOrZero ? Accept(u"0"_s) : Refuse(text);
  }
  double value = ParseLeadingNumber(text);
  if (value >= kNumberLimit) value = kLargestNumber;
  if (value <= -kNumberLimit) value = -kLargestNumber;
  return Accept(StoredNumber(value));
}

FieldVerdict CheckNumberBetween(const FieldRule& rule, const QString& text, const QLocale& locale) {
  if (!IsNumeric(text, locale)) return Refuse(text, rule.Message);
  const double value = ParseLeadingNumber(text);
  if (value <= rule.Lowest || value >= rule.Highest) return Refuse(text, rule.Message);
  return Accept(StoredNumber(value));
}

/// The number that a part of an alarm time begins with.
int AlarmPart(const QString& text) {
  return RoundToInt16(ParseLeadingNumber(text));
}

FieldVerdict CheckAlarmTime(const QString& text, bool use24HourClock) {
  const int hour = AlarmPart(text);
  if (use24HourClock && (hour < 0 || hour >= 24)) return Refuse(text, TextId::AlarmHour24Range);
  if (!use24HourClock && (hour < 1 || hour > 12)) return Refuse(text, TextId::AlarmHour12Range);
  int minute = 0;
  int second = 0;
  const qsizetype firstColon = text.indexOf(u':');
  if (firstColon >= 0) {
    minute = AlarmPart(text.mid(firstColon + 1));
    if (minute < 0 || minute > 59) return Refuse(text, TextId::AlarmMinuteRange);
    const qsizetype nextColon = text.indexOf(u':', firstColon + 1);
    if (nextColon >= 0) second = AlarmPart(text.mid(nextColon + 1));
    if (second < 0 || second >= 60) return Refuse(text, TextId::AlarmSecondRange);
  }
  return Accept(
      u"%1:%2:%3"_s.arg(hour).arg(minute, 2, 10, QChar(u'0')).arg(second, 2, 10, QChar(u'0')));
}

FieldVerdict Check(const FieldRule& rule, const QString& text, const FieldContext& context) {
  switch (rule.Kind) {
    case FieldKind::Text:
      return Accept(ControlsToBlanks(text).trimmed().left(rule.Highest));
    case FieldKind::ListNumber:
    case FieldKind::RawCount:
      return CheckListNumber(rule, text, context.Locale);
    case FieldKind::Integer:
      return CheckInteger(rule, text, context.Locale);
    case FieldKind::Number:
    case FieldKind::NumberOrZero:
      return CheckNumber(rule, text, context.Locale);
    case FieldKind::AlarmTime:
      return CheckAlarmTime(text, context.Use24HourClock);
    case FieldKind::NumberBetween:
      return CheckNumberBetween(rule, text, context.Locale);
  }
  return Accept(text);
}

/// What a field does when a fault ends its check.
FieldVerdict VerdictOnFault(const FieldRule& rule, const QString& text) {
  switch (rule.Kind) {
    case FieldKind::Number:
    case FieldKind::NumberOrZero:
      return Accept(text);
    case FieldKind::NumberBetween:
      return Refuse(text, rule.Message);
    default:
      return Refuse(text);
  }
}

}  // namespace

std::span<const FieldRule> FieldRules() {
  return kFieldRules;
}

const FieldRule* FindFieldRule(const QString& control) {
  const auto rule = std::find_if(kFieldRules.begin(), kFieldRules.end(), [&](const FieldRule& row) {
    return control == QLatin1StringView(row.Control);
  });
  return rule == kFieldRules.end() ? nullptr : &*rule;
}

const FieldRule& CalibrationFieldRule(int step) {
  return step % 2 == 0 ? kCalibrationReading : kCalibrationValue;
}

FieldVerdict CheckField(const FieldRule& rule, const QString& text, const FieldContext& context) {
  return Trapped(
      context.Link, [&] { return Check(rule, text, context); }, VerdictOnFault(rule, text));
}

}  // namespace tessmar
