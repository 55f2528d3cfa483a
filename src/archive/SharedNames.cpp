#include "archive/SharedNames.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <algorithm>

#include "archive/ServerRows.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::size_t kRowsAtOnce = 1000;
/// Keeps two computers from moving the same rows at once; "TSSN".
constexpr qint64 kLock = 0x5453534E;
/// How many mergings are followed; more is a circle.
constexpr int kMostMergings = 100;

QJsonObject ObjectOf(const QByteArray& json) {
  return QJsonDocument::fromJson(json).object();
}

// When each logger was given the name that it has; none for those that have their own still. A
// logger has the entries of those that were merged into it too, and they had other names.
QHash<qint64, QString> NamedAt(const std::vector<LoggerRow>& loggers,
                               const std::vector<EventRow>& events) {
  QHash<qint64, QString> names;
  for (const LoggerRow& logger : loggers) names[logger.Id] = logger.Name;
  QHash<qint64, QString> times;
  for (const EventRow& event : events) {
    if (event.Entry.Kind != EventKind::Renamed) continue;
    const QString name = ObjectOf(event.Entry.After).value("name"_L1).toString();
    if (names.value(event.LoggerId) != name) continue;
    QString& time = times[event.LoggerId];
    time = std::max(time, UtcText(event.At));
  }
  return times;
}

void Add(ServerArray& column, std::optional<int> number) {
  if (number) {
    column.AddNumber(*number);
  } else {
    column.AddNull();
  }
}

QString TextOrNull(const QString& text) {
  return text.isEmpty() ? QString() : text;
}

/// Columns of the logbook.
struct EventColumns {
  ServerArray Uuid, Logger, At, Kind, Text, Before, After, BeforeImage, AfterImage, Into, Uploads;

  void Add(const EventRow& event, const QString& logger);
};

// A uuid of an entry's JSON; null for what is none.
QString UuidOf(const QJsonValue& value) {
  const QUuid uuid(value.toString());
  return uuid.isNull() ? QString() : uuid.toString(QUuid::WithoutBraces);
}

void EventColumns::Add(const EventRow& event, const QString& logger) {
  const LogbookEntry& entry = event.Entry;
  const bool images = entry.Kind == EventKind::Programmed || entry.Kind == EventKind::Calibrated;
  const bool moves = entry.Kind == EventKind::Merged || entry.Kind == EventKind::Split;
  Uuid.AddText(event.Uuid);
  Logger.AddText(logger);
  At.AddText(UtcText(event.At));
  Kind.AddText(NameOf(entry.Kind));
  Text.AddText(TextOrNull(entry.Text));
  const auto add = [images](ServerArray& text, ServerArray& image, const QByteArray& bytes) {
    if (images && !bytes.isEmpty()) {
      image.AddBytes(bytes);
    } else {
      image.AddNull();
    }
    text.AddText(images ? QString() : TextOrNull(QString::fromUtf8(bytes)));
  };
  add(Before, BeforeImage, entry.Before);
  add(After, AfterImage, entry.After);
  Into.AddText(moves ? UuidOf(ObjectOf(entry.After).value("into"_L1)) : QString());
  QStringList uploads;
  if (moves) {
    for (const auto& upload : ObjectOf(entry.Before).value("uploads"_L1).toArray()) {
      const QString uuid = UuidOf(upload);
      if (!uuid.isEmpty()) uploads.append(uuid);
    }
  }
  Uploads.AddText(uploads.isEmpty() ? QString() : u'{' + uploads.join(u',') + u'}');
}

int Send(const Server& server, const EventColumns& rows) {
  // The server knows when it is through: none goes twice, none is lost, one statement is whole.
  QSqlQuery made = server.Run(
      u"INSERT INTO tessmar.event (uuid, logger_id, at, kind, text, before, after, before_image,"
      " after_image, into_logger, uploads)"
      " SELECT e.uuid, logger.id, e.at, e.kind, e.text, e.before, e.after,"
      " decode(e.before_image, 'hex'), decode(e.after_image, 'hex'), e.into_logger,"
      " e.uploads::uuid[]"
      " FROM unnest(?::uuid[], ?::uuid[], ?::timestamptz[], ?::text[], ?::text[], ?::text[],"
      " ?::text[], ?::text[], ?::text[], ?::uuid[], ?::text[])"
      " AS e (uuid, logger, at, kind, text, before, after, before_image, after_image, into_logger,"
      " uploads)"
      " JOIN tessmar.logger ON logger.uuid = e.logger"
      " ON CONFLICT (uuid) DO NOTHING RETURNING 1"_s,
      {rows.Uuid.Text(), rows.Logger.Text(), rows.At.Text(), rows.Kind.Text(), rows.Text.Text(),
       rows.Before.Text(), rows.After.Text(), rows.BeforeImage.Text(), rows.AfterImage.Text(),
       rows.Into.Text(), rows.Uploads.Text()});
  return made.size();
}

// The newest merging of each logger says where its things belong.
const auto kNewestMergings =
    u"(SELECT DISTINCT ON (logger_id) logger_id, into_logger, at FROM tessmar.event"
    " WHERE kind = 'merged' AND into_logger IS NOT NULL ORDER BY logger_id, at DESC, uuid DESC)"_s;

// @param what  the table, called "moved", and what is set there.
int Follow(const Server& server, const QString& what, const QString& condition = {}) {
  return server
      .Run(
          u"UPDATE tessmar.%1 FROM %2 AS m JOIN tessmar.logger AS t ON t.uuid = m.into_logger"
          " WHERE moved.logger_id = m.logger_id AND t.id <> m.logger_id%3"_s.arg(
              what, kNewestMergings, condition))
      .numRowsAffected();
}

std::vector<EventRow> Missing(const Server& server, std::span<const EventRow> events) {
  ServerArray uuids;
  for (const EventRow& event : events) uuids.AddText(event.Uuid);
  QSqlQuery query = server.Run(
      u"SELECT number FROM unnest(?::uuid[]) WITH ORDINALITY AS e (uuid, number)"
      " WHERE NOT EXISTS (SELECT FROM tessmar.event WHERE event.uuid = e.uuid)"_s,
      {uuids.Text()});
  std::vector<EventRow> missing;
  while (query.next())
    missing.push_back(events[static_cast<std::size_t>(query.value(0).toLongLong() - 1)]);
  return missing;
}

}  // namespace

void PushLoggers(const Server& server, const std::vector<LoggerRow>& loggers,
                 const std::vector<EventRow>& events) {
  const QHash<qint64, QString> namedAt = NamedAt(loggers, events);
  for (std::size_t begin = 0; begin < loggers.size(); begin += kRowsAtOnce) {
    ServerArray uuid, name, model, firmware, first, last, at;
    for (std::size_t i = begin; i < std::min(begin + kRowsAtOnce, loggers.size()); ++i) {
      const LoggerRow& logger = loggers[i];
      uuid.AddText(logger.Uuid);
      name.AddText(logger.Name.isNull() ? u""_s : logger.Name);
      Add(model, logger.Model);
      Add(firmware, logger.Firmware);
      first.AddText(UtcText(logger.FirstSeen));
      last.AddText(UtcText(logger.LastSeen));
      at.AddText(TextOrNull(namedAt.value(logger.Id)));
    }
    // In the order of their uuids, so that no two computers wait for each other. Of two names that
    // were given in the same second the later in the alphabet stands, whoever comes first.
    server.Run(
        u"INSERT INTO tessmar.logger AS l"
        " (uuid, name, model, firmware, first_seen, last_seen, name_at)"
        " SELECT * FROM unnest(?::uuid[], ?::text[], ?::integer[], ?::integer[], ?::timestamptz[],"
        " ?::timestamptz[], ?::timestamptz[])"
        " AS e (uuid, name, model, firmware, first_seen, last_seen, name_at) ORDER BY uuid"
        " ON CONFLICT (uuid) DO UPDATE SET"
        " name = CASE WHEN (excluded.name_at, excluded.name) >"
        "  (coalesce(l.name_at, '-infinity'), l.name) THEN excluded.name ELSE l.name END,"
        " name_at = greatest(l.name_at, excluded.name_at),"
        " firmware = CASE WHEN excluded.last_seen > l.last_seen"
        "  THEN coalesce(excluded.firmware, l.firmware)"
        "  ELSE coalesce(l.firmware, excluded.firmware) END,"
        " first_seen = least(l.first_seen, excluded.first_seen),"
        " last_seen = greatest(l.last_seen, excluded.last_seen)"
        " WHERE (excluded.name_at, excluded.name) > (coalesce(l.name_at, '-infinity'), l.name)"
        " OR excluded.first_seen < l.first_seen OR excluded.last_seen > l.last_seen"
        " OR (l.firmware IS NULL AND excluded.firmware IS NOT NULL)"_s,
        {uuid.Text(), name.Text(), model.Text(), firmware.Text(), first.Text(), last.Text(),
         at.Text()});
  }
}

int PushEvents(const Server& server, const std::vector<LoggerRow>& loggers,
               std::span<const EventRow> events) {
  QHash<qint64, QString> uuids;
  for (const LoggerRow& logger : loggers) uuids[logger.Id] = logger.Uuid;
  const std::vector<EventRow> missing = Missing(server, events);
  if (missing.empty()) return 0;
  EventColumns rows;
  for (const EventRow& event : missing) rows.Add(event, uuids.value(event.LoggerId));
  const int made = Send(server, rows);
  if (!Missing(server, missing).empty())
    throw ServerFault(ServerTrouble::Refused, u"the logger of an entry is not there"_s);
  return made;
}

void SettleLoggers(const Server& server) {
  ServerTransaction transaction(server);
  server.Run(u"SELECT pg_advisory_xact_lock(?)"_s, {kLock});
  // Uploads that were moved by their names.
  server.Run(
      u"UPDATE tessmar.upload AS moved SET logger_id = m.into_id, logger_at = m.at"
      " FROM (SELECT DISTINCT ON (x.uuid) x.uuid, l.id AS into_id, e.at FROM tessmar.event AS e"
      "  CROSS JOIN LATERAL unnest(e.uploads) AS x (uuid)"
      "  JOIN tessmar.logger AS l ON l.uuid = e.into_logger WHERE e.kind IN ('merged', 'split')"
      "  ORDER BY x.uuid, e.at DESC, e.uuid DESC) AS m"
      " WHERE moved.uuid = m.uuid AND (moved.logger_at IS NULL OR moved.logger_at < m.at)"_s);
  // Everything of a logger that was merged into another, also what came later.
  for (int i = 0; i < kMostMergings; ++i) {
    const int uploads = Follow(server,
                               u"upload AS moved SET logger_id = t.id,"
                               " logger_at = greatest(moved.logger_at, m.at)"_s);
    // The mergings stay where they say what became of a logger.
    const int entries =
        Follow(server, u"event AS moved SET logger_id = t.id"_s, u" AND moved.kind <> 'merged'"_s);
    if (uploads + entries == 0) break;
  }
  transaction.Commit();
}

}  // namespace tessmar
