#pragma once

#include <QByteArray>
#include <QString>

namespace tessmar {

/// Reads a whole file. Throws FileTrouble for what cannot be read, is no regular file, or is larger
/// than the limit in bytes; nothing blocks and nothing is read without an end.
QByteArray ReadWholeFile(const QString& path, qint64 limit);

/// Reads the beginning of a file, at most so many bytes; what follows is not looked at. Throws
/// FileTrouble like ReadWholeFile.
QByteArray ReadFileStart(const QString& path, qint64 most);

}  // namespace tessmar
