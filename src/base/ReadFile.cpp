#include "base/ReadFile.h"

#include <fcntl.h>

#include "base/FileHandle.h"
#include "base/FileTrouble.h"

namespace tessmar {

QByteArray ReadWholeFile(const QString& path, qint64 limit) {
  QByteArray bytes = ReadFileStart(path, limit + 1);
  if (bytes.size() > limit) throw FileTrouble(FileCause::TooLarge, path);
  return bytes;
}

QByteArray ReadFileStart(const QString& path, qint64 most) {
  return ReadAll(OpenRegularFile(path, O_RDONLY), most, path);
}

}  // namespace tessmar
