#include "archive/ServerCopy.h"

#include <libpq-fe.h>

#include <QLibrary>
#include <QVariant>
#include <type_traits>

namespace tessmar {

using namespace Qt::StringLiterals;

/// What is used of libpq. It is not linked: the program starts where it is not installed.
struct Libpq {
  decltype(&PQexec) Exec = nullptr;
  decltype(&PQresultStatus) ResultStatus = nullptr;
  decltype(&PQresultErrorField) ResultErrorField = nullptr;
  decltype(&PQclear) Clear = nullptr;
  decltype(&PQputCopyData) PutCopyData = nullptr;
  decltype(&PQputCopyEnd) PutCopyEnd = nullptr;
  decltype(&PQgetResult) GetResult = nullptr;

  static const Libpq& Loaded() {
    static const Libpq kLibrary = Load();
    return kLibrary;
  }

 private:
  static Libpq Load() {
    Libpq pq;
    QLibrary library(u"pq"_s, 5);
    const auto resolve = [&library](auto& function, const char* name) {
      function =
          reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
      if (function == nullptr) throw ServerFault(ServerTrouble::NoDriver, u"libpq is missing"_s);
    };
    resolve(pq.Exec, "PQexec");
    resolve(pq.ResultStatus, "PQresultStatus");
    resolve(pq.ResultErrorField, "PQresultErrorField");
    resolve(pq.Clear, "PQclear");
    resolve(pq.PutCopyData, "PQputCopyData");
    resolve(pq.PutCopyEnd, "PQputCopyEnd");
    resolve(pq.GetResult, "PQgetResult");
    return pq;
  }
};

namespace {

PGconn* ConnectionOf(void* connection) {
  return static_cast<PGconn*>(connection);
}

// Throws for a result that is not the wanted one. A connection that broke gives none, or one
// without a state.
void Check(const Libpq& pq, PGresult* result, ExecStatusType wanted) {
  const ExecStatusType status = pq.ResultStatus(result);
  const QString state = QString::fromLatin1(pq.ResultErrorField(result, PG_DIAG_SQLSTATE));
  const QString words =
      QString::fromUtf8(pq.ResultErrorField(result, PG_DIAG_MESSAGE_PRIMARY)).simplified();
  pq.Clear(result);
  if (status != wanted) throw ServerFault(ServerTroubleOf(state), words);
}

// The results that are left, so that the connection takes statements again.
void Drain(const Libpq& pq, PGconn* connection) {
  while (PGresult* result = pq.GetResult(connection)) pq.Clear(result);
}

}  // namespace

ServerCopy::ServerCopy(const Server& server, const QString& table)
    : pq_(Libpq::Loaded()), connection_(server.LibpqConnection()) {
  const QByteArray statement = u"COPY tessmar.%1 FROM STDIN"_s.arg(table).toUtf8();
  Check(pq_, pq_.Exec(ConnectionOf(connection_), statement.constData()), PGRES_COPY_IN);
  open_ = true;
}

ServerCopy::~ServerCopy() {
  if (!open_) return;
  pq_.PutCopyEnd(ConnectionOf(connection_), "broken off");
  Drain(pq_, ConnectionOf(connection_));
}

void ServerCopy::Send(const QByteArray& rows) {
  if (pq_.PutCopyData(ConnectionOf(connection_), rows.constData(), static_cast<int>(rows.size())) ==
      1)
    return;
  // Why, the server has said already, or nobody is there.
  Finish();
  throw ServerFault(ServerTrouble::Lost, u"the server takes no more"_s);
}

void ServerCopy::Finish() {
  open_ = false;
  pq_.PutCopyEnd(ConnectionOf(connection_), nullptr);
  PGresult* const result = pq_.GetResult(ConnectionOf(connection_));
  Drain(pq_, ConnectionOf(connection_));
  Check(pq_, result, PGRES_COMMAND_OK);
}

}  // namespace tessmar
