#pragma once

#include <QString>

#include "base/Fault.h"

namespace tessmar {

/// Why a server does not take, or give, what it had to.
enum class ServerTrouble {
  BadAddress,   ///< No address of a server.
  HasPassword,  ///< The address has a password in it.
  NoDriver,     ///< Qt's PostgreSQL plugin is not installed.
  Unreachable,  ///< No connection: no server, no such database, no such user, a wrong password.
  Lost,         ///< The connection broke, or the server was stopped.
  TooOld,       ///< A server of a version that lacks what is needed.
  Newer,        ///< Its tables were made by a later version of this program.
  OldTables,    ///< Its tables are of an older version, and this role may not upgrade them.
  NoTables,     ///< It has no tables, and this role may not make them.
  Foreign,      ///< The schema has tables that are none of ours.
  NoRights,     ///< The role may not do it.
  Full,         ///< No room on the server's disk, or no memory.
  Again,        ///< Another one was in the way; the same once more may do.
  Refused,      ///< Anything else.
};

/// The server's own text, of one line, is part of it; a password never is.
class ServerFault : public Fault {
 public:
  ServerFault(ServerTrouble trouble, const QString& text)
      : Fault(text.toStdString()), trouble_(trouble) {}
  ServerTrouble Trouble() const { return trouble_; }
  QString Text() const { return QString::fromUtf8(what()); }

 private:
  ServerTrouble trouble_;
};

}  // namespace tessmar
