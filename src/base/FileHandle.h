#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace tessmar {

/// A file descriptor that is closed with its owner.
class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
  FileHandle(FileHandle&& other) noexcept;
  FileHandle& operator=(FileHandle&& other) noexcept;
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  ~FileHandle() { Close(); }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Descriptor() const { return descriptor_; }
  void Close();

 private:
  int descriptor_ = -1;
};

/// Opens a file that exists, for it and nothing else: what is no regular file is refused before it
/// is opened, and looked at again afterwards. Never waits for a pipe or a line. Throws FileTrouble.
/// @param flags  of open(2), O_RDONLY for instance.
FileHandle OpenRegularFile(const QString& path, int flags);

/// Reads from the file's beginning until its end, at most so many bytes. Throws FileTrouble.
/// @param path  for the message.
QByteArray ReadAll(const FileHandle& file, qint64 most, const QString& path);

/// Writes everything from the given place on. Throws FileTrouble.
void WriteAll(const FileHandle& file, QByteArrayView bytes, qint64 offset, const QString& path);

}  // namespace tessmar
