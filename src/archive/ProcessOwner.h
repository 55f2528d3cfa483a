#pragma once

#include <QString>

namespace tessmar {

/// What the archive calls the process that writes an upload: "pid=4711 start=1234567 boot=9f0c41aa
/// host=gauge". The start is in clock ticks since the boot, and together with the boot's own number
/// no two processes of a computer are called the same.
QString OwnOwner();

/// True when the process is known to have ended: it ran on this computer, and either before its
/// present boot or under a number that is free or another process's now. A process of another
/// computer is never known to have ended.
bool OwnerHasEnded(const QString& owner);

}  // namespace tessmar
