#pragma once

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>

#include "history/HistoryTable.h"

class QIODevice;

namespace tessmar {

/// What a CSV file says beside the table.
struct CsvHead {
  QString LoggerName;         ///< As it stands; a comma in it is not protected.
  QDateTime Saved;            ///< When the file is written, in local time.
  bool SingleColumn = false;  ///< Date and time in one column instead of two.
};

/// Told now and then which row, from 1, is being written.
using CsvProgress = std::function<void(std::int32_t row)>;

/// Writes a table as CSV in UTF-8: line 1 with name, date and time of saving, joined by ","; line 2
/// with the headings and one line for each row, joined by ", ". Lines end with CR LF, nothing is
/// quoted. Throws FileFault when the device does not take everything.
void WriteCsv(QIODevice& device, const HistoryTable& table, const CsvHead& head,
              const CsvProgress& progress);

/// The two parts of that file by themselves, for more records than one table holds: lines 1 and 2,
/// and the lines of a table's rows. Both throw as WriteCsv does.
void WriteCsvHead(QIODevice& device, const HistoryTable& table, const CsvHead& head);
void WriteCsvRows(QIODevice& device, const HistoryTable& table, bool singleColumn);

/// The same as WriteCsv into a file, which is replaced whole or not at all. Throws FileTrouble,
/// which says why not; the old file is as it was then.
void SaveCsv(const QString& path, const HistoryTable& table, const CsvHead& head,
             const CsvProgress& progress);

}  // namespace tessmar
