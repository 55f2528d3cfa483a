#include "archive/Server.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QUuid>
#include <utility>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// The oldest that its own makers look after, or did lately.
constexpr int kOldestVersion = 120000;

// The server's own words in one line, without the plugin's code at their end.
QString WordsOf(const QSqlError& error) {
  QString text = error.databaseText().simplified();
  const QString code = u'(' + error.nativeErrorCode() + u')';
  if (text.endsWith(code)) text.chop(code.size());
  return text.trimmed();
}

}  // namespace

ServerTrouble ServerTroubleOf(const QString& sqlState) {
  const QString group = sqlState.left(2);
  // 57P01 to 57P03: an administrator or a crash has ended it, or it is just starting; 25P03: this
  // computer slept for too long in the middle.
  if (sqlState.isEmpty() || group == "08"_L1 || sqlState.startsWith(u"57P0") ||
      sqlState == "25P03"_L1)
    return ServerTrouble::Lost;
  if (group == "40"_L1 || sqlState == "55P03"_L1) return ServerTrouble::Again;
  // Room on the disk, memory, connections; 58: the system's own.
  if (group == "53"_L1) return ServerTrouble::Full;
  if (sqlState == "42501"_L1 || sqlState == "25006"_L1) return ServerTrouble::NoRights;
  return ServerTrouble::Refused;
}

void CheckServerVersion(int number) {
  if (number < kOldestVersion)
    throw ServerFault(ServerTrouble::TooOld, u"PostgreSQL %1"_s.arg(number / 10000));
}

Server::Server(ServerAddress address) : address_(std::move(address)) {}

Server::~Server() {
  Close();
}

void Server::Open() {
  if (database_.isOpen()) return;
  if (!QSqlDatabase::isDriverAvailable(u"QPSQL"_s))
    throw ServerFault(ServerTrouble::NoDriver, u"the PostgreSQL plugin of Qt is missing"_s);
  Close();
  connection_ = u"server "_s + QUuid::createUuid().toString();
  database_ = QSqlDatabase::addDatabase(u"QPSQL"_s, connection_);
  database_.setHostName(address_.Parameters.value(u"host"_s));
  database_.setDatabaseName(address_.Parameters.value(u"dbname"_s));
  database_.setUserName(address_.Parameters.value(u"user"_s));
  database_.setConnectOptions(address_.ConnectOptions());
  if (!database_.open()) {
    const QString words = WordsOf(database_.lastError());
    Close();
    throw ServerFault(ServerTrouble::Unreachable, words);
  }
  QSqlQuery version = Run(u"SELECT current_setting('server_version_num')::int"_s);
  CheckServerVersion(version.next() ? version.value(0).toInt() : 0);
  // Its remarks would come out on standard error.
  Run(u"SET client_min_messages = error"_s);
  // What the server has confirmed is on its disk, whatever it was told to do by default.
  Run(u"SET synchronous_commit = on"_s);
  // A computer that vanishes in the middle holds up the others for a minute, not for hours.
  Run(u"SET idle_in_transaction_session_timeout = '60s'"_s);
  Run(u"SET lock_timeout = '10s'"_s);
  // Whatever is usual there: a long piece is no fault, and what others bring meanwhile is no
  // conflict.
  Run(u"SET statement_timeout = 0"_s);
  Run(u"SET default_transaction_isolation = 'read committed'"_s);
}

void Server::Close() {
  if (connection_.isEmpty()) return;
  database_.close();
  database_ = QSqlDatabase();
  QSqlDatabase::removeDatabase(std::exchange(connection_, QString()));
}

QString Server::Literal(const QVariant& value) const {
  if (value.isNull()) return u"NULL"_s;
  QSqlField field(QString(), value.metaType());
  // PostgreSQL's texts have no character of number 0.
  field.setValue(value.typeId() == QMetaType::QString
                     ? QVariant(value.toString().replace(QChar(u'\0'), QChar(u'\xFFFD')))
                     : value);
  return database_.driver()->formatValue(field);
}

// The values go into the text: a statement that is prepared would take two journeys more, and the
// plugin sends the values of a prepared one as text all the same.
QSqlQuery Server::Run(const QString& sql, const QVariantList& values) const {
  const QStringList parts = sql.split(u'?');
  if (parts.size() != values.size() + 1) throw RangeFault("a statement without its values");
  QString text = parts[0];
  for (qsizetype i = 0; i < values.size(); ++i) text += Literal(values[i]) + parts[i + 1];
  // The plugin closes a connection that it finds broken.
  if (!database_.isOpen()) throw ServerFault(ServerTrouble::Lost, u"the connection is closed"_s);
  QSqlQuery query(database_);
  if (!query.exec(text)) {
    const QSqlError error = query.lastError();
    throw ServerFault(ServerTroubleOf(error.nativeErrorCode()), WordsOf(error));
  }
  return query;
}

void* Server::LibpqConnection() const {
  // Its type is known to the plugin by its own name or by that of libpq.
  const QVariant handle = database_.driver()->handle();
  const QByteArray type(handle.typeName());
  void* const connection = type == "PGconn*" || type == "pg_conn*"
                               ? *static_cast<void* const*>(handle.constData())
                               : nullptr;
  if (connection == nullptr)
    throw ServerFault(ServerTrouble::Lost, u"no connection of libpq, but a "_s + handle.typeName());
  return connection;
}

ServerTransaction::ServerTransaction(const Server& server) : server_(server) {
  server_.Run(u"BEGIN"_s);
}

ServerTransaction::~ServerTransaction() {
  if (!open_ || !server_.IsOpen()) return;
  try {
    server_.Run(u"ROLLBACK"_s);
  } catch (const Fault&) {
    // The server rolls back by itself where the connection is gone.
    return;
  }
}

void ServerTransaction::Commit() {
  open_ = false;
  server_.Run(u"COMMIT"_s);
}

}  // namespace tessmar
