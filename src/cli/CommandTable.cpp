#include "cli/CommandTable.h"

#include <array>

#include "base/TextTable.h"

namespace tessmar {
namespace {

constexpr std::uint32_t kEverywhere = kOptionJson | kOptionQuiet;
constexpr std::uint32_t kOnLine = kEverywhere | kOptionBaud | kOptionArchive | kOptionNoArchive;
constexpr std::uint32_t kChannels = kOptionAnalog | kOptionPulse;

// clang-format off
constexpr std::array kCommands{
    CommandRow{CommandWork::Ports, u"ports", u"", 0, kEverywhere,
               {u"List the serial ports of this computer.",
                u"Die seriellen Anschlüsse dieses Rechners zeigen."},
               u"tessmar ports"},
    CommandRow{CommandWork::Status, u"status", u"PORT", 1, kOnLine,
               {u"Show name, records, state and clock of a logger.",
                u"Name, Datensätze, Zustand und Uhr eines Loggers zeigen."},
               u"tessmar status COM5"},
    CommandRow{CommandWork::Sample, u"sample", u"PORT", 1, kOnLine | kOptionEvery | kOptionCount,
               {u"Show the present readings: once, or again and again.",
                u"Die augenblicklichen Messwerte zeigen: einmal oder immer wieder."},
               u"tessmar sample COM5 --every 60 --count 10 --json"},
    CommandRow{CommandWork::Upload, u"upload", u"PORT", 1,
               kOnLine | kOptionCsv | kOptionStyle,
               {u"Fetch the stored records.",
                u"Die gespeicherten Datensätze holen."},
               u"tessmar upload COM5 --csv pond.csv"},
    CommandRow{CommandWork::Clock, u"clock", u"PORT", 1, kOnLine | kOptionSync,
               {u"Show the logger's clock, or set it to the computer's.",
                u"Die Uhr des Loggers zeigen oder nach der des Rechners stellen."},
               u"tessmar clock COM5 --sync"},
    CommandRow{CommandWork::Clear, u"clear", u"PORT", 1, kOnLine | kOptionYes,
               {u"Erase the stored records of a logger.",
                u"Die gespeicherten Datensätze eines Loggers löschen."},
               u"tessmar clear COM5 --yes"},
    CommandRow{CommandWork::SettingsGet, u"settings get", u"PORT FILE.set", 2, kOnLine,
               {u"Save the logger's settings as a setup file.",
                u"Die Einstellungen des Loggers als Setup-Datei speichern."},
               u"tessmar settings get COM5 pond.set"},
    CommandRow{CommandWork::SettingsPut, u"settings put", u"PORT FILE.set", 2,
               kOnLine | kOptionYes | kOptionForce,
               {u"Program the settings of a setup file into a logger.",
                u"Die Einstellungen einer Setup-Datei in einen Logger programmieren."},
               u"tessmar settings put COM5 pond.set --yes"},
    CommandRow{CommandWork::SettingsDiff, u"settings diff", u"A B", 2, kOnLine | kChannels,
               {u"Show where two settings differ: ports, setup files (.set) or image files (.bin).",
                u"Zeigen, worin sich zwei Einstellungen unterscheiden: Anschlüsse, Setup-Dateien (.set) "
                u"oder Abbilddateien (.bin)."},
               u"tessmar settings diff COM5 pond.set"},
    CommandRow{CommandWork::Convert, u"convert", u"IMAGE.bin FILE", 2,
               kEverywhere | kChannels | kOptionStyle,
               {u"Turn an image file of a logger's memory into a table.",
                u"Die Abbilddatei eines Loggerspeichers in eine Tabelle verwandeln."},
               u"tessmar convert pond.bin pond.csv --analog 8 --pulse 2"},
    CommandRow{CommandWork::ArchiveList, u"archive list", u"", 0, kEverywhere | kOptionArchive,
               {u"List the uploads in the archive, the newest first.",
                u"Die Abrufe im Archiv zeigen, den neuesten zuerst."},
               u"tessmar archive list"},
    CommandRow{CommandWork::ArchiveShow, u"archive show", u"N", 1, kEverywhere | kOptionArchive,
               {u"Show upload number N with its records.",
                u"Den Abruf Nummer N mit seinen Datensätzen zeigen."},
               u"tessmar archive show 12"},
    CommandRow{CommandWork::ArchiveExport, u"archive export", u"N|--logger NAME FILE", 2,
               kEverywhere | kOptionArchive | kOptionLogger | kOptionStyle,
               {u"Save upload number N, or all that is known of a logger, as FILE.csv or FILE.nc.",
                u"Den Abruf Nummer N oder alles von einem Logger als DATEI.csv oder DATEI.nc speichern."},
               u"tessmar archive export --logger Weir weir.nc"},
    CommandRow{CommandWork::ArchivePush, u"archive push", u"URL", 1, kEverywhere | kOptionArchive,
               {u"Bring what is new to a PostgreSQL server.",
                u"Was neu ist, zu einem PostgreSQL-Server bringen."},
               u"tessmar archive push postgresql://ada@db.example.org/loggers"},
    CommandRow{CommandWork::ArchiveCheck, u"archive check", u"", 0, kEverywhere | kOptionArchive,
               {u"Check that the archive is sound.",
                u"Prüfen, ob das Archiv in Ordnung ist."},
               u"tessmar archive check"},
};

constexpr std::array kOptions{
    OptionRow{kOptionCsv, u"csv", u"FILE",
              {u"Save the records as the viewer does, or as NetCDF in FILE.nc; - is standard output.",
               u"Die Datensätze wie die Anzeige speichern oder als NetCDF in DATEI.nc; - ist die "
               u"Standardausgabe."}},
    OptionRow{kOptionStyle, u"style", u"S",
              {u"Of a CSV file: viewer (as without it), or analysis (one head row, ISO times).",
               u"Einer CSV-Datei: viewer (wie ohne) oder analysis (eine Kopfzeile, ISO-Zeiten)."}},
    OptionRow{kOptionLogger, u"logger", u"NAME",
              {u"The series of this logger: all its uploads, each record once.",
               u"Die Reihe dieses Loggers: alle seine Abrufe, jeder Datensatz einmal."}},
    OptionRow{kOptionEvery, u"every", u"S",
              {u"A sample every S seconds, 2 to 86400.",
               u"Alle S Sekunden ein Messwert, 2 bis 86400."}},
    OptionRow{kOptionCount, u"count", u"N",
              {u"End after N samples; without it, on Ctrl-C.",
               u"Nach N Messwerten enden; sonst bei Strg-C."}},
    OptionRow{kOptionSync, u"sync", u"",
              {u"Set the logger's clock to the computer's.",
               u"Die Uhr des Loggers nach der des Rechners stellen."}},
    OptionRow{kOptionYes, u"yes", u"",
              {u"Do it. Without this nothing is changed.",
               u"Es tun. Ohne dies wird nichts verändert."}},
    OptionRow{kOptionForce, u"force", u"",
              {u"Program in spite of warnings.",
               u"Trotz Warnungen programmieren."}},
    OptionRow{kOptionAnalog, u"analog", u"N",
              {u"Analog channels of an image file, 0 to 8.",
               u"Analogkanäle einer Abbilddatei, 0 bis 8."}},
    OptionRow{kOptionPulse, u"pulse", u"N",
              {u"Pulse channels of an image file, 0 to 2.",
               u"Impulskanäle einer Abbilddatei, 0 bis 2."}},
    OptionRow{kOptionBaud, u"baud", u"N",
              {u"Speed of the line: 9600, 19200, 28800, 38400, 57600 or 115200 (38400).",
               u"Geschwindigkeit: 9600, 19200, 28800, 38400, 57600 oder 115200 (38400)."}},
    OptionRow{kOptionArchive, u"archive", u"PATH",
              {u"The archive's file.",
               u"Die Datei des Archivs."}},
    OptionRow{kOptionNoArchive, u"no-archive", u"",
              {u"Keep nothing in the archive.",
               u"Nichts im Archiv aufheben."}},
    OptionRow{kOptionJson, u"json", u"",
              {u"One JSON object a line.",
               u"Ein JSON-Objekt je Zeile."}},
    OptionRow{kOptionQuiet, u"quiet", u"",
              {u"No progress and no remarks.",
               u"Kein Fortschritt, keine Bemerkungen."}},
};
// clang-format on

}  // namespace

QString TwoLanguages::Text() const {
  return QString::fromUtf16(TextLanguage() == kLanguageGerman ? German : English);
}

std::span<const CommandRow> CommandRows() {
  return kCommands;
}

std::span<const OptionRow> OptionRows() {
  return kOptions;
}

}  // namespace tessmar
