#pragma once

#include <QStringList>

#include "archive/Server.h"

namespace tessmar {

/// The version of the tables on a server that this program writes.
int ServerSchemaVersion();

/// The statements that bring the tables from version - 1 to version, 1 to ServerSchemaVersion(). A
/// step that has been released never changes. Throws RangeFault outside it.
const QStringList& ServerUpgradeStep(int version);

/// Makes or upgrades the tables, in their schema "tessmar", where that is wanted; several computers
/// may do so at once. Throws ServerFault of Newer, Foreign, NoTables or OldTables, and has changed
/// nothing then.
/// @param program  who does it, for the table of versions.
void EnsureServerSchema(const Server& server, const QString& program);

}  // namespace tessmar
