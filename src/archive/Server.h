#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include "archive/ServerAddress.h"
#include "archive/ServerFault.h"

namespace tessmar {

/// One connection to a PostgreSQL server. Every function but Close throws ServerFault.
class Server {
 public:
  /// Opens nothing yet.
  explicit Server(ServerAddress address);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Connects; nothing happens when it is connected. The server has to be one that can do what is
  /// wanted of it.
  void Open();
  void Close();
  /// False once the connection is known to be gone.
  bool IsOpen() const { return database_.isOpen(); }
  const ServerAddress& Address() const { return address_; }

  /// Runs one statement with its values in place of the question marks: numbers, texts, or null.
  QSqlQuery Run(const QString& sql, const QVariantList& values = {}) const;

  /// The connection as libpq knows it; not null.
  void* LibpqConnection() const;

 private:
  QString Literal(const QVariant& value) const;

  ServerAddress address_;
  QString connection_;  ///< Qt's name for it.
  QSqlDatabase database_;
};

/// Throws ServerFault of TooOld for a server_version_num below that of PostgreSQL 12.
void CheckServerVersion(int number);

/// What SQLSTATE says about a failure. An empty one is a connection that is gone.
ServerTrouble ServerTroubleOf(const QString& sqlState);

/// A transaction on a server, rolled back at destruction unless committed.
class ServerTransaction {
 public:
  explicit ServerTransaction(const Server& server);
  ~ServerTransaction();
  ServerTransaction(const ServerTransaction&) = delete;
  ServerTransaction& operator=(const ServerTransaction&) = delete;
  void Commit();

 private:
  const Server& server_;
  bool open_ = true;
};

/// Runs the work of one transaction, and the same again where another one was in its way. The work
/// begins anew each time; after ten times the ServerFault comes through.
template <typename Work>
auto Repeatedly(const Work& work) {
  constexpr int kMostTries = 10;
  for (int tries = 1;; ++tries) {
    try {
      return work();
    } catch (const ServerFault& fault) {
      if (fault.Trouble() != ServerTrouble::Again || tries == kMostTries) throw;
    }
  }
}

}  // namespace tessmar
