#include "archive/LogbookDetails.h"

#include <QStringList>
#include <QStringView>
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// A sentence of the logbook; each "@" stands for what was put in, the same order in both.
struct Sentence {
  const char16_t* Kept;
  const char16_t* German;
};

// The longer of two that a line could be stands first.
// clang-format off
constexpr std::array kSentences{
    Sentence{u"connected, @ records", u"verbunden, @ Datensätze"},
    Sentence{u"1 setting differs from how it was left (programmed @)", u"1 Einstellung ist anders als zuletzt (programmiert @)"},
    Sentence{u"1 setting differs from how it was left (uploaded @)", u"1 Einstellung ist anders als zuletzt (abgerufen @)"},
    Sentence{u"1 setting differs from how it was left (connected @)", u"1 Einstellung ist anders als zuletzt (verbunden @)"},
    Sentence{u"@ settings differ from how it was left (programmed @)", u"@ Einstellungen sind anders als zuletzt (programmiert @)"},
    Sentence{u"@ settings differ from how it was left (uploaded @)", u"@ Einstellungen sind anders als zuletzt (abgerufen @)"},
    Sentence{u"@ settings differ from how it was left (connected @)", u"@ Einstellungen sind anders als zuletzt (verbunden @)"},
    Sentence{u"history cleared, @ records", u"Speicher gelöscht, @ Datensätze"},
    Sentence{u"clock set, it was @ s off", u"Uhr gestellt, sie ging um @ s falsch"},
    Sentence{u"clock set", u"Uhr gestellt"},
    Sentence{u"pulse accumulators reset", u"Impulszähler zurückgesetzt"},
    Sentence{u"flash memory initialised", u"Speicher initialisiert"},
    Sentence{u"1 setting changed", u"1 Einstellung geändert"},
    Sentence{u"@ settings changed", u"@ Einstellungen geändert"},
    Sentence{u"the settings before could not be read", u"die Einstellungen davor waren nicht lesbar"},
    Sentence{u"@ records, complete", u"@ Datensätze, vollständig"},
    Sentence{u"@ records, full", u"@ Datensätze, Puffer voll"},
    Sentence{u"@ records, cancelled", u"@ Datensätze, abgebrochen"},
    Sentence{u"@ records, failed", u"@ Datensätze, gescheitert"},
    Sentence{u"@ records, interrupted", u"@ Datensätze, unterbrochen"},
    Sentence{u"Channel @ (@): @ at @, @ at @; before: @ at @, @ at @", u"Kanal @ (@): @ bei @, @ bei @; vorher: @ bei @, @ bei @"},
    Sentence{u"Channel @ (@): @ at @, @ at @; before: unknown", u"Kanal @ (@): @ bei @, @ bei @; vorher: unbekannt"},
    Sentence{u"@; before: @", u"@; vorher: @"},
};
// clang-format on

/// What stands in the places of a sentence; nothing when the line is another one.
std::optional<QStringList> PartsOf(QStringView line, QStringView sentence) {
  const QList<QStringView> fixed = sentence.split(u'@');
  if (!line.startsWith(fixed.front())) return std::nullopt;
  line = line.sliced(fixed.front().size());
  QStringList parts;
  for (qsizetype i = 1; i < fixed.size(); ++i) {
    const bool last = i + 1 == fixed.size();
    // The last fixed text is the line's end, wherever else it may stand.
    const qsizetype place = last ? line.size() - fixed[i].size() : line.indexOf(fixed[i]);
    if (place < 0 || !line.sliced(place).startsWith(fixed[i])) return std::nullopt;
    parts.append(line.first(place).toString());
    line = line.sliced(place + fixed[i].size());
  }
  if (!line.isEmpty()) return std::nullopt;
  return parts;
}

QString InGerman(const QString& line) {
  for (const Sentence& sentence : kSentences) {
    const std::optional<QStringList> parts = PartsOf(line, QStringView(sentence.Kept));
    if (!parts) continue;
    const QList<QStringView> fixed = QStringView(sentence.German).split(u'@');
    QString german = fixed.front().toString();
    for (qsizetype i = 1; i < fixed.size(); ++i) german.append(parts->at(i - 1)).append(fixed[i]);
    return german;
  }
  return line;
}

}  // namespace

QString ShownDetails(const QString& text) {
  if (TextLanguage() != kLanguageGerman) return text;
  QStringList lines = text.split(u'\n');
  for (QString& line : lines) line = InGerman(line);
  return lines.join(u'\n');
}

}  // namespace tessmar
