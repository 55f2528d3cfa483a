#pragma once

#include <QString>
#include <cstdint>

#include "base/Fault.h"

namespace tessmar {

/// Why a file could not be read or written.
enum class FileCause : std::uint8_t {
  NotFound,        ///< There is no such file.
  NoFolder,        ///< The folder that the file is to stand in is not there.
  NotAFile,        ///< A folder, a device, a pipe or a socket in place of a file.
  NoPermission,    ///< The user may not.
  WriteProtected,  ///< The disk takes no changes.
  DiskFull,        ///< No room on the disk, or the user's share of it is used up.
  TooLarge,        ///< Above the limit of what is read, or of what the disk takes as one file.
  Failed,          ///< Anything else, told by the system's own words.
};

/// A file that could not be read or written, with the reason for a screen or a terminal.
class FileTrouble : public FileFault {
 public:
  /// @param file    the path as the operator knows it; of NoFolder the folder's.
  /// @param detail  the system's words; shown for FileCause::Failed only.
  FileTrouble(FileCause cause, const QString& file, const QString& detail = {});

  /// The trouble that a call of the system named by its error number.
  static FileTrouble FromError(int error, const QString& file);

  FileCause Cause() const { return cause_; }
  const QString& File() const { return file_; }

  /// Reason and path in two lines, in the language of the texts, such as
  /// "The disk is full:\r\n/home/ada/pond.csv". what() is the same in English and one line.
  QString Text() const;

 private:
  FileCause cause_;
  QString file_;
  QString detail_;
};

}  // namespace tessmar
