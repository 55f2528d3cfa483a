#include "archive/UdUnits.h"

#include <algorithm>
#include <array>

namespace tessmar {
namespace {

struct Spelling {
  const char16_t* Logger;  ///< In lower case.
  const char* UdUnits;
};

constexpr std::array kSpellings{
    Spelling{u"ma", "mA"},
    Spelling{u"volts", "V"},
    Spelling{u"volt", "V"},
    Spelling{u"v", "V"},
    Spelling{u"mv", "mV"},
    Spelling{u"temp f", "degree_Fahrenheit"},
    Spelling{u"temp.°f", "degree_Fahrenheit"},
    Spelling{u"°f", "degree_Fahrenheit"},
    Spelling{u"deg f", "degree_Fahrenheit"},
    Spelling{u"temp c", "degree_Celsius"},
    Spelling{u"temp.°c", "degree_Celsius"},
    Spelling{u"°c", "degree_Celsius"},
    Spelling{u"deg c", "degree_Celsius"},
    Spelling{u"degrees", "degree"},
    Spelling{u"grad", "degree"},
    Spelling{u"%", "percent"},
    Spelling{u"%sat", "percent"},
    Spelling{u"% sat", "percent"},
    Spelling{u"inches", "inch"},
    Spelling{u"zoll", "inch"},
    Spelling{u"feet", "foot"},
    Spelling{u"fuß", "foot"},
    Spelling{u"cm", "cm"},
    Spelling{u"m", "m"},
    Spelling{u"meters", "m"},
    Spelling{u"meter", "m"},
    Spelling{u"hpa", "hPa"},
    Spelling{u"kpa", "kPa"},
    Spelling{u"mbar", "mbar"},
    Spelling{u"psi", "psi"},
    Spelling{u"mmhg", "mmHg"},
    Spelling{u"inhg", "inHg"},
    Spelling{u"ppm", "1e-6"},
    Spelling{u"mg/l", "mg L-1"},
    Spelling{u"us", "uS"},
    Spelling{u"us/cm", "uS cm-1"},
    Spelling{u"ms/cm", "mS cm-1"},
    Spelling{u"pss", "1"},
    Spelling{u"mph", "mile hour-1"},
    Spelling{u"kph", "km hour-1"},
    Spelling{u"km/h", "km hour-1"},
    Spelling{u"pulses", "count"},
    Spelling{u"impulse", "count"},
    Spelling{u"cubic ft", "foot3"},
    Spelling{u"kubikfuß", "foot3"},
    Spelling{u"liters", "L"},
    Spelling{u"liter", "L"},
    Spelling{u"gallons", "gallon"},
    Spelling{u"gallonen", "gallon"},
    Spelling{u"kgal", "1000 gallon"},
};

}  // namespace

QString UdUnitsSpelling(const QString& unit) {
  const QString wanted = unit.simplified().toLower();
  const auto* row = std::find_if(kSpellings.begin(), kSpellings.end(), [&](const Spelling& s) {
    return wanted == QStringView(s.Logger);
  });
  return row == kSpellings.end() ? QString() : QString::fromLatin1(row->UdUnits);
}

}  // namespace tessmar
