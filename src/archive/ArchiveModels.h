#pragma once

#include <QAbstractTableModel>
#include <QDateTime>
#include <QHash>
#include <QSortFilterProxyModel>
#include <optional>
#include <vector>

#include "archive/Store.h"
#include "base/SystemLocale.h"

namespace tessmar {

/// What the tables sort by, in place of their texts.
inline constexpr int kSortRole = Qt::UserRole;
/// When a row's upload or event was, UTC.
inline constexpr int kTimeRole = Qt::UserRole + 1;

/// The text of a moment in the computer's own time, in the system's short form.
QString LocalTimeText(const QDateTime& utc, const SystemLocale& locale);

/// The loggers of the archive, below "All loggers" and above "Bin".
class LoggersModel final : public QAbstractListModel {
 public:
  enum class Kind { All, Logger, Bin };

  void Set(std::vector<LoggerRow> loggers, int binned);
  Kind KindOf(int row) const;
  /// Of a row of Kind::Logger.
  const LoggerRow& Logger(int row) const;
  /// The row of a logger; nothing when it is not there.
  std::optional<int> RowOf(qint64 logger) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  std::vector<LoggerRow> loggers_;
  int binned_ = 0;
};

/// Names of the loggers, by their number.
using LoggerNames = QHash<qint64, QString>;

/// A table of uploads.
class UploadsModel final : public QAbstractTableModel {
 public:
  enum Column { Started, LoggerName, Kind, State, Records, Clock, Source, kColumns };

  explicit UploadsModel(const SystemLocale& locale) : locale_(locale) {}

  void Set(std::vector<UploadRow> uploads, LoggerNames names);
  const UploadRow& Upload(int row) const { return uploads_.at(static_cast<std::size_t>(row)); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString Text(const UploadRow& upload, int column) const;
  QVariant SortKey(const UploadRow& upload, int column) const;

  const SystemLocale& locale_;
  std::vector<UploadRow> uploads_;
  LoggerNames names_;
};

/// A table of the logbook's events.
class LogbookModel final : public QAbstractTableModel {
 public:
  enum Column { At, LoggerName, Event, Details, kColumns };

  explicit LogbookModel(const SystemLocale& locale) : locale_(locale) {}

  void Set(std::vector<EventRow> events, LoggerNames names);
  const EventRow& Entry(int row) const { return events_.at(static_cast<std::size_t>(row)); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString Text(const EventRow& event, int column) const;

  const SystemLocale& locale_;
  std::vector<EventRow> events_;
  LoggerNames names_;
};

/// Lets through the rows in which every word of a text stands, in any column, and whose time lies
/// within two days.
class ArchiveFilter final : public QSortFilterProxyModel {
 public:
  explicit ArchiveFilter(QObject* parent = nullptr);

  /// Days are of the computer's own time, both included; an invalid one is no limit.
  void Set(const QString& text, QDate since, QDate until);
  /// Of a model that changes by being set anew.
  void setSourceModel(QAbstractItemModel* model) override;

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  const QString& SearchedText(int row) const;

  QStringList words_;
  /// The texts of each row in lower case, made when it is first searched: those of times take long.
  mutable std::vector<QString> searched_;
  QDateTime since_;
  QDateTime before_;
};

}  // namespace tessmar
