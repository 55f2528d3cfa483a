#include "archive/Schema.h"

#include <array>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const QStringList kFirstStep{
    u"CREATE TABLE logger ("
    " id INTEGER PRIMARY KEY,"
    " uuid TEXT NOT NULL UNIQUE,"
    " name TEXT NOT NULL,"
    " model INTEGER,"
    " firmware INTEGER,"
    " first_seen TEXT NOT NULL,"
    " last_seen TEXT NOT NULL)"_s,
    u"CREATE TABLE upload ("
    " id INTEGER PRIMARY KEY,"
    " uuid TEXT NOT NULL UNIQUE,"
    " logger_id INTEGER NOT NULL REFERENCES logger (id),"
    " kind TEXT NOT NULL CHECK (kind IN ('history', 'image', 'live')),"
    " started TEXT NOT NULL,"
    " ended TEXT,"
    " owner TEXT,"
    " state TEXT NOT NULL CHECK (state IN"
    "  ('running', 'complete', 'full', 'cancelled', 'failed', 'interrupted')),"
    " promised INTEGER,"
    " records INTEGER NOT NULL DEFAULT 0,"
    " settings BLOB,"
    " analog INTEGER NOT NULL CHECK (analog BETWEEN 0 AND 8),"
    " pulse INTEGER NOT NULL CHECK (pulse BETWEEN 0 AND 2),"
    " clock_offset_s INTEGER,"
    " source TEXT,"
    " program TEXT)"_s,
    u"CREATE INDEX upload_of_logger ON upload (logger_id, started)"_s,
    u"CREATE INDEX upload_by_start ON upload (started)"_s,
    u"CREATE INDEX upload_running ON upload (state) WHERE state = 'running'"_s,
    u"CREATE TABLE block ("
    " upload_id INTEGER NOT NULL REFERENCES upload (id) ON DELETE CASCADE,"
    " number INTEGER NOT NULL,"
    " bytes BLOB NOT NULL,"
    " PRIMARY KEY (upload_id, number)) WITHOUT ROWID"_s,
    u"CREATE TABLE record ("
    " upload_id INTEGER NOT NULL REFERENCES upload (id) ON DELETE CASCADE,"
    " number INTEGER NOT NULL,"
    " stamp INTEGER,"
    " logger_time TEXT,"
    " raw BLOB NOT NULL,"
    " a1 REAL, a2 REAL, a3 REAL, a4 REAL, a5 REAL, a6 REAL, a7 REAL, a8 REAL,"
    " p1 REAL, p2 REAL,"
    " PRIMARY KEY (upload_id, number)) WITHOUT ROWID"_s,
    u"CREATE TABLE channel ("
    " upload_id INTEGER NOT NULL REFERENCES upload (id) ON DELETE CASCADE,"
    " place TEXT NOT NULL CHECK (place IN"
    "  ('a1', 'a2', 'a3', 'a4', 'a5', 'a6', 'a7', 'a8', 'p1', 'p2')),"
    " name TEXT NOT NULL,"
    " unit TEXT NOT NULL,"
    " decimals INTEGER NOT NULL,"
    " method TEXT,"
    " PRIMARY KEY (upload_id, place)) WITHOUT ROWID"_s,
    u"CREATE TABLE event ("
    " id INTEGER PRIMARY KEY,"
    " uuid TEXT NOT NULL UNIQUE,"
    " logger_id INTEGER NOT NULL REFERENCES logger (id),"
    " at TEXT NOT NULL,"
    " kind TEXT NOT NULL CHECK (kind IN ('connected', 'synced', 'cleared', 'programmed',"
    "  'initialized', 'calibrated', 'reset', 'uploaded', 'renamed', 'merged', 'split')),"
    " text TEXT,"
    " before,"
    " after)"_s,
    u"CREATE INDEX event_of_logger ON event (logger_id, at)"_s};

// What the operator deleted, until the bin is emptied. A table of its own, because what is deleted
// here is nobody else's affair.
const QStringList kSecondStep{
    u"CREATE TABLE bin ("
    " upload_id INTEGER PRIMARY KEY REFERENCES upload (id) ON DELETE CASCADE,"
    " deleted TEXT NOT NULL)"_s};

constexpr std::array kSteps{&kFirstStep, &kSecondStep};

}  // namespace

int ArchiveVersion() {
  return static_cast<int>(kSteps.size());
}

const QStringList& UpgradeStep(int version) {
  if (version < 1 || version > ArchiveVersion())
    throw RangeFault("the archive has no such version");
  return *kSteps[static_cast<std::size_t>(version - 1)];
}

}  // namespace tessmar
