#include "archive/ServerSchema.h"

#include <array>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Keeps two computers from making the same tables; "TSSM".
constexpr qint64 kLock = 0x5453534D;

// Records are written in the transaction of their upload and by nobody else, so a reference of each
// of millions of rows would only be checked for nothing; see docs/decisions/sharing.md.
const QStringList kFirstStep{
    u"CREATE TABLE tessmar.version ("
    " number integer PRIMARY KEY,"
    " at timestamptz NOT NULL DEFAULT now(),"
    " program text)"_s,
    u"CREATE TABLE tessmar.logger ("
    " id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,"
    " uuid uuid NOT NULL UNIQUE,"
    " name text NOT NULL,"
    " model integer,"
    " firmware integer,"
    " first_seen timestamptz NOT NULL,"
    " last_seen timestamptz NOT NULL,"
    " name_at timestamptz)"_s,
    u"CREATE TABLE tessmar.upload ("
    " id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,"
    " uuid uuid NOT NULL UNIQUE,"
    " logger_id bigint NOT NULL REFERENCES tessmar.logger (id),"
    " kind text NOT NULL CHECK (kind IN ('history', 'image', 'live')),"
    " started timestamptz NOT NULL,"
    " ended timestamptz,"
    " owner text,"
    " state text NOT NULL CHECK (state IN"
    "  ('complete', 'full', 'cancelled', 'failed', 'interrupted')),"
    " promised integer,"
    " records integer NOT NULL DEFAULT 0,"
    " settings bytea,"
    " analog smallint NOT NULL CHECK (analog BETWEEN 0 AND 8),"
    " pulse smallint NOT NULL CHECK (pulse BETWEEN 0 AND 2),"
    " clock_offset_s integer,"
    " source text,"
    " program text,"
    " logger_at timestamptz,"
    " pushed timestamptz NOT NULL DEFAULT now())"_s,
    u"CREATE INDEX upload_of_logger ON tessmar.upload (logger_id, started)"_s,
    u"CREATE INDEX upload_by_start ON tessmar.upload (started)"_s,
    u"CREATE TABLE tessmar.block ("
    " upload_id bigint NOT NULL,"
    " number integer NOT NULL,"
    " bytes bytea NOT NULL,"
    " PRIMARY KEY (upload_id, number))"_s,
    u"CREATE TABLE tessmar.record ("
    " upload_id bigint NOT NULL,"
    " number integer NOT NULL,"
    " stamp bigint,"
    " logger_time timestamp,"
    " raw bytea NOT NULL,"
    " a1 float8, a2 float8, a3 float8, a4 float8, a5 float8, a6 float8, a7 float8, a8 float8,"
    " p1 float8, p2 float8,"
    " PRIMARY KEY (upload_id, number))"_s,
    u"CREATE TABLE tessmar.channel ("
    " upload_id bigint NOT NULL REFERENCES tessmar.upload (id) ON DELETE CASCADE,"
    " place text NOT NULL CHECK (place IN"
    "  ('a1', 'a2', 'a3', 'a4', 'a5', 'a6', 'a7', 'a8', 'p1', 'p2')),"
    " name text NOT NULL,"
    " unit text NOT NULL,"
    " decimals integer NOT NULL,"
    " method text,"
    " PRIMARY KEY (upload_id, place))"_s,
    u"CREATE TABLE tessmar.event ("
    " id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,"
    " uuid uuid NOT NULL UNIQUE,"
    " logger_id bigint NOT NULL REFERENCES tessmar.logger (id),"
    " at timestamptz NOT NULL,"
    " kind text NOT NULL CHECK (kind IN ('connected', 'synced', 'cleared', 'programmed',"
    "  'initialized', 'calibrated', 'reset', 'uploaded', 'renamed', 'merged', 'split')),"
    " text text,"
    " before text,"
    " after text,"
    " before_image bytea,"
    " after_image bytea,"
    " into_logger uuid,"
    " uploads uuid[])"_s,
    u"CREATE INDEX event_of_logger ON tessmar.event (logger_id, at)"_s,
    u"CREATE INDEX event_moving ON tessmar.event (at) WHERE kind IN ('merged', 'split')"_s};

// What the administrator deletes takes its rows along; and every record once, however many uploads
// have it. All of reading's columns that a question is narrowed by are in both windows, so that the
// server looks at those rows only.
const QStringList kSecondStep{
    u"CREATE FUNCTION tessmar.forget_upload() RETURNS trigger LANGUAGE plpgsql AS $$"
    " BEGIN"
    " DELETE FROM tessmar.record WHERE upload_id = OLD.id;"
    " DELETE FROM tessmar.block WHERE upload_id = OLD.id;"
    " RETURN OLD;"
    " END $$"_s,
    u"CREATE TRIGGER forget_upload AFTER DELETE ON tessmar.upload FOR EACH ROW"
    " EXECUTE FUNCTION tessmar.forget_upload()"_s,
    u"CREATE VIEW tessmar.reading AS"
    " SELECT logger_id, upload_id, number, stamp, logger_time, raw,"
    "  a1, a2, a3, a4, a5, a6, a7, a8, p1, p2"
    " FROM (SELECT c.*, row_number() OVER"
    "   (PARTITION BY logger_id, logger_time, stamp, raw, copy ORDER BY started, upload_id) AS nth"
    "  FROM (SELECT u.logger_id, u.started, r.*, row_number() OVER"
    "    (PARTITION BY u.logger_id, r.logger_time, r.upload_id, r.stamp, r.raw ORDER BY r.number)"
    "    AS copy"
    "   FROM tessmar.upload u JOIN tessmar.record r ON r.upload_id = u.id"
    "   WHERE u.kind <> 'live') c) d"
    " WHERE nth = 1"_s,
    u"CREATE FUNCTION tessmar.value_at(r tessmar.reading, place text) RETURNS float8"
    " LANGUAGE sql IMMUTABLE AS $$ SELECT CASE place"
    " WHEN 'a1' THEN r.a1 WHEN 'a2' THEN r.a2 WHEN 'a3' THEN r.a3 WHEN 'a4' THEN r.a4"
    " WHEN 'a5' THEN r.a5 WHEN 'a6' THEN r.a6 WHEN 'a7' THEN r.a7 WHEN 'a8' THEN r.a8"
    " WHEN 'p1' THEN r.p1 WHEN 'p2' THEN r.p2 END $$"_s};

constexpr std::array kSteps{&kFirstStep, &kSecondStep};

bool Holds(const Server& server, const QString& question) {
  QSqlQuery query = server.Run(question);
  return query.next() && query.value(0).toBool();
}

// Asks the tables of tables, which always tell the present state; to_regclass may tell what the
// connection saw last.
const auto kTablesThere =
    u"SELECT EXISTS (SELECT FROM pg_class JOIN pg_namespace n ON n.oid = relnamespace"
    " WHERE nspname = 'tessmar'%1)"_s;

// The version of the tables that are there; 0 without any.
int VersionThere(const Server& server) {
  if (!Holds(server, kTablesThere.arg(u" AND relname = 'version'"_s))) return 0;
  QSqlQuery query = server.Run(u"SELECT max(number) FROM tessmar.version"_s);
  return query.next() ? query.value(0).toInt() : 0;
}

// With the lock held, so that the tables are not another computer's that is just making them.
void MakeSchema(const Server& server) {
  if (!Holds(server, u"SELECT EXISTS (SELECT FROM pg_namespace WHERE nspname = 'tessmar')"_s)) {
    server.Run(u"CREATE SCHEMA tessmar"_s);
  } else if (Holds(server, kTablesThere.arg(QString()))) {
    throw ServerFault(ServerTrouble::Foreign, u"the schema tessmar has other tables"_s);
  }
}

void RunSteps(const Server& server, const QString& program) {
  ServerTransaction transaction(server);
  server.Run(u"SELECT pg_advisory_xact_lock(?)"_s, {kLock});
  // Another computer may have done it meanwhile.
  int version = VersionThere(server);
  if (version == 0) MakeSchema(server);
  while (version < ServerSchemaVersion()) {
    ++version;
    for (const QString& statement : ServerUpgradeStep(version)) server.Run(statement);
    server.Run(u"INSERT INTO tessmar.version (number, program) VALUES (?, ?)"_s,
               {version, program});
  }
  transaction.Commit();
}

}  // namespace

int ServerSchemaVersion() {
  return static_cast<int>(kSteps.size());
}

const QStringList& ServerUpgradeStep(int version) {
  if (version < 1 || version > ServerSchemaVersion())
    throw RangeFault("the server's tables have no such version");
  return *kSteps[static_cast<std::size_t>(version - 1)];
}

void EnsureServerSchema(const Server& server, const QString& program) {
  const int version = VersionThere(server);
  if (version > ServerSchemaVersion())
    throw ServerFault(ServerTrouble::Newer, u"tables of version %1"_s.arg(version));
  if (version == ServerSchemaVersion()) return;
  try {
    Repeatedly([&] { RunSteps(server, program); });
  } catch (const ServerFault& fault) {
    if (fault.Trouble() != ServerTrouble::NoRights) throw;
    throw ServerFault(version == 0 ? ServerTrouble::NoTables : ServerTrouble::OldTables,
                      fault.Text());
  }
}

}  // namespace tessmar
