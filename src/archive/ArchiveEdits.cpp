#include "archive/ArchiveEdits.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QUuid>
#include <algorithm>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString NewUuid() {
  return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QByteArray Json(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

LoggerRow Existing(const Store& store, qint64 id) {
  const std::optional<LoggerRow> logger = store.Logger(id);
  if (!logger) throw RangeFault("the archive has no such logger");
  return *logger;
}

void Note(Store& store, qint64 logger, const QDateTime& now, const LogbookEntry& entry) {
  store.AddEvent({.Uuid = NewUuid(), .LoggerId = logger, .At = now, .Entry = entry});
}

// Its rows as an array of their uuids, by logger.
QHash<qint64, QJsonArray> UuidsByLogger(const Store& store, const std::vector<qint64>& uploads) {
  QHash<qint64, QJsonArray> uuids;
  for (const qint64 upload : uploads) {
    QSqlQuery query = store.Run(u"SELECT logger_id, uuid FROM upload WHERE id = ?"_s, {upload});
    if (query.next()) uuids[query.value(0).toLongLong()].append(query.value(1).toString());
  }
  return uuids;
}

}  // namespace

void RenameLogger(Store& store, qint64 logger, const QString& name, const QDateTime& now) {
  Transaction transaction(store);
  const LoggerRow before = Existing(store, logger);
  if (before.Name == name) return;
  store.Run(u"UPDATE logger SET name = ? WHERE id = ?"_s, {name, logger});
  Note(store, logger, now,
       {.Kind = EventKind::Renamed,
        .Text = u"%1 -> %2"_s.arg(before.Name, name),
        .Before = Json({{u"name"_s, before.Name}}),
        .After = Json({{u"name"_s, name}})});
  transaction.Commit();
}

void MergeLoggers(Store& store, qint64 from, qint64 into, const QDateTime& now) {
  if (from == into) return;
  Transaction transaction(store);
  const LoggerRow first = Existing(store, from);
  const LoggerRow second = Existing(store, into);
  QJsonArray uploads;
  QSqlQuery query = store.Run(u"SELECT uuid FROM upload WHERE logger_id = ?"_s, {from});
  while (query.next()) uploads.append(query.value(0).toString());
  store.Run(u"UPDATE event SET logger_id = ? WHERE logger_id = ? AND kind <> 'merged'"_s,
            {into, from});
  store.Run(u"UPDATE upload SET logger_id = ? WHERE logger_id = ?"_s, {into, from});
  store.Run(
      u"UPDATE logger SET first_seen = min(first_seen, ?), last_seen = max(last_seen, ?)"
      " WHERE id = ?"_s,
      {UtcText(first.FirstSeen), UtcText(first.LastSeen), into});
  // The second one notes it too, and by that leads nowhere else, wherever it led before.
  for (const qint64 logger : {from, into}) {
    Note(store, logger, now,
         {.Kind = EventKind::Merged,
          .Text = u"%1 -> %2"_s.arg(first.Name, second.Name),
          .Before = Json({{u"from"_s, first.Uuid}, {u"uploads"_s, uploads}}),
          .After = Json({{u"into"_s, second.Uuid}})});
  }
  transaction.Commit();
}

qint64 SplitLogger(Store& store, const std::vector<qint64>& uploads, const QString& name,
                   const QDateTime& now) {
  Transaction transaction(store);
  const QHash<qint64, QJsonArray> uuids = UuidsByLogger(store, uploads);
  if (uuids.isEmpty()) throw RangeFault("there is nothing to split off");
  const LoggerRow source = Existing(store, uuids.begin().key());
  const QString uuid = NewUuid();
  QSqlQuery query = store.Run(
      u"INSERT INTO logger (uuid, name, model, firmware, first_seen, last_seen)"
      " VALUES (?, ?, ?, ?, ?, ?)"_s,
      {uuid, name, source.Model ? QVariant(*source.Model) : QVariant(),
       source.Firmware ? QVariant(*source.Firmware) : QVariant(), UtcText(source.FirstSeen),
       UtcText(source.LastSeen)});
  const qint64 logger = query.lastInsertId().toLongLong();
  for (const qint64 upload : uploads)
    store.Run(u"UPDATE upload SET logger_id = ? WHERE id = ?"_s, {logger, upload});
  for (auto it = uuids.begin(); it != uuids.end(); ++it) {
    Note(store, it.key(), now,
         {.Kind = EventKind::Split,
          .Text = u"%1 -> %2"_s.arg(Existing(store, it.key()).Name, name),
          .Before = Json({{u"uploads"_s, it.value()}}),
          .After = Json({{u"into"_s, uuid}, {u"name"_s, name}})});
  }
  transaction.Commit();
  return logger;
}

void PutIntoBin(Store& store, const std::vector<qint64>& uploads, const QDateTime& now) {
  Transaction transaction(store);
  for (const qint64 upload : uploads) {
    // One that is being written cannot be deleted.
    store.Run(
        u"INSERT OR IGNORE INTO bin (upload_id, deleted)"
        " SELECT id, ? FROM upload WHERE id = ? AND state <> 'running'"_s,
        {UtcText(now), upload});
  }
  transaction.Commit();
}

void TakeFromBin(Store& store, const std::vector<qint64>& uploads) {
  Transaction transaction(store);
  for (const qint64 upload : uploads) store.Run(u"DELETE FROM bin WHERE upload_id = ?"_s, {upload});
  transaction.Commit();
}

void EmptyBin(Store& store, const std::vector<qint64>& uploads) {
  Transaction transaction(store);
  for (const qint64 upload : uploads) {
    store.Run(u"DELETE FROM upload WHERE id = ? AND id IN (SELECT upload_id FROM bin)"_s, {upload});
  }
  transaction.Commit();
}

std::vector<UploadRow> UploadsInBin(const Store& store) {
  std::vector<UploadRow> uploads;
  QSqlQuery query = store.Run(
      u"SELECT bin.upload_id FROM bin JOIN upload ON upload.id = bin.upload_id"
      " ORDER BY upload.started DESC, upload.id DESC"_s);
  while (query.next()) {
    if (std::optional<UploadRow> upload = store.Upload(query.value(0).toLongLong())) {
      upload->Settings.clear();
      uploads.push_back(*upload);
    }
  }
  return uploads;
}

std::vector<LoggerRow> ShownLoggers(const Store& store) {
  QHash<qint64, QString> into;  // The newest merging decides.
  QSqlQuery query =
      store.Run(u"SELECT logger_id, after FROM event WHERE kind = 'merged' ORDER BY at, id"_s);
  while (query.next()) {
    const QJsonObject after = QJsonDocument::fromJson(query.value(1).toString().toUtf8()).object();
    into[query.value(0).toLongLong()] = after.value("into"_L1).toString();
  }
  QSet<qint64> used;
  query = store.Run(u"SELECT DISTINCT logger_id FROM upload"_s);
  while (query.next()) used.insert(query.value(0).toLongLong());
  std::vector<LoggerRow> loggers = store.Loggers();
  std::erase_if(loggers, [&](const LoggerRow& logger) {
    return !used.contains(logger.Id) && into.contains(logger.Id) &&
           into.value(logger.Id) != logger.Uuid;
  });
  return loggers;
}

}  // namespace tessmar
