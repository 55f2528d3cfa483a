#pragma once

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <optional>

#include "archive/ExportSource.h"
#include "archive/ExportTable.h"
#include "base/Fault.h"
#include "base/SystemLocale.h"

class QIODevice;

namespace tessmar {

/// The kinds of files that records are handed on in.
enum class ExportKind {
  ViewerCsv,    ///< ".csv", byte for byte the file that the viewer saves.
  AnalysisCsv,  ///< ".csv" for a program to read, see WriteAnalysisCsv.
  NetCdf,       ///< ".nc", see MakeNetCdf.
};

/// The kind that a file's ending stands for, with the viewer's CSV for ".csv"; nothing for an
/// unknown one.
std::optional<ExportKind> ExportKindOf(const QString& path);

/// How an export is written.
struct ExportForm {
  ExportKind Kind = ExportKind::ViewerCsv;
  const SystemLocale& Locale;  ///< Of the viewer's CSV.
  QDateTime Saved;             ///< When the file is written.
  QString Program;             ///< Name and version of the program that writes.
  bool SingleColumn = false;   ///< Of the viewer's CSV: date and time in one column.
  bool ShowRelays = false;     ///< Of the viewer's CSV: with the relay columns.
};

/// The viewer's CSV has one row of headings, and the records have different channels.
class MixedChannels : public Fault {
 public:
  using Fault::Fault;
};

/// Writes records to a device, in pieces.
///
/// @return the number of records, or nothing when the progress broke the export off. Throws
///     FileFault when the device does not take everything or the file cannot be made,
///     MixedChannels, and what reading the source throws.
std::optional<std::int64_t> WriteExport(QIODevice& device, ExportSource& source,
                                        const ExportForm& form, const ExportProgress& progress);

/// The same into a file, whole or not at all: an existing one stays as it is until the new one is
/// on the disk, and when the progress breaks the export off. Throws FileTrouble where the file is
/// to blame.
std::optional<std::int64_t> SaveExport(const QString& path, ExportSource& source,
                                       const ExportForm& form, const ExportProgress& progress);

}  // namespace tessmar
