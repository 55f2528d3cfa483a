#include "history/TableSeries.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Fault.h"
#include "history/TableRig.h"
#include "measure/StampTime.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::kMinute;
using test::kStamp;
using test::TableRig;

TEST(TableSeries, HasTheTimesUnitsAndValuesOfTheTable) {
  TableRig rig(3, 2);
  rig.Settings.SampleInterval = u"1 minute"_s;
  rig.EnableAnalog(0, u"mg/L"_s);
  rig.EnableAnalog(2, u"Volts"_s, 1);
  rig.EnablePulse(1, u"mm"_s, 0.25, 2);
  rig.Add(kStamp, {4120, 1, 1285, 7, 8});
  rig.Add(kStamp + kMinute, {4121, 1, 1286, 7, 9});
  const SeriesSet set = SeriesOf(rig.Table(true), u"Well 7"_s);
  EXPECT_EQ(set.LoggerName, u"Well 7"_s);
  const double first = 4012 * 86400.0 + 15 * 3600 + 47 * 60 + 29;
  EXPECT_EQ(set.Times, (std::vector<double>{first, first + 60}));
  EXPECT_TRUE(set.Corrected.empty());
  EXPECT_EQ(set.Stretches, std::vector{(LoggingStretch{.First = 0, .Interval = 60})});
  ASSERT_EQ(set.Channels.size(), 3U);
  EXPECT_EQ(set.Channels[0].Place, u"a1"_s);
  EXPECT_EQ(set.Channels[0].Unit, u"mg/L"_s);
  EXPECT_EQ(set.Channels[0].Decimals, 2);
  EXPECT_FALSE(set.Channels[0].IsPulse());
  EXPECT_DOUBLE_EQ(set.Channels[0].Values[1], 41.21);
  EXPECT_EQ(set.Channels[1].Place, u"a3"_s);
  EXPECT_EQ(set.Channels[1].Decimals, 1);
  EXPECT_EQ(set.Channels[2].Place, u"p2"_s);
  EXPECT_TRUE(set.Channels[2].IsPulse());
  EXPECT_EQ(set.Channels[2].Values, (std::vector<double>{2, 2.25}));
}

// Every value of the series, rounded as the column says, is the text of its cell.
TEST(TableSeries, ShowsWhatTheCellsShow) {
  TableRig rig(4, 1);
  for (std::size_t channel = 0; channel < 4; ++channel) rig.EnableAnalog(channel, u"u"_s, 3);
  rig.EnablePulse(0, u"mm"_s, 1.0 / 3, 4);
  rig.Settings.Do = DoSettings::Defaults();
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.SalinityDisplayChannel = 1;
  rig.Settings.Do.ConductivityManualEntry = 0;
  rig.Settings.Do.ConductivityChannel = 0;
  rig.Settings.Do.EnableO2SaturationDisplay = 1;
  rig.Settings.Do.O2SaturationDisplayChannel = 2;
  rig.Settings.Do.PO2Channel = 6;  // Not enabled: no value.
  for (int i = 0; i < 100; ++i) rig.Add(kStamp, {i * 655, 65535 - i, i, 7 * i, i});
  const HistoryTable table = rig.Table();
  const SeriesSet set = SeriesOf(table, {});
  ASSERT_EQ(set.Channels.size(), 5U);
  for (int row = 0; row < 100; ++row) {
    for (int column = 1; column < table.ColumnCount(); ++column) {
      const Series& series = set.Channels[static_cast<std::size_t>(column - 1)];
      const double value = series.Values[static_cast<std::size_t>(row)];
      ASSERT_EQ(FormatValue(value, series.Decimals), table.CellText(row, column));
    }
  }
  EXPECT_TRUE(std::isnan(set.Channels[2].Values[0]));
  EXPECT_EQ(table.CellText(0, 3), u"---"_s);
}

TEST(TableSeries, AnOverflowIsNoValue) {
  TableRig rig(1, 1);
  rig.EnablePulse(0, u"mm"_s, 1e308, 0);
  rig.Add(kStamp, {0, 65535});
  EXPECT_TRUE(std::isnan(SeriesOf(rig.Table(), {}).Channels[0].Values[0]));
}

TEST(TableSeries, PackingLeavesNothingOut) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"%"_s);
  for (const int word : {100, 100, 200, 200, 200, 100}) rig.Add(kStamp, {word});
  const HistoryTable table = rig.PackedTable();
  ASSERT_EQ(table.RowCount(), 3);
  EXPECT_EQ(SeriesOf(table, {}).Times.size(), 6U);
  EXPECT_EQ(table.RowOf(0), 0);
  EXPECT_EQ(table.RowOf(1), 0);
  EXPECT_EQ(table.RowOf(4), 1);
  EXPECT_EQ(table.RowOf(5), 2);
  EXPECT_EQ(table.RowOf(6), -1);
  EXPECT_EQ(table.RowOf(-1), -1);
  EXPECT_EQ(rig.Table().RowOf(4), 4);
}

TEST(TableSeries, ARecordWithoutATimeHasNone) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"%"_s);
  rig.Buffer.Append(LiveSample{});
  EXPECT_TRUE(std::isnan(SeriesOf(rig.Table(), {}).Times[0]));
}

TEST(TableSeries, RelaysAndTimesAreNoNumbers) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"%"_s);
  rig.Add(kStamp, {1, 2});
  const HistoryTable table = rig.Table(true);
  EXPECT_EQ(SeriesOf(table, {}).Channels.size(), 1U);
  EXPECT_THROW(table.CellValue(table.Record(0), 0), RangeFault);
  EXPECT_THROW(table.CellValue(table.Record(0), 2), RangeFault);
}

}  // namespace
}  // namespace tessmar
