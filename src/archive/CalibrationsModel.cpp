#include "archive/CalibrationsModel.h"

#include <array>
#include <limits>
#include <utility>

#include "archive/WindowTexts.h"
#include "base/Numbers.h"
#include "base/TextTable.h"
#include "measure/Scaling.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

struct Heading {
  const char16_t* English;
  const char16_t* German;
  const char16_t* EnglishTip;
  const char16_t* GermanTip;
};

constexpr const char16_t* kDriftTip =
    u"What the scale before shows at this raw count, minus the value of the point";
constexpr const char16_t* kGermanDriftTip =
    u"Was die Skala davor bei diesem Rohwert anzeigt, minus den Wert des Punkts";

constexpr std::array<Heading, CalibrationsModel::kColumns> kHeadings{{
    {u"Time", u"Zeit", u"", u""},
    {u"Logger", u"Logger", u"", u""},
    {u"Channel", u"Kanal", u"", u""},
    {u"Low point", u"Unterer Punkt", u"Value at raw count", u"Wert bei Rohwert"},
    {u"Drift there", u"Drift dort", kDriftTip, kGermanDriftTip},
    {u"High point", u"Oberer Punkt", u"Value at raw count", u"Wert bei Rohwert"},
    {u"Drift there", u"Drift dort", kDriftTip, kGermanDriftTip},
    {u"Days since", u"Tage seit", u"Since this channel's calibration before",
     u"Seit der vorigen Kalibrierung dieses Kanals"},
}};

QString PointText(const CalibrationPoint& point) {
  return InLanguage(u"%1 at %2", u"%1 bei %2")
      .arg(FormatInvariantNumber(point.Value))
      .arg(point.Raw);
}

/// None sorts below all.
QVariant Key(const std::optional<double>& value) {
  return value.value_or(-std::numeric_limits<double>::infinity());
}

}  // namespace

void CalibrationsModel::Set(std::vector<CalibrationRow> rows, LoggerNames names) {
  beginResetModel();
  rows_ = std::move(rows);
  names_ = std::move(names);
  endResetModel();
}

int CalibrationsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int CalibrationsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant CalibrationsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || !checkIndex(index)) return {};
  const CalibrationRow& row = Row(index.row());
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return Text(row, index.column());
  if (role == kTimeRole) return row.At;
  if (role != kSortRole) return {};
  switch (index.column()) {
    case At:
      return row.At;
    case Channel:
      return row.Channel;
    case LowPoint:
      return row.Low.Value;
    case LowDrift:
      return Key(row.Low.Drift);
    case HighPoint:
      return row.High.Value;
    case HighDrift:
      return Key(row.High.Drift);
    case DaysSince:
      return Key(row.DaysSince);
    default:
      return Text(row, index.column());
  }
}

QString CalibrationsModel::Text(const CalibrationRow& row, int column) const {
  switch (column) {
    case At:
      return LocalTimeText(row.At, locale_);
    case LoggerName: {
      const QString name = names_.value(row.LoggerId);
      return name.isEmpty() ? GetText(WindowTextId::UnnamedLogger) : name;
    }
    case Channel:
      return u"%1 (%2)"_s.arg(row.Channel).arg(row.Unit);
    case LowPoint:
      return PointText(row.Low);
    case LowDrift:
      return DriftText(row.Low.Drift, row.Decimals);
    case HighPoint:
      return PointText(row.High);
    case HighDrift:
      return DriftText(row.High.Drift, row.Decimals);
    default:
      return row.DaysSince ? FormatValue(*row.DaysSince, 1) : QString();
  }
}

QVariant CalibrationsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumns) return {};
  const Heading& heading = kHeadings.at(static_cast<std::size_t>(section));
  if (role == Qt::DisplayRole) return InLanguage(heading.English, heading.German);
  if (role == Qt::ToolTipRole) return InLanguage(heading.EnglishTip, heading.GermanTip);
  return {};
}

}  // namespace tessmar
