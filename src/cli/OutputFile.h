#pragma once

#include <QIODevice>
#include <QString>
#include <optional>

#include "base/WholeFile.h"
#include "cli/Output.h"

namespace tessmar {

/// The name that stands for standard output.
inline constexpr char16_t kStandardOutput[] = u"-";

/// A file that a command writes: whole or not at all, or standard output. Everything throws
/// FileTrouble, which names the file and the reason.
class OutputFile {
 public:
  /// Refuses, before anything is asked of a logger, what cannot be written.
  static void Check(const QString& path);

  OutputFile(Output& out, const QString& path);

  QIODevice& Device();
  /// Throws what went wrong with the file so far, if anything did.
  void ThrowFailure() const;
  /// Puts what was written in the place of the file.
  void Commit();

 private:
  Output& out_;
  std::optional<WholeFile> file_;  ///< None for standard output.
};

}  // namespace tessmar
