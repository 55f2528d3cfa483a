#include "settings/SetupFile.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "base/Blanks.h"
#include "base/Fault.h"
#include "base/Numbers.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr auto kLineEnd = "\r\n"_L1;
/// No count and unit word come near this.
constexpr qsizetype kLongestInterval = 1000;

/// What is written, and for which channel.
struct WriteSide {
  const SetupFileHead& Head;
  const LinkState& Link;
  const LoggerSettings& Settings;
  int Channel;
};
/// The value of a line, and where it goes.
struct ReadSide {
  QByteArrayView Value;  ///< Without blanks at its ends.
  const QLocale& Locale;
  LoggerSettings& Settings;
  int Channel;
};

/// One key of the file. A key that is not read is known all the same.
struct KeyRow {
  const char* Key;
  QString (*Write)(const WriteSide&);
  void (*Read)(const ReadSide&);
};

// The type of a field decides how its value is written and read.

template <typename Integer>
QString ToValue(Integer field) {
  return QString::number(field);
}
QString ToValue(double field) {
  return FormatInvariantNumber(field);
}
// A line end in a text would end the line of the file.
QString ToValue(const QString& field) {
  return ControlsToBlanks(field);
}

template <typename Integer>
void FromValue(const ReadSide& side, Integer& field) {
  std::int32_t value = 0;
  if (!TryParseInteger(QString::fromLatin1(side.Value), side.Locale, value) ||
      value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
    throw ConversionFault("a value of the setup file does not fit its field");
  }
  field = static_cast<Integer>(value);
}
void FromValue(const ReadSide& side, double& field) {
  QString text = QString::fromLatin1(side.Value);
  field = ParseInvariantNumber(text);
}
/// A text of the file, cut to what its field holds: a text of megabytes would hold up the screen. A
/// blank that stands at an end only then goes too, as it would when the file is saved and loaded.
void FromValue(const ReadSide& side, QString& field, qsizetype longest) {
  field = TrimBlanks(ControlsToBlanks(
      QString::fromLatin1(side.Value.first(std::min(side.Value.size(), longest)))));
}

// The record that a field belongs to decides where it is found.

template <typename Table>
auto& EntryOf(Table& table, int channel) {
  if (channel < 0 || channel >= static_cast<int>(table.size())) {
    throw RangeFault("the setup file names a channel that does not exist");
  }
  return table[channel];
}
template <typename Settings, typename T>
auto& Field(Settings& settings, int /*channel*/, T LoggerSettings::*field) {
  return settings.*field;
}
template <typename Settings, typename T>
auto& Field(Settings& settings, int /*channel*/, T DoSettings::*field) {
  return settings.Do.*field;
}
template <typename Settings, typename T>
auto& Field(Settings& settings, int channel, T AnalogChannelSettings::*field) {
  return EntryOf(settings.Analog, channel).*field;
}
template <typename Settings, typename T>
auto& Field(Settings& settings, int channel, T PulseChannelSettings::*field) {
  return EntryOf(settings.Pulse, channel).*field;
}
template <typename Settings, typename T>
auto& Field(Settings& settings, int channel, T AlarmSettings::*field) {
  return EntryOf(settings.Alarm, channel).*field;
}

template <auto Member>
QString WriteField(const WriteSide& side) {
  return ToValue(Field(side.Settings, side.Channel, Member));
}
template <auto Member>
void ReadField(const ReadSide& side) {
  FromValue(side, Field(side.Settings, side.Channel, Member));
}
template <auto Member>
constexpr KeyRow Row(const char* key) {
  return {key, WriteField<Member>, ReadField<Member>};
}

template <auto Member, qsizetype Longest>
constexpr KeyRow TextRow(const char* key) {
  return {key, WriteField<Member>, [](const ReadSide& side) {
            FromValue(side, Field(side.Settings, side.Channel, Member), Longest);
          }};
}

// Units and places go into the sequence of ten, so that channels 8 and 9 of an analog section and
// channels from -8 on of a digital section reach the other kind.

template <int First>
void ReadUnits(const ReadSide& side) {
  FromValue(side, side.Settings.EngUnits(side.Channel + First), kUnitsLength);
}
template <int First>
void ReadPlaces(const ReadSide& side) {
  FromValue(side, side.Settings.DecPlaces(side.Channel + First));
}

using A = AnalogChannelSettings;
using D = DoSettings;
using L = LoggerSettings;
using P = PulseChannelSettings;
using T = AlarmSettings;

constexpr std::array kHeadRows{
    KeyRow{"Program", [](const WriteSide& s) { return s.Head.Program; }, nullptr},
    KeyRow{"Version", [](const WriteSide& s) { return s.Head.Version; }, nullptr},
    KeyRow{"Date", [](const WriteSide& s) { return s.Head.Date; }, nullptr},
    KeyRow{"Time", [](const WriteSide& s) { return s.Head.Time; }, nullptr},
    TextRow<&L::LoggerName, kLoggerNameLength>("LoggerName"),
    TextRow<&L::SampleInterval, kLongestInterval>("SampleInterval"),
    KeyRow{"NumAnalogChannels",
           [](const WriteSide& s) { return ToValue(s.Link.AnalogChannelCount); }, nullptr},
    KeyRow{"NumDigitalChannels",
           [](const WriteSide& s) { return ToValue(s.Link.PulseChannelCount); }, nullptr},
    Row<&L::DataWrapAroundFlag>("DataWrapAroundFlag"),
    Row<&L::SensorWarmupTime>("SensorWarmupTime"),
    Row<&L::LoggingStyle>("LoggingStyle"),
    Row<&L::Deadband>("Deadband"),
    Row<&L::EnableSOD>("EnableSOD"),
    Row<&L::FixedBaudRate>("FixedBaudRate"),
};

constexpr std::array kAnalogRows{
    Row<&A::Enable>("Enable"),
    KeyRow{"EngUnits", WriteField<&A::EngUnits>, ReadUnits<0>},
    KeyRow{"DecPlaces", WriteField<&A::DecPlaces>, ReadPlaces<0>},
    Row<&A::RawScaleLower>("RawScaleLower"),
    Row<&A::RawScaleUpper>("RawScaleUpper"),
    Row<&A::LowerLimit>("LowerLimit"),
    Row<&A::UpperLimit>("UpperLimit"),
    Row<&A::DisplayTop>("DisplayTop"),
    Row<&A::DisplayBottom>("DisplayBottom"),
};

constexpr std::array kDigitalRows{
    Row<&P::Enable>("Enable"),
    KeyRow{"EngUnits", WriteField<&P::EngUnits>, ReadUnits<kAnalogChannels>},
    KeyRow{"DecPlaces", WriteField<&P::DecPlaces>, ReadPlaces<kAnalogChannels>},
    Row<&P::PulseUnit>("PulseUnit"),
};

constexpr std::array kAlarmRows{
    Row<&T::Enable>("Enable"),
    Row<&T::AlarmSec>("AlarmSec"),
    Row<&T::AlarmMin>("AlarmMin"),
    Row<&T::AlarmHour>("AlarmHour"),
};

constexpr std::array kDoRows{
    Row<&D::PO2Channel>("PO2Channel"),
    Row<&D::PO2Units>("PO2Units"),
    Row<&D::WaterTempChannel>("WaterTempChannel"),
    Row<&D::WaterTempUnits>("WaterTempUnits"),
    Row<&D::ConductivityManualEntry>("ConductivityManualEntry"),
    Row<&D::ConductivityManual>("ConductivityManual"),
    Row<&D::ConductivityManualEntryUnits>("ConductivityManualEntryUnits"),
    Row<&D::ConductivityChannel>("ConductivityChannel"),
    Row<&D::ConductivityUnits>("ConductivityUnits"),
    Row<&D::AirPressureManualEntry>("AirPressureManualEntry"),
    Row<&D::AirPressureManual>("AirPressureManual"),
    Row<&D::AirPressureManualEntryUnits>("AirPressureManualEntryUnits"),
    Row<&D::AirPressureChannel>("AirPressureChannel"),
    Row<&D::AirPressureUnits>("AirPressureUnits"),
    Row<&D::EnableSalinityDisplay>("EnableSalinityDisplay"),
    Row<&D::SalinityDisplayChannel>("SalinityDisplayChannel"),
    Row<&D::EnableO2SaturationDisplay>("EnableO2SaturationDisplay"),
    Row<&D::O2SaturationDisplayChannel>("O2SaturationDisplayChannel"),
    Row<&D::EnableO2ConcentrationDisplay>("EnableO2ConcentrationDisplay"),
    Row<&D::O2ConcentrationDisplayChannel>("O2ConcentrationDisplayChannel"),
    Row<&D::O2ConcentrationDisplayUnits>("O2ConcentrationDisplayUnits"),
};

using KeyRows = std::span<const KeyRow>;

/// One kind of section, written once for each channel.
struct SectionKind {
  const char* Title;
  const char* Beginning;  ///< The title is known by this; null for one that counts as none.
  int Channels;           ///< 0 for a section that has no Channel line.
  KeyRows Rows;
};

constexpr std::array kSections{
    SectionKind{"Analog Channel", "Analog", kAnalogChannels, kAnalogRows},
    SectionKind{"Digital Channel", "Digital", kPulseChannels, kDigitalRows},
    SectionKind{"Alarm", "Alarm", kAlarms, kAlarmRows},
    SectionKind{"DO", nullptr, 0, kDoRows},
};

constexpr auto kChannelKey = "Channel"_L1;
/// The keys that stand in sections of several kinds.
constexpr std::array kSharedKeys{QByteArrayView("Enable"), QByteArrayView("EngUnits"),
                                 QByteArrayView("DecPlaces")};

void AppendLine(QString& text, QLatin1StringView key, const QString& value) {
  text += key;
  text += u'=';
  text += value;
  text += kLineEnd;
}

void AppendRows(QString& text, KeyRows rows, const WriteSide& side) {
  for (const KeyRow& row : rows) AppendLine(text, QLatin1StringView(row.Key), row.Write(side));
}

const KeyRow* FindKey(KeyRows rows, QByteArrayView key) {
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const KeyRow& candidate) {
    return key == QByteArrayView(candidate.Key);
  });
  return row == rows.end() ? nullptr : &*row;
}

QByteArrayView WithoutBlanks(QByteArrayView text) {
  while (text.startsWith(' ')) text = text.sliced(1);
  while (text.endsWith(' ')) text.chop(1);
  return text;
}

/// Takes a setup file line by line.
class LineReader {
 public:
  LineReader(const QLocale& locale, LoggerSettings& settings)
      : locale_(locale), settings_(settings) {}

  void Take(QByteArrayView line) {
    if (line.startsWith('[')) {
      TakeSection(line.sliced(1));
      return;
    }
    // A key has two characters at least.
    constexpr qsizetype kShortestKey = 2;
    const qsizetype equals = line.indexOf('=');
    if (equals >= kShortestKey)
      TakeValue(line.first(equals), WithoutBlanks(line.sliced(equals + 1)));
  }

  int Taken() const { return taken_; }

 private:
  void TakeSection(QByteArrayView title) {
    const auto kind = std::find_if(kSections.begin(), kSections.end(), [&](const SectionKind& row) {
      return row.Beginning != nullptr && title.startsWith(QByteArrayView(row.Beginning));
    });
    section_ = kind == kSections.end() ? KeyRows{} : kind->Rows;
  }

  void TakeValue(QByteArrayView key, QByteArrayView value) {
    if (key == QByteArrayView(kChannelKey.data(), kChannelKey.size())) {
      FromValue({value, locale_, settings_, channel_}, channel_);
      return;
    }
    const KeyRow* row = FindRow(key);
    if (row == nullptr || row->Read == nullptr) return;
    row->Read({value, locale_, settings_, channel_});
    ++taken_;
  }

  const KeyRow* FindRow(QByteArrayView key) const {
    if (std::find(kSharedKeys.begin(), kSharedKeys.end(), key) != kSharedKeys.end()) {
      return FindKey(section_, key);
    }
    const KeyRow* row = FindKey(kHeadRows, key);
    for (const SectionKind& kind : kSections) {
      if (row == nullptr) row = FindKey(kind.Rows, key);
    }
    return row;
  }

  const QLocale& locale_;
  LoggerSettings& settings_;
  KeyRows section_;
  std::int16_t channel_ = 0;
  int taken_ = 0;
};

template <typename Work>
void ForEachLine(const QByteArray& file, const Work& work) {
  QByteArrayView rest(file);
  while (!rest.isEmpty()) {
    const auto end =
        std::find_if(rest.begin(), rest.end(), [](char c) { return c == '\r' || c == '\n'; });
    const qsizetype length = end - rest.begin();
    work(rest.first(length));
    rest = rest.sliced(std::min(length + 1, rest.size()));
  }
}

void TakeCount(QByteArrayView line, QByteArrayView beginning, int most, std::optional<int>& count) {
  if (!line.startsWith(beginning)) return;
  bool isNumber = false;
  const int number = WithoutBlanks(line.sliced(beginning.size())).toInt(&isNumber);
  if (isNumber && number >= 0 && number <= most) count = number;
}

}  // namespace

QByteArray WriteSetupFile(const SetupFileHead& head, const LinkState& link,
                          const LoggerSettings& settings) {
  QString text;
  AppendRows(text, kHeadRows, {head, link, settings, 0});
  for (const SectionKind& kind : kSections) {
    const QString title = u'[' + QLatin1StringView(kind.Title) + u']' + kLineEnd;
    if (kind.Channels == 0) {
      text += title;
      AppendRows(text, kind.Rows, {head, link, settings, 0});
    }
    for (int channel = 0; channel < kind.Channels; ++channel) {
      text += title;
      AppendLine(text, kChannelKey, QString::number(channel));
      AppendRows(text, kind.Rows, {head, link, settings, channel});
    }
  }
  return text.toLatin1();
}

int ReadSetupFile(const QByteArray& file, const QLocale& locale, LoggerSettings& settings) {
  LineReader reader(locale, settings);
  ForEachLine(file, [&](QByteArrayView line) { reader.Take(line); });
  return reader.Taken();
}

SetupFileChannels ChannelsOfSetupFile(const QByteArray& file) {
  SetupFileChannels channels;
  ForEachLine(file, [&](QByteArrayView line) {
    TakeCount(line, "NumAnalogChannels=", kAnalogChannels, channels.Analog);
    TakeCount(line, "NumDigitalChannels=", kPulseChannels, channels.Pulse);
  });
  return channels;
}

}  // namespace tessmar
