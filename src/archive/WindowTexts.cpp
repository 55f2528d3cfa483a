#include "archive/WindowTexts.h"

#include <array>
#include <cstdlib>

#include "base/TextRows.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Id = WindowTextId;

using Row = TextRow<WindowTextId>;

// clang-format off
constexpr std::array kRows{
    Row{Id::Caption, u"Archive", u"Archiv"},
    Row{Id::Loggers, u"&Loggers", u"&Logger"},
    Row{Id::Uploads, u"&Uploads", u"Abr&ufe"},
    Row{Id::Logbook, u"Logboo&k", u"Log&buch"},
    Row{Id::AllLoggers, u"All loggers", u"Alle Logger"},
    Row{Id::Bin, u"Bin", u"Papierkorb"},
    Row{Id::UnnamedLogger, u"(without a name)", u"(ohne Namen)"},
    Row{Id::Find, u"&Find:", u"Su&chen:"},
    Row{Id::FindHint, u"Any word of a row, such as a name, a kind or a file", u"Ein Wort einer Zeile, etwa ein Name, eine Art oder eine Datei"},
    Row{Id::Since, u"S&ince:", u"&Ab:"},
    Row{Id::Until, u"Un&til:", u"B&is:"},
    Row{Id::Started, u"Begun", u"Begonnen"},
    Row{Id::Logger, u"Logger", u"Logger"},
    Row{Id::Kind, u"Kind", u"Art"},
    Row{Id::State, u"State", u"Zustand"},
    Row{Id::Records, u"Records", u"Datensätze"},
    Row{Id::ClockOff, u"Clock", u"Uhr"},
    Row{Id::Source, u"From", u"Aus"},
    Row{Id::At, u"Time", u"Zeit"},
    Row{Id::What, u"Event", u"Ereignis"},
    Row{Id::Details, u"Details", u"Einzelheiten"},
    Row{Id::KindHistory, u"history", u"Speicher"},
    Row{Id::KindImage, u"image file", u"Abbilddatei"},
    Row{Id::KindLive, u"live", u"live"},
    Row{Id::StateRunning, u"running", u"läuft"},
    Row{Id::StateComplete, u"complete", u"vollständig"},
    Row{Id::StateFull, u"buffer full", u"Puffer voll"},
    Row{Id::StateCancelled, u"stopped", u"abgebrochen"},
    Row{Id::StateFailed, u"failed", u"gescheitert"},
    Row{Id::StateInterrupted, u"interrupted", u"unterbrochen"},
    Row{Id::EventConnected, u"connected", u"verbunden"},
    Row{Id::EventSynced, u"clock set", u"Uhr gestellt"},
    Row{Id::EventCleared, u"history cleared", u"Speicher gelöscht"},
    Row{Id::EventProgrammed, u"programmed", u"programmiert"},
    Row{Id::EventInitialized, u"initialized", u"initialisiert"},
    Row{Id::EventCalibrated, u"calibrated", u"kalibriert"},
    Row{Id::EventReset, u"reset", u"zurückgesetzt"},
    Row{Id::EventUploaded, u"uploaded", u"abgerufen"},
    Row{Id::EventRenamed, u"renamed", u"umbenannt"},
    Row{Id::EventMerged, u"merged", u"zusammengelegt"},
    Row{Id::EventSplit, u"split", u"geteilt"},
    Row{Id::Open, u"&Open", u"&Öffnen"},
    Row{Id::Plot, u"&Plot", u"&Diagramm"},
    Row{Id::Export, u"&Export...", u"&Exportieren..."},
    Row{Id::Rename, u"&Rename...", u"Umbe&nennen..."},
    Row{Id::Merge, u"&Merge...", u"&Zusammenlegen..."},
    Row{Id::Split, u"&Split...", u"&Teilen..."},
    Row{Id::Delete, u"&Delete", u"Lösc&hen"},
    Row{Id::Restore, u"Put &Back", u"Zu&rücklegen"},
    Row{Id::EmptyBin, u"Empt&y Bin...", u"Pa&pierkorb leeren..."},
    Row{Id::Close, u"Close", u"Schließen"},
    Row{Id::RenameTitle, u"Rename Logger", u"Logger umbenennen"},
    Row{Id::RenamePrompt, u"New name of %1 in the archive:", u"Neuer Name von %1 im Archiv:"},
    Row{Id::MergeTitle, u"Merge Loggers", u"Logger zusammenlegen"},
    Row{Id::MergePrompt, u"All uploads of %1, those to come too, belong to:", u"Alle Abrufe von %1, auch künftige, gehören zu:"},
    Row{Id::SplitTitle, u"Split Logger", u"Logger teilen"},
    Row{Id::SplitPrompt, u"Name of another logger that the selected uploads (%1) belong to:", u"Name eines anderen Loggers, zu dem die gewählten Abrufe (%1) gehören:"},
    Row{Id::AskEmptyBin, u"The uploads in the bin (%1) will be gone for good, with all their records.\r\n\r\nEmpty the bin?", u"Die Abrufe im Papierkorb (%1) werden mit allen Datensätzen endgültig gelöscht.\r\n\r\nPapierkorb leeren?"},
    Row{Id::OneUpload, u"1 upload", u"1 Abruf"},
    Row{Id::UploadsShown, u"%1 uploads", u"%1 Abrufe"},
    Row{Id::Chosen, u"chosen: %1", u"gewählt: %1"},
    Row{Id::SeriesOfLogger, u"the whole series of %1", u"die ganze Reihe von %1"},
    Row{Id::UploadOf, u"%1, %2", u"%1, %2"},
    Row{Id::PlotSeriesHint, u"Plots all uploads of %1 as one series: each record once, live samples left out", u"Zeigt alle Abrufe von %1 als eine Reihe: jeden Datensatz einmal, ohne Live-Werte"},
    Row{Id::PlotUploadHint, u"Plots the chosen upload. For all uploads of a logger choose the logger.", u"Zeigt den gewählten Abruf. Für alle Abrufe eines Loggers den Logger wählen."},
    Row{Id::PlotNothingHint, u"Choose one upload, or a logger for all its uploads", u"Einen Abruf wählen, oder einen Logger für alle seine Abrufe"},
    Row{Id::OpenUploadHint, u"Shows the records of the chosen upload, with the settings of then", u"Zeigt die Datensätze des gewählten Abrufs, mit den Einstellungen von damals"},
    Row{Id::OpenNothingHint, u"Choose one upload: the table shows the records of one set of settings. Plot shows the whole series of a logger.", u"Einen Abruf wählen: Die Tabelle zeigt die Datensätze zu einem Satz Einstellungen. Die ganze Reihe eines Loggers zeigt das Diagramm."},
    Row{Id::SeriesEmpty, u"%1 has no records from its history or from image files.", u"%1 hat keine Datensätze aus dem Speicher oder aus Abbilddateien."},
    Row{Id::MovedToBin, u"%1 moved to the bin", u"%1 in den Papierkorb gelegt"},
    Row{Id::MovedBack, u"%1 put back", u"%1 zurückgelegt"},
    Row{Id::BinEmptied, u"The bin is empty", u"Der Papierkorb ist leer"},
    Row{Id::UploadTooLarge, u"Only the first %1 records of this upload fit into the viewer.", u"Nur die ersten %1 Datensätze dieses Abrufs passen in die Anzeige."},
    Row{Id::UploadEmpty, u"This upload has no records.", u"Dieser Abruf hat keine Datensätze."},
    Row{Id::SettingsUnknown, u"The logger's settings could not be read before these records were taken, so that nobody can tell what their numbers mean. Their times are shown; the archive keeps the numbers as they came.", u"Die Einstellungen des Loggers waren nicht lesbar, bevor diese Datensätze kamen; was ihre Zahlen bedeuten, ist daher nicht bekannt. Gezeigt werden ihre Zeiten; das Archiv bewahrt die Zahlen auf, wie sie kamen."},
    Row{Id::ChangedElsewhere, u"Another program has changed the archive. What was chosen is there no more; the window shows what there is.", u"Ein anderes Programm hat das Archiv geändert. Das Gewählte ist nicht mehr da; das Fenster zeigt, was da ist."},
    Row{Id::NotRead, u"The archive cannot be read.", u"Das Archiv kann nicht gelesen werden."},
    Row{Id::NotChanged, u"The archive was not changed.", u"Das Archiv wurde nicht geändert."},
    Row{Id::Damaged, u"It is damaged.", u"Es ist beschädigt."},
    Row{Id::NoArchiveYet, u"Nothing has been uploaded yet", u"Es wurde noch nichts abgerufen"},
    Row{Id::CsvFiles, u"Comma Separated Value Files", u"Kommagetrennte Dateien"},
};
// clang-format on

static_assert(TextRowsStandInOrder(kRows), "a text's row is its number");

constexpr std::int32_t kSecondsPerMinute = 60;
constexpr std::int32_t kSecondsPerHour = 3600;
constexpr std::int32_t kSecondsPerDay = 86400;

}  // namespace

QString GetText(WindowTextId id) {
  return TextOf(kRows, id);
}

QString ShownName(UploadKind kind) {
  constexpr std::array kNames{Id::KindHistory, Id::KindImage, Id::KindLive};
  return GetText(kNames.at(static_cast<std::size_t>(kind)));
}

QString ShownName(UploadState state) {
  constexpr std::array kNames{Id::StateRunning,   Id::StateComplete, Id::StateFull,
                              Id::StateCancelled, Id::StateFailed,   Id::StateInterrupted};
  return GetText(kNames.at(static_cast<std::size_t>(state)));
}

QString ShownName(EventKind kind) {
  constexpr std::array kNames{Id::EventConnected,  Id::EventSynced,      Id::EventCleared,
                              Id::EventProgrammed, Id::EventInitialized, Id::EventCalibrated,
                              Id::EventReset,      Id::EventUploaded,    Id::EventRenamed,
                              Id::EventMerged,     Id::EventSplit};
  return GetText(kNames.at(static_cast<std::size_t>(kind)));
}

QString ShownClockOffset(std::optional<std::int32_t> seconds) {
  if (!seconds) return {};
  const bool german = TextLanguage() == kLanguageGerman;
  if (*seconds == 0) return german ? u"richtig"_s : u"right"_s;
  const std::int32_t size = std::abs(*seconds);
  QString text = u"%1 s"_s.arg(size);
  if (size >= 2 * kSecondsPerDay) {
    text = (german ? u"%1 Tage"_s : u"%1 days"_s).arg(size / kSecondsPerDay);
  } else if (size >= 2 * kSecondsPerHour) {
    text = u"%1 h"_s.arg(size / kSecondsPerHour);
  } else if (size >= 2 * kSecondsPerMinute) {
    text = u"%1 min"_s.arg(size / kSecondsPerMinute);
  }
  if (*seconds > 0) return text + (german ? u" vor"_s : u" fast"_s);
  return text + (german ? u" nach"_s : u" slow"_s);
}

}  // namespace tessmar
