#include "base/FileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/FileTrouble.h"

namespace tessmar {
namespace {

constexpr qint64 kPiece = qint64{1024} * 1024;

// A folder, a device, a pipe. Asked by name before opening, because opening alone may raise a
// line's signals, and of what was opened, because a name can come to mean something else.
void RefuseUnlessRegular(int result, const struct stat& status, const QString& path) {
  if (result != 0) throw FileTrouble::FromError(errno, path);
  if (!S_ISREG(status.st_mode)) throw FileTrouble(FileCause::NotAFile, path);
}

}  // namespace

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
  if (this != &other) {
    Close();
    descriptor_ = std::exchange(other.descriptor_, -1);
  }
  return *this;
}

void FileHandle::Close() {
  if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

FileHandle OpenRegularFile(const QString& path, int flags) {
  // The system's names end at the first zero character.
  if (path.isEmpty() || path.contains(QChar::Null)) throw FileTrouble(FileCause::NotFound, path);
  const QByteArray name = QFile::encodeName(path);
  struct stat status {};
  RefuseUnlessRegular(::stat(name.constData(), &status), status, path);
  FileHandle file(::open(name.constData(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.IsOpen()) throw FileTrouble::FromError(errno, path);
  RefuseUnlessRegular(::fstat(file.Descriptor(), &status), status, path);
  return file;
}

QByteArray ReadAll(const FileHandle& file, qint64 most, const QString& path) {
  QByteArray bytes;
  while (bytes.size() < most) {
    const qint64 before = bytes.size();
    const qint64 wanted = std::min(most - before, kPiece);
    bytes.resize(before + wanted);
    ssize_t count = 0;
    do {
      count = ::pread(file.Descriptor(), bytes.data() + before, static_cast<std::size_t>(wanted),
                      before);
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw FileTrouble::FromError(errno, path);
    bytes.resize(before + count);
    if (count == 0) break;
  }
  return bytes;
}

void WriteAll(const FileHandle& file, QByteArrayView bytes, qint64 offset, const QString& path) {
  while (!bytes.isEmpty()) {
    const ssize_t count =
        ::pwrite(file.Descriptor(), bytes.data(), static_cast<std::size_t>(bytes.size()), offset);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw FileTrouble::FromError(errno, path);
    bytes = bytes.sliced(count);
    offset += count;
  }
}

}  // namespace tessmar
