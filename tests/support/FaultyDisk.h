#pragma once

#include <QByteArray>
#include <cstdint>

namespace tessmar::test {

/// What happens at one of the counted calls.
struct DiskFault {
  std::int64_t AtCall = 0;  ///< From 1; 0 for never.
  bool Kill = false;        ///< The process ends there, as by SIGKILL. Otherwise the call fails.
  bool Halfway = false;     ///< A write takes half of its bytes first.
  int Error = 0;            ///< What the call fails with.
  bool Stays = false;       ///< Every later call fails, too.
};

/// Counts this process's calls to the system that change something below a folder, and lets them
/// fail. It stands in front of the C library's functions of these names: whatever a program that is
/// linked with it calls, its libraries' calls too, comes here first.
void WatchDisk(const QByteArray& folder);

void SetDiskFault(const DiskFault& fault);

/// So many more bytes fit on the disk; what is beyond fails with ENOSPC, behind a short write of
/// what fits. Bytes over old ones need no room. Negative: there is no end.
void SetDiskRoom(std::int64_t bytes);

/// Neither files without a name nor room in advance are to be had, as on a memory stick.
void MakeDiskSimple(bool simple);

/// The folder takes no new files, though the files in it can be written.
void LockFolder(bool locked);

/// Since WatchDisk.
std::int64_t DiskCalls();
/// By how much the files below the folder have grown since WatchDisk, all growth added up.
std::int64_t DiskGrowth();

}  // namespace tessmar::test
