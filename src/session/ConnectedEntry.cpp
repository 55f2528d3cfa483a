#include "session/ConnectedEntry.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <vector>

#include "base/Blanks.h"
#include "setup/SettingsChanges.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QByteArray Bytes(const ConfigImage& image) {
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

/// As SQL's hex() writes the bytes of a column.
QString Hex(const QByteArray& bytes) {
  return QString::fromLatin1(bytes.toHex().toUpper());
}

QByteArray JsonText(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString Iso(const QDateTime& utc) {
  return utc.toUTC().toString(u"yyyy-MM-ddTHH:mm:ss"_s) + u'Z';
}

QString NameOf(EventKind from) {
  if (from == EventKind::Programmed) return u"programmed"_s;
  return from == EventKind::Uploaded ? u"uploaded"_s : u"connected"_s;
}

QString ChangesText(const std::vector<SettingsChange>& changes, const KnownSettings& known) {
  const QString head = changes.size() == 1 ? u"1 setting differs from"_s
                                           : u"%1 settings differ from"_s.arg(changes.size());
  QStringList lines{head + u" how it was left (%1 %2)"_s.arg(NameOf(known.From), Iso(known.At))};
  lines.reserve(static_cast<qsizetype>(changes.size()) + 1);
  for (const SettingsChange& change : changes) {
    lines.append(ControlsToBlanks(change.Field) + u": "_s + ControlsToBlanks(change.After) +
                 u"; before: "_s + ControlsToBlanks(change.Before));
  }
  return lines.join(u'\n');
}

}  // namespace

LogbookEntry ConnectedEntry(const LinkState& link, const std::optional<ConfigImage>& found,
                            const std::optional<KnownSettings>& known) {
  QJsonObject state{{u"firmware"_s, link.FirmwareVersion},  {u"model"_s, link.LoggerModelCode},
                    {u"analog"_s, link.AnalogChannelCount}, {u"pulse"_s, link.PulseChannelCount},
                    {u"records"_s, link.RecordCount},       {u"status"_s, link.LoggerStatusWord}};
  if (link.ClockOffsetS) state.insert(u"clock_offset_s"_s, *link.ClockOffsetS);
  LogbookEntry entry{.Kind = EventKind::Connected,
                     .Text = u"connected, %1 records"_s.arg(link.RecordCount)};
  if (found) {
    state.insert(u"settings"_s, Hex(Bytes(*found)));
    if (known && known->Image.size() == kConfigImageSize) {
      const std::vector<SettingsChange> changes =
          ChangesFound(link, ConfigImage(known->Image.begin(), known->Image.end()), *found);
      if (!changes.empty()) {
        entry.Text += u'\n' + ChangesText(changes, *known);
        entry.Before = JsonText({{u"known"_s, NameOf(known->From)},
                                 {u"at"_s, Iso(known->At)},
                                 {u"settings"_s, Hex(known->Image)}});
      }
    }
  }
  entry.After = JsonText(state);
  return entry;
}

}  // namespace tessmar
