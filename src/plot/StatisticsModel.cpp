#include "plot/StatisticsModel.h"

#include <array>
#include <utility>

#include "measure/Scaling.h"
#include "plot/PlotTexts.h"
#include "plot/TimeTicks.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

// With days; without, the first is left out.
constexpr std::array kHeadings{PlotTextId::Day,  PlotTextId::ChannelHead, PlotTextId::Least,
                               PlotTextId::Mean, PlotTextId::Greatest,    PlotTextId::First,
                               PlotTextId::Last, PlotTextId::Sum};
constexpr int kFirstNumber = 2;

}  // namespace

StatisticsModel::StatisticsModel(const PlotData& data, const SystemLocale& locale, QObject* parent)
    : QAbstractTableModel(parent), data_(data), locale_(locale) {}

void StatisticsModel::SetRows(std::vector<ChannelStatistics> rows, bool byDay) {
  // Numbers that change leave selection and place alone.
  if (byDay == byDay_ && rows.size() == rows_.size() && !rows.empty()) {
    rows_ = std::move(rows);
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    return;
  }
  beginResetModel();
  rows_ = std::move(rows);
  byDay_ = byDay;
  endResetModel();
}

int StatisticsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int StatisticsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kHeadings.size()) - (byDay_ ? 0 : 1);
}

QString StatisticsModel::Text(const ChannelStatistics& row, int column) const {
  const Series& series = data_.Channel(row.Channel);
  if (column == 0) return DateOnAxis(row.Day, locale_);
  if (column == 1) return ChannelName(series);
  // Each total holds those before it.
  const bool isSum = kHeadings.at(static_cast<std::size_t>(column)) == PlotTextId::Sum;
  if (!row.All.Any() || (isSum && series.IsTotal)) return u"---"_s;
  const std::array values{row.All.Least, row.All.Mean(), row.All.Greatest,
                          row.First,     row.Last,       row.All.Sum};
  return FormatValue(values.at(static_cast<std::size_t>(column - kFirstNumber)), series.Decimals);
}

QVariant StatisticsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !checkIndex(index)) return {};
  const int column = index.column() + (byDay_ ? 0 : 1);
  const auto row = static_cast<std::size_t>(index.row());
  if (role == Qt::DisplayRole) return Text(rows_[row], column);
  if (role == Qt::TextAlignmentRole && column >= kFirstNumber)
    return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
  return {};
}

QVariant StatisticsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
      section >= columnCount())
    return QAbstractTableModel::headerData(section, orientation, role);
  const auto heading = static_cast<std::size_t>(section) + (byDay_ ? 0U : 1U);
  return PlotText(kHeadings.at(heading));
}

}  // namespace tessmar
