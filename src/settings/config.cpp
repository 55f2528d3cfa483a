#include "settings/config.h"

#include <algorithm>
#include <array>

#include "base/Fault.h"
#include "base/Numbers.h"
#include "settings/ImageFields.h"
#include "settings/IntervalText.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMillisecondsPerSecond = 1000;
constexpr int kLongestWarmupMs = 60000;
/// The logger wants this behind each alarm time.
constexpr std::uint8_t kBehindAlarmTime = 128;
/// Lowest value that no longer fits one byte as packed decimal.
constexpr int kBcdLimit = 160;

constexpr int kDoChannels = 7;
constexpr int kPressureUnits = 8;
constexpr int kPO2ChannelOffset = 290;

using Out = std::span<std::uint8_t>;
using In = std::span<const std::uint8_t>;

void PutBcd(int value, Out image, int offset) {
  if (value < 0 || value >= kBcdLimit) throw ConversionFault("a value does not fit packed decimal");
  PutByte(ToBcd(value), image, offset);
}

/// The words of the unit byte, by its value.
constexpr std::array<QStringView, 4> kUnitWords{u"second", u"minute", u"hour", u"day"};

QString IntervalText(int count, std::uint8_t unit) {
  const QStringView word = kUnitWords[std::min<std::size_t>(unit, kUnitWords.size() - 1)];
  return u"%1 %2%3"_s.arg(count).arg(word, count > 1 ? u"s" : u"");
}

template <typename Channels>
int EnableMask(const Channels& channels) {
  int mask = 0;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (channels[i].Enable != 0) mask |= 1 << i;
  }
  return mask;
}

template <typename Channels>
void TakeEnableMask(Channels& channels, int mask, int channelCount) {
  for (int i = 0; i < static_cast<int>(channels.size()); ++i) {
    channels[i].Enable = i < channelCount && (mask >> i & 1) != 0 ? 1 : 0;
  }
}

/// What a row of the layout needs to move entry Entry of its field.
struct PackSide {
  const LinkState& Link;
  const LoggerSettings& From;
  Out Image;
  int Offset;
  int Entry;
};
struct UnpackSide {
  const LinkState& Link;
  LoggerSettings& To;
  In Image;
  int Offset;
  int Entry;
};

/// One line of the image layout: Entries fields of Stride bytes each, one behind the other.
struct LayoutRow {
  int Offset;
  int Stride;
  int Entries;
  void (*Put)(const PackSide&);
  void (*Get)(const UnpackSide&);
};

void NotRead(const UnpackSide& /*side*/) {}

void PutName(const PackSide& s) {
  PutFixedText(s.From.LoggerName, s.Image, s.Offset, kLoggerNameLength);
}
void GetName(const UnpackSide& s) {
  s.To.LoggerName = GetFixedText(s.Image, s.Offset, kLoggerNameLength);
}

void PutInterval(const PackSide& s) {
  PutU16(RoundToInt32(ParseLeadingNumber(s.From.SampleInterval)), s.Image, s.Offset);
  PutByte(StoredIntervalUnit(s.From.SampleInterval), s.Image, s.Offset + 2);
}
void GetInterval(const UnpackSide& s) {
  const int count = GetU16(s.Image, s.Offset);
  s.To.SampleInterval = IntervalText(count, ByteAt(s.Image, s.Offset + 2));
}

void PutAnalogCount(const PackSide& s) {
  PutByte(s.Link.AnalogChannelCount, s.Image, s.Offset);
}
void PutPulseCount(const PackSide& s) {
  PutByte(s.Link.PulseChannelCount, s.Image, s.Offset);
}

void PutAnalogMask(const PackSide& s) {
  PutByte(EnableMask(s.From.Analog), s.Image, s.Offset);
}
void GetAnalogMask(const UnpackSide& s) {
  TakeEnableMask(s.To.Analog, ByteAt(s.Image, s.Offset), s.Link.AnalogChannelCount);
}
void PutPulseMask(const PackSide& s) {
  PutByte(EnableMask(s.From.Pulse), s.Image, s.Offset);
}
void GetPulseMask(const UnpackSide& s) {
  TakeEnableMask(s.To.Pulse, ByteAt(s.Image, s.Offset), s.Link.PulseChannelCount);
}

void PutWrapAndBaud(const PackSide& s) {
  PutByte(s.From.FixedBaudRate * 2 + s.From.DataWrapAroundFlag, s.Image, s.Offset);
}
void GetWrapAndBaud(const UnpackSide& s) {
  const std::uint8_t flags = ByteAt(s.Image, s.Offset);
  s.To.DataWrapAroundFlag = flags & 1;
  s.To.FixedBaudRate = flags >> 1;
}

void PutWarmup(const PackSide& s) {
  PutU16(s.From.SensorWarmupTime * kMillisecondsPerSecond, s.Image, s.Offset);
}
void GetWarmup(const UnpackSide& s) {
  const int milliseconds = std::min(GetU16(s.Image, s.Offset), kLongestWarmupMs);
  s.To.SensorWarmupTime = static_cast<std::uint8_t>(milliseconds / kMillisecondsPerSecond);
}

void PutUnits(const PackSide& s) {
  PutFixedText(s.From.EngUnits(s.Entry), s.Image, s.Offset, kUnitsLength);
}
void GetUnits(const UnpackSide& s) {
  s.To.EngUnits(s.Entry) = GetFixedText(s.Image, s.Offset, kUnitsLength);
}

void PutAlarmEnable(const PackSide& s) {
  PutByte(s.From.Alarm[s.Entry].Enable, s.Image, s.Offset);
}
void GetAlarmEnable(const UnpackSide& s) {
  s.To.Alarm[s.Entry].Enable = ByteAt(s.Image, s.Offset) != 0 ? 1 : 0;
}

template <int Alarm, auto Field>
void PutAlarmBcd(const PackSide& s) {
  PutBcd(s.From.Alarm[Alarm].*Field, s.Image, s.Offset);
}
template <int Alarm, auto Field>
void GetAlarmBcd(const UnpackSide& s) {
  s.To.Alarm[Alarm].*Field = static_cast<std::int16_t>(FromBcd(ByteAt(s.Image, s.Offset)));
}
void PutBehindAlarmTime(const PackSide& s) {
  PutByte(kBehindAlarmTime, s.Image, s.Offset);
}

template <auto Field>
void PutCopy(const PackSide& s) {
  PutByte(s.From.*Field, s.Image, s.Offset);
}
template <auto Field>
void GetCopy(const UnpackSide& s) {
  s.To.*Field = ByteAt(s.Image, s.Offset);
}
void GetSod(const UnpackSide& s) {
  const std::uint8_t enable = ByteAt(s.Image, s.Offset);
  s.To.EnableSOD = s.Link.SampleOnDemandSupported ? enable : 0;
}

void PutDeadband(const PackSide& s) {
  PutU16(s.From.Deadband, s.Image, s.Offset);
}
void GetDeadband(const UnpackSide& s) {
  s.To.Deadband = GetU16(s.Image, s.Offset);
}

void PutDecPlaces(const PackSide& s) {
  PutByte(s.From.DecPlaces(s.Entry), s.Image, s.Offset);
}
void GetDecPlaces(const UnpackSide& s) {
  s.To.DecPlaces(s.Entry) = ByteAt(s.Image, s.Offset);
}

void PutPulseUnit(const PackSide& s) {
  PutU24(EncodeDecimal24(s.From.Pulse[s.Entry].PulseUnit), s.Image, s.Offset);
}
void GetPulseUnit(const UnpackSide& s) {
  s.To.Pulse[s.Entry].PulseUnit = DecodeDecimal24(GetU24(s.Image, s.Offset));
}

template <auto Field>
void PutAnalogNumber(const PackSide& s) {
  PutU24(EncodeDecimal24(s.From.Analog[s.Entry].*Field), s.Image, s.Offset);
}
template <auto Field>
void GetAnalogNumber(const UnpackSide& s) {
  s.To.Analog[s.Entry].*Field = DecodeDecimal24(GetU24(s.Image, s.Offset));
}
template <auto Field>
void PutAnalogRaw(const PackSide& s) {
  PutU16(s.From.Analog[s.Entry].*Field, s.Image, s.Offset);
}
template <auto Field>
void GetAnalogRaw(const UnpackSide& s) {
  s.To.Analog[s.Entry].*Field = GetU16(s.Image, s.Offset);
}

template <auto Field>
void PutDo(const PackSide& s) {
  PutByte(s.From.Do.*Field, s.Image, s.Offset);
}
template <auto Field>
void GetDo(const UnpackSide& s) {
  s.To.Do.*Field = ByteAt(s.Image, s.Offset);
}
template <auto Field>
void GetDoBit(const UnpackSide& s) {
  s.To.Do.*Field = ByteAt(s.Image, s.Offset) & 1;
}
template <auto Field, int Limit>
void GetDoBelow(const UnpackSide& s) {
  const std::uint8_t value = ByteAt(s.Image, s.Offset);
  if (value < Limit) s.To.Do.*Field = value;
}
template <auto Field>
constexpr auto GetDoChannel = &GetDoBelow<Field, kDoChannels>;
template <auto Field>
constexpr auto GetDoPressure = &GetDoBelow<Field, kPressureUnits>;
template <auto Field>
void PutDoNumber(const PackSide& s) {
  PutU24(EncodeDecimal24(s.From.Do.*Field), s.Image, s.Offset);
}
template <auto Field>
void GetDoNumber(const UnpackSide& s) {
  s.To.Do.*Field = DecodeDecimal24(GetU24(s.Image, s.Offset));
}

using A = AnalogChannelSettings;
using L = LoggerSettings;
using D = DoSettings;
using T = AlarmSettings;

// The image, in the order in which fields are packed and unpacked: a fault leaves alone what stands
// below it here.
// clang-format off
constexpr std::array kLayout{
    //         at size  n  pack                              unpack
    LayoutRow{  0, 32,  1, PutName,                          GetName},
    LayoutRow{ 32,  3,  1, PutInterval,                      GetInterval},
    LayoutRow{ 35,  1,  1, PutAnalogCount,                   NotRead},
    LayoutRow{ 36,  1,  1, PutPulseCount,                    NotRead},
    LayoutRow{ 37,  1,  1, PutAnalogMask,                    GetAnalogMask},
    LayoutRow{ 38,  1,  1, PutPulseMask,                     GetPulseMask},
    LayoutRow{ 39,  1,  1, PutWrapAndBaud,                   GetWrapAndBaud},
    LayoutRow{ 40,  2,  1, PutWarmup,                        GetWarmup},
    LayoutRow{ 48,  9, 10, PutUnits,                         GetUnits},
    LayoutRow{ 42,  1,  2, PutAlarmEnable,                   GetAlarmEnable},
    LayoutRow{138,  1,  1, PutAlarmBcd<0, &T::AlarmSec>,     GetAlarmBcd<0, &T::AlarmSec>},
    LayoutRow{139,  1,  1, PutAlarmBcd<0, &T::AlarmMin>,     GetAlarmBcd<0, &T::AlarmMin>},
    LayoutRow{140,  1,  1, PutAlarmBcd<0, &T::AlarmHour>,    GetAlarmBcd<0, &T::AlarmHour>},
    LayoutRow{141,  1,  1, PutBehindAlarmTime,                    NotRead},
    LayoutRow{142,  1,  1, PutAlarmBcd<1, &T::AlarmSec>,     GetAlarmBcd<1, &T::AlarmSec>},
    LayoutRow{143,  1,  1, PutAlarmBcd<1, &T::AlarmMin>,     GetAlarmBcd<1, &T::AlarmMin>},
    LayoutRow{144,  1,  1, PutAlarmBcd<1, &T::AlarmHour>,    GetAlarmBcd<1, &T::AlarmHour>},
    LayoutRow{145,  1,  1, PutBehindAlarmTime,                    NotRead},
    LayoutRow{ 44,  1,  1, PutCopy<&L::EnableSOD>,           GetSod},
    LayoutRow{ 45,  1,  1, PutCopy<&L::LoggingStyle>,        GetCopy<&L::LoggingStyle>},
    LayoutRow{ 46,  2,  1, PutDeadband,                      GetDeadband},
    LayoutRow{146,  1, 10, PutDecPlaces,                     GetDecPlaces},
    LayoutRow{188,  3,  2, PutPulseUnit,                     GetPulseUnit},
    LayoutRow{194,  3,  8, PutAnalogNumber<&A::LowerLimit>,  GetAnalogNumber<&A::LowerLimit>},
    LayoutRow{218,  3,  8, PutAnalogNumber<&A::UpperLimit>,  GetAnalogNumber<&A::UpperLimit>},
    LayoutRow{156,  2,  8, PutAnalogRaw<&A::RawScaleLower>,  GetAnalogRaw<&A::RawScaleLower>},
    LayoutRow{172,  2,  8, PutAnalogRaw<&A::RawScaleUpper>,  GetAnalogRaw<&A::RawScaleUpper>},
    LayoutRow{242,  3,  8, PutAnalogNumber<&A::DisplayBottom>, GetAnalogNumber<&A::DisplayBottom>},
    LayoutRow{266,  3,  8, PutAnalogNumber<&A::DisplayTop>,  GetAnalogNumber<&A::DisplayTop>},
};

// The dissolved-oxygen region. The order is that of reading: the units of the conductivity entered
// by hand stand last in the image.
constexpr std::array kDoLayout{
    LayoutRow{290, 1, 1, PutDo<&D::PO2Channel>,                    GetDo<&D::PO2Channel>},
    LayoutRow{291, 1, 1, PutDo<&D::PO2Units>,                      GetDoBit<&D::PO2Units>},
    LayoutRow{292, 1, 1, PutDo<&D::WaterTempChannel>,              GetDoChannel<&D::WaterTempChannel>},
    LayoutRow{293, 1, 1, PutDo<&D::WaterTempUnits>,                GetDoBit<&D::WaterTempUnits>},
    LayoutRow{294, 1, 1, PutDo<&D::ConductivityManualEntry>,       GetDoBit<&D::ConductivityManualEntry>},
    LayoutRow{295, 3, 1, PutDoNumber<&D::ConductivityManual>,      GetDoNumber<&D::ConductivityManual>},
    LayoutRow{298, 1, 1, PutDo<&D::ConductivityChannel>,           GetDoChannel<&D::ConductivityChannel>},
    LayoutRow{299, 1, 1, PutDo<&D::ConductivityUnits>,             GetDoBit<&D::ConductivityUnits>},
    LayoutRow{314, 1, 1, PutDo<&D::ConductivityManualEntryUnits>,  GetDoBit<&D::ConductivityManualEntryUnits>},
    LayoutRow{300, 1, 1, PutDo<&D::AirPressureManualEntry>,        GetDoBit<&D::AirPressureManualEntry>},
    LayoutRow{301, 3, 1, PutDoNumber<&D::AirPressureManual>,       GetDoNumber<&D::AirPressureManual>},
    LayoutRow{304, 1, 1, PutDo<&D::AirPressureManualEntryUnits>,   GetDoPressure<&D::AirPressureManualEntryUnits>},
    LayoutRow{305, 1, 1, PutDo<&D::AirPressureChannel>,            GetDoChannel<&D::AirPressureChannel>},
    LayoutRow{306, 1, 1, PutDo<&D::AirPressureUnits>,              GetDoPressure<&D::AirPressureUnits>},
    LayoutRow{307, 1, 1, PutDo<&D::EnableSalinityDisplay>,         GetDoBit<&D::EnableSalinityDisplay>},
    LayoutRow{308, 1, 1, PutDo<&D::SalinityDisplayChannel>,        GetDoChannel<&D::SalinityDisplayChannel>},
    LayoutRow{309, 1, 1, PutDo<&D::EnableO2SaturationDisplay>,     GetDoBit<&D::EnableO2SaturationDisplay>},
    LayoutRow{310, 1, 1, PutDo<&D::O2SaturationDisplayChannel>,    GetDoChannel<&D::O2SaturationDisplayChannel>},
    LayoutRow{311, 1, 1, PutDo<&D::EnableO2ConcentrationDisplay>,  GetDoBit<&D::EnableO2ConcentrationDisplay>},
    LayoutRow{312, 1, 1, PutDo<&D::O2ConcentrationDisplayChannel>, GetDoChannel<&D::O2ConcentrationDisplayChannel>},
    LayoutRow{313, 1, 1, PutDo<&D::O2ConcentrationDisplayUnits>,   GetDoBit<&D::O2ConcentrationDisplayUnits>},
};
// clang-format on

template <typename Layout>
void Pack(const Layout& layout, const LinkState& link, const LoggerSettings& settings, Out image) {
  for (const LayoutRow& row : layout) {
    for (int entry = 0; entry < row.Entries; ++entry) {
      row.Put({link, settings, image, row.Offset + row.Stride * entry, entry});
    }
  }
}

template <typename Layout>
void Unpack(const Layout& layout, const LinkState& link, In image, LoggerSettings& settings) {
  for (const LayoutRow& row : layout) {
    for (int entry = 0; entry < row.Entries; ++entry) {
      row.Get({link, settings, image, row.Offset + row.Stride * entry, entry});
    }
  }
}

}  // namespace

bool PackConfigImage(const LinkState& link, const LoggerSettings& settings, ConfigImage& image) {
  image.assign(kConfigImageSize, 0);
  return Trapped(link, [&] {
    Pack(kLayout, link, settings, image);
    Pack(kDoLayout, link, settings, image);
    return true;
  });
}

bool UnpackConfigImage(const LinkState& link, std::span<const std::uint8_t> image,
                       LoggerSettings& settings) {
  return Trapped(link, [&] {
    Unpack(kLayout, link, image, settings);
    settings.Do = DoSettings::Defaults();
    // Erased memory reads 0xFF: nothing was ever stored in this region.
    if (ByteAt(image, kPO2ChannelOffset) >= kDoChannels) return true;
    Unpack(kDoLayout, link, image, settings);
    return true;
  });
}

}  // namespace tessmar
