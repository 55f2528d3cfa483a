#pragma once

#include <QString>
#include <cstdint>

namespace tessmar {

/// The texts of exporting from the archive's window, in the language of the other texts.
enum class ExportTextId : std::uint8_t {
  Title,
  ViewerFiles,
  AnalysisFiles,
  NetCdfFiles,
  Reading,  ///< %1 of %2 records.
  Writing,  ///< %1 of %2 records.
  Cancel,
  Cancelling,
  Done,             ///< %1 records, %2 the file.
  DoneDisagreeing,  ///< The same; %3 records where uploads disagree.
  Cancelled,        ///< %1 the file.
  NoRecords,
  NoLibrary,
  NoMemory,
  MixedChannels,
  Failed,  ///< %1 the file.
  UploadHint,
  SeriesHint,  ///< %1 the logger.
  NothingHint,
};

QString GetText(ExportTextId id);

}  // namespace tessmar
