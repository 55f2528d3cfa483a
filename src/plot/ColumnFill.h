#pragma once

#include <vector>

#include "plot/PlotData.h"

namespace tessmar {

/// A view of the time axis, cut into columns of one device pixel.
struct ColumnView {
  TimeRange Range;
  int Columns = 0;

  /// Where a time lies, in columns from the left edge.
  double PlaceOf(double time) const { return (time - Range.Begin) / Range.Length() * Columns; }
  bool operator==(const ColumnView&) const = default;
};

/// Neighbouring records of one run that share a column of a view. The columns -1 and Columns stand
/// for the records just outside the view, to which lines may lead.
struct ColumnCell {
  int Column = 0;
  std::size_t First = 0;
  std::size_t End = 0;
  bool NewRun = false;
};

/// All cells of a view, run by run. The same for every channel.
std::vector<ColumnCell> CellsOf(const PlotData& data, const ColumnView& view);

/// What one channel covers of one column: all that lies between two values.
struct FilledColumn {
  int Column = 0;
  double Least = 0;
  double Greatest = 0;
  bool Lone = false;  ///< A record with nothing beside it: to be drawn so large that it is seen.
};

/// Everything that a channel shows in a view: each value of each record, and the lines between
/// records that join. Columns rise within a run; runs follow each other. A hole that is narrower
/// than a column is not seen, and a wider one is empty.
std::vector<FilledColumn> FillColumns(const PlotData& data, int channel, const ColumnView& view,
                                      const std::vector<ColumnCell>& cells);

/// Records that are joined by a line: First to End - 1.
using Strand = RecordSpan;

/// The same as lines, for files and for views of few records: the strands of a channel that touch
/// a view, the records just outside it included where lines lead to them.
std::vector<Strand> StrandsIn(const PlotData& data, int channel, TimeRange range);

/// The records of a strand that a line of a certain fineness needs: of each column the first, the
/// least, the greatest and the last value, in the logger's order.
std::vector<std::size_t> ThinnedStrand(const PlotData& data, int channel, const Strand& strand,
                                       const ColumnView& view);

}  // namespace tessmar
