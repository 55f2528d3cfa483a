#pragma once

#include <QString>
#include <atomic>
#include <cstdint>
#include <optional>

#include "archive/SaveExport.h"

namespace tessmar {

/// What is exported from an archive: one upload, or else the series of a logger.
struct ExportWish {
  QString ArchivePath;
  qint64 Upload = 0;  ///< 0 for a series.
  qint64 Logger = 0;
};

/// How far an export is. Written by whoever exports, read by whoever shows it, perhaps in another
/// thread; Stop goes the other way.
struct ExportState {
  std::atomic<bool> Stop = false;
  std::atomic<bool> Writes = false;  ///< Behind the reading.
  std::atomic<std::int64_t> Done = 0;
  std::atomic<std::int64_t> Total = 0;
};

/// What came of an export.
struct ExportResult {
  bool Stopped = false;  ///< The file is as it was.
  std::int64_t Records = 0;
  std::int64_t Disagreements = 0;
};

/// Reads from the archive, by a connection of its own, and saves; nothing is written for no
/// records. Throws ArchiveFault, and what SaveExport throws.
ExportResult RunExport(const ExportWish& wish, const QString& path, const ExportForm& form,
                       ExportState& state);

}  // namespace tessmar
