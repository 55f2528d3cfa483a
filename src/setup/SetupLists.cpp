#include "setup/SetupLists.h"

#include <array>

#include "base/TextTable.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

// The DO sources and displays stop at channel 7, whatever the logger has.
constexpr int kMostDoChannels = 7;
constexpr int kLongestWarmup = 60;
constexpr int kMostDecimals = 6;

QStringList Numbers(int first, int last) {
  QStringList items;
  for (int number = first; number <= last; ++number) items.append(QString::number(number));
  return items;
}

template <std::size_t kCount>
QStringList Texts(const std::array<TextId, kCount>& ids) {
  QStringList items;
  for (const TextId id : ids) items.append(GetText(id));
  return items;
}

}  // namespace

QStringList AnalogUnits() {
  QStringList units = Texts(std::array{TextId::MilliAmps, TextId::Volts, TextId::MilliVolts,
                                       TextId::TempF, TextId::TempC, TextId::Degrees});
  units.append(u"%"_s);
  units.append(Texts(std::array{TextId::Inches, TextId::Feet, TextId::Centimetres, TextId::Meters,
                                TextId::Ntu, TextId::HPa, TextId::Mbar, TextId::Ppm, TextId::MgPerL,
                                TextId::PercentSat, TextId::MicroSiemens, TextId::MicroSiemensPerCm,
                                TextId::MilliSiemensPerCm, TextId::Pss, TextId::Mph, TextId::Kph}));
  return units;
}

QStringList PulseUnits() {
  return Texts(std::array{TextId::Pulses, TextId::Inches, TextId::Centimetres, TextId::CubicFeet,
                          TextId::Liters, TextId::Gallons, TextId::Kgal});
}

QStringList WarmupItems() {
  return Numbers(0, kLongestWarmup);
}

QStringList PrecisionItems() {
  return Numbers(0, kMostDecimals);
}

QStringList SampleIntervalItems() {
  return Texts(std::array{TextId::Seconds, TextId::Minutes, TextId::Hours, TextId::Days});
}

QStringList BaudItems() {
  QStringList items{GetText(TextId::AutoBaudRate)};
  for (const char* rate : {" 9600", " 19200", " 28800", " 38400", " 57600", " 115200"})
    items.append(GetText(TextId::Fixed) + QLatin1StringView(rate));
  return items;
}

QStringList AlarmHalfDayItems() {
  return {u"A.M."_s, u"P.M."_s};
}

QStringList DoChannelItems(int analogChannelCount) {
  return Numbers(1, std::min(analogChannelCount, kMostDoChannels));
}

QStringList PO2UnitItems() {
  return {u"hPa"_s, u"mbar"_s};
}

QStringList WaterTempUnitItems() {
  return {u"Temp C"_s, u"Temp F"_s};
}

QStringList ConductivityUnitItems() {
  return {u"uS/cm"_s, u"mS/cm"_s};
}

QStringList AirPressureUnitItems() {
  return {u"hPa"_s, u"mbar"_s, u"kPa"_s, u"inHg"_s, u"mmHg"_s, u"PSI"_s, u"feet"_s, u"meters"_s};
}

QStringList O2ConcentrationUnitItems() {
  return {u"mg/L"_s, u"ppm"_s};
}

}  // namespace tessmar
