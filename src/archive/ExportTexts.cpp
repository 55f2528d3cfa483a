#include "archive/ExportTexts.h"

#include <array>

#include "base/TextRows.h"

namespace tessmar {
namespace {

using Id = ExportTextId;

using Row = TextRow<ExportTextId>;

// clang-format off
constexpr std::array kRows{
    Row{Id::Title, u"Export", u"Exportieren"},
    Row{Id::ViewerFiles, u"Comma Separated Value Files, as the viewer saves them", u"Kommagetrennte Dateien, wie die Anzeige sie speichert"},
    Row{Id::AnalysisFiles, u"Comma Separated Value Files for analysis", u"Kommagetrennte Dateien zur Auswertung"},
    Row{Id::NetCdfFiles, u"NetCDF Files", u"NetCDF-Dateien"},
    Row{Id::Reading, u"Reading: %1 of %2 records", u"Lesen: %1 von %2 Datensätzen"},
    Row{Id::Writing, u"Writing: %1 of %2 records", u"Schreiben: %1 von %2 Datensätzen"},
    Row{Id::Cancel, u"Cancel", u"Abbrechen"},
    Row{Id::Cancelling, u"Cancelling...", u"Wird abgebrochen..."},
    Row{Id::Done, u"%1 records in %2", u"%1 Datensätze in %2"},
    Row{Id::DoneDisagreeing, u"%1 records in %2; %3 of them where uploads disagree", u"%1 Datensätze in %2; davon %3, wo sich Abrufe widersprechen"},
    Row{Id::Cancelled, u"Cancelled; nothing was written to %1", u"Abgebrochen; in %1 wurde nichts geschrieben"},
    Row{Id::NoRecords, u"There are no records to export.", u"Es gibt keine Datensätze zu exportieren."},
    Row{Id::NoLibrary, u"NetCDF files need the package libnetcdf19, which is not installed.", u"Für NetCDF-Dateien fehlt das Paket libnetcdf19."},
    Row{Id::NoMemory, u"There is not enough memory. Choose CSV, which needs less.", u"Der Arbeitsspeicher reicht nicht. CSV braucht weniger."},
    Row{Id::MixedChannels, u"The channels changed between the uploads, and the viewer's CSV has one row of headings. Choose CSV for analysis, or NetCDF.", u"Die Kanäle wechselten zwischen den Abrufen, und die CSV der Anzeige hat nur eine Kopfzeile. CSV zur Auswertung oder NetCDF wählen."},
    Row{Id::Failed, u"The file could not be made:\r\n%1", u"Die Datei konnte nicht gemacht werden:\r\n%1"},
    Row{Id::UploadHint, u"Saves the chosen upload as a file: CSV or NetCDF. For all uploads of a logger choose the logger.", u"Speichert den gewählten Abruf als Datei: CSV oder NetCDF. Für alle Abrufe eines Loggers den Logger wählen."},
    Row{Id::SeriesHint, u"Saves all uploads of %1 as one series: each record once, live samples left out", u"Speichert alle Abrufe von %1 als eine Reihe: jeden Datensatz einmal, ohne Live-Werte"},
    Row{Id::NothingHint, u"Choose one upload, or a logger for all its uploads", u"Einen Abruf wählen, oder einen Logger für alle seine Abrufe"},
};
// clang-format on

static_assert(TextRowsStandInOrder(kRows), "a text's row is its number");

}  // namespace

QString GetText(ExportTextId id) {
  return TextOf(kRows, id);
}

}  // namespace tessmar
