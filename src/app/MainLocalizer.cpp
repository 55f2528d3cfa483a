#include "app/MainLocalizer.h"

#include <array>
#include <span>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

struct MenuCaption {
  const char16_t* Control;
  const char16_t* Caption;
};

constexpr std::array kEnglishMenus{
    MenuCaption{u"mnuFile", u"&File"},
    MenuCaption{u"mnuExit", u"E&xit"},
    MenuCaption{u"mnuAction", u"&Action"},
    MenuCaption{u"mnuConnect", u"Co&nnect"},
    MenuCaption{u"mnuDisconnect", u"&Disconnect"},
    MenuCaption{u"mnuSampleContinuously", u"S&ample Continuously"},
    MenuCaption{u"mnuGetSettings", u"&Get Sample"},
    MenuCaption{u"mnuGetHistoryData", u"Get &History Data"},
    MenuCaption{u"mnuClearHistory", u"&Clear History"},
    MenuCaption{u"mnuSynchronizeTime", u"Synchronize &Time"},
    MenuCaption{u"mnuSetup", u"&Setup"},
    MenuCaption{u"mnuResetPulseAccs", u"&Reset Pulse Accumulators"},
    MenuCaption{u"mnuLoadLoggerImageFile", u"Load Logger Image &File"},
    MenuCaption{u"mnuData", u"&Data"},
    MenuCaption{u"mnuArchive", u"&Archive"},
    MenuCaption{u"mnuTrend", u"&Live Trend"},
    MenuCaption{u"Help", u"&Help"},
    MenuCaption{u"mnuLaunchHelp", u"&Help"},
    MenuCaption{u"mnuAbout", u"&About"},
    MenuCaption{u"mnuFirmwareVersion", u"&Firmware Version"},
};

// The image import keeps its English words.
constexpr std::array kGermanMenus{
    MenuCaption{u"mnuFile", u"&Datei"},
    MenuCaption{u"mnuExit", u"&Beenden"},
    MenuCaption{u"imnuAction", u"&Aktion"},
    MenuCaption{u"imnuConnect", u"&Verbinden"},
    MenuCaption{u"imnuDisconnect", u"&Trennen"},
    MenuCaption{u"imnuSampleContinuously", u"&Kontinuierlich messen"},
    MenuCaption{u"imnuGetSettings", u"&Einzelmessung"},
    MenuCaption{u"imnuGetHistoryData", u"Speicherdaten &abrufen"},
    MenuCaption{u"imnuClearHistory", u"Speicherdaten &löschen"},
    MenuCaption{u"imnuSynchronizeTime", u"&Zeit synchronisieren"},
    MenuCaption{u"imnuSetup", u"&Setup"},
    MenuCaption{u"imnuResetPulseAccs", u"&Impulszähler rücksetzen"},
    MenuCaption{u"imnuLoadLoggerImageFile", u"Load Logger Image &File"},
    MenuCaption{u"mnuData", u"Da&ten"},
    MenuCaption{u"mnuArchive", u"&Archiv"},
    MenuCaption{u"mnuTrend", u"&Live-Verlauf"},
    MenuCaption{u"Help", u"&Hilfe"},
    MenuCaption{u"mnuLaunchHelp", u"&Hilfe"},
    MenuCaption{u"mnuAbout", u"&Info"},
    MenuCaption{u"mnuFirmwareVersion", u"&Firmware-Version"},
};

struct TextCaption {
  const char16_t* Control;
  TextId Text;
  const char16_t* Number;  // Follows the text.
};

constexpr std::array kTextCaptions{
    TextCaption{u"fraPulse1", TextId::PulseChannel, u" 1"},
    TextCaption{u"fraPulse2", TextId::PulseChannel, u" 2"},
    TextCaption{u"fraAlarm1", TextId::Alarm, u" 1"},
    TextCaption{u"fraAlarm2", TextId::Alarm, u" 2"},
    TextCaption{u"fraCommStatus", TextId::CommStatus, u""},
    TextCaption{u"fraLoggerName", TextId::LoggerName, u""},
    TextCaption{u"fraDateTime", TextId::LoggerTime, u""},
    TextCaption{u"fraInterval", TextId::Interval, u""},
    TextCaption{u"fraWarmup", TextId::Warmup, u""},
    TextCaption{u"fraRecordings", TextId::Records, u""},
    TextCaption{u"fraLoggingState", TextId::LoggingState, u""},
    TextCaption{u"cmdGetSettings", TextId::GetSample, u""},
    TextCaption{u"cmdGetHistoryData", TextId::GetHistory, u""},
    TextCaption{u"cmdClearMemory", TextId::ClearHistory, u""},
    TextCaption{u"cmdSynchronizeTime", TextId::SyncTime, u""},
    TextCaption{u"cmdSetup", TextId::Setup, u""},
    TextCaption{u"cmdConnect", TextId::Connect, u""},
    TextCaption{u"chkSampleContinuously", TextId::SampleContinuously, u""},
};

void SetMenuCaptions(MainScreen& screen, std::span<const MenuCaption> menus) {
  for (const MenuCaption& menu : menus) {
    screen.SetCaption(QString::fromUtf16(menu.Control), QString::fromUtf16(menu.Caption));
  }
}

}  // namespace

ConnectionWords LocalizeMainScreen(MainScreen& screen, std::int16_t language) {
  const bool german = language == kLanguageGerman;
  if (german) {
    SetMenuCaptions(screen, kGermanMenus);
  } else {
    SetMenuCaptions(screen, kEnglishMenus);
  }
  screen.SetVisible(u"mnuAction"_s, !german);
  screen.SetVisible(u"imnuAction"_s, german);
  for (const TextCaption& row : kTextCaptions) {
    screen.SetCaption(QString::fromUtf16(row.Control),
                      GetText(row.Text) + QString::fromUtf16(row.Number));
  }
  return {GetText(TextId::Connect), GetText(TextId::Disconnect), GetText(TextId::Connected),
          GetText(TextId::Disconnected)};
}

}  // namespace tessmar
