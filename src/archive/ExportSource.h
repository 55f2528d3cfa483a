#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "archive/ArchivedUpload.h"
#include "archive/ExportTable.h"
#include "archive/Store.h"
#include "history/HistoryBuffer.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// What some records of an export were made with.
struct ExportSettings {
  LoggerSettings Settings;
  int Analog = 0;  ///< Channels of the records, 0 to 8.
  int Pulse = 0;   ///< 0 to 2.
  /// The logger's time of the first of these records; nothing when there is none.
  std::optional<std::int64_t> FirstSeconds = {};
};

/// One record on its way into a file.
struct ExportRecord {
  std::size_t MadeWith = 0;  ///< Place in ExportSource::Settings.
  LiveSample Sample;
  std::optional<std::int64_t> CorrectedMs;  ///< See ExportRow.
  bool Disagrees = false;                   ///< See ExportRow.
};

/// The records that go into a file, and what is said of them. Can be read once.
struct ExportSource {
  ExportHead Head;                       ///< Without columns, program and time.
  QString CsvName;                       ///< The logger's name in the head of the viewer's CSV.
  std::vector<ExportSettings> Settings;  ///< Oldest first.
  std::int64_t Count = 0;                ///< Of the records.
  std::int64_t Disagreements = 0;        ///< How many of them are marked.
  /// Gives the next record, or false behind the last one.
  std::function<bool(ExportRecord& record)> Next;
};

/// The records of one upload of the archive, of any kind, in the bin or not; those of its blocks
/// while it runs. Throws ArchiveFault, and RangeFault when there is none of this number.
ExportSource SourceOfUpload(const Store& store, qint64 upload);

/// The series of a logger, see LoadSeries. Throws ArchiveFault, and RangeFault when there is no
/// such logger.
ExportSource SourceOfSeries(const Store& store, qint64 logger, const LoadProgress& progress = {});

/// Records that are in no archive: nothing is known of the logger's clock there. The buffer must
/// outlive the source, and not be filled anew meanwhile.
ExportSource SourceOfBuffer(const HistoryBuffer& buffer, const LoggerSettings& settings, int analog,
                            int pulse);

/// The columns of an export: the channels of all its settings, in the order of their places. What
/// differs in name or unit has a column of its own, a difference of decimals or method has none.
std::vector<ExportColumn> ColumnsOf(const std::vector<ExportSettings>& settings);

/// The records of a source as rows with these columns, which are ColumnsOf its settings. The source
/// must outlive the rows.
ExportRows RowsOf(ExportSource& source, const std::vector<ExportColumn>& columns);

}  // namespace tessmar
