#include "setup/SettingsChanges.h"

#include <QStringList>
#include <utility>

#include "base/Blanks.h"
#include "base/Numbers.h"
#include "base/TextTable.h"
#include "link/LinkState.h"
#include "settings/IntervalText.h"
#include "settings/LoggerSettings.h"
#include "setup/SetupLists.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// The settings of an image, as they stand on the pages: what each is called and what it says.
class Description {
 public:
  Description(const LinkState& link, const ConfigImage& image) {
    UnpackConfigImage(link, image, settings_);
    AddAnalogPage();
    AddDigitalPage();
    AddGeneralPage();
    AddAlarms();
    AddDoInputs();
    AddDoOutputs();
  }

  const std::vector<std::pair<QString, QString>>& Rows() const { return rows_; }

 private:
  void Add(const QString& field, const QString& value) { rows_.emplace_back(field, value); }
  void Add(const QString& field, double value) { Add(field, FormatInvariantNumber(value)); }
  void Add(const QString& field, std::int32_t value) { Add(field, QString::number(value)); }
  void AddFlag(const QString& field, int flag) {
    Add(field, GetText(flag != 0 ? TextId::Yes : TextId::No));
  }
  /// A position in a list; one beyond it shows as the number it is.
  void AddItem(const QString& field, int position, const QStringList& items) {
    Add(field, position < items.size() ? items.at(position) : QString::number(position));
  }

  void AddAnalogPage();
  void AddDigitalPage();
  void AddGeneralPage();
  void AddAlarms();
  void AddDoInputs();
  void AddDoOutputs();

  LoggerSettings settings_;
  std::vector<std::pair<QString, QString>> rows_;
};

void Description::AddAnalogPage() {
  for (std::size_t i = 0; i < settings_.Analog.size(); ++i) {
    const AnalogChannelSettings& channel = settings_.Analog[i];
    const QString place = InLanguage(u"Channel %1: ", u"Kanal %1: ").arg(static_cast<int>(i) + 1);
    AddFlag(place + GetText(TextId::Enable), channel.Enable);
    Add(place + GetText(TextId::Units), channel.EngUnits);
    Add(place + GetText(TextId::HighEngrUnits), channel.UpperLimit);
    Add(place + GetText(TextId::LowEngrUnits), channel.LowerLimit);
    Add(place + GetText(TextId::HighRawValue), channel.RawScaleUpper);
    Add(place + GetText(TextId::LowRawValue), channel.RawScaleLower);
    Add(place + GetText(TextId::DisplayHighValue), channel.DisplayTop);
    Add(place + GetText(TextId::DisplayLowValue), channel.DisplayBottom);
    Add(place + GetText(TextId::DecimalPlaces), std::int32_t{channel.DecPlaces});
  }
}

void Description::AddDigitalPage() {
  for (std::size_t i = 0; i < settings_.Pulse.size(); ++i) {
    const PulseChannelSettings& channel = settings_.Pulse[i];
    const QString place = GetText(TextId::PulseChannel) + u' ' + QString::number(i + 1) + u": "_s;
    AddFlag(place + GetText(TextId::Enable), channel.Enable);
    Add(place + GetText(TextId::SensorNameOrUnits), channel.EngUnits);
    Add(place + GetText(TextId::ValueForSinglePulse), channel.PulseUnit);
    Add(place + GetText(TextId::DecimalPlaces), std::int32_t{channel.DecPlaces});
  }
}

void Description::AddGeneralPage() {
  Add(GetText(TextId::Name), settings_.LoggerName);
  Add(GetText(TextId::SensorWarmupTime),
      QString::number(settings_.SensorWarmupTime) + u' ' + GetText(TextId::Seconds));
  AddItem(GetText(TextId::BaudRate), settings_.FixedBaudRate, BaudItems());
  // The bits between the mode and the exception are nobody's: shown as the number they are.
  const int mode = settings_.LoggingStyle & ~kLogException;
  const QStringList modes{GetText(TextId::SamplePeriodically), GetText(TextId::LogarithmicSampling),
                          GetText(TextId::FastSamplingMode)};
  AddItem(InLanguage(u"Logging mode", u"Aufzeichnungsart"), mode, modes);
  Add(GetText(TextId::SamplePeriodically), IntervalDisplayText(settings_));
  AddFlag(InLanguage(u"Log only if channel 1 changes", u"Nur bei Änderung von Kanal 1 aufzeichnen"),
          settings_.LoggingStyle & kLogException);
  Add(GetText(TextId::LogOnlyIfChange),
      QString::number(settings_.Deadband) + u' ' + GetText(TextId::RawUnits));
  AddFlag(GetText(TextId::WrapRecords), settings_.DataWrapAroundFlag);
  AddFlag(GetText(TextId::EnableSampleOnDemand), settings_.EnableSOD);
}

void Description::AddAlarms() {
  constexpr std::pair<TextId, TextId> kCaptions[] = {{TextId::UseAlarm1, TextId::Alarm1Time},
                                                     {TextId::UseAlarm2, TextId::Alarm2Time}};
  for (std::size_t i = 0; i < settings_.Alarm.size(); ++i) {
    const AlarmSettings& alarm = settings_.Alarm[i];
    const auto twoDigits = [](int value) { return u"%1"_s.arg(value, 2, 10, QChar(u'0')); };
    AddFlag(GetText(kCaptions[i].first), alarm.Enable);
    Add(GetText(kCaptions[i].second), twoDigits(alarm.AlarmHour) + u':' +
                                          twoDigits(alarm.AlarmMin) + u':' +
                                          twoDigits(alarm.AlarmSec));
  }
}

// The DO page speaks English in every language, and so do its settings here.
void Description::AddDoInputs() {
  const DoSettings& dissolved = settings_.Do;
  const QStringList channels = DoChannelItems(kAnalogChannels);
  AddItem(u"DO: O2 Sensor Channel"_s, dissolved.PO2Channel, channels);
  AddItem(u"DO: O2 Sensor, Units"_s, dissolved.PO2Units, PO2UnitItems());
  AddItem(u"DO: Water Temp Sensor Channel"_s, dissolved.WaterTempChannel, channels);
  AddItem(u"DO: Water Temp Sensor, Units"_s, dissolved.WaterTempUnits, WaterTempUnitItems());
  AddItem(u"DO: Conductivity Sensor Channel"_s, dissolved.ConductivityChannel, channels);
  AddItem(u"DO: Conductivity Sensor, Units"_s, dissolved.ConductivityUnits,
          ConductivityUnitItems());
  AddFlag(u"DO: Conductivity, Manual Entry"_s, dissolved.ConductivityManualEntry);
  Add(u"DO: Conductivity"_s, dissolved.ConductivityManual);
  AddItem(u"DO: Conductivity, Units"_s, dissolved.ConductivityManualEntryUnits,
          ConductivityUnitItems());
  AddItem(u"DO: Air Pressure Sensor Channel"_s, dissolved.AirPressureChannel, channels);
  AddItem(u"DO: Air Pressure Sensor, Units"_s, dissolved.AirPressureUnits, AirPressureUnitItems());
  AddFlag(u"DO: Air Pressure, Manual Entry"_s, dissolved.AirPressureManualEntry);
  Add(u"DO: Air Pressure"_s, dissolved.AirPressureManual);
  AddItem(u"DO: Air Pressure, Units"_s, dissolved.AirPressureManualEntryUnits,
          AirPressureUnitItems());
}

void Description::AddDoOutputs() {
  const DoSettings& dissolved = settings_.Do;
  const QStringList channels = DoChannelItems(kAnalogChannels);
  AddFlag(u"DO: Enable Salinity Display"_s, dissolved.EnableSalinityDisplay);
  AddItem(u"DO: Salinity, Display On Channel"_s, dissolved.SalinityDisplayChannel, channels);
  AddFlag(u"DO: Enable O2 %Saturation Display"_s, dissolved.EnableO2SaturationDisplay);
  AddItem(u"DO: O2 %Saturation, Display On Channel"_s, dissolved.O2SaturationDisplayChannel,
          channels);
  AddFlag(u"DO: Enable O2 Concentration Display"_s, dissolved.EnableO2ConcentrationDisplay);
  AddItem(u"DO: O2 Concentration, Display On Channel"_s, dissolved.O2ConcentrationDisplayChannel,
          channels);
  AddItem(u"DO: O2 Concentration, Units"_s, dissolved.O2ConcentrationDisplayUnits,
          O2ConcentrationUnitItems());
}

/// A logger with everything, so that nothing of an image is left out.
LinkState WholeLogger() {
  LinkState link;
  link.TrapErrors = true;
  link.AnalogChannelCount = kAnalogChannels;
  link.PulseChannelCount = kPulseChannels;
  link.SampleOnDemandSupported = true;
  return link;
}

}  // namespace

std::vector<SettingsChange> ChangesFound(const LinkState& link, const ConfigImage& known,
                                         const ConfigImage& found) {
  const Description old(link, known);
  const Description now(link, found);
  std::vector<SettingsChange> changes;
  for (std::size_t i = 0; i < old.Rows().size(); ++i) {
    const auto& [field, value] = old.Rows()[i];
    const QString& present = now.Rows()[i].second;
    if (value != present) changes.push_back({field, value, present});
  }
  return changes;
}

std::vector<SettingsChange> ChangesBetween(const ConfigImage& before, const ConfigImage& after) {
  if (before == after) return {};
  std::vector<SettingsChange> changes = ChangesFound(WholeLogger(), before, after);
  // Values that no control can show, from a setup file made by hand.
  if (changes.empty())
    changes.push_back(
        {InLanguage(u"Values outside their lists", u"Werte außerhalb ihrer Listen"), {}, {}});
  return changes;
}

QString ChangesAsText(const std::vector<SettingsChange>& changes) {
  QString text = InLanguage(u"Setting\tIn the logger\tNew\n", u"Einstellung\tIm Logger\tNeu\n");
  for (const SettingsChange& change : changes) {
    text += ControlsToBlanks(change.Field) + u'\t' + ControlsToBlanks(change.Before) + u'\t' +
            ControlsToBlanks(change.After) + u'\n';
  }
  return text;
}

QString ChangesSummary(std::size_t count) {
  if (count == 0)
    return InLanguage(u"No setting differs from the logger",
                      u"Keine Einstellung weicht vom Logger ab");
  if (count == 1)
    return InLanguage(u"1 setting differs from the logger", u"1 Einstellung weicht vom Logger ab");
  return InLanguage(u"%1 settings differ from the logger",
                    u"%1 Einstellungen weichen vom Logger ab")
      .arg(count);
}

}  // namespace tessmar
