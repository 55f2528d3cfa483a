#include "support/FaultyDisk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstring>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace tessmar::test {
namespace {

/// The disk under the folder.
struct Disk {
  std::string Folder;  ///< Empty while nothing is watched.
  DiskFault Fault;
  std::int64_t Room = -1;
  std::int64_t Growth = 0;
  std::int64_t Calls = 0;
  bool Simple = false;
  bool Locked = false;
  std::map<ino_t, std::int64_t> Reserved;  ///< Up to where a file has been given room already.
};

std::mutex guard;
Disk disk;

bool IsBelow(const char* path) {
  const std::string& folder = disk.Folder;
  return !folder.empty() && std::strncmp(path, folder.c_str(), folder.size()) == 0 &&
         (path[folder.size()] == '/' || path[folder.size()] == '\0');
}

bool IsWatched(int file) {
  if (disk.Folder.empty()) return false;
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  std::array<char, PATH_MAX> name{};
  const auto size = ::syscall(SYS_readlink, link.c_str(), name.data(), name.size() - 1);
  return size > 0 && IsBelow(name.data());
}

/// What is to become of a call.
enum class Fate { Succeeds, Fails, TakesHalf };

[[noreturn]] void End() {
  ::kill(::getpid(), SIGKILL);
  for (;;) ::pause();
}

/// Counts a call. Gives back what becomes of it, with errno set where it fails.
Fate Count(bool writes = false) {
  const std::int64_t call = ++disk.Calls;
  const DiskFault& fault = disk.Fault;
  const bool struck =
      fault.AtCall > 0 && (call == fault.AtCall || (fault.Stays && call > fault.AtCall));
  if (!struck) return Fate::Succeeds;
  if (fault.Halfway && writes && call == fault.AtCall) return Fate::TakesHalf;
  if (fault.Kill) End();
  errno = fault.Error;
  return Fate::Fails;
}

/// Takes room for bytes of a file up to here. Gives back how many of them fit.
std::int64_t TakeRoom(int file, std::int64_t offset, std::int64_t size) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return size;
  const auto reserved = disk.Reserved.find(status.st_ino);
  const std::int64_t had = std::max<std::int64_t>(
      status.st_size, reserved == disk.Reserved.end() ? 0 : reserved->second);
  const std::int64_t needed = std::clamp<std::int64_t>(offset + size - had, 0, size);
  const std::int64_t given = disk.Room < 0 ? needed : std::min(needed, disk.Room);
  if (disk.Room >= 0) disk.Room -= given;
  disk.Growth += given;
  return size - (needed - given);
}

void GiveBack(std::int64_t bytes) {
  if (disk.Room >= 0) disk.Room += bytes;
}

std::int64_t OffsetOf(int file) {
  return (::fcntl(file, F_GETFL) & O_APPEND) != 0 ? ::lseek(file, 0, SEEK_END)
                                                  : ::lseek(file, 0, SEEK_CUR);
}

/// Writes with what the disk has to say to it. @param at  the place in the file, or nothing for its
/// own.
ssize_t Write(int file, const void* bytes, std::size_t size, std::optional<off_t> at) {
  const auto write = [&](std::size_t most) {
    return at ? ::syscall(SYS_pwrite64, file, bytes, most, *at)
              : ::syscall(SYS_write, file, bytes, most);
  };
  const std::lock_guard lock(guard);
  if (size == 0 || !IsWatched(file)) return write(size);
  const Fate fate = Count(true);
  if (fate == Fate::Fails) return -1;
  if (fate == Fate::TakesHalf) {
    const ssize_t written = write(size > 1 ? size / 2 : 1);
    if (disk.Fault.Kill) End();
    return written;
  }
  const std::int64_t fits =
      TakeRoom(file, at ? *at : OffsetOf(file), static_cast<std::int64_t>(size));
  if (fits > 0) return write(static_cast<std::size_t>(fits));
  errno = ENOSPC;
  return -1;
}

int Truncate(int file, off_t size) {
  const std::lock_guard lock(guard);
  if (!IsWatched(file)) return static_cast<int>(::syscall(SYS_ftruncate, file, size));
  if (Count() == Fate::Fails) return -1;
  struct stat status {};
  ::fstat(file, &status);
  disk.Reserved.erase(status.st_ino);
  if (size < status.st_size) GiveBack(status.st_size - size);
  return static_cast<int>(::syscall(SYS_ftruncate, file, size));
}

int Allocate(int file, int mode, off_t offset, off_t size) {
  const std::lock_guard lock(guard);
  if (IsWatched(file)) {
    if (disk.Simple) {
      errno = EOPNOTSUPP;
      return -1;
    }
    if (Count() == Fate::Fails) return -1;
    if (TakeRoom(file, offset, size) < size) {
      errno = ENOSPC;
      return -1;
    }
    struct stat status {};
    ::fstat(file, &status);
    disk.Reserved[status.st_ino] = offset + size;
  }
  return static_cast<int>(::syscall(SYS_fallocate, file, mode, offset, size));
}

int Open(int folder, const char* path, int flags, mode_t mode) {
  const std::lock_guard lock(guard);
  const bool changes = (flags & (O_CREAT | O_TRUNC)) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  if (changes && IsBelow(path)) {
    if (disk.Simple && (flags & O_TMPFILE) == O_TMPFILE) {
      errno = EOPNOTSUPP;
      return -1;
    }
    if (Count() == Fate::Fails) return -1;
  }
  return static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
}

/// A call that needs no more than its number. @param path  what it changes, or nothing.
template <typename... Arguments>
int Plain(const char* path, long number, Arguments... arguments) {
  const std::lock_guard lock(guard);
  if (path != nullptr && IsBelow(path) && Count() == Fate::Fails) return -1;
  return static_cast<int>(::syscall(number, arguments...));
}

template <typename... Arguments>
int PlainOf(int file, long number, Arguments... arguments) {
  const std::lock_guard lock(guard);
  if (IsWatched(file) && Count() == Fate::Fails) return -1;
  return static_cast<int>(::syscall(number, file, arguments...));
}

// No disk has to work for this: what the system has taken outlives the process.
int Sync(int file, long number) {
  const std::lock_guard lock(guard);
  if (!IsWatched(file)) return static_cast<int>(::syscall(number, file));
  return Count() == Fate::Fails ? -1 : 0;
}

/// The size of a file that a name is the last one of.
std::int64_t FreedBy(const char* path) {
  struct stat status {};
  return ::lstat(path, &status) == 0 && status.st_nlink == 1 ? status.st_size : 0;
}

int Remove(int folder, const char* path, int flags) {
  const std::lock_guard lock(guard);
  if (IsBelow(path)) {
    if (Count() == Fate::Fails) return -1;
    GiveBack(FreedBy(path));
  }
  return static_cast<int>(::syscall(SYS_unlinkat, folder, path, flags));
}

mode_t ModeOf(int flags, std::va_list arguments) {
  const bool makes = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return makes ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

void WatchDisk(const QByteArray& folder) {
  const std::lock_guard lock(guard);
  disk = Disk();
  disk.Folder = folder.toStdString();
}

void SetDiskFault(const DiskFault& fault) {
  const std::lock_guard lock(guard);
  disk.Fault = fault;
}

void SetDiskRoom(std::int64_t bytes) {
  const std::lock_guard lock(guard);
  disk.Room = bytes;
}

void MakeDiskSimple(bool simple) {
  disk.Simple = simple;
}

void LockFolder(bool locked) {
  disk.Locked = locked;
}

std::int64_t DiskCalls() {
  return disk.Calls;
}

std::int64_t DiskGrowth() {
  return disk.Growth;
}

}  // namespace tessmar::test

// The C library's names.
extern "C" {

using namespace tessmar::test;

#define TESSMAR_OPEN(name)                        \
  int name(const char* path, int flags, ...) {    \
    std::va_list arguments;                       \
    va_start(arguments, flags);                   \
    const mode_t mode = ModeOf(flags, arguments); \
    va_end(arguments);                            \
    return Open(AT_FDCWD, path, flags, mode);     \
  }
#define TESSMAR_OPENAT(name)                               \
  int name(int folder, const char* path, int flags, ...) { \
    std::va_list arguments;                                \
    va_start(arguments, flags);                            \
    const mode_t mode = ModeOf(flags, arguments);          \
    va_end(arguments);                                     \
    return Open(folder, path, flags, mode);                \
  }

TESSMAR_OPEN(open)
TESSMAR_OPEN(open64)
TESSMAR_OPEN(__open_2)
TESSMAR_OPEN(__open64_2)
TESSMAR_OPENAT(openat)
TESSMAR_OPENAT(openat64)

ssize_t write(int file, const void* bytes, size_t size) {
  return Write(file, bytes, size, std::nullopt);
}
ssize_t pwrite(int file, const void* bytes, size_t size, off_t at) {
  return Write(file, bytes, size, at);
}
ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t at) {
  return Write(file, bytes, size, at);
}
ssize_t writev(int file, const struct iovec* parts, int count) {
  // The first part with anything in it: a short write is all that a caller may expect.
  for (int i = 0; i < count; ++i) {
    if (parts[i].iov_len > 0) return Write(file, parts[i].iov_base, parts[i].iov_len, std::nullopt);
  }
  return 0;
}
int ftruncate(int file, off_t size) noexcept {
  return Truncate(file, size);
}
int ftruncate64(int file, off64_t size) noexcept {
  return Truncate(file, size);
}
int fallocate(int file, int mode, off_t offset, off_t size) {
  return Allocate(file, mode, offset, size);
}
int fallocate64(int file, int mode, off64_t offset, off64_t size) {
  return Allocate(file, mode, offset, size);
}
int fsync(int file) {
  return Sync(file, SYS_fsync);
}
int fdatasync(int file) {
  return Sync(file, SYS_fdatasync);
}
int sync_file_range(int file, off64_t offset, off64_t size, unsigned flags) {
  return PlainOf(file, SYS_sync_file_range, offset, size, flags);
}
int fchmod(int file, mode_t mode) noexcept {
  return PlainOf(file, SYS_fchmod, mode);
}
int fchown(int file, uid_t owner, gid_t group) noexcept {
  return PlainOf(file, SYS_fchown, owner, group);
}
int unlink(const char* path) noexcept {
  return Remove(AT_FDCWD, path, 0);
}
int unlinkat(int folder, const char* path, int flags) noexcept {
  return Remove(folder, path, flags);
}
int rename(const char* from, const char* to) {
  return Plain(to, SYS_rename, from, to);
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
  return Plain(to, SYS_renameat2, fromFolder, from, toFolder, to, 0);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  return Plain(to, SYS_renameat2, fromFolder, from, toFolder, to, flags);
}
int link(const char* from, const char* to) noexcept {
  return Plain(to, SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0);
}
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  return Plain(to, SYS_linkat, fromFolder, from, toFolder, to, flags);
}
int mkdir(const char* path, mode_t mode) noexcept {
  return Plain(path, SYS_mkdirat, AT_FDCWD, path, mode);
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
  if (disk.Locked && disk.Folder == path && (mode & W_OK) != 0) {
    errno = EACCES;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_faccessat2, folder, path, mode, flags));
}

}  // extern "C"
