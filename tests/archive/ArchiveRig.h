#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QUuid>

#include "archive/Schema.h"
#include "archive/Store.h"

namespace tessmar::test {

/// A database opened by somebody else: a plain connection that knows nothing of the program.
class OtherProgram {
 public:
  explicit OtherProgram(const QString& path) : name_(QUuid::createUuid().toString()) {
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name_);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    database.setDatabaseName(path);
    EXPECT_TRUE(database.open());
  }
  ~OtherProgram() {
    QSqlDatabase::database(name_, false).close();
    QSqlDatabase::removeDatabase(name_);
  }
  bool Do(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(name_, false));
    return query.exec(sql);
  }
  /// The first column of the first row.
  QVariant Get(const QString& sql) {
    QSqlQuery query(QSqlDatabase::database(name_, false));
    EXPECT_TRUE(query.exec(sql)) << sql.toStdString();
    return query.next() ? query.value(0) : QVariant();
  }
  /// All rows, their columns joined by "|", NULL as "-".
  QStringList Rows(const QString& sql) {
    QStringList rows;
    QSqlQuery query(QSqlDatabase::database(name_, false));
    EXPECT_TRUE(query.exec(sql)) << sql.toStdString();
    while (query.next()) {
      QStringList row;
      for (int i = 0; i < 32 && query.value(i).isValid(); ++i)
        row.append(query.value(i).isNull() ? QStringLiteral("-") : query.value(i).toString());
      rows.append(row.join(u'|'));
    }
    return rows;
  }

 private:
  QString name_;
};

/// A folder with room for an archive.
class ArchiveFolder : public testing::Test {
 protected:
  QString Path() const { return folder_.filePath(QStringLiteral("archive.sqlite")); }
  void Put(const QByteArray& bytes) const {
    QFile file(Path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  QByteArray Content(const QString& path) const {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
  }
  /// What opening meets; nothing when it opens.
  std::optional<ArchiveTrouble> TroubleOfOpening(
      Store::Access access = Store::Access::Write) const {
    Store store(Path());
    try {
      store.Open(access);
    } catch (const ArchiveFault& fault) {
      return fault.Trouble();
    }
    return std::nullopt;
  }

  QTemporaryDir folder_;
};

}  // namespace tessmar::test
