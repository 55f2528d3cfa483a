#pragma once

#include "history/HistoryTable.h"
#include "measure/Series.h"

namespace tessmar {

/// The records of a table as series, one for each column of numbers: packing left none of them out.
/// A value is HistoryTable::CellValue, which the table's cells and the CSV file are written from.
/// How the records were logged the table's settings say.
SeriesSet SeriesOf(const HistoryTable& table, const QString& loggerName);

}  // namespace tessmar
