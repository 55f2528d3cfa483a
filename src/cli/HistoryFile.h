#pragma once

#include <QString>

#include "archive/SaveExport.h"
#include "cli/CommandEnvironment.h"
#include "cli/CommandOptions.h"

namespace tessmar {

/// The kind of file that a command writes: by the ending of its name, with --style for CSV, which
/// standard output has, too. Throws CommandFailure of wrong usage for an unknown ending.
ExportKind KindOfFile(const QString& path, const CommandOptions& options);

/// "viewer", "analysis" or "netcdf".
QString NameOf(ExportKind kind);

/// Saves records as the program does, whole or not at all; the viewer's CSV byte for byte: with the
/// language, the locale and the date form that the program itself would use.
///
/// @return the number of records, or nothing when the progress broke it off. Throws FileTrouble,
///     and CommandFailure for what cannot be written so.
std::optional<std::int64_t> SaveRecords(const CommandEnvironment& environment, const QString& path,
                                        ExportKind kind, ExportSource& source,
                                        const ExportProgress& progress);

/// A progress that nothing breaks off.
inline bool GoOn(std::int64_t /*records*/) {
  return true;
}

/// Name and version, as files and the archive keep it.
QString WrittenBy();

}  // namespace tessmar
