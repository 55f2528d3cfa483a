#pragma once

#include <QAbstractTableModel>
#include <optional>

#include "history/HistoryTable.h"

namespace tessmar {

/// The history table as the views see it. Read-only; cells are made when they are painted.
class HistoryTableModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  /// Shows a table, or nothing.
  void SetTable(std::optional<HistoryTable> table);
  /// The table shown, or nullptr.
  const HistoryTable* Table() const { return table_ ? &*table_ : nullptr; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::optional<HistoryTable> table_;
};

}  // namespace tessmar
