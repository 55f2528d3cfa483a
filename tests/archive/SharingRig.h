#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QUuid>
#include <map>
#include <memory>

#include "archive/ArchiveEdits.h"
#include "archive/ServerSchema.h"
#include "archive/Sharing.h"
#include "archive/UploadsRig.h"
#include "support/QtPrinting.h"

namespace tessmar::test {

/// Archives of several laptops, and the server that tests/support/with-postgres has started.
class SharingRig : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(qEnvironmentVariable("TESSMAR_TEST_SERVER").isEmpty())
        << "run it by tests/support/with-postgres";
    Admin = std::make_unique<Server>(ParseServerAddress(QStringLiteral("postgresql://")));
    Admin->Open();
    Admin->Run(QStringLiteral("SET client_min_messages = warning"));
    Admin->Run(QStringLiteral("DROP SCHEMA IF EXISTS tessmar CASCADE"));
  }

  /// The archive of a laptop, made when it is first asked for.
  Store& Laptop(int number) {
    std::unique_ptr<Store>& store = laptops_[number];
    if (!store) {
      store =
          std::make_unique<Store>(folder_.filePath(QStringLiteral("laptop%1.sqlite").arg(number)));
      store->Open(Store::Access::Write);
    }
    return *store;
  }

  /// Pushes all that a laptop has, in a connection of its own.
  PushResult Push(int laptop, const PushWatcher& watcher = {},
                  const QString& address = QStringLiteral("postgresql://")) {
    Server server(ParseServerAddress(address));
    server.Open();
    EnsureServerSchema(server, QStringLiteral("test"));
    PushResult result;
    PushArchive(Laptop(laptop), server, watcher, result);
    return result;
  }

  /// All rows of the server, their columns joined by "|", NULL as "-".
  QStringList There(const QString& sql) const { return RowsOf(Admin->Run(sql)); }
  QStringList Here(int laptop, const QString& sql) { return RowsOf(Laptop(laptop).Run(sql)); }

  /// Compares the tables row by row, whatever the numbers of their rows are.
  void ExpectTheSameEverywhere(int laptop);

  /// A logger, an upload with all that an upload can have, and a logbook.
  qint64 FillLaptop(int laptop, const QString& name, int records = 9000);

  std::unique_ptr<Server> Admin;

 private:
  static QStringList RowsOf(QSqlQuery query);

  QTemporaryDir folder_;
  std::map<int, std::unique_ptr<Store>> laptops_;
};

}  // namespace tessmar::test
