#include "base/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <QFile>
#include <QIODevice>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <limits>

#include "base/NameBeside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr mode_t kNewFileMode = 0666;
constexpr int kMostLinks = 40;
constexpr int kMostNames = 100;

/// The file that a name leads to, by way of all links, whether it exists or not.
QByteArray BehindLinks(const QString& path) {
  if (path.isEmpty() || path.contains(QChar::Null)) throw FileTrouble(FileCause::NotFound, path);
  QByteArray name = QFile::encodeName(path);
  struct stat status {};
  for (int i = 0; i < kMostLinks; ++i) {
    if (::lstat(name.constData(), &status) != 0 || !S_ISLNK(status.st_mode)) return name;
    QByteArray link(PATH_MAX, '\0');
    const ssize_t size =
        ::readlink(name.constData(), link.data(), static_cast<std::size_t>(link.size()));
    if (size < 0) throw FileTrouble::FromError(errno, path);
    link.truncate(size);
    name = link.startsWith('/') ? link : FolderOf(name) + '/' + link;
  }
  throw FileTrouble::FromError(ELOOP, path);
}

bool May(const QByteArray& name, int mode) {
  return ::faccessat(AT_FDCWD, name.constData(), mode, AT_EACCESS) == 0;
}

struct Target {
  bool Exists = false;
  bool FolderTakesFiles = false;
};

/// Looks at the file to be and its folder. Throws FileTrouble when it cannot be written.
Target Examine(const QByteArray& name, const QString& path) {
  Target target;
  struct stat status {};
  const QByteArray folder = FolderOf(name);
  const bool found = ::stat(folder.constData(), &status) == 0;
  if (!found && errno == EACCES) throw FileTrouble(FileCause::NoPermission, path);
  if (!found || !S_ISDIR(status.st_mode))
    throw FileTrouble(FileCause::NoFolder, QFile::decodeName(folder));
  target.FolderTakesFiles = May(folder, W_OK | X_OK);
  const int folderError = errno;
  if (::stat(name.constData(), &status) == 0) {
    if (!S_ISREG(status.st_mode)) throw FileTrouble(FileCause::NotAFile, path);
    if (!May(name, W_OK)) throw FileTrouble::FromError(errno, path);
    target.Exists = true;
  } else if (errno != ENOENT) {
    throw FileTrouble::FromError(errno, path);
  } else if (!target.FolderTakesFiles) {
    throw FileTrouble::FromError(folderError, path);
  }
  return target;
}

/// Sees that so many bytes fit where a file stands, before any of it is touched.
void CheckRoom(const FileHandle& file, qint64 size, const QString& path) {
  if (size == 0) return;
  if (::fallocate(file.Descriptor(), FALLOC_FL_KEEP_SIZE, 0, size) == 0) return;
  const int error = errno;
  struct stat status {};
  struct statvfs disk {};
  if (::fstat(file.Descriptor(), &status) != 0 || ::fstatvfs(file.Descriptor(), &disk) != 0)
    throw FileTrouble::FromError(errno, path);
  if (error != EOPNOTSUPP && error != ENOSYS) {
    // Gives back what was found before the room ran out.
    if (::ftruncate(file.Descriptor(), status.st_size) != 0)
      throw FileTrouble::FromError(errno, path);
    throw FileTrouble::FromError(error, path);
  }
  constexpr qint64 kStatusBlock = 512;
  const qint64 room = static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize) +
                      status.st_blocks * kStatusBlock;
  if (size > room) throw FileTrouble(FileCause::DiskFull, path);
}

/// Makes bytes the file's whole content, down to the disk.
void Overwrite(const FileHandle& file, QByteArrayView bytes, const QString& path) {
  WriteAll(file, bytes, 0, path);
  if (::ftruncate(file.Descriptor(), bytes.size()) != 0 || ::fsync(file.Descriptor()) != 0)
    throw FileTrouble::FromError(errno, path);
}

// Lets the disk begin with a big piece while the next one is made, so that little is left to wait
// for at the end. What comes of it is told by the sync there.
void StartOnItsWay(const FileHandle& file, qint64 offset, qint64 size) {
  constexpr qint64 kBig = qint64{64} * 1024;
  if (size >= kBig) ::sync_file_range(file.Descriptor(), offset, size, SYNC_FILE_RANGE_WRITE);
}

// So that the new name outlives a power cut, too. What the disk cannot do is left.
void SyncFolder(const QByteArray& file) {
  const FileHandle folder(
      ::open(FolderOf(file).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
  if (folder.IsOpen()) ::fsync(folder.Descriptor());
}

// Owner, group and rights of the old file, as far as the user may give them.
void TakeRights(const FileHandle& file, const QByteArray& old) {
  struct stat status {};
  if (::stat(old.constData(), &status) != 0) return;
  constexpr mode_t kRights = 0777;
  const bool owned = ::fchown(file.Descriptor(), status.st_uid, status.st_gid) == 0 ||
                     ::fchown(file.Descriptor(), static_cast<uid_t>(-1), status.st_gid) == 0;
  // A group that cannot be given must not turn its rights over to another.
  constexpr mode_t kGroup = 0070;
  ::fchmod(file.Descriptor(), status.st_mode & (owned ? kRights : kRights & ~kGroup));
}

}  // namespace

/// Hands on what is written to it.
class WholeFile::WriteDevice final : public QIODevice {
 public:
  explicit WriteDevice(WholeFile& file) : file_(file) { open(WriteOnly | Unbuffered); }
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char* /*data*/, qint64 /*most*/) override { return -1; }
  qint64 writeData(const char* data, qint64 size) override {
    try {
      file_.Write({data, size});
    } catch (const FileTrouble& trouble) {
      setErrorString(QString::fromUtf8(trouble.what()));
      return -1;
    }
    return size;
  }

 private:
  WholeFile& file_;
};

WholeFile::WholeFile(const QString& path) : path_(path), target_(BehindLinks(path)) {
  const Target target = Examine(target_, path_);
  replaces_ = target.Exists;
  if (target.FolderTakesFiles) OpenBeside();
}

WholeFile::~WholeFile() {
  if (!besideName_.isEmpty()) ::unlink(besideName_.constData());
}

void WholeFile::OpenBeside() {
  // Without a name nothing is left behind, whatever ends the process. It gets one by way of /proc.
  if (May("/proc/self/fd", X_OK)) {
    beside_ = FileHandle(
        ::open(FolderOf(target_).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, kNewFileMode));
    if (beside_.IsOpen()) return;
  }
  for (int i = 0; i < kMostNames && !beside_.IsOpen(); ++i) {
    const QByteArray name = NameBeside(target_);
    beside_ = FileHandle(
        ::open(name.constData(), O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW | O_CLOEXEC, kNewFileMode));
    if (beside_.IsOpen()) {
      besideName_ = name;
    } else if (errno != EEXIST) {
      break;
    }
  }
  if (beside_.IsOpen()) return;
  const bool refused = errno == EACCES || errno == EPERM || errno == EROFS;
  if (!replaces_ || !refused) throw FileTrouble::FromError(errno, path_);
}

void WholeFile::ThrowFailure() const {
  if (failure_) throw FileTrouble(*failure_);
}

void WholeFile::Write(QByteArrayView bytes) {
  ThrowFailure();
  try {
    if (beside_.IsOpen()) {
      WriteAll(beside_, bytes, written_, path_);
      StartOnItsWay(beside_, written_, bytes.size());
    } else {
      collected_.append(bytes.data(), bytes.size());
    }
    written_ += bytes.size();
  } catch (const FileTrouble& trouble) {
    failure_ = trouble;
    throw;
  }
}

QIODevice& WholeFile::Device() {
  if (!device_) device_ = std::make_unique<WriteDevice>(*this);
  return *device_;
}

void WholeFile::Commit() {
  ThrowFailure();
  if (!beside_.IsOpen()) {
    WriteDirectly(collected_);
    return;
  }
  if (replaces_) TakeRights(beside_, target_);
  if (::fsync(beside_.Descriptor()) != 0) throw FileTrouble::FromError(errno, path_);
  Replace();
  SyncFolder(target_);
  RemoveLeftovers(FolderOf(target_));
}

// Gives a name to the file without one. @return false when there is such a file already.
bool WholeFile::TakeName(const QByteArray& name) const {
  const QByteArray opened = "/proc/self/fd/" + QByteArray::number(beside_.Descriptor());
  if (::linkat(AT_FDCWD, opened.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0)
    return true;
  if (errno != EEXIST) throw FileTrouble::FromError(errno, path_);
  return false;
}

void WholeFile::Replace() {
  // A name that exists cannot be given to a file without one; so that takes one beside it first. A
  // new file has its own at once, and a kill finds no moment at which another is left.
  if (besideName_.isEmpty() && !replaces_ && TakeName(target_)) return;
  for (int i = 0; i < kMostNames && besideName_.isEmpty(); ++i) {
    const QByteArray name = NameBeside(target_);
    if (TakeName(name)) besideName_ = name;
  }
  if (::rename(besideName_.constData(), target_.constData()) == 0) {
    besideName_.clear();
    return;
  }
  // A file of someone else in a folder of everyone may be written, yet not replaced.
  const bool refused = errno == EPERM || errno == EACCES || errno == EBUSY;
  if (!replaces_ || !refused) throw FileTrouble::FromError(errno, path_);
  WriteDirectly(ReadAll(beside_, written_, path_));
}

void WholeFile::WriteDirectly(const QByteArray& bytes) {
  FileHandle file;
  std::optional<QByteArray> old;
  try {
    file = OpenRegularFile(path_, O_RDWR);
    old = ReadAll(file, std::numeric_limits<qint64>::max(), path_);
  } catch (const FileTrouble&) {
    // A file that may be written and not be read.
    file = OpenRegularFile(path_, O_WRONLY);
  }
  CheckRoom(file, bytes.size(), path_);
  try {
    Overwrite(file, bytes, path_);
  } catch (const FileTrouble&) {
    if (old) Overwrite(file, *old, path_);
    throw;
  }
}

void WriteWholeFile(const QString& path, QByteArrayView bytes) {
  WholeFile file(path);
  file.Write(bytes);
  file.Commit();
}

std::optional<FileTrouble> WriteTrouble(const QString& path) {
  try {
    Examine(BehindLinks(path), path);
    return std::nullopt;
  } catch (const FileTrouble& trouble) {
    return trouble;
  }
}

bool TakesNewFiles(const QString& folder) {
  const QByteArray name = QFile::encodeName(folder);
  struct stat status {};
  return ::stat(name.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
         May(name, W_OK | X_OK);
}

}  // namespace tessmar
