#include "plot/PlotTexts.h"

#include <array>

#include "base/TextRows.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

using Row = TextRow<PlotTextId>;

// clang-format off
constexpr std::array kRows{
    Row{PlotTextId::Caption, u"Plot", u"Diagramm"},
    Row{PlotTextId::LiveCaption, u"Live Trend", u"Live-Verlauf"},
    Row{PlotTextId::Channels, u"Channels", u"Kanäle"},
    Row{PlotTextId::Channel, u"Channel %1", u"Kanal %1"},
    Row{PlotTextId::PulseChannel, u"Pulse channel %1", u"Impulskanal %1"},
    Row{PlotTextId::Plot, u"Plot of the channels over time", u"Verlauf der Kanäle über die Zeit"},
    Row{PlotTextId::Back, u"&Back", u"&Zurück"},
    Row{PlotTextId::BackHint, u"The view before (Backspace)", u"Der Ausschnitt davor (Rücktaste)"},
    Row{PlotTextId::Forward, u"&Forward", u"&Vor"},
    Row{PlotTextId::ForwardHint, u"The view after (Shift+Backspace)", u"Der Ausschnitt danach (Umschalt+Rücktaste)"},
    Row{PlotTextId::Fit, u"Show &All", u"&Alles zeigen"},
    Row{PlotTextId::FitHint, u"Everything from the first record to the last (double click)", u"Alles vom ersten Datensatz bis zum letzten (Doppelklick)"},
    Row{PlotTextId::FixedScale, u"Fi&xed scale", u"&Feste Skala"},
    Row{PlotTextId::FixedScaleHint, u"Keeps the vertical scales as they are now. The wheel over a scale, and Up, Down, Ctrl+Up and Ctrl+Down, change them.", u"Behält die senkrechten Skalen, wie sie jetzt sind. Das Mausrad über einer Skala sowie Auf, Ab, Strg+Auf und Strg+Ab ändern sie."},
    Row{PlotTextId::CorrectedTime, u"Corrected &time", u"&Korrigierte Zeit"},
    Row{PlotTextId::CorrectedTimeHint, u"Shows the times that the computer's clock would have had, in UTC, where it is known how far the logger's clock was off.", u"Zeigt die Zeiten, die die Uhr des Rechners gehabt hätte, in UTC, soweit bekannt ist, wie falsch die Uhr des Loggers ging."},
    Row{PlotTextId::ByDay, u"By &day", u"Nach &Tagen"},
    Row{PlotTextId::ShowRow, u"Show in Tab&le", u"In Tabe&lle zeigen"},
    Row{PlotTextId::ShowRowHint, u"Goes to the table's row of the record under the cursor line (Enter)", u"Geht zur Tabellenzeile des Datensatzes unter der Ableselinie (Eingabetaste)"},
    Row{PlotTextId::SaveCsv, u"&Save View", u"Ausschnitt &speichern"},
    Row{PlotTextId::Picture, u"Pict&ure", u"Bil&d"},
    Row{PlotTextId::Print, u"&Print", u"D&rucken"},
    Row{PlotTextId::Copy, u"&Copy", u"K&opieren"},
    Row{PlotTextId::Close, u"OK", u"OK"},
    Row{PlotTextId::LoggerTimeAxis, u"Logger time", u"Loggerzeit"},
    Row{PlotTextId::CorrectedTimeAxis, u"Corrected time (UTC)", u"Korrigierte Zeit (UTC)"},
    Row{PlotTextId::Statistics, u"Statistics of what is in view", u"Statistik des gezeigten Ausschnitts"},
    Row{PlotTextId::Day, u"Day", u"Tag"},
    Row{PlotTextId::ChannelHead, u"Channel", u"Kanal"},
    Row{PlotTextId::Least, u"Least", u"Kleinster"},
    Row{PlotTextId::Mean, u"Mean", u"Mittel"},
    Row{PlotTextId::Greatest, u"Greatest", u"Größter"},
    Row{PlotTextId::First, u"First", u"Erster"},
    Row{PlotTextId::Last, u"Last", u"Letzter"},
    Row{PlotTextId::Sum, u"Sum", u"Summe"},
    Row{PlotTextId::Cursor, u"Values under the cursor line", u"Werte unter der Ableselinie"},
    Row{PlotTextId::NoRecords, u"No records", u"Keine Datensätze"},
    Row{PlotTextId::OneMark, u"1 event in view", u"1 Ereignis im Ausschnitt"},
    Row{PlotTextId::Marks, u"%1 events in view", u"%1 Ereignisse im Ausschnitt"},
    Row{PlotTextId::OneDispute, u"uploads disagree at 1 place", u"Abrufe widersprechen sich an 1 Stelle"},
    Row{PlotTextId::Disputes, u"uploads disagree at %1 places", u"Abrufe widersprechen sich an %1 Stellen"},
    Row{PlotTextId::OneStepBack, u"clock set back once", u"Uhr einmal zurückgestellt"},
    Row{PlotTextId::StepsBack, u"clock set back %1 times", u"Uhr %1-mal zurückgestellt"},
    Row{PlotTextId::Joined, u"points joined", u"Punkte verbunden"},
    Row{PlotTextId::JoinedPoints, u"Points joined at any distance: not logged periodically", u"Punkte über jeden Abstand verbunden: nicht periodisch aufgezeichnet"},
    Row{PlotTextId::OneWithoutCorrectedTime, u"1 record without a corrected time is not shown", u"1 Datensatz ohne korrigierte Zeit ist nicht gezeigt"},
    Row{PlotTextId::WithoutCorrectedTime, u"%1 records without a corrected time are not shown", u"%1 Datensätze ohne korrigierte Zeit sind nicht gezeigt"},
    Row{PlotTextId::PictureTitle, u"Save Picture", u"Bild speichern"},
    Row{PlotTextId::PngFiles, u"PNG pictures", u"PNG-Bilder"},
    Row{PlotTextId::SvgFiles, u"SVG drawings", u"SVG-Zeichnungen"},
    Row{PlotTextId::PdfFiles, u"PDF documents", u"PDF-Dokumente"},
    Row{PlotTextId::UnknownPicture, u"The name must end in .png, .svg or .pdf:", u"Der Name muss auf .png, .svg oder .pdf enden:"},
    Row{PlotTextId::PictureFailed, u"The picture could not be made. Is there enough memory?", u"Das Bild konnte nicht erzeugt werden. Reicht der Speicher?"},
    Row{PlotTextId::SaveTitle, u"Save What Is in View", u"Gezeigten Ausschnitt speichern"},
    Row{PlotTextId::NothingInView, u"There is no record in view.", u"Im Ausschnitt liegt kein Datensatz."},
    Row{PlotTextId::Described, u"%1, %2 records in view.", u"%1, %2 Datensätze im Ausschnitt."},
    Row{PlotTextId::DescribedChannel, u"%1: least %2, greatest %3.", u"%1: kleinster %2, größter %3."},
    Row{PlotTextId::DescribedEmpty, u"%1: no value.", u"%1: kein Wert."},
    Row{PlotTextId::Following, u"Following the readings", u"Folgt den Messwerten"},
    Row{PlotTextId::HoldingStill, u"Holding still: Show All follows again", u"Angehalten: Alles zeigen folgt wieder"},
    Row{PlotTextId::SamplingOff, u"Sampling is off", u"Die Messung ist ausgeschaltet"},
    Row{PlotTextId::Disconnected, u"Disconnected", u"Nicht verbunden"},
    Row{PlotTextId::NoSampleSince, u"The logger has not answered since %1", u"Der Logger antwortet nicht seit %1"},
    Row{PlotTextId::WaitingForSample, u"Waiting for the first reading", u"Wartet auf den ersten Messwert"},
};
// clang-format on

static_assert(TextRowsStandInOrder(kRows), "a text's row is its number");

}  // namespace

QString PlotText(PlotTextId id) {
  return TextOf(kRows, id);
}

QString ChannelName(const Series& series) {
  const QString name = PlotText(series.IsPulse() ? PlotTextId::PulseChannel : PlotTextId::Channel)
                           .arg(QStringView(series.Place).mid(1));
  const QString unit = series.Unit.trimmed();
  return unit.isEmpty() ? name : name + u" ("_s + unit + u')';
}

}  // namespace tessmar
