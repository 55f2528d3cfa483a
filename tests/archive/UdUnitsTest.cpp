#include "archive/UdUnits.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

TEST(UdUnitsSpelling, KnowsTheUnitsOfTheLists) {
  const std::vector<std::pair<QString, QString>> rows{
      {u"mg/L"_s, u"mg L-1"_s},
      {u"Temp C"_s, u"degree_Celsius"_s},
      {u"Temp.\u00B0C"_s, u"degree_Celsius"_s},
      {u"%Sat"_s, u"percent"_s},
      {u"uS/cm"_s, u"uS cm-1"_s},
      {u"PSS"_s, u"1"_s},
      {u"Volts"_s, u"V"_s},
      {u"Fu\u00DF"_s, u"foot"_s},
      {u"Pulses"_s, u"count"_s},
      {u"KPH"_s, u"km hour-1"_s},
      {u"ppm"_s, u"1e-6"_s},
      {u"Kgal"_s, u"1000 gallon"_s},
  };
  for (const auto& [unit, spelling] : rows)
    EXPECT_EQ(UdUnitsSpelling(unit), spelling) << unit.toStdString();
}

TEST(UdUnitsSpelling, KnowsEveryUnitThatCanBeChosenButTurbidity) {
  for (const std::int16_t language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    for (int id = static_cast<int>(TextId::MilliAmps); id <= static_cast<int>(TextId::Kgal); ++id) {
      const QString unit = GetText(static_cast<TextId>(id));
      EXPECT_EQ(UdUnitsSpelling(unit).isEmpty(), unit == u"NTU"_s) << unit.toStdString();
    }
  }
  SetTextLanguage(kLanguageEnglish);
}

TEST(UdUnitsSpelling, MindsNeitherCapitalsNorBlanks) {
  EXPECT_EQ(UdUnitsSpelling(u"  MG/l "_s), u"mg L-1"_s);
}

TEST(UdUnitsSpelling, IsEmptyForWhatItDoesNotKnow) {
  EXPECT_EQ(UdUnitsSpelling(u"furlongs"_s), QString());
  EXPECT_EQ(UdUnitsSpelling(QString()), QString());
}

}  // namespace
}  // namespace tessmar
