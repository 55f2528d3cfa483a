// The rows of the archive's tables, to and from the file.

#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include "archive/Store.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const auto kLoggerColumns = u"id, uuid, name, model, firmware, first_seen, last_seen"_s;
const auto kUploadColumns =
    u"id, uuid, logger_id, kind, started, ended, owner, state, promised, records, analog, pulse,"
    " clock_offset_s, source, program"_s;
/// How many mergings are followed; more is a circle.
constexpr int kMostMergings = 100;

std::optional<int> OptionalInt(const QVariant& value) {
  if (value.isNull()) return std::nullopt;
  return value.toInt();
}

QVariant ToVariant(std::optional<int> value) {
  return value ? QVariant(*value) : QVariant();
}

QVariant ToVariant(const QString& text) {
  return text.isEmpty() ? QVariant() : QVariant(text);
}

LoggerRow LoggerOf(const QSqlQuery& query) {
  return {.Id = query.value(0).toLongLong(),
          .Uuid = query.value(1).toString(),
          .Name = query.value(2).toString(),
          .Model = OptionalInt(query.value(3)),
          .Firmware = OptionalInt(query.value(4)),
          .FirstSeen = UtcTime(query.value(5).toString()),
          .LastSeen = UtcTime(query.value(6).toString())};
}

UploadRow UploadOf(const QSqlQuery& query) {
  return {.Id = query.value(0).toLongLong(),
          .Uuid = query.value(1).toString(),
          .LoggerId = query.value(2).toLongLong(),
          .Kind = UploadKindOf(query.value(3).toString()).value_or(UploadKind::History),
          .Started = UtcTime(query.value(4).toString()),
          .Ended = UtcTime(query.value(5).toString()),
          .Owner = query.value(6).toString(),
          .State = UploadStateOf(query.value(7).toString()).value_or(UploadState::Failed),
          .Promised = query.value(8).toInt(),
          .Records = query.value(9).toInt(),
          .Analog = query.value(10).toInt(),
          .Pulse = query.value(11).toInt(),
          .ClockOffsetS = OptionalInt(query.value(12)),
          .Source = query.value(13).toString(),
          .Program = query.value(14).toString()};
}

RecordRow RecordOf(const QSqlQuery& query) {
  RecordRow record;
  record.Number = query.value(0).toInt();
  const QVariant stamp = query.value(1);
  if (!stamp.isNull()) record.Stamp = static_cast<std::uint32_t>(stamp.toLongLong());
  record.LoggerTime = query.value(2).toString();
  record.Raw = query.value(3).toByteArray();
  for (int place = 0; place < kPlaces; ++place) {
    const QVariant value = query.value(4 + place);
    if (!value.isNull()) record.Values[static_cast<std::size_t>(place)] = value.toDouble();
  }
  return record;
}

int PlaceOf(const QString& name) {
  int place = 0;
  while (place < kPlaces - 1 && PlaceName(place) != name) ++place;
  return place;
}

std::optional<LoggerRow> LoggerByUuid(const Store& store, const QString& uuid) {
  QSqlQuery query =
      store.Run(u"SELECT %1 FROM logger WHERE uuid = ?"_s.arg(kLoggerColumns), {uuid});
  if (!query.next()) return std::nullopt;
  return LoggerOf(query);
}

// Where a logger's uploads go since somebody merged it into another: to the end of the chain.
LoggerRow Followed(const Store& store, LoggerRow logger) {
  for (int i = 0; i < kMostMergings; ++i) {
    QSqlQuery query = store.Run(
        u"SELECT after FROM event WHERE logger_id = ? AND kind = 'merged' ORDER BY at DESC, id DESC"_s,
        {logger.Id});
    if (!query.next()) return logger;
    const QString into = QJsonDocument::fromJson(query.value(0).toString().toUtf8())
                             .object()
                             .value("into"_L1)
                             .toString();
    const std::optional<LoggerRow> next = LoggerByUuid(store, into);
    if (!next || next->Id == logger.Id) return logger;
    logger = *next;
  }
  return logger;
}

}  // namespace

std::vector<LoggerRow> Store::Loggers() const {
  std::vector<LoggerRow> loggers;
  QSqlQuery query =
      Run(u"SELECT %1 FROM logger ORDER BY name COLLATE NOCASE, id"_s.arg(kLoggerColumns));
  while (query.next()) loggers.push_back(LoggerOf(query));
  return loggers;
}

std::optional<LoggerRow> Store::Logger(qint64 id) const {
  QSqlQuery query = Run(u"SELECT %1 FROM logger WHERE id = ?"_s.arg(kLoggerColumns), {id});
  if (!query.next()) return std::nullopt;
  return LoggerOf(query);
}

std::optional<LoggerRow> Store::LoggerFor(const QString& name, std::optional<int> model) const {
  std::optional<LoggerRow> logger = LoggerByUuid(*this, LoggerUuid(name, model));
  if (!logger && !model) {
    QSqlQuery query = Run(
        u"SELECT %1 FROM logger WHERE name = ? ORDER BY last_seen DESC, id"_s.arg(kLoggerColumns),
        {name});
    if (query.next()) logger = LoggerOf(query);
  }
  if (logger) logger = Followed(*this, *logger);
  return logger;
}

std::vector<UploadRow> Store::Uploads(qint64 loggerId) const {
  std::vector<UploadRow> uploads;
  QSqlQuery query =
      Run(u"SELECT %1 FROM upload WHERE (? = 0 OR logger_id = ?)"
          " AND id NOT IN (SELECT upload_id FROM bin) ORDER BY started DESC, id DESC"_s.arg(
              kUploadColumns),
          {loggerId, loggerId});
  while (query.next()) uploads.push_back(UploadOf(query));
  return uploads;
}

std::optional<UploadRow> Store::Upload(qint64 id) const {
  QSqlQuery query =
      Run(u"SELECT %1, settings FROM upload WHERE id = ?"_s.arg(kUploadColumns), {id});
  if (!query.next()) return std::nullopt;
  UploadRow upload = UploadOf(query);
  upload.Settings = query.value(15).toByteArray();
  return upload;
}

void Store::ForEachBlock(qint64 uploadId,
                         const std::function<void(std::span<const std::uint8_t>)>& take) const {
  QSqlQuery query =
      Run(u"SELECT bytes FROM block WHERE upload_id = ? ORDER BY number"_s, {uploadId});
  while (query.next()) {
    const QByteArray bytes = query.value(0).toByteArray();
    take({reinterpret_cast<const std::uint8_t*>(bytes.constData()),
          static_cast<std::size_t>(bytes.size())});
  }
}

void Store::ForEachRecord(qint64 uploadId,
                          const std::function<void(const RecordRow&)>& take) const {
  QSqlQuery query = Run(
      u"SELECT number, stamp, logger_time, raw, a1, a2, a3, a4, a5, a6, a7, a8, p1, p2 FROM record"
      " WHERE upload_id = ? ORDER BY number"_s,
      {uploadId});
  while (query.next()) take(RecordOf(query));
}

void Store::ForEachStored(qint64 uploadId,
                          const std::function<void(std::optional<std::uint32_t> stamp,
                                                   const QByteArray& raw)>& take) const {
  QSqlQuery query =
      Run(u"SELECT stamp, raw FROM record WHERE upload_id = ? ORDER BY number"_s, {uploadId});
  while (query.next()) {
    const QVariant stamp = query.value(0);
    take(stamp.isNull() ? std::nullopt
                        : std::optional(static_cast<std::uint32_t>(stamp.toLongLong())),
         query.value(1).toByteArray());
  }
}

std::vector<ChannelRow> Store::Channels(qint64 uploadId) const {
  std::vector<ChannelRow> channels;
  QSqlQuery query =
      Run(u"SELECT place, name, unit, decimals, method FROM channel WHERE upload_id = ? ORDER BY"
          " place"_s,
          {uploadId});
  while (query.next()) {
    channels.push_back({.Place = PlaceOf(query.value(0).toString()),
                        .Name = query.value(1).toString(),
                        .Unit = query.value(2).toString(),
                        .Decimals = query.value(3).toInt(),
                        .Method = query.value(4).toString()});
  }
  return channels;
}

std::vector<EventRow> Store::Events(qint64 loggerId) const {
  std::vector<EventRow> events;
  QSqlQuery query =
      Run(u"SELECT id, uuid, logger_id, at, kind, text, before, after FROM event"
          " WHERE (? = 0 OR logger_id = ?) ORDER BY at DESC, id DESC"_s,
          {loggerId, loggerId});
  while (query.next()) {
    events.push_back(
        {.Id = query.value(0).toLongLong(),
         .Uuid = query.value(1).toString(),
         .LoggerId = query.value(2).toLongLong(),
         .At = UtcTime(query.value(3).toString()),
         .Entry = {.Kind = EventKindOf(query.value(4).toString()).value_or(EventKind::Connected),
                   .Text = query.value(5).toString(),
                   .Before = query.value(6).toByteArray(),
                   .After = query.value(7).toByteArray()}});
  }
  return events;
}

qint64 Store::SeeLogger(const QString& name, std::optional<int> model, std::optional<int> firmware,
                        const QDateTime& at) {
  const QString now = UtcText(at);
  if (const std::optional<LoggerRow> known = LoggerFor(name, model)) {
    Run(u"UPDATE logger SET last_seen = max(last_seen, ?), firmware = coalesce(?, firmware)"
        " WHERE id = ?"_s,
        {now, ToVariant(firmware), known->Id});
    return known->Id;
  }
  QSqlQuery query =
      Run(u"INSERT INTO logger (uuid, name, model, firmware, first_seen, last_seen)"
          " VALUES (?, ?, ?, ?, ?, ?)"_s,
          {LoggerUuid(name, model), name.isNull() ? u""_s : name, ToVariant(model),
           ToVariant(firmware), now, now});
  return query.lastInsertId().toLongLong();
}

qint64 Store::AddUpload(const UploadRow& upload) {
  QSqlQuery query =
      Run(u"INSERT INTO upload (uuid, logger_id, kind, started, ended, owner, state, promised,"
          " records, settings, analog, pulse, clock_offset_s, source, program)"
          " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s,
          {upload.Uuid, upload.LoggerId, NameOf(upload.Kind), UtcText(upload.Started),
           ToVariant(UtcText(upload.Ended)), ToVariant(upload.Owner), NameOf(upload.State),
           upload.Promised, upload.Records, upload.Settings, upload.Analog, upload.Pulse,
           ToVariant(upload.ClockOffsetS), ToVariant(upload.Source), ToVariant(upload.Program)});
  return query.lastInsertId().toLongLong();
}

void Store::AddEvent(const EventRow& event) {
  // Images are bytes, everything else is text.
  const bool images =
      event.Entry.Kind == EventKind::Programmed || event.Entry.Kind == EventKind::Calibrated;
  const auto value = [images](const QByteArray& bytes) {
    if (bytes.isEmpty()) return QVariant();
    return images ? QVariant(bytes) : QVariant(QString::fromUtf8(bytes));
  };
  Run(u"INSERT INTO event (uuid, logger_id, at, kind, text, before, after)"
      " VALUES (?, ?, ?, ?, ?, ?, ?) ON CONFLICT (uuid) DO NOTHING"_s,
      {event.Uuid, event.LoggerId, UtcText(event.At), NameOf(event.Entry.Kind),
       ToVariant(event.Entry.Text), value(event.Entry.Before), value(event.Entry.After)});
}

}  // namespace tessmar
