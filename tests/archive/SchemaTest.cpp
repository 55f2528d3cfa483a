#include "archive/Schema.h"

#include <gtest/gtest.h>

#include "archive/ArchiveRig.h"
#include "base/Fault.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ArchiveSchema : public ArchiveFolder {
 protected:
  static QStringList Columns(OtherProgram& file, const QString& table) {
    return file.Rows(u"SELECT name FROM pragma_table_info('%1') ORDER BY cid"_s.arg(table));
  }
  static void ExpectPresentVersion(OtherProgram& file) {
    EXPECT_EQ(file.Get(u"PRAGMA user_version"_s), 2);
    EXPECT_EQ(Columns(file, u"bin"_s), (QStringList{u"upload_id"_s, u"deleted"_s}));
    EXPECT_EQ(file.Get(u"PRAGMA integrity_check"_s), u"ok"_s);
  }
};

TEST_F(ArchiveSchema, ANewFileHasTheTablesAndColumnsOfItsPage) {
  Store(Path()).Open(Store::Access::Write);
  OtherProgram file(Path());
  EXPECT_EQ(file.Get(u"PRAGMA application_id"_s), 0x5453534D);
  EXPECT_EQ(file.Get(u"PRAGMA journal_mode"_s), u"wal"_s);
  EXPECT_EQ(Columns(file, u"logger"_s).join(u' '),
            u"id uuid name model firmware first_seen last_seen"_s);
  EXPECT_EQ(Columns(file, u"upload"_s).join(u' '),
            u"id uuid logger_id kind started ended owner state promised records settings analog"
            u" pulse clock_offset_s source program"_s);
  EXPECT_EQ(Columns(file, u"block"_s).join(u' '), u"upload_id number bytes"_s);
  EXPECT_EQ(Columns(file, u"record"_s).join(u' '),
            u"upload_id number stamp logger_time raw a1 a2 a3 a4 a5 a6 a7 a8 p1 p2"_s);
  EXPECT_EQ(Columns(file, u"channel"_s).join(u' '), u"upload_id place name unit decimals method"_s);
  EXPECT_EQ(Columns(file, u"event"_s).join(u' '), u"id uuid logger_id at kind text before after"_s);
  ExpectPresentVersion(file);
}

TEST_F(ArchiveSchema, StepsAreNumberedFromOne) {
  EXPECT_EQ(ArchiveVersion(), 2);
  EXPECT_THROW(UpgradeStep(0), RangeFault);
  EXPECT_THROW(UpgradeStep(3), RangeFault);
}

TEST_F(ArchiveSchema, AnEmptyFileAndAnEmptyDatabaseBecomeArchives) {
  Put({});
  EXPECT_EQ(TroubleOfOpening(), std::nullopt);
  OtherProgram file(Path());
  ExpectPresentVersion(file);
}

// A file of version 1 as that version left it, written here by hand.
TEST_F(ArchiveSchema, VersionOneIsUpgradedInItsPlace) {
  {
    OtherProgram old(Path());
    for (const char* statement :
         {"CREATE TABLE logger (id INTEGER PRIMARY KEY, uuid TEXT NOT NULL UNIQUE, name TEXT NOT "
          "NULL,"
          " model INTEGER, firmware INTEGER, first_seen TEXT NOT NULL, last_seen TEXT NOT NULL)",
          "CREATE TABLE upload (id INTEGER PRIMARY KEY, uuid TEXT NOT NULL UNIQUE,"
          " logger_id INTEGER NOT NULL REFERENCES logger (id), kind TEXT NOT NULL, started TEXT NOT"
          " NULL, ended TEXT, owner TEXT, state TEXT NOT NULL, promised INTEGER, records INTEGER "
          "NOT"
          " NULL DEFAULT 0, settings BLOB, analog INTEGER NOT NULL, pulse INTEGER NOT NULL,"
          " clock_offset_s INTEGER, source TEXT, program TEXT)",
          "CREATE TABLE block (upload_id INTEGER NOT NULL REFERENCES upload (id) ON DELETE CASCADE,"
          " number INTEGER NOT NULL, bytes BLOB NOT NULL, PRIMARY KEY (upload_id, number)) WITHOUT"
          " ROWID",
          "CREATE TABLE record (upload_id INTEGER NOT NULL, number INTEGER NOT NULL, stamp INTEGER,"
          " logger_time TEXT, raw BLOB NOT NULL, a1 REAL, a2 REAL, a3 REAL, a4 REAL, a5 REAL, a6 "
          "REAL,"
          " a7 REAL, a8 REAL, p1 REAL, p2 REAL, PRIMARY KEY (upload_id, number)) WITHOUT ROWID",
          "CREATE TABLE channel (upload_id INTEGER NOT NULL, place TEXT NOT NULL, name TEXT NOT "
          "NULL,"
          " unit TEXT NOT NULL, decimals INTEGER NOT NULL, method TEXT, PRIMARY KEY (upload_id,"
          " place)) WITHOUT ROWID",
          "CREATE TABLE event (id INTEGER PRIMARY KEY, uuid TEXT NOT NULL UNIQUE, logger_id INTEGER"
          " NOT NULL, at TEXT NOT NULL, kind TEXT NOT NULL, text TEXT, before, after)",
          "INSERT INTO logger VALUES (1, 'u1', 'Pond 7', 220, 5, '2026-01-01T00:00:00Z',"
          " '2026-01-02T00:00:00Z')",
          "INSERT INTO upload VALUES (1, 'u2', 1, 'history', '2026-01-01T00:00:00Z', NULL, NULL,"
          " 'complete', 0, 0, NULL, 8, 2, NULL, 'COM1', NULL)",
          "INSERT INTO block VALUES (1, 1, x'00')", "PRAGMA application_id = 1414746957",
          "PRAGMA user_version = 1"}) {
      ASSERT_TRUE(old.Do(QString::fromLatin1(statement))) << statement;
    }
  }
  Store store(Path());
  store.Open(Store::Access::Write);
  EXPECT_EQ(store.Loggers().at(0).Name, u"Pond 7"_s);
  EXPECT_EQ(store.Uploads().at(0).Source, u"COM1"_s);
  OtherProgram file(Path());
  ExpectPresentVersion(file);
}

}  // namespace
}  // namespace tessmar::test
