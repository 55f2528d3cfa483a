#include "archive/Store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QStandardPaths>
#include <QUuid>
#include <array>
#include <utility>

#include "archive/Schema.h"

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

// Results of SQLite, as its documentation numbers them; the low byte of an extended one.
enum SqliteResult : int {
  kSqliteBusy = 5,
  kSqliteLocked = 6,
  kSqliteCorrupt = 11,
  kSqliteFull = 13,
  kSqliteNotADatabase = 26,
};

constexpr std::array kSideFiles{"-wal", "-shm", "-journal"};

ArchiveTrouble TroubleOf(const QSqlError& error) {
  switch (error.nativeErrorCode().toInt() & 0xFF) {
    case kSqliteBusy:
    case kSqliteLocked:
      return ArchiveTrouble::Busy;
    case kSqliteFull:
      return ArchiveTrouble::Full;
    case kSqliteCorrupt:
    case kSqliteNotADatabase:
      return ArchiveTrouble::Damaged;
    default:
      return ArchiveTrouble::Unwritable;
  }
}

[[noreturn]] void Refuse(const QSqlError& error) {
  throw ArchiveFault(TroubleOf(error), error.text().toStdString());
}

// A pipe would hold up whoever opens it, a device may do anything.
void RefuseIrregular(const QString& path) {
  const QFileInfo file(path);
  if (file.exists() && !file.isFile())
    throw ArchiveFault(ArchiveTrouble::NotAFile, "no regular file: " + path.toStdString());
}

// The first byte of every database alone: what SQLite leaves of a new one on a disk without room.
bool IsFailedBeginning(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) && file.read(2) == "S";
}

// SQLite takes a file of one byte for an empty database and would write over it. No database is
// shorter than its smallest page.
void RefuseStub(const QString& path) {
  constexpr qint64 kSmallestPage = 512;
  const qint64 size = QFileInfo(path).size();
  if (size > 0 && size < kSmallestPage && !(size == 1 && IsFailedBeginning(path)))
    throw ArchiveFault(ArchiveTrouble::Damaged, "too short for a database");
}

/// What tells a file from another of the same name.
struct FileIdentity {
  quint64 Device = 0;
  quint64 File = 0;
};

std::optional<FileIdentity> IdentityOf(const QString& path) {
#ifdef Q_OS_UNIX
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
#else
  // Elsewhere an open file cannot be taken away.
  if (!QFileInfo::exists(path)) return std::nullopt;
  return FileIdentity{};
#endif
}

}  // namespace

Store::Store(QString path) : path_(std::move(path)) {}

Store::~Store() {
  Close();
}

QString Store::DefaultPath() {
  QString chosen = qEnvironmentVariable("TESSMAR_ARCHIVE");
  if (!chosen.isEmpty()) return chosen;
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
         u"/Tessmar/archive.sqlite"_s;
}

void Store::Open(Access access) {
  if (IsOpen()) return;
  RefuseIrregular(path_);
  for (const char* side : kSideFiles) RefuseIrregular(path_ + QLatin1StringView(side));
  RefuseStub(path_);
  try {
    Connect(access);
    SetUp(access);
  } catch (const ArchiveFault&) {
    Close();
    throw;
  }
}

void Store::Connect(Access access) {
  if (!QSqlDatabase::isDriverAvailable(u"QSQLITE"_s))
    throw ArchiveFault(ArchiveTrouble::NoDriver, "the SQLite plugin of Qt is missing");
  if (access == Access::Write && !QDir().mkpath(QFileInfo(path_).absolutePath()))
    throw ArchiveFault(ArchiveTrouble::Unwritable, "the archive's folder cannot be made");
  connection_ = u"archive "_s + QUuid::createUuid().toString();
  database_ = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection_);
  database_.setDatabaseName(path_);
  // Waiting for a lock would hold up the window and the line.
  database_.setConnectOptions(access == Access::Read
                                  ? u"QSQLITE_BUSY_TIMEOUT=0;QSQLITE_OPEN_READONLY"_s
                                  : u"QSQLITE_BUSY_TIMEOUT=0"_s);
  if (!database_.open()) Refuse(database_.lastError());
  const std::optional<FileIdentity> identity = IdentityOf(path_);
  device_ = identity ? identity->Device : 0;
  file_ = identity ? identity->File : 0;
}

namespace {

qint64 Number(const Store& store, const QString& sql) {
  QSqlQuery query = store.Run(sql);
  return query.next() ? query.value(0).toLongLong() : 0;
}

// Throws unless the open file is an archive, or so empty that it may become one.
// @return its version.
int CheckedVersion(const Store& store) {
  const qint64 application = Number(store, u"PRAGMA application_id"_s);
  const qint64 version = Number(store, u"PRAGMA user_version"_s);
  if (application != kArchiveApplicationId) {
    const qint64 things = Number(store, u"SELECT count(*) FROM sqlite_master"_s);
    if (application != 0 || version != 0 || things != 0)
      throw ArchiveFault(ArchiveTrouble::Foreign, "another program's database");
    return 0;
  }
  if (version > ArchiveVersion())
    throw ArchiveFault(ArchiveTrouble::Newer, "written by a later version of the program");
  return static_cast<int>(version);
}

void Upgrade(Store& store) {
  Transaction transaction(store);
  // Another program may have done it meanwhile.
  for (int version = CheckedVersion(store) + 1; version <= ArchiveVersion(); ++version) {
    for (const QString& statement : UpgradeStep(version)) store.Run(statement);
  }
  store.Run(u"PRAGMA application_id = %1"_s.arg(kArchiveApplicationId));
  store.Run(u"PRAGMA user_version = %1"_s.arg(ArchiveVersion()));
  transaction.Commit();
}

}  // namespace

void Store::SetUp(Access access) {
  const int version = CheckedVersion(*this);
  Run(u"PRAGMA foreign_keys = ON"_s);
  if (access == Access::Read) {
    if (version == 0) throw ArchiveFault(ArchiveTrouble::Foreign, "an empty file");
    return;
  }
  // Readers and a writer side by side; a file system that cannot do it keeps its journal.
  Run(u"PRAGMA journal_mode = WAL"_s);
  // A power cut costs nothing that was committed.
  Run(u"PRAGMA synchronous = FULL"_s);
  Run(u"PRAGMA journal_size_limit = 8388608"_s);
  // See Checkpoint.
  Run(u"PRAGMA wal_autocheckpoint = 0"_s);
  // As records come, SQLite balances the tree of their table over pages that it touched up to 1700
  // pages before. Where it has written one of them out meanwhile, the commit reckons the check
  // values of all frames behind that one anew, and writes them a second time: 7000 of a full
  // history.
  Run(u"PRAGMA cache_size = -8192"_s);
  if (version < ArchiveVersion()) Upgrade(*this);
}

void Store::Close() {
  if (connection_.isEmpty()) return;
  database_.close();
  database_ = QSqlDatabase();
  QSqlDatabase::removeDatabase(std::exchange(connection_, QString()));
}

bool Store::FileIsThere() const {
  const std::optional<FileIdentity> identity = IdentityOf(path_);
  return identity && identity->Device == device_ && identity->File == file_;
}

QStringList Store::IntegrityComplaints() {
  QStringList complaints;
  QSqlQuery query = Run(u"PRAGMA integrity_check"_s);
  while (query.next()) complaints.append(query.value(0).toString());
  if (complaints == QStringList{u"ok"_s}) complaints.clear();
  return complaints;
}

QString Store::MoveAside(const QDateTime& now) const {
  const QString stem = path_ + u".damaged-"_s + now.toUTC().toString(u"yyyyMMddTHHmmss'Z'"_s);
  const QLatin1StringView log(kSideFiles.front());
  QString aside = stem;
  for (int i = 2; QFileInfo::exists(aside) || QFileInfo::exists(aside + log); ++i)
    aside = stem + u'-' + QString::number(i);
  // What was committed last stands there alone. Beside a new file SQLite would take it for the
  // remains of another one and remove it, so it goes first.
  const bool hasLog = QFileInfo::exists(path_ + log);
  if (hasLog && !QFile::rename(path_ + log, aside + log)) return {};
  if (!QFile::rename(path_, aside)) {
    if (hasLog) QFile::rename(aside + log, path_ + log);
    return {};
  }
  for (const char* side : kSideFiles) {
    const QLatin1StringView ending(side);
    if (QFileInfo::exists(path_ + ending)) QFile::rename(path_ + ending, aside + ending);
  }
  return aside;
}

QSqlQuery Store::Prepare(const QString& sql) const {
  QSqlQuery query(database_);
  query.setForwardOnly(true);
  if (!query.prepare(sql)) Refuse(query.lastError());
  return query;
}

void Store::Execute(QSqlQuery& query) {
  if (!query.exec()) Refuse(query.lastError());
}

QSqlQuery Store::Run(const QString& sql, const QVariantList& values) const {
  QSqlQuery query = Prepare(sql);
  for (const QVariant& value : values) query.addBindValue(value);
  Execute(query);
  return query;
}

Transaction::Transaction(Store& store) : store_(store) {
  store_.Run(u"BEGIN IMMEDIATE"_s);
}

Transaction::~Transaction() {
  if (!open_) return;
  try {
    store_.Run(u"ROLLBACK"_s);
  } catch (const ArchiveFault&) {
    // SQLite has rolled back by itself where it could not go on.
    return;
  }
}

void Transaction::Commit() {
  store_.Run(u"COMMIT"_s);
  open_ = false;
}

}  // namespace tessmar
