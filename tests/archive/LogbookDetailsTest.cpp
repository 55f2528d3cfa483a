#include "archive/LogbookDetails.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"

using namespace Qt::StringLiterals;
using namespace tessmar;

namespace {

class LogbookDetailsTest : public testing::Test {
 protected:
  ~LogbookDetailsTest() override { SetTextLanguage(kLanguageEnglish); }
};

struct Line {
  QString Kept;
  QString German;
};

TEST_F(LogbookDetailsTest, EnglishStaysAsItIsKept) {
  SetTextLanguage(kLanguageEnglish);
  EXPECT_EQ(ShownDetails(u"connected, 960 records"_s), u"connected, 960 records"_s);
}

TEST_F(LogbookDetailsTest, EverySentenceThatTheProgramWritesHasAGermanOne) {
  SetTextLanguage(kLanguageGerman);
  const Line lines[] = {
      {u"connected, 960 records"_s, u"verbunden, 960 Datensätze"_s},
      {u"history cleared, 12 records"_s, u"Speicher gelöscht, 12 Datensätze"_s},
      {u"clock set, it was -5 s off"_s, u"Uhr gestellt, sie ging um -5 s falsch"_s},
      {u"clock set"_s, u"Uhr gestellt"_s},
      {u"pulse accumulators reset"_s, u"Impulszähler zurückgesetzt"_s},
      {u"flash memory initialised"_s, u"Speicher initialisiert"_s},
      {u"1 setting changed"_s, u"1 Einstellung geändert"_s},
      {u"3 settings changed"_s, u"3 Einstellungen geändert"_s},
      {u"the settings before could not be read"_s, u"die Einstellungen davor waren nicht lesbar"_s},
      {u"Channel 2 (Temp C): 0 at 123, 100 at 60000; before: unknown"_s,
       u"Kanal 2 (Temp C): 0 bei 123, 100 bei 60000; vorher: unbekannt"_s},
      {u"5000 records, complete"_s, u"5000 Datensätze, vollständig"_s},
      {u"5000 records, full"_s, u"5000 Datensätze, Puffer voll"_s},
      {u"7 records, cancelled"_s, u"7 Datensätze, abgebrochen"_s},
      {u"7 records, failed"_s, u"7 Datensätze, gescheitert"_s},
      {u"0 records, interrupted"_s, u"0 Datensätze, unterbrochen"_s},
      {u"Channel 2 (Temp C): 0 at 123, 100 at 60000; before: 0 at 0, 100 at 65535"_s,
       u"Kanal 2 (Temp C): 0 bei 123, 100 bei 60000; vorher: 0 bei 0, 100 bei 65535"_s},
      {u"connected, 960 records\n1 setting differs from how it was left (programmed "
       u"2027-03-03T12:00:00Z)\n"
       "Kanal 2: Einheit: NTU; before: %"_s,
       u"verbunden, 960 Datensätze\n1 Einstellung ist anders als zuletzt (programmiert "
       u"2027-03-03T12:00:00Z)\n"
       "Kanal 2: Einheit: NTU; vorher: %"_s},
      {u"12 settings differ from how it was left (uploaded 2027-03-03T12:00:00Z)"_s,
       u"12 Einstellungen sind anders als zuletzt (abgerufen 2027-03-03T12:00:00Z)"_s},
      {u"2 settings differ from how it was left (connected 2027-03-03T12:00:00Z)"_s,
       u"2 Einstellungen sind anders als zuletzt (verbunden 2027-03-03T12:00:00Z)"_s}};
  for (const Line& line : lines) EXPECT_EQ(ShownDetails(line.Kept), line.German);
}

TEST_F(LogbookDetailsTest, WhatIsNoSentenceOfTheProgramStays) {
  SetTextLanguage(kLanguageGerman);
  for (const QString& text : {u""_s, u"Mill Pond 3 -> Weir"_s, u"clock set by hand"_s,
                              u"records, complete"_s, u"a note\nin two lines"_s})
    EXPECT_EQ(ShownDetails(text), text);
}

}  // namespace
