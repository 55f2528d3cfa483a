#pragma once

#include <QString>
#include <array>
#include <optional>

namespace tessmar {

/// The setup files of late, kept between runs.
struct RecentFiles {
  QString SetupFolder;                      ///< Folder last used for setup files.
  std::array<QString, 4> RecentSetupFiles;  ///< Full paths, latest first; empty entries are unused.
};

/// Puts a path at the head of the recent files; it leaves its old place when that was among the
/// first three, otherwise the last entry falls off.
void PromoteRecentFile(RecentFiles& files, QString path);

/// A path as a menu shows it: its file name, or all of it when it is just below the root.
QString FileNameOfPath(const QString& path);

/// Folder and name of a file.
struct FolderAndName {
  QString Folder;
  QString Name;
};

/// Splits a path at its last separator; nothing when that is missing, the first or the last
/// character.
std::optional<FolderAndName> SplitPath(const QString& path);

}  // namespace tessmar
