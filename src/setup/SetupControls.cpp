#include "setup/SetupControls.h"

#include <algorithm>
#include <limits>

#include "base/Fault.h"
#include "base/Numbers.h"
#include "setup/SetupLists.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNoon = 12;
constexpr int kAm = 0;
constexpr int kPm = 1;
constexpr int kLongestWarmup = 60;
constexpr int kMostDecimals = 6;
constexpr int kLastFixedBaud = 6;

// The words that the record takes, in the order of cmbSampleInterval; never localised.
constexpr std::array kIntervalWords{"seconds", "minutes", "hours", "days"};

std::uint8_t ListPosition(int index) {
  if (index < 0 || index > std::numeric_limits<std::uint8_t>::max())
    throw ConversionFault("a list has no selection");
  return static_cast<std::uint8_t>(index);
}

std::uint8_t Flag(bool checked) {
  return checked ? 1 : 0;
}

void ReadAlarm(const AlarmControls& controls, bool use24HourClock, AlarmSettings& alarm) {
  alarm.Enable = Flag(controls.chkAlarm);
  const QString& text = controls.txtAlarm;
  alarm.AlarmHour = RoundToInt16(ParseLeadingNumber(text));
  alarm.AlarmMin = 0;
  alarm.AlarmSec = 0;
  const qsizetype first = text.indexOf(u':');
  if (first >= 0) {
    alarm.AlarmMin = RoundToInt16(ParseLeadingNumber(text.mid(first + 1)));
    const qsizetype second = text.indexOf(u':', first + 1);
    if (second >= 0) alarm.AlarmSec = RoundToInt16(ParseLeadingNumber(text.mid(second + 1)));
  }
  if (use24HourClock) return;
  if (controls.cmbAlarm == kAm && alarm.AlarmHour == kNoon) alarm.AlarmHour = 0;
  if (controls.cmbAlarm == kPm && alarm.AlarmHour < kNoon)
    alarm.AlarmHour = static_cast<std::int16_t>(alarm.AlarmHour + kNoon);
}

std::uint8_t ReadLoggingStyle(const SetupControls& controls) {
  int style = kLogPeriodic;
  if (controls.optFastMode) {
    style = kLogFast;
  } else if (controls.optLogarithmic) {
    style = kLogLogarithmic;
  }
  if (controls.chkException) style += kLogException;
  return static_cast<std::uint8_t>(style);
}

QString ReadSampleInterval(const SetupControls& controls) {
  const double count = ParseLeadingNumber(controls.txtSampleInterval);
  const std::size_t unit = ListPosition(controls.cmbSampleInterval);
  if (unit >= kIntervalWords.size()) throw RangeFault("an interval unit that is not in the list");
  QString text = FormatInvariantNumber(count) + u' ' + QLatin1StringView(kIntervalWords[unit]);
  if (count == 1) text.chop(1);
  return text;
}

void ReadAnalog(const AnalogColumnControls& controls, AnalogChannelSettings& channel) {
  channel.Enable = Flag(controls.chkEnable);
  channel.EngUnits = controls.cmbEU;
  channel.UpperLimit = ParseLeadingNumber(controls.txtHighEU);
  channel.LowerLimit = ParseLeadingNumber(controls.txtLowEU);
  channel.DisplayTop = ParseLeadingNumber(controls.txtTop);
  channel.DisplayBottom = ParseLeadingNumber(controls.txtBottom);
  channel.RawScaleUpper = RoundToInt32(ParseLeadingNumber(controls.txtHighRaw));
  channel.RawScaleLower = RoundToInt32(ParseLeadingNumber(controls.txtLowRaw));
  channel.DecPlaces = ListPosition(controls.cmbPrecision);
}

void ReadPulse(const PulseControls& controls, PulseChannelSettings& channel) {
  channel.Enable = Flag(controls.chkPulseEnable);
  channel.EngUnits = controls.cmbPulseEU;
  channel.PulseUnit = ParseLeadingNumber(controls.txtPulseUnit);
  channel.DecPlaces = ListPosition(controls.cmbPulsePrecision);
}

void ReadDo(const DoControls& controls, DoSettings& dissolved) {
  dissolved.PO2Channel = ListPosition(controls.cmbPO2SourceChannel);
  dissolved.PO2Units = ListPosition(controls.cmbPO2SourceUnits);
  dissolved.WaterTempChannel = ListPosition(controls.cmbWaterTempSourceChannel);
  dissolved.WaterTempUnits = ListPosition(controls.cmbWaterTempSourceUnits);
  dissolved.ConductivityManualEntry = Flag(controls.chkConductivityManualEntry);
  dissolved.ConductivityManual = ParseLeadingNumber(controls.txtConductivityManualEntry);
  dissolved.ConductivityManualEntryUnits = ListPosition(controls.cmbConductivityManualEntryUnits);
  dissolved.ConductivityChannel = ListPosition(controls.cmbConductivitySourceChannel);
  dissolved.ConductivityUnits = ListPosition(controls.cmbConductivitySourceUnits);
  dissolved.AirPressureManualEntry = Flag(controls.chkAirPressureManualEntry);
  dissolved.AirPressureManual = ParseLeadingNumber(controls.txtAirPressureManualEntry);
  dissolved.AirPressureManualEntryUnits = ListPosition(controls.cmbAirPressureManualEntryUnits);
  dissolved.AirPressureChannel = ListPosition(controls.cmbAirPressureSourceChannel);
  dissolved.AirPressureUnits = ListPosition(controls.cmbAirPressureSourceUnits);
  dissolved.EnableSalinityDisplay = Flag(controls.chkEnableSalinityDisplay);
  dissolved.SalinityDisplayChannel = ListPosition(controls.cmbSalinityDisplayChannel);
  dissolved.EnableO2SaturationDisplay = Flag(controls.chkEnableO2SaturationDisplay);
  dissolved.O2SaturationDisplayChannel = ListPosition(controls.cmbO2SaturationDisplayChannel);
  dissolved.EnableO2ConcentrationDisplay = Flag(controls.chkEnableO2ConcentrationDisplay);
  dissolved.O2ConcentrationDisplayChannel = ListPosition(controls.cmbO2ConcentrationDisplayChannel);
  dissolved.O2ConcentrationDisplayUnits = ListPosition(controls.cmbO2ConcentrationDisplayUnits);
}

void ReadAll(const LinkState& link, bool use24HourClock, const SetupControls& controls,
             LoggerSettings& settings) {
  settings.LoggerName = controls.txtName;
  settings.SensorWarmupTime = ListPosition(controls.cmbWarmup);
  for (std::size_t i = 0; i < kAlarms; ++i)
    ReadAlarm(controls.Alarm[i], use24HourClock, settings.Alarm[i]);
  settings.LoggingStyle = ReadLoggingStyle(controls);
  settings.SampleInterval = ReadSampleInterval(controls);
  settings.Deadband = RoundToInt32(ParseLeadingNumber(controls.txtException));
  settings.DataWrapAroundFlag = Flag(controls.chkWrap);
  settings.FixedBaudRate = ListPosition(controls.cmbBaud);
  settings.EnableSOD = Flag(controls.chkSOD);
  for (int i = 0; i < std::min<int>(link.AnalogChannelCount, kAnalogChannels); ++i)
    ReadAnalog(controls.Analog[static_cast<std::size_t>(i)],
               settings.Analog[static_cast<std::size_t>(i)]);
  for (int i = 0; i < std::min<int>(link.PulseChannelCount, kPulseChannels); ++i)
    ReadPulse(controls.Pulse[static_cast<std::size_t>(i)],
              settings.Pulse[static_cast<std::size_t>(i)]);
  ReadDo(controls.Do, settings.Do);
}

/// The value as a position in a list of count items, or -1 when the list does not reach so far.
int PositionIn(int count, int value) {
  return value < count ? value : -1;
}

QString TwoDigits(int number) {
  return QString::number(number).rightJustified(2, u'0');
}

void WriteAlarm(const AlarmSettings& alarm, bool use24HourClock, AlarmControls& controls) {
  controls.chkAlarm = alarm.Enable != 0;
  int hour = alarm.AlarmHour;
  if (!use24HourClock) {
    controls.cmbAlarm = hour >= kNoon && hour < 2 * kNoon ? kPm : kAm;
    if (hour == 0) {
      hour = kNoon;
    } else if (hour > kNoon) {
      hour -= kNoon;
    }
  }
  controls.txtAlarm =
      QString::number(hour) + u':' + TwoDigits(alarm.AlarmMin) + u':' + TwoDigits(alarm.AlarmSec);
}

void WriteLoggingStyle(std::uint8_t style, SetupControls& controls) {
  controls.chkException = (style & kLogException) != 0;
  const int mode = style & kLogModeMask;
  controls.optPeriodic = mode == kLogPeriodic;
  controls.optFastMode = mode == kLogFast;
  controls.optLogarithmic = !controls.optPeriodic && !controls.optFastMode;
}

int IntervalUnit(const QString& interval) {
  constexpr int kDays = 3;
  if (interval.contains("sec"_L1)) return 0;
  if (interval.contains("min"_L1)) return 1;
  if (interval.contains("hour"_L1)) return 2;
  return kDays;
}

void WriteAnalog(const AnalogChannelSettings& channel, AnalogColumnControls& controls) {
  controls.chkEnable = channel.Enable != 0;
  controls.cmbEU = channel.EngUnits;
  controls.txtHighEU = FormatInvariantNumber(channel.UpperLimit);
  controls.txtLowEU = FormatInvariantNumber(channel.LowerLimit);
  controls.txtTop = FormatInvariantNumber(channel.DisplayTop);
  controls.txtBottom = FormatInvariantNumber(channel.DisplayBottom);
  controls.txtHighRaw = QString::number(channel.RawScaleUpper);
  controls.txtLowRaw = QString::number(channel.RawScaleLower);
  controls.cmbPrecision = std::min<int>(channel.DecPlaces, kMostDecimals);
}

void WritePulse(const PulseChannelSettings& channel, PulseControls& controls) {
  controls.chkPulseEnable = channel.Enable != 0;
  controls.cmbPulseEU = channel.EngUnits;
  controls.txtPulseUnit = FormatInvariantNumber(channel.PulseUnit);
  controls.cmbPulsePrecision = std::min<int>(channel.DecPlaces, kMostDecimals);
}

void WriteDo(int channels, const DoSettings& dissolved, DoControls& controls) {
  const int conductivityUnits = static_cast<int>(ConductivityUnitItems().size());
  const int pressureUnits = static_cast<int>(AirPressureUnitItems().size());
  controls.cmbPO2SourceChannel = PositionIn(channels, dissolved.PO2Channel);
  controls.cmbPO2SourceUnits =
      PositionIn(static_cast<int>(PO2UnitItems().size()), dissolved.PO2Units);
  controls.cmbWaterTempSourceChannel = PositionIn(channels, dissolved.WaterTempChannel);
  controls.cmbWaterTempSourceUnits =
      PositionIn(static_cast<int>(WaterTempUnitItems().size()), dissolved.WaterTempUnits);
  controls.chkConductivityManualEntry = dissolved.ConductivityManualEntry != 0;
  controls.txtConductivityManualEntry = FormatInvariantNumber(dissolved.ConductivityManual);
  controls.cmbConductivityManualEntryUnits =
      PositionIn(conductivityUnits, dissolved.ConductivityManualEntryUnits);
  controls.cmbConductivitySourceChannel = PositionIn(channels, dissolved.ConductivityChannel);
  controls.cmbConductivitySourceUnits = PositionIn(conductivityUnits, dissolved.ConductivityUnits);
  controls.chkAirPressureManualEntry = dissolved.AirPressureManualEntry != 0;
  controls.txtAirPressureManualEntry = FormatInvariantNumber(dissolved.AirPressureManual);
  controls.cmbAirPressureManualEntryUnits =
      PositionIn(pressureUnits, dissolved.AirPressureManualEntryUnits);
  controls.cmbAirPressureSourceChannel = PositionIn(channels, dissolved.AirPressureChannel);
  controls.cmbAirPressureSourceUnits = PositionIn(pressureUnits, dissolved.AirPressureUnits);
  controls.chkEnableSalinityDisplay = dissolved.EnableSalinityDisplay != 0;
  controls.cmbSalinityDisplayChannel = PositionIn(channels, dissolved.SalinityDisplayChannel);
  controls.chkEnableO2SaturationDisplay = dissolved.EnableO2SaturationDisplay != 0;
  controls.cmbO2SaturationDisplayChannel =
      PositionIn(channels, dissolved.O2SaturationDisplayChannel);
  controls.chkEnableO2ConcentrationDisplay = dissolved.EnableO2ConcentrationDisplay != 0;
  controls.cmbO2ConcentrationDisplayChannel =
      PositionIn(channels, dissolved.O2ConcentrationDisplayChannel);
  controls.cmbO2ConcentrationDisplayUnits = PositionIn(
      static_cast<int>(O2ConcentrationUnitItems().size()), dissolved.O2ConcentrationDisplayUnits);
}

}  // namespace

void ControlsToSettings(const LinkState& link, bool use24HourClock, const SetupControls& controls,
                        LoggerSettings& settings) {
  Trapped(link, [&] { ReadAll(link, use24HourClock, controls, settings); });
}

void SettingsToControls(const LinkState& link, bool use24HourClock, const LoggerSettings& settings,
                        SetupControls& controls) {
  controls.txtName = settings.LoggerName;
  controls.cmbWarmup = std::min<int>(settings.SensorWarmupTime, kLongestWarmup);
  for (std::size_t i = 0; i < kAlarms; ++i)
    WriteAlarm(settings.Alarm[i], use24HourClock, controls.Alarm[i]);
  WriteLoggingStyle(settings.LoggingStyle, controls);
  // Only a setup file can hold a count that no number takes; it shows as 0.
  controls.txtSampleInterval = FormatInvariantNumber(
      Trapped(link, [&] { return ParseLeadingNumber(settings.SampleInterval); }));
  controls.cmbSampleInterval = IntervalUnit(settings.SampleInterval);
  controls.txtException = QString::number(settings.Deadband);
  controls.chkWrap = settings.DataWrapAroundFlag != 0;
  controls.cmbBaud = settings.FixedBaudRate <= kLastFixedBaud ? settings.FixedBaudRate : 0;
  controls.chkSOD = settings.EnableSOD != 0;
  for (int i = 0; i < std::min<int>(link.AnalogChannelCount, kAnalogChannels); ++i)
    WriteAnalog(settings.Analog[static_cast<std::size_t>(i)],
                controls.Analog[static_cast<std::size_t>(i)]);
  for (int i = 0; i < std::min<int>(link.PulseChannelCount, kPulseChannels); ++i)
    WritePulse(settings.Pulse[static_cast<std::size_t>(i)],
               controls.Pulse[static_cast<std::size_t>(i)]);
  WriteDo(static_cast<int>(DoChannelItems(link.AnalogChannelCount).size()), settings.Do,
          controls.Do);
}

std::optional<ConfigImage> ImageOf(const LinkState& link, bool use24HourClock,
                                   const SetupControls& controls, LoggerSettings settings) {
  LinkState trapping = link;
  trapping.TrapErrors = true;
  ConfigImage image;
  try {
    ReadAll(link, use24HourClock, controls, settings);
  } catch (const Fault&) {
    return std::nullopt;
  }
  if (!PackConfigImage(trapping, settings, image)) return std::nullopt;
  return image;
}

}  // namespace tessmar
