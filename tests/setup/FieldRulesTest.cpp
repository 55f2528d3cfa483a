#include "setup/FieldRules.h"

#include <gtest/gtest.h>

#include <QSet>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const QLocale kUs(QLocale::English, QLocale::UnitedStates);
const QLocale kGerman(QLocale::German, QLocale::Germany);

LinkState Trapping(bool trap = true) {
  LinkState link;
  link.TrapErrors = trap;
  return link;
}

FieldVerdict Leave(const char* control, const QString& text, const QLocale& locale = kUs,
                   bool use24HourClock = false, bool trap = true) {
  const FieldRule* rule = FindFieldRule(QLatin1StringView(control));
  if (rule == nullptr) throw std::logic_error(control);
  const LinkState link = Trapping(trap);
  return CheckField(*rule, text, {link, locale, use24HourClock});
}

FieldVerdict Accepted(const QString& text) {
  return {true, text, std::nullopt, std::nullopt};
}
FieldVerdict Chosen(int index) {
  return {true, QString::number(index), index, std::nullopt};
}
FieldVerdict Silent(const QString& text) {
  return {false, text, std::nullopt, std::nullopt};
}
FieldVerdict Refused(const QString& text, TextId message) {
  return {false, text, std::nullopt, message};
}

constexpr const char* kNumberFields[] = {"txtHighEU", "txtLowEU", "txtTop", "txtBottom",
                                         "txtPulseUnit"};
constexpr const char* kNumberOrZeroFields[] = {"txtConductivityManualEntry",
                                               "txtAirPressureManualEntry"};

TEST(FieldRules, KnowEveryFieldThatIsChecked) {
  QSet<QString> controls;
  for (const FieldRule& rule : FieldRules()) controls.insert(QLatin1StringView(rule.Control));
  const QSet<QString> expected{u"txtName"_s,
                               u"cmbEU"_s,
                               u"cmbPulseEU"_s,
                               u"cmbWarmup"_s,
                               u"cmbPrecision"_s,
                               u"cmbPulsePrecision"_s,
                               u"txtHighRaw"_s,
                               u"txtLowRaw"_s,
                               u"txtHighEU"_s,
                               u"txtLowEU"_s,
                               u"txtTop"_s,
                               u"txtBottom"_s,
                               u"txtPulseUnit"_s,
                               u"txtConductivityManualEntry"_s,
                               u"txtSampleInterval"_s,
                               u"txtAirPressureManualEntry"_s,
                               u"txtException"_s,
                               u"txtAlarm"_s};
  EXPECT_EQ(controls, expected);
  EXPECT_EQ(FieldRules().size(), 18U);
}

TEST(FieldRules, LeaveOtherControlsAlone) {
  for (const QString& control : {u"cmbSampleInterval"_s, u"cmbBaud"_s, u"cmbPO2SourceChannel"_s,
                                 u"cmbPO2SourceUnits"_s, u"chkWrap"_s, u"txtAlarm(0)"_s, u""_s}) {
    EXPECT_EQ(FindFieldRule(control), nullptr) << control.toStdString();
  }
}

TEST(FieldRules, ShowTheirMessagesAsFormatErrors) {
  for (const FieldRule& rule : FieldRules()) {
    EXPECT_EQ(rule.Title, TextId::FormatError) << rule.Control;
    EXPECT_EQ(rule.Buttons, 16) << rule.Control;
  }
}

TEST(NameField, GetsABlankForEachControlCharacter) {
  EXPECT_EQ(Leave("txtName", u"Well\n4\tnorth\u2028side"_s), Accepted(u"Well 4 north side"_s));
}

TEST(NameField, TrimsAndCutsToThirtyTwoCharacters) {
  EXPECT_EQ(Leave("txtName", u"  Well 4 "_s), Accepted(u"Well 4"_s));
  EXPECT_EQ(Leave("txtName", QString(40, u'a')), Accepted(QString(32, u'a')));
  EXPECT_EQ(Leave("txtName", u"   "_s), Accepted(u""_s));
}

TEST(UnitsField, TrimsAndCutsToNineCharacters) {
  for (const char* control : {"cmbEU", "cmbPulseEU"}) {
    EXPECT_EQ(Leave(control, u"  Gallons per day"_s), Accepted(u"Gallons p"_s));
    EXPECT_EQ(Leave(control, u" Feet "_s), Accepted(u"Feet"_s));
    EXPECT_EQ(Leave(control, u""_s), Accepted(u""_s));
  }
}

TEST(WarmupField, ChoosesItsSecondsInTheList) {
  EXPECT_EQ(Leave("cmbWarmup", u"90"_s), Chosen(60));
  EXPECT_EQ(Leave("cmbWarmup", u"61"_s), Chosen(60));
  EXPECT_EQ(Leave("cmbWarmup", u"60"_s), Chosen(60));
  EXPECT_EQ(Leave("cmbWarmup", u" 0 "_s), Chosen(0));
  EXPECT_EQ(Leave("cmbWarmup", u"2.5"_s), Chosen(2));
}

TEST(WarmupField, RefusesSilently) {
  for (const QString& text : {u"-1"_s, u"x"_s, u""_s, u"3000000000"_s}) {
    EXPECT_EQ(Leave("cmbWarmup", text), Silent(text)) << text.toStdString();
  }
}

TEST(PlacesField, ChoosesUpToSixPlaces) {
  for (const char* control : {"cmbPrecision", "cmbPulsePrecision"}) {
    EXPECT_EQ(Leave(control, u"7"_s), Chosen(6));
    EXPECT_EQ(Leave(control, u"6"_s), Chosen(6));
    EXPECT_EQ(Leave(control, u"0"_s), Chosen(0));
    EXPECT_EQ(Leave(control, u"-1"_s), Silent(u"-1"_s));
    EXPECT_EQ(Leave(control, u"two"_s), Silent(u"two"_s));
  }
}

TEST(RawField, CutsAboveAndRefusesBelowItsRangeSilently) {
  for (const char* control : {"txtHighRaw", "txtLowRaw"}) {
    EXPECT_EQ(Leave(control, u"70000"_s), Accepted(u"65535"_s));
    EXPECT_EQ(Leave(control, u"65535"_s), Accepted(u"65535"_s));
    EXPECT_EQ(Leave(control, u"0"_s), Accepted(u"0"_s));
    EXPECT_EQ(Leave(control, u"-1"_s), Silent(u"-1"_s));
    EXPECT_EQ(Leave(control, u""_s), Silent(u""_s));
    EXPECT_EQ(Leave(control, u"62,384"_s), Accepted(u"62384"_s));
    EXPECT_EQ(Leave(control, u"62.384"_s, kGerman), Accepted(u"62384"_s));
    EXPECT_EQ(Leave(control, u"1,5"_s, kGerman), Accepted(u"2"_s));
  }
}

TEST(NumberField, CutsWhatTheLoggerCannotHold) {
  for (const char* control : kNumberFields) {
    EXPECT_EQ(Leave(control, u"1234567"_s), Accepted(u"999999"_s));
    EXPECT_EQ(Leave(control, u"1000000"_s), Accepted(u"999999"_s));
    EXPECT_EQ(Leave(control, u"999999.9"_s), Accepted(u"999999"_s));
    EXPECT_EQ(Leave(control, u"-1000000"_s), Accepted(u"-999999"_s));
  }
}

TEST(NumberField, ShowsTheSixDigitsThatTheLoggerWillHold) {
  for (const char* control : kNumberFields) {
    EXPECT_EQ(Leave(control, u"1.23456789"_s), Accepted(u"1.23457"_s));
    EXPECT_EQ(Leave(control, u" 15.0 "_s), Accepted(u"15"_s));
    EXPECT_EQ(Leave(control, u"0.00001234"_s), Accepted(u"0.0000123"_s));
    EXPECT_EQ(Leave(control, u"-0"_s), Accepted(u"0"_s));
    EXPECT_EQ(Leave(control, u"-0.00000001"_s), Accepted(u"0"_s));
  }
}

TEST(NumberField, RefusesSilentlyWhatIsNoNumber) {
  for (const char* control : kNumberFields) {
    for (const QString& text : {u""_s, u"abc"_s, u"12abc"_s, u"1.2.3"_s, u"1e3"_s}) {
      EXPECT_EQ(Leave(control, text), Silent(text)) << text.toStdString();
    }
  }
}

TEST(NumberField, TestsByTheLocaleAndReadsByThePoint) {
  EXPECT_EQ(Leave("txtHighEU", u"1,5"_s, kGerman), Accepted(u"1"_s));
  EXPECT_EQ(Leave("txtHighEU", u"1.234"_s, kGerman), Accepted(u"1.234"_s));
  EXPECT_EQ(Leave("txtHighEU", u"1.5"_s, kGerman), Accepted(u"1.5"_s));
  EXPECT_EQ(Leave("txtHighEU", u"1,234.5"_s, kGerman), Silent(u"1,234.5"_s));
  EXPECT_EQ(Leave("txtHighEU", u"1,234.5"_s, kUs), Accepted(u"1"_s));
}

TEST(NumberField, AcceptsItsOwnTextAgainInEveryLocale) {
  // Neither of the last two groups with a point, and both have a decimal comma.
  const QLocale locales[] = {kUs, kGerman, QLocale(QLocale::French, QLocale::France),
                             QLocale(QLocale::German, QLocale::Austria)};
  for (const QLocale& locale : locales) {
    for (const QString& text : {u"0.0000123"_s, u"-273.15"_s, u"999999"_s, u"0"_s}) {
      EXPECT_EQ(Leave("txtTop", text, locale), Accepted(text)) << text.toStdString();
      EXPECT_EQ(Leave("txtConductivityManualEntry", text, locale), Accepted(text))
          << text.toStdString();
    }
  }
}

TEST(NumberField, KeepsANumberBeyondADoubleAsTyped) {
  const QString huge(400, u'9');
  for (const char* control : kNumberFields) EXPECT_EQ(Leave(control, huge), Accepted(huge));
  for (const char* control : kNumberOrZeroFields) EXPECT_EQ(Leave(control, huge), Accepted(huge));
  EXPECT_THROW(Leave("txtHighEU", huge, kUs, false, false), ConversionFault);
}

TEST(ManualEntryField, BecomesZeroInsteadOfRefusing) {
  for (const char* control : kNumberOrZeroFields) {
    EXPECT_EQ(Leave(control, u"letters"_s), Accepted(u"0"_s));
    EXPECT_EQ(Leave(control, u""_s), Accepted(u"0"_s));
    EXPECT_EQ(Leave(control, u"1234567"_s), Accepted(u"999999"_s));
    EXPECT_EQ(Leave(control, u"500"_s), Accepted(u"500"_s));
    EXPECT_EQ(Leave(control, u"1,5"_s, kGerman), Accepted(u"1"_s));
  }
}

TEST(SampleIntervalField, TakesOneTo65535) {
  EXPECT_EQ(Leave("txtSampleInterval", u" 12 "_s), Accepted(u"12"_s));
  EXPECT_EQ(Leave("txtSampleInterval", u"1.5"_s), Accepted(u"2"_s));
  EXPECT_EQ(Leave("txtSampleInterval", u"2.5"_s), Accepted(u"2"_s));
  EXPECT_EQ(Leave("txtSampleInterval", u"1"_s), Accepted(u"1"_s));
  EXPECT_EQ(Leave("txtSampleInterval", u"65535"_s), Accepted(u"65535"_s));
}

TEST(SampleIntervalField, RefusesWithItsMessageAndKeepsTheText) {
  for (const QString& text :
       {u"65536"_s, u"0"_s, u"0.5"_s, u"-1"_s, u""_s, u"x"_s, QString(400, u'9')}) {
    EXPECT_EQ(Leave("txtSampleInterval", text), Refused(text, TextId{178})) << text.toStdString();
  }
}

TEST(ExceptionField, TakesZeroUnlikeTheInterval) {
  EXPECT_EQ(Leave("txtException", u"0"_s), Accepted(u"0"_s));
  EXPECT_EQ(Leave("txtException", u"65535"_s), Accepted(u"65535"_s));
  EXPECT_EQ(Leave("txtException", u"65536"_s), Refused(u"65536"_s, TextId{179}));
  EXPECT_EQ(Leave("txtException", u"-1"_s), Refused(u"-1"_s, TextId{179}));
  EXPECT_EQ(Leave("txtException", u"x"_s), Refused(u"x"_s, TextId{179}));
}

TEST(AlarmField, NeedsTheHourAlone) {
  EXPECT_EQ(Leave("txtAlarm", u"7"_s), Accepted(u"7:00:00"_s));
  EXPECT_EQ(Leave("txtAlarm", u"12:5"_s), Accepted(u"12:05:00"_s));
  EXPECT_EQ(Leave("txtAlarm", u"07:08:09"_s), Accepted(u"7:08:09"_s));
  EXPECT_EQ(Leave("txtAlarm", u" 1 : 2 : 3 "_s), Accepted(u"1:02:03"_s));
}

TEST(AlarmField, IgnoresAFourthPart) {
  EXPECT_EQ(Leave("txtAlarm", u"1:2:3:4"_s), Accepted(u"1:02:03"_s));
}

TEST(AlarmField, RefusesAnEmptyTextInTwelveHourFormOnly) {
  EXPECT_EQ(Leave("txtAlarm", u""_s), Refused(u""_s, TextId{174}));
  EXPECT_EQ(Leave("txtAlarm", u""_s, kUs, true), Accepted(u"0:00:00"_s));
}

TEST(AlarmField, RefusesHoursByTheClockForm) {
  EXPECT_EQ(Leave("txtAlarm", u"13:00:00"_s), Refused(u"13:00:00"_s, TextId{174}));
  EXPECT_EQ(Leave("txtAlarm", u"0:30"_s), Refused(u"0:30"_s, TextId{174}));
  EXPECT_EQ(Leave("txtAlarm", u"12"_s), Accepted(u"12:00:00"_s));
  EXPECT_EQ(Leave("txtAlarm", u"23:59:59"_s, kUs, true), Accepted(u"23:59:59"_s));
  EXPECT_EQ(Leave("txtAlarm", u"24"_s, kUs, true), Refused(u"24"_s, TextId{175}));
  EXPECT_EQ(Leave("txtAlarm", u"-1"_s, kUs, true), Refused(u"-1"_s, TextId{175}));
}

TEST(AlarmField, ReadsAPartWithoutANumberAsZero) {
  EXPECT_EQ(Leave("txtAlarm", u"6:x"_s), Accepted(u"6:00:00"_s));
  EXPECT_EQ(Leave("txtAlarm", u"6::5"_s), Accepted(u"6:00:05"_s));
}

TEST(AlarmField, RefusesMinutesAndSecondsOutOfRange) {
  EXPECT_EQ(Leave("txtAlarm", u"6:60"_s), Refused(u"6:60"_s, TextId{176}));
  EXPECT_EQ(Leave("txtAlarm", u"6:-1"_s), Refused(u"6:-1"_s, TextId{176}));
  EXPECT_EQ(Leave("txtAlarm", u"6:59:60"_s), Refused(u"6:59:60"_s, TextId{177}));
  EXPECT_EQ(Leave("txtAlarm", u"6:59:-1"_s), Refused(u"6:59:-1"_s, TextId{177}));
  EXPECT_EQ(Leave("txtAlarm", u"6:59.5"_s), Refused(u"6:59.5"_s, TextId{176}));
  EXPECT_EQ(Leave("txtAlarm", u"6:58.5"_s), Accepted(u"6:58:00"_s));
}

TEST(AlarmField, RefusesSilentlyWhatDoesNotFitSixteenBits) {
  for (const QString& text : {u"99999"_s, u"6:99999"_s, u"6:00:99999"_s, QString(400, u'9')}) {
    EXPECT_EQ(Leave("txtAlarm", text), Silent(text)) << text.toStdString();
    EXPECT_THROW(Leave("txtAlarm", text, kUs, false, false), ConversionFault);
  }
}

FieldVerdict LeaveCalibration(int step, const QString& text, const QLocale& locale = kUs) {
  const LinkState link = Trapping();
  return CheckField(CalibrationFieldRule(step), text, {link, locale, false});
}

TEST(CalibrationField, ShowsItsMessagesAsBadNumbers) {
  for (int step = 1; step <= 4; ++step) {
    EXPECT_EQ(CalibrationFieldRule(step).Title, TextId{156});
    EXPECT_EQ(CalibrationFieldRule(step).Buttons, 48);
  }
}

TEST(CalibrationField, RefusesAnOversizeValueInsteadOfCuttingIt) {
  for (const int step : {1, 3}) {
    EXPECT_EQ(LeaveCalibration(step, u"1234567"_s), Refused(u"1234567"_s, TextId{186}));
    EXPECT_EQ(LeaveCalibration(step, u"1000000"_s), Refused(u"1000000"_s, TextId{186}));
    EXPECT_EQ(LeaveCalibration(step, u"-1000000"_s), Refused(u"-1000000"_s, TextId{186}));
    EXPECT_EQ(LeaveCalibration(step, u"abc"_s), Refused(u"abc"_s, TextId{186}));
    EXPECT_EQ(LeaveCalibration(step, u""_s), Refused(u""_s, TextId{186}));
    EXPECT_EQ(LeaveCalibration(step, QString(400, u'9')), Refused(QString(400, u'9'), TextId{186}));
  }
}

TEST(CalibrationField, ShowsTheValueThatTheLoggerWillHold) {
  for (const int step : {1, 3}) {
    EXPECT_EQ(LeaveCalibration(step, u"12.34567"_s), Accepted(u"12.3457"_s));
    EXPECT_EQ(LeaveCalibration(step, u"999999.5"_s), Accepted(u"999999"_s));
    EXPECT_EQ(LeaveCalibration(step, u"-999999"_s), Accepted(u"-999999"_s));
    EXPECT_EQ(LeaveCalibration(step, u"1,5"_s, kGerman), Accepted(u"1"_s));
  }
}

TEST(CalibrationField, TakesARawCountOnTheReadingPages) {
  for (const int step : {2, 4}) {
    EXPECT_EQ(LeaveCalibration(step, u"0"_s), Accepted(u"0"_s));
    EXPECT_EQ(LeaveCalibration(step, u" 65535 "_s), Accepted(u"65535"_s));
    EXPECT_EQ(LeaveCalibration(step, u"70000"_s), Refused(u"70000"_s, TextId{185}));
    EXPECT_EQ(LeaveCalibration(step, u"-1"_s), Refused(u"-1"_s, TextId{185}));
    EXPECT_EQ(LeaveCalibration(step, u"x"_s), Refused(u"x"_s, TextId{185}));
  }
}

}  // namespace
}  // namespace tessmar
