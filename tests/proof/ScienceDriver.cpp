// Hands the program's own functions for salinity and oxygen to a script: one question a line on
// standard input, one answer a line on standard output.
//
//   salinity C            practical salinity of C mS/cm at 25 degrees Celsius
//   concentration S O t   mg/L of oxygen, at salinity S, O mbar of oxygen, t degrees Celsius
//   saturation P O t      percent, at an air pressure of P mbar
//   methods               what goes into files about each of the three, a line each

#include <QStringList>
#include <QTextStream>
#include <array>

#include "measure/DerivedMethod.h"
#include "measure/SalinityConductivity.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kDigits = 17;

/// A logger whose channels 6, 7 and 8 show the three.
LoggerSettings AllThree() {
  LoggerSettings settings;
  for (AnalogChannelSettings& channel : settings.Analog) channel.Enable = 1;
  settings.Do.EnableSalinityDisplay = 1;
  settings.Do.SalinityDisplayChannel = 5;
  settings.Do.EnableO2SaturationDisplay = 1;
  settings.Do.O2SaturationDisplayChannel = 6;
  settings.Do.EnableO2ConcentrationDisplay = 1;
  settings.Do.O2ConcentrationDisplayChannel = 7;
  return settings;
}

QString Answer(const QStringList& words) {
  std::array<double, 3> numbers{};
  for (std::size_t i = 0; i < numbers.size() && static_cast<qsizetype>(i) + 1 < words.size(); ++i)
    numbers[i] = words[static_cast<qsizetype>(i) + 1].toDouble();
  const auto text = [](double value) { return QString::number(value, 'g', kDigits); };
  if (words.first() == u"salinity"_s)
    return text(SalinityFromConductivity(numbers[0], kMilliSiemensPerCm));
  if (words.first() == u"concentration"_s)
    return text(OxygenConcentration(numbers[0], kAlreadySalinity, numbers[1], kMillibar, numbers[2],
                                    kCelsius));
  if (words.first() == u"saturation"_s)
    return text(
        OxygenSaturation(numbers[0], kMillibar, numbers[1], kMillibar, numbers[2], kCelsius));
  if (words.first() == u"methods"_s) {
    QStringList methods;
    for (const int channel : {5, 6, 7}) methods.append(MethodText(AllThree(), channel));
    return methods.join(u'\n');
  }
  return u"?"_s;
}

}  // namespace
}  // namespace tessmar

int main() {
  QTextStream in(stdin);
  QTextStream out(stdout);
  for (QString line = in.readLine(); !line.isNull(); line = in.readLine()) {
    const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
    if (!words.isEmpty()) out << tessmar::Answer(words) << '\n';
  }
  return 0;
}
