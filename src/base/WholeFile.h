#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <memory>
#include <optional>

#include "base/FileHandle.h"
#include "base/FileTrouble.h"

class QIODevice;

namespace tessmar {

/// A file that is replaced whole or not at all.
///
/// What is written goes beside the file, without a name where the disk can do that, and takes the
/// file's place with Commit, once it is on the disk. Until then, after a failure, and after the end
/// of the process, the old file stays as it was. Where the disk cannot do without a name, and in
/// the moment in which the old file is replaced, the end of the process can leave a file
/// ".tessmar-..." behind; the next one that is written into the folder a day later takes it away. A
/// link leads to the file that is replaced; access rights stay.
///
/// Where the folder takes no new files but the file itself can be written, everything is collected
/// and written into it with Commit, after a check of the room; a failure puts the old content back.
///
///     WholeFile file(path);
///     file.Write(head);
///     for (...) file.Write(row);
///     file.Commit();
///
/// Everything throws FileTrouble, which names the file and the reason.
class WholeFile {
 public:
  /// Begins. Refuses what is no regular file, or cannot be written, before anything is opened.
  explicit WholeFile(const QString& path);
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  /// Adds bytes; in pieces of some 100 kB it costs no more than writing the file itself.
  void Write(QByteArrayView bytes);

  /// The same for whoever writes to a device: open, sequential, lives as long as this. A failure
  /// that the writer does not look at is thrown by Commit.
  QIODevice& Device();

  /// Throws the failure of the writing so far, if there was one.
  void ThrowFailure() const;

  /// Flushes and replaces the file. Nothing can be written afterwards.
  void Commit();

 private:
  class WriteDevice;

  void OpenBeside();
  bool TakeName(const QByteArray& name) const;
  void Replace();
  void WriteDirectly(const QByteArray& bytes);

  QString path_;           ///< As the caller named it.
  QByteArray target_;      ///< Behind all links, as the system spells it.
  bool replaces_ = false;  ///< The file exists.
  FileHandle beside_;      ///< Not open when the file is written directly.
  QByteArray besideName_;  ///< Empty while what is written has no name.
  QByteArray collected_;   ///< For writing directly.
  qint64 written_ = 0;
  std::optional<FileTrouble> failure_;
  std::unique_ptr<WriteDevice> device_;
};

/// Replaces a file by these bytes, whole or not at all. Throws FileTrouble.
void WriteWholeFile(const QString& path, QByteArrayView bytes);

/// What can be told before anything is written: why this path cannot be a file's that is replaced
/// or made anew. Nothing when it can.
std::optional<FileTrouble> WriteTrouble(const QString& path);

/// True for a folder that the user may put new files into.
bool TakesNewFiles(const QString& folder);

}  // namespace tessmar
