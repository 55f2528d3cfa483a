#include "archive/SharingRig.h"

#include <QSqlRecord>
#include <array>

namespace tessmar::test {

using namespace Qt::StringLiterals;

QStringList SharingRig::RowsOf(QSqlQuery query) {
  QStringList rows;
  const int columns = query.record().count();
  while (query.next()) {
    QStringList row;
    for (int i = 0; i < columns; ++i) {
      const QVariant value = query.value(i);
      row.append(value.isNull()                        ? u"-"_s
                 : value.typeId() == QMetaType::Double ? QString::number(value.toDouble(), 'g', 17)
                                                       : value.toString());
    }
    rows.append(row.join(u'|'));
  }
  return rows;
}

namespace {

struct Pair {
  const char* Table;
  const char* Here;
  const char* There;
};

// What each table says, by uuids in place of numbers. Times as the archive writes them.
constexpr std::array kTables{
    Pair{"logger",
         "SELECT uuid, name, model, firmware, first_seen, last_seen FROM logger ORDER BY uuid",
         "SELECT uuid, name, model, firmware, to_char(first_seen AT TIME ZONE 'UTC',"
         " 'YYYY-MM-DD\"T\"HH24:MI:SS\"Z\"'), to_char(last_seen AT TIME ZONE 'UTC',"
         " 'YYYY-MM-DD\"T\"HH24:MI:SS\"Z\"') FROM tessmar.logger ORDER BY uuid::text"},
    Pair{
        "upload",
        "SELECT u.uuid, l.uuid, kind, started, ended, owner, state, promised, records,"
        " lower(hex(settings)), analog, pulse, clock_offset_s, source, program"
        " FROM upload u JOIN logger l ON l.id = logger_id WHERE state <> 'running' ORDER BY u.uuid",
        "SELECT u.uuid, l.uuid, kind, to_char(started AT TIME ZONE 'UTC',"
        " 'YYYY-MM-DD\"T\"HH24:MI:SS\"Z\"'), to_char(ended AT TIME ZONE 'UTC',"
        " 'YYYY-MM-DD\"T\"HH24:MI:SS\"Z\"'), owner, state, promised, records,"
        " encode(settings, 'hex'), analog, pulse, clock_offset_s, source, program"
        " FROM tessmar.upload u JOIN tessmar.logger l ON l.id = logger_id ORDER BY u.uuid::text"},
    Pair{"block",
         "SELECT u.uuid, number, lower(hex(bytes)) FROM block JOIN upload u ON u.id = upload_id"
         " WHERE state <> 'running' ORDER BY u.uuid, number",
         "SELECT u.uuid, number, encode(bytes, 'hex') FROM tessmar.block"
         " JOIN tessmar.upload u ON u.id = upload_id ORDER BY u.uuid::text, number"},
    Pair{"record",
         "SELECT u.uuid, number, stamp, logger_time, lower(hex(raw)), a1, a2, a3, a4, a5, a6, a7, "
         "a8,"
         " p1, p2 FROM record JOIN upload u ON u.id = upload_id ORDER BY u.uuid, number",
         "SELECT u.uuid, number, stamp, to_char(logger_time, 'YYYY-MM-DD\"T\"HH24:MI:SS'),"
         " encode(raw, 'hex'), a1, a2, a3, a4, a5, a6, a7, a8, p1, p2 FROM tessmar.record"
         " JOIN tessmar.upload u ON u.id = upload_id ORDER BY u.uuid::text, number"},
    Pair{"channel",
         "SELECT u.uuid, place, name, unit, decimals, method FROM channel"
         " JOIN upload u ON u.id = upload_id ORDER BY u.uuid, place",
         "SELECT u.uuid, place, name, unit, decimals, method FROM tessmar.channel"
         " JOIN tessmar.upload u ON u.id = upload_id ORDER BY u.uuid::text, place"},
    Pair{"event",
         "SELECT e.uuid, l.uuid, at, kind, text,"
         " CASE typeof(before) WHEN 'text' THEN before END, CASE typeof(after) WHEN 'text' THEN "
         "after "
         "END,"
         " CASE typeof(before) WHEN 'blob' THEN lower(hex(before)) END,"
         " CASE typeof(after) WHEN 'blob' THEN lower(hex(after)) END"
         " FROM event e JOIN logger l ON l.id = logger_id ORDER BY e.uuid",
         "SELECT e.uuid, l.uuid, to_char(at AT TIME ZONE 'UTC', 'YYYY-MM-DD\"T\"HH24:MI:SS\"Z\"'),"
         " kind, text, before, after, encode(before_image, 'hex'), encode(after_image, 'hex')"
         " FROM tessmar.event e JOIN tessmar.logger l ON l.id = logger_id ORDER BY e.uuid::text"},
};

}  // namespace

void SharingRig::ExpectTheSameEverywhere(int laptop) {
  for (const Pair& table : kTables) {
    const QStringList here = Here(laptop, QString::fromLatin1(table.Here));
    const QStringList there = There(QString::fromLatin1(table.There));
    ASSERT_EQ(here.size(), there.size()) << table.Table;
    for (qsizetype i = 0; i < here.size(); ++i)
      ASSERT_EQ(here[i].toStdString(), there[i].toStdString()) << table.Table << ' ' << i;
  }
}

qint64 SharingRig::FillLaptop(int laptop, const QString& name, int records) {
  Store& store = Laptop(laptop);
  Transaction transaction(store);
  const qint64 logger = store.SeeLogger(name, 220, 52, Hour(1));
  const qint64 upload = AddUpload(store, logger, Hour(2), {}, u"COM5 \"a\\b\" {c,d} Straße"_s);
  store.Run(u"UPDATE upload SET records = ?, analog = 8, pulse = 2 WHERE id = ?"_s,
            {records, upload});
  QSqlQuery insert = store.Prepare(
      u"INSERT INTO record VALUES (?, ?, ?, ?, ?, ?, ?, ?, NULL, ?, ?, ?, ?, ?, ?)"_s);
  for (int i = 1; i <= records; ++i) {
    // Every thirteenth was cut off by its block, every seventh has a value less.
    const bool cut = i % 13 == 0;
    insert.bindValue(0, upload);
    insert.bindValue(1, i);
    insert.bindValue(2, cut ? QVariant() : QVariant(4294967295LL - i));
    insert.bindValue(3, cut ? QVariant()
                            : QVariant(QDateTime(QDate(2026, 3, 3), QTime(0, 0), Qt::UTC)
                                           .addSecs(i * 900LL)
                                           .toString(u"yyyy-MM-ddTHH:mm:ss"_s)));
    insert.bindValue(4, cut ? QByteArray("") : QByteArray::number(i).rightJustified(20, '\0'));
    for (int place = 0; place < 9; ++place)
      insert.bindValue(5 + place, i % 7 == place ? QVariant() : QVariant(i / 3.0 - place * 1e-7));
    Store::Execute(insert);
  }
  for (int i = 1; i <= 30; ++i)
    store.Run(u"INSERT INTO block VALUES (?, ?, ?)"_s,
              {upload, i, QByteArray(241, static_cast<char>(i * 8))});
  store.Run(u"INSERT INTO channel VALUES (?, 'a1', 'Sauerstoff', '', 2, NULL)"_s, {upload});
  store.Run(
      u"INSERT INTO channel VALUES (?, 'a3', 'it''s {\"', 'µS/cm', 0, 'from a1'), "
      u"(?, 'p1', 'Rain', 'mm', 6, NULL)"_s,
      {upload, upload});
  const auto note = [&](EventKind kind, const QString& text, const QByteArray& before,
                        const QByteArray& after) {
    store.AddEvent({.Uuid = QUuid::createUuid().toString(QUuid::WithoutBraces),
                    .LoggerId = logger,
                    .At = Hour(2),
                    .Entry = {.Kind = kind, .Text = text, .Before = before, .After = after}});
  };
  note(EventKind::Connected, {}, {}, R"({"offset":12,"name":"a \"b\" {c}"})");
  note(EventKind::Calibrated, u"by ?"_s, ImageOf(u"old"_s), ImageOf(u"new"_s));
  note(EventKind::Cleared, u"it's, \\ {} \"done\" Ä"_s, {}, {});
  transaction.Commit();
  return upload;
}

}  // namespace tessmar::test
