#pragma once

#include <QByteArray>
#include <QString>

#include "archive/Server.h"

namespace tessmar {

struct Libpq;

/// Rows on their way into a table by COPY, the quickest way there is. Qt's plugin does not offer
/// it, so this speaks to the libpq that the plugin has loaded.
///
/// Nothing else may be done with the server until Finish, or until this is gone: a copy that was
/// not finished is called off, and the transaction can only be rolled back. Every function throws
/// ServerFault.
class ServerCopy {
 public:
  /// @param table  and its columns: "block (upload_id, number, bytes)".
  ServerCopy(const Server& server, const QString& table);
  ~ServerCopy();
  ServerCopy(const ServerCopy&) = delete;
  ServerCopy& operator=(const ServerCopy&) = delete;

  /// @param rows  whole lines in COPY's text format.
  void Send(const QByteArray& rows);
  void Finish();

 private:
  const Libpq& pq_;
  void* connection_;  ///< libpq's.
  bool open_ = false;
};

}  // namespace tessmar
