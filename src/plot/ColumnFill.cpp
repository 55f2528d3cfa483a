#include "plot/ColumnFill.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessmar {
namespace {

// The first record at or behind a time, looked for from a record on: what is near is found fast.
std::size_t FirstFrom(std::span<const double> times, std::size_t from, std::size_t end,
                      double time) {
  std::size_t step = 1;
  std::size_t low = from;
  while (low < end && times[low] < time) {
    from = low + 1;
    low += step;
    step *= 2;
  }
  const auto begin = times.begin() + static_cast<std::ptrdiff_t>(from);
  const auto last = times.begin() + static_cast<std::ptrdiff_t>(std::min(low, end));
  return static_cast<std::size_t>(std::lower_bound(begin, last, time) - times.begin());
}

int ColumnOf(const ColumnView& view, double time) {
  return std::clamp(static_cast<int>(std::floor(view.PlaceOf(time))), 0, view.Columns - 1);
}

void AddRun(const PlotData& data, const ColumnView& view, const RecordSpan& run,
            std::vector<ColumnCell>& cells) {
  const std::span<const double> times = data.Times();
  const RecordSpan inside = data.InRange(run, view.Range);
  bool newRun = true;
  const auto add = [&](int column, std::size_t first, std::size_t end) {
    cells.push_back({column, first, end, newRun});
    newRun = false;
  };
  const bool straddles =
      inside.First == inside.End && inside.First > run.First && inside.First < run.End;
  if (inside.First == inside.End && !straddles) return;
  if (inside.First > run.First) add(-1, inside.First - 1, inside.First);
  const double width = view.Range.Length() / view.Columns;
  for (std::size_t record = inside.First; record < inside.End;) {
    const int column = ColumnOf(view, times[record]);
    const double edge = view.Range.Begin + (column + 1) * width;
    std::size_t end =
        column + 1 == view.Columns ? inside.End : FirstFrom(times, record, inside.End, edge);
    // The edge may be rounded to a time that the column is said to hold.
    end = std::max(end, record + 1);
    add(column, record, end);
    record = end;
  }
  if (inside.End < run.End) add(view.Columns, inside.End, inside.End + 1);
}

/// Collects the columns of one run.
class RunFill {
 public:
  RunFill(const PlotData& data, int channel, const ColumnView& view)
      : data_(data), channel_(channel), view_(view), times_(data.Times()) {}

  void Cell(const ColumnCell& cell) {
    if (cell.Column < 0 || cell.Column >= view_.Columns) return;
    const Extent extent = data_.ExtentOf(channel_, cell.First, cell.End);
    if (extent.Any()) Cover(cell.Column, extent.Least, extent.Greatest, true);
  }

  // The line from a cell's last record to the next cell's first.
  void Line(const ColumnCell& from, const ColumnCell& to) {
    if (!data_.Joins(channel_, to.First)) return;
    const double x0 = view_.PlaceOf(times_[from.End - 1]);
    const double x1 = view_.PlaceOf(times_[to.First]);
    const double y0 = data_.Value(channel_, from.End - 1);
    const double y1 = data_.Value(channel_, to.First);
    const int last = std::min(to.Column, view_.Columns - 1);
    const double slope = x1 > x0 ? (y1 - y0) / (x1 - x0) : 0;
    const auto at = [&](double x) {
      return std::clamp(y0 + (x - x0) * slope, std::min(y0, y1), std::max(y0, y1));
    };
    for (int column = std::max(from.Column, 0); column <= last; ++column) {
      const double left = at(std::max<double>(column, x0));
      const double right = at(std::min<double>(column + 1, x1));
      Cover(column, std::min(left, right), std::max(left, right), false);
    }
  }

  void Finish(std::vector<FilledColumn>& columns) {
    for (std::size_t i = 0; i < fills_.size(); ++i) {
      FilledColumn& fill = fills_[i];
      const bool left = i > 0 && fills_[i - 1].Column == fill.Column - 1;
      const bool right = i + 1 < fills_.size() && fills_[i + 1].Column == fill.Column + 1;
      fill.Lone = fill.Lone && !left && !right;
    }
    columns.insert(columns.end(), fills_.begin(), fills_.end());
    fills_.clear();
  }

 private:
  void Cover(int column, double least, double greatest, bool lone) {
    if (!fills_.empty() && fills_.back().Column == column) {
      FilledColumn& fill = fills_.back();
      fill.Least = std::min(fill.Least, least);
      fill.Greatest = std::max(fill.Greatest, greatest);
      fill.Lone = fill.Lone && lone;
    } else {
      fills_.push_back({column, least, greatest, lone});
    }
  }

  const PlotData& data_;
  int channel_;
  const ColumnView& view_;
  std::span<const double> times_;
  std::vector<FilledColumn> fills_;
};

}  // namespace

std::vector<ColumnCell> CellsOf(const PlotData& data, const ColumnView& view) {
  std::vector<ColumnCell> cells;
  if (view.Columns <= 0 || !(view.Range.Length() > 0)) return cells;
  for (const RecordSpan& run : data.Runs()) AddRun(data, view, run, cells);
  return cells;
}

std::vector<FilledColumn> FillColumns(const PlotData& data, int channel, const ColumnView& view,
                                      const std::vector<ColumnCell>& cells) {
  std::vector<FilledColumn> columns;
  columns.reserve(cells.size());
  RunFill fill(data, channel, view);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (cells[i].NewRun) {
      fill.Finish(columns);
    } else {
      fill.Line(cells[i - 1], cells[i]);
    }
    fill.Cell(cells[i]);
  }
  fill.Finish(columns);
  return columns;
}

std::vector<Strand> StrandsIn(const PlotData& data, int channel, TimeRange range) {
  std::vector<Strand> strands;
  for (const RecordSpan& run : data.Runs()) {
    RecordSpan inside = data.InRange(run, range);
    if (inside.First > run.First) --inside.First;
    if (inside.End < run.End) ++inside.End;
    for (std::size_t record = inside.First; record < inside.End; ++record) {
      if (std::isnan(data.Value(channel, record))) continue;
      const bool goesOn = !strands.empty() && strands.back().End == record &&
                          record > inside.First && data.Joins(channel, record);
      if (goesOn) {
        strands.back().End = record + 1;
      } else {
        strands.push_back({record, record + 1});
      }
    }
  }
  // A neighbour outside that no line leads to is not touched.
  const std::span<const double> times = data.Times();
  std::erase_if(strands, [&](const Strand& strand) {
    const double time = times[strand.First];
    return strand.End - strand.First == 1 && (time < range.Begin || time > range.End);
  });
  return strands;
}

std::vector<std::size_t> ThinnedStrand(const PlotData& data, int channel, const Strand& strand,
                                       const ColumnView& view) {
  const std::vector<double>& values = data.Channel(channel).Values;
  const std::span<const double> times = data.Times();
  std::vector<std::size_t> kept;
  for (std::size_t record = strand.First; record < strand.End;) {
    const double column = std::floor(view.PlaceOf(times[record]));
    std::size_t least = record;
    std::size_t greatest = record;
    std::size_t end = record;
    for (; end < strand.End && std::floor(view.PlaceOf(times[end])) == column; ++end) {
      if (values[end] < values[least]) least = end;
      if (values[end] > values[greatest]) greatest = end;
    }
    end = std::max(end, record + 1);
    std::array<std::size_t, 4> four{record, std::min(least, greatest), std::max(least, greatest),
                                    end - 1};
    for (const std::size_t one : four)
      if (kept.empty() || kept.back() < one) kept.push_back(one);
    record = end;
  }
  return kept;
}

}  // namespace tessmar
