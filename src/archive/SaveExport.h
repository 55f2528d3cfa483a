#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "archive/ExportTable.h"

namespace tessmar {

/// The kinds of files that records are handed on in, beside the viewer's own CSV.
enum class ExportKind {
  AnalysisCsv,  ///< ".csv"
  NetCdf,       ///< ".nc"
};

/// The kind that a file's ending stands for; nothing for an unknown one.
std::optional<ExportKind> ExportKindOf(const QString& path);

/// Saves records, whole or not at all: an existing file stays as it is until the new one is on the
/// disk, and when the progress breaks the export off.
///
/// @return the number of records, or nothing when broken off. Throws FileFault, with the file and
/// the
///     reason where the file is to blame.
std::optional<std::int64_t> SaveExport(const QString& path, ExportKind kind, const ExportHead& head,
                                       const ExportRows& rows, const ExportProgress& progress);

}  // namespace tessmar
