#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "base/SystemLocale.h"
#include "plot/PlotData.h"
#include "plot/Statistics.h"

namespace tessmar {

/// The statistics of a view as a table: a row for each channel, or for each day and channel, with
/// least, mean, greatest, first and last value and the sum. The data must outlive it.
class StatisticsModel final : public QAbstractTableModel {
 public:
  StatisticsModel(const PlotData& data, const SystemLocale& locale, QObject* parent = nullptr);

  void SetRows(std::vector<ChannelStatistics> rows, bool byDay);
  const std::vector<ChannelStatistics>& Rows() const { return rows_; }
  bool IsByDay() const { return byDay_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString Text(const ChannelStatistics& row, int column) const;

  const PlotData& data_;
  const SystemLocale& locale_;
  std::vector<ChannelStatistics> rows_;
  bool byDay_ = false;
};

}  // namespace tessmar
