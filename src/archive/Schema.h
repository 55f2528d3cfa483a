#pragma once

#include <QStringList>

namespace tessmar {

/// What SQLite's header says about a file that is an archive: "TSSM".
inline constexpr qint64 kArchiveApplicationId = 0x5453534D;

/// The version that this program writes; user_version of the file.
int ArchiveVersion();

/// The statements that bring an archive from version - 1 to version, 1 to ArchiveVersion(). A step
/// that has been released never changes. Throws RangeFault outside it.
const QStringList& UpgradeStep(int version);

}  // namespace tessmar
