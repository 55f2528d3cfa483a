#include "archive/ArchiveModels.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "archive/LogbookDetails.h"
#include "archive/WindowTexts.h"
#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString HeadOf(WindowTextId id) {
  return GetText(id);
}

template <typename Ids>
QVariant Heading(const Ids& ids, int section, Qt::Orientation orientation, int role) {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (section < 0 || section >= static_cast<int>(ids.size())) return {};
  return HeadOf(ids[static_cast<std::size_t>(section)]);
}

QString NameIn(const LoggerNames& names, qint64 logger) {
  const QString name = names.value(logger);
  return name.isEmpty() ? GetText(WindowTextId::UnnamedLogger) : name;
}

}  // namespace

QString LocalTimeText(const QDateTime& utc, const SystemLocale& locale) {
  if (!utc.isValid()) return {};
  const QDateTime local = utc.toLocalTime();
  return locale.ShortDate(local.date()) + u' ' + locale.ShortTime(local.time());
}

void LoggersModel::Set(std::vector<LoggerRow> loggers, int binned) {
  beginResetModel();
  loggers_ = std::move(loggers);
  binned_ = binned;
  endResetModel();
}

LoggersModel::Kind LoggersModel::KindOf(int row) const {
  if (row == 0) return Kind::All;
  return row > static_cast<int>(loggers_.size()) ? Kind::Bin : Kind::Logger;
}

const LoggerRow& LoggersModel::Logger(int row) const {
  if (KindOf(row) != Kind::Logger) throw RangeFault("there is no logger in this row");
  return loggers_[static_cast<std::size_t>(row - 1)];
}

std::optional<int> LoggersModel::RowOf(qint64 logger) const {
  const auto found = std::ranges::find(loggers_, logger, &LoggerRow::Id);
  if (found == loggers_.end()) return std::nullopt;
  return static_cast<int>(found - loggers_.begin()) + 1;
}

int LoggersModel::rowCount(const QModelIndex& parent) const {
  // The bin is there only when something lies in it.
  return parent.isValid() ? 0 : static_cast<int>(loggers_.size()) + (binned_ > 0 ? 2 : 1);
}

QVariant LoggersModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !checkIndex(index)) return {};
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  switch (KindOf(index.row())) {
    case Kind::All:
      return GetText(WindowTextId::AllLoggers);
    case Kind::Bin:
      return u"%1 (%2)"_s.arg(GetText(WindowTextId::Bin)).arg(binned_);
    case Kind::Logger:
      break;
  }
  const QString& name = Logger(index.row()).Name;
  return name.isEmpty() ? GetText(WindowTextId::UnnamedLogger) : name;
}

void UploadsModel::Set(std::vector<UploadRow> uploads, LoggerNames names) {
  beginResetModel();
  uploads_ = std::move(uploads);
  names_ = std::move(names);
  endResetModel();
}

int UploadsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(uploads_.size());
}

int UploadsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant UploadsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !checkIndex(index)) return {};
  const UploadRow& upload = Upload(index.row());
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return Text(upload, index.column());
  if (role == kSortRole) return SortKey(upload, index.column());
  if (role == kTimeRole) return upload.Started;
  if (role == Qt::TextAlignmentRole && index.column() == Records)
    return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  return {};
}

QString UploadsModel::Text(const UploadRow& upload, int column) const {
  switch (column) {
    case Started:
      return LocalTimeText(upload.Started, locale_);
    case LoggerName:
      return NameIn(names_, upload.LoggerId);
    case Kind:
      return ShownName(upload.Kind);
    case State:
      return ShownName(upload.State);
    case Records:
      return QString::number(upload.Records);
    case Clock:
      return ShownClockOffset(upload.ClockOffsetS);
    default:
      return upload.Source;
  }
}

QVariant UploadsModel::SortKey(const UploadRow& upload, int column) const {
  switch (column) {
    case Started:
      return upload.Started;
    case Records:
      return upload.Records;
    case Clock:
      return upload.ClockOffsetS ? QVariant(*upload.ClockOffsetS)
                                 : QVariant(std::numeric_limits<std::int32_t>::min());
    default:
      return Text(upload, column);
  }
}

QVariant UploadsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  using Id = WindowTextId;
  constexpr std::array kHeads{Id::Started, Id::Logger,   Id::Kind,  Id::State,
                              Id::Records, Id::ClockOff, Id::Source};
  return Heading(kHeads, section, orientation, role);
}

void LogbookModel::Set(std::vector<EventRow> events, LoggerNames names) {
  beginResetModel();
  events_ = std::move(events);
  names_ = std::move(names);
  endResetModel();
}

int LogbookModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(events_.size());
}

int LogbookModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant LogbookModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !checkIndex(index)) return {};
  const EventRow& event = Entry(index.row());
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return Text(event, index.column());
  if (role == kTimeRole || (role == kSortRole && index.column() == At)) return event.At;
  if (role == kSortRole) return Text(event, index.column());
  return {};
}

QString LogbookModel::Text(const EventRow& event, int column) const {
  switch (column) {
    case At:
      return LocalTimeText(event.At, locale_);
    case LoggerName:
      return NameIn(names_, event.LoggerId);
    case Event:
      return ShownName(event.Entry.Kind);
    default:
      return ShownDetails(event.Entry.Text);
  }
}

QVariant LogbookModel::headerData(int section, Qt::Orientation orientation, int role) const {
  using Id = WindowTextId;
  constexpr std::array kHeads{Id::At, Id::Logger, Id::What, Id::Details};
  return Heading(kHeads, section, orientation, role);
}

ArchiveFilter::ArchiveFilter(QObject* parent) : QSortFilterProxyModel(parent) {
  setSortRole(kSortRole);
  setSortCaseSensitivity(Qt::CaseInsensitive);
  setSortLocaleAware(true);
}

void ArchiveFilter::Set(const QString& text, QDate since, QDate until) {
  words_ = text.toLower().split(u' ', Qt::SkipEmptyParts);
  since_ = since.isValid() ? since.startOfDay() : QDateTime();
  before_ = until.isValid() ? until.addDays(1).startOfDay() : QDateTime();
  invalidateFilter();
}

void ArchiveFilter::setSourceModel(QAbstractItemModel* model) {
  // Ahead of the filter's own look at the rows.
  connect(model, &QAbstractItemModel::modelReset, this, [this] { searched_.clear(); });
  QSortFilterProxyModel::setSourceModel(model);
}

const QString& ArchiveFilter::SearchedText(int row) const {
  const QAbstractItemModel& model = *sourceModel();
  searched_.resize(static_cast<std::size_t>(model.rowCount()));
  QString& text = searched_[static_cast<std::size_t>(row)];
  if (text.isEmpty()) {
    for (int column = 0; column < model.columnCount(); ++column)
      text += model.index(row, column).data().toString().toLower() + u'\n';
  }
  return text;
}

bool ArchiveFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
  const QAbstractItemModel& model = *sourceModel();
  if (since_.isValid() || before_.isValid()) {
    const QDateTime time = model.index(row, 0, parent).data(kTimeRole).toDateTime();
    if (since_.isValid() && time < since_) return false;
    if (before_.isValid() && time >= before_) return false;
  }
  if (words_.isEmpty()) return true;
  const QString& text = SearchedText(row);
  return std::ranges::all_of(words_, [&](const QString& word) { return text.contains(word); });
}

}  // namespace tessmar
