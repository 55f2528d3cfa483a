#pragma once

#include <QMap>
#include <QString>

namespace tessmar {

/// Where a PostgreSQL server is, as libpq's parameters by their names: host, port, dbname, user,
/// sslmode and so on. What is left out, libpq takes from its environment, its service file and
/// ~/.pgpass.
struct ServerAddress {
  QMap<QString, QString> Parameters;

  /// Host and database for people, "db.example.org/loggers", or what stands for them.
  QString Shown() const;
  /// The parameters that Qt's plugin has no place of their own for, in its notation.
  QString ConnectOptions() const;
};

/// Reads "postgresql://[user@][host[:port][,...]][/database][?parameter=value[&...]]", with %XX for
/// what would be taken for a separator; "postgres://" is the same. Throws ServerFault of BadAddress
/// for anything else, and of HasPassword when there is a password in it: what stands in a command
/// line is read by every user of the computer.
ServerAddress ParseServerAddress(const QString& text);

}  // namespace tessmar
