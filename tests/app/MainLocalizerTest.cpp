#include "app/MainLocalizer.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"
#include "support/FakeOutside.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class LocalizeMainScreenTest : public testing::Test {
 protected:
  ~LocalizeMainScreenTest() override { SetTextLanguage(kLanguageEnglish); }

  void Localize(std::int16_t language) {
    SetTextLanguage(language);
    Words = LocalizeMainScreen(Screen, language);
  }

  FakeMainScreen Screen;
  ConnectionWords Words;
};

const QHash<QString, QString> kEnglish{
    {u"mnuFile"_s, u"&File"_s},
    {u"mnuExit"_s, u"E&xit"_s},
    {u"mnuAction"_s, u"&Action"_s},
    {u"mnuConnect"_s, u"Co&nnect"_s},
    {u"mnuDisconnect"_s, u"&Disconnect"_s},
    {u"mnuSampleContinuously"_s, u"S&ample Continuously"_s},
    {u"mnuGetSettings"_s, u"&Get Sample"_s},
    {u"mnuGetHistoryData"_s, u"Get &History Data"_s},
    {u"mnuClearHistory"_s, u"&Clear History"_s},
    {u"mnuSynchronizeTime"_s, u"Synchronize &Time"_s},
    {u"mnuSetup"_s, u"&Setup"_s},
    {u"mnuResetPulseAccs"_s, u"&Reset Pulse Accumulators"_s},
    {u"mnuLoadLoggerImageFile"_s, u"Load Logger Image &File"_s},
    {u"mnuData"_s, u"&Data"_s},
    {u"mnuArchive"_s, u"&Archive"_s},
    {u"mnuTrend"_s, u"&Live Trend"_s},
    {u"Help"_s, u"&Help"_s},
    {u"mnuLaunchHelp"_s, u"&Help"_s},
    {u"mnuAbout"_s, u"&About"_s},
    {u"mnuFirmwareVersion"_s, u"&Firmware Version"_s},
    {u"fraPulse1"_s, u"Pulse Channel 1"_s},
    {u"fraPulse2"_s, u"Pulse Channel 2"_s},
    {u"fraAlarm1"_s, u"Alarm 1"_s},
    {u"fraAlarm2"_s, u"Alarm 2"_s},
    {u"fraCommStatus"_s, u"Comm Status"_s},
    {u"fraLoggerName"_s, u"Logger Name"_s},
    {u"fraDateTime"_s, u"Logger Time"_s},
    {u"fraInterval"_s, u"Interval"_s},
    {u"fraWarmup"_s, u"Warmup"_s},
    {u"fraRecordings"_s, u"Records"_s},
    {u"fraLoggingState"_s, u"Logging State"_s},
    {u"cmdGetSettings"_s, u"Get Sample"_s},
    {u"cmdGetHistoryData"_s, u"Get History"_s},
    {u"cmdClearMemory"_s, u"Clear History"_s},
    {u"cmdSynchronizeTime"_s, u"Sync Time"_s},
    {u"cmdSetup"_s, u"Setup"_s},
    {u"cmdConnect"_s, u"Connect"_s},
    {u"chkSampleContinuously"_s, u"Sample Continuously"_s},
};

const QHash<QString, QString> kGermanMenus{
    {u"mnuFile"_s, u"&Datei"_s},
    {u"mnuExit"_s, u"&Beenden"_s},
    {u"imnuAction"_s, u"&Aktion"_s},
    {u"imnuConnect"_s, u"&Verbinden"_s},
    {u"imnuDisconnect"_s, u"&Trennen"_s},
    {u"imnuSampleContinuously"_s, u"&Kontinuierlich messen"_s},
    {u"imnuGetSettings"_s, u"&Einzelmessung"_s},
    {u"imnuGetHistoryData"_s, u"Speicherdaten &abrufen"_s},
    {u"imnuClearHistory"_s, u"Speicherdaten &löschen"_s},
    {u"imnuSynchronizeTime"_s, u"&Zeit synchronisieren"_s},
    {u"imnuSetup"_s, u"&Setup"_s},
    {u"imnuResetPulseAccs"_s, u"&Impulszähler rücksetzen"_s},
    {u"imnuLoadLoggerImageFile"_s, u"Load Logger Image &File"_s},
    {u"mnuData"_s, u"Da&ten"_s},
    {u"mnuArchive"_s, u"&Archiv"_s},
    {u"mnuTrend"_s, u"&Live-Verlauf"_s},
    {u"Help"_s, u"&Hilfe"_s},
    {u"mnuLaunchHelp"_s, u"&Hilfe"_s},
    {u"mnuAbout"_s, u"&Info"_s},
    {u"mnuFirmwareVersion"_s, u"&Firmware-Version"_s},
};

TEST_F(LocalizeMainScreenTest, CaptionsEverythingInEnglish) {
  Localize(9);
  EXPECT_EQ(Screen.Captions, kEnglish);
}

TEST_F(LocalizeMainScreenTest, ShowsOneActionMenu) {
  Localize(9);
  EXPECT_TRUE(Screen.Visible[u"mnuAction"_s]);
  EXPECT_FALSE(Screen.Visible[u"imnuAction"_s]);
  Localize(7);
  EXPECT_FALSE(Screen.Visible[u"mnuAction"_s]);
  EXPECT_TRUE(Screen.Visible[u"imnuAction"_s]);
}

TEST_F(LocalizeMainScreenTest, CaptionsTheMenusInGermanWithAMenuOfTheirOwn) {
  Localize(7);
  for (auto row = kGermanMenus.begin(); row != kGermanMenus.end(); ++row) {
    EXPECT_EQ(Screen.Captions.value(row.key()), row.value()) << row.key().toStdString();
  }
  EXPECT_FALSE(Screen.Captions.contains(u"mnuConnect"_s));
  EXPECT_FALSE(Screen.Captions.contains(u"mnuAction"_s));
  EXPECT_EQ(Screen.Captions.size(), kGermanMenus.size() + 18);
}

TEST_F(LocalizeMainScreenTest, CaptionsTheControlsInGerman) {
  Localize(7);
  EXPECT_EQ(Screen.Caption(u"fraPulse2"_s), u"Impuls Kanal 2"_s);
  EXPECT_EQ(Screen.Caption(u"fraAlarm1"_s), u"Alarm 1"_s);
  EXPECT_EQ(Screen.Caption(u"cmdConnect"_s), u"Verbinden"_s);
  EXPECT_EQ(Screen.Caption(u"cmdGetHistoryData"_s), u"Speicherdaten abrufen"_s);
  EXPECT_EQ(Screen.Caption(u"chkSampleContinuously"_s), u"Kontinuierlich\r\nmessen"_s);
}

TEST_F(LocalizeMainScreenTest, TheImageImportStaysEnglishInGerman) {
  Localize(7);
  EXPECT_EQ(Screen.Caption(u"imnuLoadLoggerImageFile"_s), u"Load Logger Image &File"_s);
}

TEST_F(LocalizeMainScreenTest, TheOxygenHelpKeepsItsCaption) {
  Screen.Captions[u"mnuLaunchDOHelp"_s] = u"&Dissolved Oxygen Sensor Help"_s;
  Localize(7);
  EXPECT_EQ(Screen.Caption(u"mnuLaunchDOHelp"_s), u"&Dissolved Oxygen Sensor Help"_s);
}

TEST_F(LocalizeMainScreenTest, LanguageTenIsEnglishButForABrokenCheckBox) {
  Localize(10);
  QHash<QString, QString> expected = kEnglish;
  expected[u"chkSampleContinuously"_s] = u"Sample\r\nContinuously"_s;
  EXPECT_EQ(Screen.Captions, expected);
  EXPECT_TRUE(Screen.Visible[u"mnuAction"_s]);
}

TEST_F(LocalizeMainScreenTest, GivesTheWordsOfTheConnection) {
  Localize(9);
  EXPECT_EQ(Words.Connect, u"Connect"_s);
  EXPECT_EQ(Words.Disconnect, u"Disconnect"_s);
  EXPECT_EQ(Words.Connected, u"Connected"_s);
  EXPECT_EQ(Words.Disconnected, u"Disconnected"_s);
  Localize(7);
  EXPECT_EQ(Words.Connect, u"Verbinden"_s);
  EXPECT_EQ(Words.Disconnect, u"Trennen"_s);
  EXPECT_EQ(Words.Connected, u"Verbunden"_s);
  EXPECT_EQ(Words.Disconnected, u"Nicht verbunden"_s);
}

}  // namespace
}  // namespace tessmar::test
