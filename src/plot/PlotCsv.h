#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

#include "base/SystemLocale.h"
#include "plot/PlotData.h"

namespace tessmar {

/// What of a plot becomes a CSV file.
struct PlotCsvView {
  TimeRange Range;            ///< Records with a time in it, ends included.
  std::vector<int> Channels;  ///< In the order of the columns.
  QDateTime Saved;            ///< When the file is written, in local time.
  bool SingleColumn = false;  ///< Date and time in one column instead of two.
};

/// The text of a CSV file in the form of the history's: line 1 with the logger's name, date and
/// time of saving, line 2 with the headings, a line for each record in the logger's order, in
/// UTF-8, lines ending with CR LF. Times are those of the axis; the heading says so when they
/// are the corrected ones.
QByteArray PlotCsv(const PlotData& data, const PlotCsvView& view, const SystemLocale& locale);

}  // namespace tessmar
