// The fields of the setup screen and alarm times: the whole input is the text of a field.

#include <array>

#include "Fuzz.h"
#include "setup/FieldRules.h"
#include "setup/SetupControls.h"
#include "support/Links.h"

namespace {

using namespace tessmar;
using fuzz::Hold;

/// A text that was cut behind a blank loses that the next time, as it does in the logger.
QString AsStored(const FieldRule& rule, const QString& text) {
  return rule.Kind == FieldKind::Text ? text.trimmed() : text;
}

/// One rule of each kind and range.
const std::vector<FieldRule>& DistinctRules() {
  static const std::vector<FieldRule> rules = [] {
    std::vector<FieldRule> distinct;
    for (const FieldRule& rule : FieldRules()) {
      const bool known = std::ranges::any_of(distinct, [&](const FieldRule& other) {
        return other.Kind == rule.Kind && other.Lowest == rule.Lowest &&
               other.Highest == rule.Highest;
      });
      if (!known) distinct.push_back(rule);
    }
    return distinct;
  }();
  return rules;
}

void CheckRule(const FieldRule& rule, const QString& text, const FieldContext& context) {
  const FieldVerdict verdict = CheckField(rule, text, context);
  if (!verdict.Accepted) {
    Hold(verdict.Text == text, "a refused text stays as it was typed");
    return;
  }
  Hold(verdict.Text.size() <= text.size() + 400, "a text does not grow");
  const FieldVerdict again = CheckField(rule, verdict.Text, context);
  Hold(again.Accepted, "what was accepted is accepted again");
  Hold(again.Text == AsStored(rule, verdict.Text), "and unchanged");
  Hold(again.ListIndex == verdict.ListIndex, "in the same place of its list");
}

/// A time of day that the field takes is what the record has and what the field shows again.
void CheckAlarm(const QString& text, const FieldContext& context) {
  const FieldVerdict verdict =
      CheckField(*FindFieldRule(QStringLiteral("txtAlarm")), text, context);
  if (!verdict.Accepted) return;
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  SetupControls controls;
  SettingsToControls(context.Link, context.Use24HourClock, settings, controls);
  for (const int half : {0, 1}) {
    controls.Alarm[0] = {true, verdict.Text, context.Use24HourClock ? 0 : half};
    ControlsToSettings(context.Link, context.Use24HourClock, controls, settings);
    const AlarmSettings& alarm = settings.Alarm[0];
    Hold(alarm.AlarmHour >= 0 && alarm.AlarmHour < 24 && alarm.AlarmMin >= 0 &&
             alarm.AlarmMin < 60 && alarm.AlarmSec >= 0 && alarm.AlarmSec < 60,
         "an alarm is a time of day");
    SetupControls shown;
    SettingsToControls(context.Link, context.Use24HourClock, settings, shown);
    Hold(shown.Alarm[0] == controls.Alarm[0], "an alarm shows as it was typed");
    Hold(ImageOf(context.Link, context.Use24HourClock, controls, settings).has_value(),
         "an alarm can be programmed");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::array locales{QLocale(QLocale::English, QLocale::UnitedStates),
                                  QLocale(QLocale::German, QLocale::Germany),
                                  QLocale(QLocale::Swedish, QLocale::Sweden)};
  const LinkState link = test::LinkWith(8, 2);
  const QString text = QString::fromUtf8(fuzz::FileOf(data, size));
  for (const QLocale& locale : locales) {
    for (const bool clock24 : {false, true}) {
      const FieldContext context{link, locale, clock24};
      for (const FieldRule& rule : DistinctRules()) CheckRule(rule, text, context);
      for (const int step : {1, 2}) CheckRule(CalibrationFieldRule(step), text, context);
      CheckAlarm(text, context);
    }
  }
  return 0;
}
