#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "archive/ArchiveModels.h"
#include "archive/Calibrations.h"

namespace tessmar {

/// A table of calibrations.
class CalibrationsModel final : public QAbstractTableModel {
 public:
  enum Column {
    At,
    LoggerName,
    Channel,
    LowPoint,
    LowDrift,
    HighPoint,
    HighDrift,
    DaysSince,
    kColumns
  };

  explicit CalibrationsModel(const SystemLocale& locale) : locale_(locale) {}

  void Set(std::vector<CalibrationRow> rows, LoggerNames names);
  const CalibrationRow& Row(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
  QString NameOf(qint64 logger) const { return names_.value(logger); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString Text(const CalibrationRow& row, int column) const;

  const SystemLocale& locale_;
  std::vector<CalibrationRow> rows_;
  LoggerNames names_;
};

}  // namespace tessmar
