#include "archive/CalibrationsModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QLocale>

#include "archive/UploadsRig.h"
#include "base/TextTable.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using Tester = QAbstractItemModelTester;

/// Three calibrations; the second has what the scale before shows nowhere, and no name.
std::vector<CalibrationRow> Calibrations() {
  return {{.At = Hour(10),
           .LoggerId = 1,
           .Channel = 2,
           .Unit = u"%"_s,
           .Decimals = 1,
           .Low = {.Value = 0.5, .Raw = 120, .OldScale = 0.25, .Drift = -0.25},
           .High = {.Value = 100, .Raw = 65000, .OldScale = 103, .Drift = 3},
           .DaysSince = 12.25},
          {.At = Hour(9),
           .LoggerId = 2,
           .Channel = 8,
           .Unit = u"mg/L"_s,
           .Decimals = 2,
           .Low = {.Value = 20, .Raw = 0},
           .High = {.Value = 9, .Raw = 1}},
          {.At = Hour(11),
           .LoggerId = 1,
           .Channel = 1,
           .Unit = u"%"_s,
           .Low = {.Value = -3, .Raw = 7, .OldScale = 2, .Drift = 5},
           .High = {.Value = 30, .Raw = 9, .OldScale = 20, .Drift = -10},
           .DaysSince = 2}};
}

class ACalibrationsModel : public testing::Test {
 protected:
  ACalibrationsModel() {
    qputenv("TZ", "UTC");
    SetTextLanguage(kLanguageEnglish);
    model_.Set(Calibrations(), {{1, u"Well 7"_s}, {2, QString()}});
  }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  QString Row(int row, int role = Qt::DisplayRole) const {
    QStringList cells;
    for (int column = 0; column < model_.columnCount(); ++column)
      cells.append(model_.data(model_.index(row, column), role).toString());
    return cells.join(u'|');
  }
  /// The channels in the order that a column is sorted in.
  QList<int> SortedBy(int column) {
    ArchiveFilter filter;
    filter.setSourceModel(&model_);
    filter.sort(column);
    QList<int> channels;
    for (int row = 0; row < filter.rowCount(); ++row)
      channels.append(model_.Row(filter.mapToSource(filter.index(row, 0)).row()).Channel);
    return channels;
  }

  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
  CalibrationsModel model_{locale_};
};

TEST_F(ACalibrationsModel, TellsWhatACalibrationWas) {
  const Tester tester(&model_, Tester::FailureReportingMode::Fatal);
  EXPECT_EQ(Row(0),
            u"3/3/2026 10:00:00 AM|Well 7|2 (%)|0.5 at 120|-0.250|100 at 65000|+3.000|12.2"_s);
  EXPECT_EQ(Row(1), u"3/3/2026 9:00:00 AM|(without a name)|8 (mg/L)|20 at 0||9 at 1||"_s);
  EXPECT_EQ(Row(0, Qt::ToolTipRole), Row(0));
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(Row(1), u"3/3/2026 9:00:00 AM|(ohne Namen)|8 (mg/L)|20 bei 0||9 bei 1||"_s);
  EXPECT_EQ(model_.NameOf(1), u"Well 7"_s);
  EXPECT_EQ(model_.NameOf(3), QString());
}

TEST_F(ACalibrationsModel, IsSortedByWhatItsCellsMean) {
  using M = CalibrationsModel;
  EXPECT_EQ(SortedBy(M::At), (QList<int>{8, 2, 1}));
  EXPECT_EQ(SortedBy(M::LoggerName), (QList<int>{8, 2, 1}));
  EXPECT_EQ(SortedBy(M::Channel), (QList<int>{1, 2, 8}));
  EXPECT_EQ(SortedBy(M::LowPoint), (QList<int>{1, 2, 8}));
  EXPECT_EQ(SortedBy(M::LowDrift), (QList<int>{8, 2, 1}));
  EXPECT_EQ(SortedBy(M::HighPoint), (QList<int>{8, 1, 2}));
  EXPECT_EQ(SortedBy(M::HighDrift), (QList<int>{8, 1, 2}));
  EXPECT_EQ(SortedBy(M::DaysSince), (QList<int>{8, 1, 2}));
}

TEST_F(ACalibrationsModel, IsFilteredByTheTimeOfTheCalibration) {
  EXPECT_EQ(model_.data(model_.index(2, CalibrationsModel::Channel), kTimeRole).toDateTime(),
            Hour(11));
  EXPECT_FALSE(model_.data(model_.index(0, 0), Qt::DecorationRole).isValid());
}

TEST_F(ACalibrationsModel, HasHeadingsWithTipsInBothLanguages) {
  const auto heading = [this](int column, int role = Qt::DisplayRole) {
    return model_.headerData(column, Qt::Horizontal, role).toString();
  };
  EXPECT_EQ(heading(CalibrationsModel::At), u"Time"_s);
  EXPECT_EQ(heading(CalibrationsModel::At, Qt::ToolTipRole), u""_s);
  EXPECT_EQ(heading(CalibrationsModel::HighPoint), u"High point"_s);
  EXPECT_EQ(heading(CalibrationsModel::HighDrift, Qt::ToolTipRole),
            u"What the scale before shows at this raw count, minus the value of the point"_s);
  EXPECT_EQ(heading(CalibrationsModel::DaysSince), u"Days since"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(heading(CalibrationsModel::LowPoint), u"Unterer Punkt"_s);
  EXPECT_EQ(heading(CalibrationsModel::DaysSince, Qt::ToolTipRole),
            u"Seit der vorigen Kalibrierung dieses Kanals"_s);
  for (const int column : {-1, 8})
    EXPECT_FALSE(model_.headerData(column, Qt::Horizontal, Qt::DisplayRole).isValid());
  EXPECT_FALSE(model_.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
  EXPECT_FALSE(model_.headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
}

}  // namespace
}  // namespace tessmar::test
