#include "plot/PlotTexts.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

TEST(PlotTexts, SpeakEnglishAndGerman) {
  const Series oxygen{.Place = u"a3"_s, .Unit = u"mg/L "_s, .Values = {}};
  const Series rain{.Place = u"p1"_s, .Values = {}};
  EXPECT_EQ(PlotText(PlotTextId::Fit), u"Show &All"_s);
  EXPECT_EQ(PlotText(PlotTextId::WaitingForSample), u"Waiting for the first reading"_s);
  EXPECT_EQ(ChannelName(oxygen), u"Channel 3 (mg/L)"_s);
  EXPECT_EQ(ChannelName(rain), u"Pulse channel 1"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(PlotText(PlotTextId::Fit), u"&Alles zeigen"_s);
  EXPECT_EQ(ChannelName(oxygen), u"Kanal 3 (mg/L)"_s);
  EXPECT_EQ(ChannelName(rain), u"Impulskanal 1"_s);
  SetTextLanguage(kLanguageEnglish);
}

TEST(PlotTexts, AUnitWithAPlaceholderIsTakenAsItIs) {
  EXPECT_EQ(ChannelName({.Place = u"a1"_s, .Unit = u"%1"_s, .Values = {}}), u"Channel 1 (%1)"_s);
}

}  // namespace
}  // namespace tessmar
