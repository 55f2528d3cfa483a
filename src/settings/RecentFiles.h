#pragma once

#include <QString>
#include <array>

namespace tessmar {

/// The setup files of late, kept between runs.
struct RecentFiles {
  QString SetupFolder;                      ///< Folder last used for setup files.
  std::array<QString, 4> RecentSetupFiles;  ///< Full paths, latest first; empty entries are unused.
};

}  // namespace tessmar
