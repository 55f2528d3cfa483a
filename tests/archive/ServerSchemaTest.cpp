#include "archive/ServerSchema.h"

#include "archive/SharingRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ServerSchema : public SharingRig {
 protected:
  ServerTrouble Trouble(const QString& address = u"postgresql://"_s) {
    try {
      Push(1, {}, address);
    } catch (const ServerFault& fault) {
      return fault.Trouble();
    }
    ADD_FAILURE() << "nothing was refused";
    return ServerTrouble::Refused;
  }
  QStringList Things() const {
    return There(
        u"SELECT relname FROM pg_class JOIN pg_namespace n ON n.oid = relnamespace"
        " WHERE nspname = 'tessmar' AND relkind IN ('r', 'v') ORDER BY 1"_s);
  }
  // A role that may do nothing yet, as an address.
  QString Stranger() {
    Admin->Run(u"DROP OWNED BY stranger"_s);
    return u"postgresql://stranger@"_s;
  }
  void SetUp() override {
    SharingRig::SetUp();
    if (There(u"SELECT 1 FROM pg_roles WHERE rolname = 'stranger'"_s).isEmpty())
      Admin->Run(u"CREATE ROLE stranger LOGIN"_s);
  }
};

TEST_F(ServerSchema, IsMadeWhereThereIsNone) {
  Push(1);
  EXPECT_EQ(Things(), (QStringList{u"block"_s, u"channel"_s, u"event"_s, u"logger"_s, u"reading"_s,
                                   u"record"_s, u"upload"_s, u"version"_s}));
  EXPECT_EQ(There(u"SELECT number, program FROM tessmar.version ORDER BY 1"_s),
            (QStringList{u"1|test"_s, u"2|test"_s}));
}

TEST_F(ServerSchema, StepsAreNumberedFromOne) {
  EXPECT_EQ(ServerSchemaVersion(), 2);
  EXPECT_THROW(ServerUpgradeStep(0), RangeFault);
  EXPECT_THROW(ServerUpgradeStep(3), RangeFault);
}

TEST_F(ServerSchema, AnEmptySchemaOfTheAdministratorsIsFilled) {
  const QString stranger = Stranger();
  Admin->Run(u"CREATE SCHEMA tessmar AUTHORIZATION stranger"_s);
  Push(1, {}, stranger);
  EXPECT_EQ(Things().size(), 8);
}

// Tables of version 1 as that version left them, written here by hand.
TEST_F(ServerSchema, VersionOneIsUpgradedWithItsRows) {
  for (const char* statement :
       {"CREATE SCHEMA tessmar",
        "CREATE TABLE tessmar.version (number integer PRIMARY KEY, at timestamptz NOT NULL DEFAULT"
        " now(), program text)",
        "CREATE TABLE tessmar.logger (id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, uuid uuid"
        " NOT NULL UNIQUE, name text NOT NULL, model integer, firmware integer, first_seen"
        " timestamptz NOT NULL, last_seen timestamptz NOT NULL, name_at timestamptz)",
        "CREATE TABLE tessmar.upload (id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, uuid uuid"
        " NOT NULL UNIQUE, logger_id bigint NOT NULL REFERENCES tessmar.logger (id), kind text NOT"
        " NULL, started timestamptz NOT NULL, ended timestamptz, owner text, state text NOT NULL,"
        " promised integer, records integer NOT NULL DEFAULT 0, settings bytea, analog smallint NOT"
        " NULL, pulse smallint NOT NULL, clock_offset_s integer, source text, program text,"
        " logger_at timestamptz, pushed timestamptz NOT NULL DEFAULT now())",
        "CREATE TABLE tessmar.block (upload_id bigint NOT NULL, number integer NOT NULL, bytes"
        " bytea NOT NULL, PRIMARY KEY (upload_id, number))",
        "CREATE TABLE tessmar.record (upload_id bigint NOT NULL, number integer NOT NULL, stamp"
        " bigint, logger_time timestamp, raw bytea NOT NULL, a1 float8, a2 float8, a3 float8, a4"
        " float8, a5 float8, a6 float8, a7 float8, a8 float8, p1 float8, p2 float8, PRIMARY KEY"
        " (upload_id, number))",
        "CREATE TABLE tessmar.channel (upload_id bigint NOT NULL REFERENCES tessmar.upload (id) ON"
        " DELETE CASCADE, place text NOT NULL, name text NOT NULL, unit text NOT NULL, decimals"
        " integer NOT NULL, method text, PRIMARY KEY (upload_id, place))",
        "CREATE TABLE tessmar.event (id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, uuid uuid"
        " NOT NULL UNIQUE, logger_id bigint NOT NULL REFERENCES tessmar.logger (id), at timestamptz"
        " NOT NULL, kind text NOT NULL, text text, before text, after text, before_image bytea,"
        " after_image bytea, into_logger uuid, uploads uuid[])",
        "INSERT INTO tessmar.logger (uuid, name, first_seen, last_seen) VALUES"
        " ('5a1c4e9e-0c0a-4d6e-9b3c-0d9a3b1f2c3d', 'Pond 7', '2026-01-01', '2026-01-02')",
        "INSERT INTO tessmar.version (number, program) VALUES (1, 'old')"}) {
    Admin->Run(QString::fromLatin1(statement));
  }
  FillLaptop(1, u"Well 7"_s, 20);
  EXPECT_EQ(Push(1).Uploads, 1);
  EXPECT_EQ(There(u"SELECT max(number) FROM tessmar.version"_s), QStringList{u"2"_s});
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.reading"_s), QStringList{u"20"_s});
  EXPECT_EQ(There(u"SELECT name FROM tessmar.logger ORDER BY 1"_s),
            (QStringList{u"Pond 7"_s, u"Well 7"_s}));
}

TEST_F(ServerSchema, ALaterVersionIsLeftAlone) {
  FillLaptop(1, u"Pond 7"_s, 20);
  Admin->Run(u"CREATE SCHEMA tessmar"_s);
  Admin->Run(u"CREATE TABLE tessmar.version (number integer)"_s);
  Admin->Run(u"INSERT INTO tessmar.version VALUES (3)"_s);
  EXPECT_EQ(Trouble(), ServerTrouble::Newer);
  EXPECT_EQ(Things(), QStringList{u"version"_s});
}

TEST_F(ServerSchema, SomebodyElsesTablesAreLeftAlone) {
  Admin->Run(u"CREATE SCHEMA tessmar"_s);
  Admin->Run(u"CREATE TABLE tessmar.something (x integer)"_s);
  EXPECT_EQ(Trouble(), ServerTrouble::Foreign);
  EXPECT_EQ(Things(), QStringList{u"something"_s});
}

TEST_F(ServerSchema, ARoleThatMayNotMakeTablesIsTold) {
  EXPECT_EQ(Trouble(Stranger()), ServerTrouble::NoTables);
  EXPECT_EQ(There(u"SELECT 1 FROM pg_namespace WHERE nspname = 'tessmar'"_s), QStringList());
}

TEST_F(ServerSchema, ARoleThatMayNotUpgradeThemIsTold) {
  Push(1);
  Admin->Run(u"DROP VIEW tessmar.reading CASCADE"_s);
  Admin->Run(u"DROP FUNCTION tessmar.forget_upload CASCADE"_s);
  Admin->Run(u"DELETE FROM tessmar.version WHERE number = 2"_s);
  const QString stranger = Stranger();
  Admin->Run(u"GRANT USAGE ON SCHEMA tessmar TO stranger"_s);
  Admin->Run(u"GRANT SELECT ON tessmar.version TO stranger"_s);
  EXPECT_EQ(Trouble(stranger), ServerTrouble::OldTables);
  EXPECT_EQ(There(u"SELECT max(number) FROM tessmar.version"_s), QStringList{u"1"_s});
}

TEST_F(ServerSchema, ARoleThatMayNotWriteIsTold) {
  FillLaptop(1, u"Pond 7"_s, 20);
  Push(2);
  const QString stranger = Stranger();
  EXPECT_EQ(Trouble(stranger), ServerTrouble::NoRights);
  Admin->Run(u"GRANT USAGE ON SCHEMA tessmar TO stranger"_s);
  Admin->Run(u"GRANT SELECT ON ALL TABLES IN SCHEMA tessmar TO stranger"_s);
  EXPECT_EQ(Trouble(stranger), ServerTrouble::NoRights);
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.logger"_s), QStringList{u"0"_s});
}

TEST_F(ServerSchema, DeletedUploadsTakeTheirRowsAlong) {
  FillLaptop(1, u"Pond 7"_s, 20);
  FillLaptop(1, u"Pond 8"_s, 3);
  Push(1);
  Admin->Run(u"DELETE FROM tessmar.upload WHERE records = 20"_s);
  EXPECT_EQ(There(u"SELECT (SELECT count(*) FROM tessmar.record), (SELECT count(*) FROM"
                  " tessmar.block), (SELECT count(*) FROM tessmar.channel)"_s),
            QStringList{u"3|30|3"_s});
}

}  // namespace
}  // namespace tessmar::test
