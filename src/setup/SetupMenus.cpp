#include "setup/SetupMenus.h"

#include "base/TextTable.h"

namespace tessmar {
namespace {

struct MenuCaption {
  const char* Name;
  const char16_t* Otherwise;
  const char16_t* German;
};

// clang-format off
constexpr MenuCaption kMenuCaptions[] = {
    {"mnuFile",         u"&File",                         u"&Datei"},
    {"mnuSave",         u"&Save Setup File",              u"Setupdatei &speichern"},
    {"mnuLoad",         u"&Load Setup File",              u"Setupdatei &laden"},
    {"mnuExit",         u"E&xit",                         u"&Beenden"},
    {"mnuAction",       u"&Action",                       u"&Aktion"},
    {"mnuDownload",     u"&Program Settings",             u"&Logger programmieren"},
    {"mnuInitialize",   u"&Initialize to Default Values", u"Auf Werkseinstellungen &zurücksetzen"},
    {"mnuHelp",         u"&Help",                         u"&Hilfe"},
    {"mnuLaunchHelp",   u"&Help",                         u"&Hilfe"},
    {"mnuLaunchDOHelp", u"&Dissolved Oxygen Sensor Help", u"&Dissolved Oxygen Sensor Help"},
    {"mnuAbout",        u"&About",                        u"&Info"},
};
// clang-format on

}  // namespace

QString SetupMenuCaption(const QString& name) {
  for (const MenuCaption& row : kMenuCaptions) {
    if (name == QLatin1StringView(row.Name)) return InLanguage(row.Otherwise, row.German);
  }
  return {};
}

}  // namespace tessmar
