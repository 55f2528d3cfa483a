#include "history/HistoryTableModel.h"

#include <utility>

namespace tessmar {
namespace {

QVariant Alignment(const HistoryColumn& column) {
  return QVariant::fromValue(
      Qt::Alignment(column.Centred ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter));
}

}  // namespace

void HistoryTableModel::SetTable(std::optional<HistoryTable> table) {
  beginResetModel();
  table_.reset();
  if (table) table_.emplace(*std::move(table));
  endResetModel();
}

int HistoryTableModel::rowCount(const QModelIndex& parent) const {
  return table_ && !parent.isValid() ? table_->RowCount() : 0;
}

int HistoryTableModel::columnCount(const QModelIndex& parent) const {
  return table_ && !parent.isValid() ? table_->ColumnCount() : 0;
}

QVariant HistoryTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !checkIndex(index)) return {};
  switch (role) {
    case Qt::DisplayRole:
      return table_->CellText(index.row(), index.column());
    case Qt::ToolTipRole:
      // The first column can be too narrow for a long date.
      return index.column() == 0 ? table_->CellText(index.row(), 0) : QVariant();
    case Qt::TextAlignmentRole:
      return Alignment(table_->Column(index.column()));
    default:
      return {};
  }
}

QVariant HistoryTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (!table_ || orientation != Qt::Horizontal || section < 0 || section >= columnCount())
    return QAbstractTableModel::headerData(section, orientation, role);
  if (role == Qt::DisplayRole) return table_->Column(section).Heading;
  if (role == Qt::TextAlignmentRole) return Alignment(table_->Column(section));
  return {};
}

}  // namespace tessmar
