#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

namespace tessmar::proof {

/// Writes one kind of file by the program's own functions. What is written follows from the
/// generation, a number from 1, and from nothing else.
class FileWriter {
 public:
  virtual ~FileWriter() = default;
  /// @return nothing when the file was written, otherwise what the operator is told; empty where
  ///   the function says no more than that it failed.
  virtual std::optional<QString> Write(const QString& path, int generation) = 0;
};

/// "setup", "store", "csv", "export" or "netcdf".
/// @param rows  of the three kinds that have records. @return none for another kind.
std::unique_ptr<FileWriter> MakeFileWriter(const QString& kind, int rows);

/// An upload into an archive, in virtual time, told line by line on standard output:
///
///   kept N        after each tick in which more came into the file: records of it there
///   told TEXT     after the upload, each time that there is something to tell
///   waits         and a line is read from standard input, then the disk has room and no fault
///   again end N STATE   all there is to do is done, or not: records in the file, "idle" or "busy"
///
/// @return the exit code.
int RunUpload(const QString& archive, int blocks, bool waits);

/// What another start of the program does about an archive: "end 0 idle".
int RunNextStart(const QString& archive);

}  // namespace tessmar::proof
