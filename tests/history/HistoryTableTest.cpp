#include "history/HistoryTable.h"

#include <gtest/gtest.h>

#include "base/Fault.h"
#include "base/TextTable.h"
#include "history/TableRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::Headings;
using test::kMinute;
using test::kStamp;
using test::Row;
using test::TableRig;

TEST(HistoryTable, HasAColumnForTheTimeAndForEachEnabledChannel) {
  TableRig rig(4, 2);
  rig.EnableAnalog(0, u"%"_s);
  rig.EnableAnalog(3, u"Volts"_s);
  rig.EnablePulse(1, u"Gallons"_s, 1, 0);
  const HistoryTable table = rig.Table();
  EXPECT_EQ(Headings(table), (QStringList{u"Date / Time"_s, u"%"_s, u"Volts"_s, u"Gallons"_s}));
  EXPECT_EQ(table.Column(0).Key, u"DateTime"_s);
  EXPECT_EQ(table.Column(1).Key, u""_s);
  EXPECT_FALSE(table.Column(0).Centred);
  EXPECT_TRUE(table.Column(1).Centred);
  EXPECT_TRUE(table.Column(3).Centred);
  EXPECT_EQ(table.Column(1).WidthTwips, 1200);
  EXPECT_EQ(table.Column(3).WidthTwips, 1440);
}

TEST(HistoryTable, TheFirstColumnIsFifteenHundredTwipsWhateverTheDateText) {
  TableRig rig(1, 0);
  rig.Add(kStamp, {0});
  EXPECT_EQ(rig.Table().Column(0).WidthTwips, 1500);
  rig.Locale = SystemLocale(QLocale(QLocale::Hungarian));
  EXPECT_EQ(rig.Table().Column(0).WidthTwips, 1500);
}

TEST(HistoryTable, HasItsFirstHeadingInGerman) {
  SetTextLanguage(kLanguageGerman);
  const TableRig rig(1, 0);
  EXPECT_EQ(Headings(rig.Table()), QStringList{u"Datum / Zeit"_s});
  SetTextLanguage(kLanguageEnglish);
}

TEST(HistoryTable, ShowsRecordsInTheOrderOfTheBuffer) {
  TableRig rig(2, 1);
  rig.EnableAnalog(0, u"%"_s);
  rig.EnableAnalog(1, u"Volts"_s);
  rig.EnablePulse(0, u"Pulses"_s, 1, 0);
  rig.Add(kStamp, {4120, 1285, 103});
  rig.Add(kStamp - kMinute, {4135, 1285, 104});
  const HistoryTable table = rig.Table();
  ASSERT_EQ(table.RowCount(), 2);
  EXPECT_EQ(Row(table, 0), (QStringList{u"12/26/10 15:47:29"_s, u"41.20"_s, u"12.85"_s, u"103"_s}));
  EXPECT_EQ(Row(table, 1), (QStringList{u"12/26/10 15:46:29"_s, u"41.35"_s, u"12.85"_s, u"104"_s}));
}

TEST(HistoryTable, ShowsTheDateOfAGermanSystemAndThePointInValues) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"%"_s);
  rig.Locale = test::German();
  rig.Add(kStamp, {150});
  EXPECT_EQ(Row(rig.Table(), 0), (QStringList{u"26.12.10 15:47:29"_s, u"1.50"_s}));
}

TEST(HistoryTable, ADisabledChannelLosesItsColumnOnlyAndShiftsNoOther) {
  TableRig rig(3, 2);
  rig.EnableAnalog(0, u"a"_s);
  rig.EnableAnalog(2, u"c"_s);
  rig.EnablePulse(1, u"p2"_s, 1, 0);
  rig.Add(kStamp, {100, 200, 300, 4, 5});
  EXPECT_EQ(Row(rig.Table(), 0).mid(1), (QStringList{u"1.00"_s, u"3.00"_s, u"5"_s}));
}

TEST(HistoryTable, ChannelsThatTheLoggerLacksHaveNoColumnAlthoughEnabled) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"a"_s);
  rig.EnableAnalog(1, u"b"_s);
  rig.EnablePulse(0, u"p"_s, 1, 0);
  EXPECT_EQ(rig.Table().ColumnCount(), 2);
}

TEST(HistoryTable, AWordOf65535IsScaledLikeAnyOther) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"a"_s);
  rig.Add(kStamp, {65535});
  EXPECT_EQ(rig.Table().CellText(0, 1), u"655.35"_s);
}

TEST(HistoryTable, APulseUnitOfAHundredthShows1234As12Point34) {
  TableRig rig(0, 1);
  rig.EnablePulse(0, u"Kgal"_s, 0.01, 2);
  rig.Add(kStamp, {1234});
  EXPECT_EQ(rig.Table().CellText(0, 1), u"12.34"_s);
}

TEST(HistoryTable, OneDigitalChannelAloneGivesAPulseColumnAlone) {
  TableRig rig(0, 1);
  rig.EnableAnalog(0, u"%"_s);
  rig.EnablePulse(0, u"Gallons"_s, 1, 0);
  rig.Add(kStamp, {17});
  EXPECT_EQ(Headings(rig.Table()), (QStringList{u"Date / Time"_s, u"Gallons"_s}));
  EXPECT_EQ(rig.Table().CellText(0, 1), u"17"_s);
}

TEST(HistoryTable, SalinityFromTypedInConductivityIsTheSameOnEveryRow) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"PSS"_s, 1);
  rig.EnableAnalog(1, u"mS/cm"_s);
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.SalinityDisplayChannel = 0;
  rig.Settings.Do.ConductivityManualEntry = 1;
  rig.Settings.Do.ConductivityManual = 53.087;
  rig.Settings.Do.ConductivityManualEntryUnits = 1;
  rig.Add(kStamp, {100, 100});
  rig.Add(kStamp, {900, 5000});
  const HistoryTable table = rig.Table();
  EXPECT_EQ(table.CellText(0, 1), u"35.0"_s);
  EXPECT_EQ(table.CellText(1, 1), u"35.0"_s);
}

TEST(HistoryTable, SalinityFromAChannelFollowsItsReading) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"PSS"_s, 1);
  rig.EnableAnalog(1, u"mS/cm"_s, 3);
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.SalinityDisplayChannel = 0;
  rig.Settings.Do.ConductivityChannel = 1;
  rig.Settings.Do.ConductivityUnits = 1;
  rig.Settings.Analog[1].RawScaleUpper = 53087;
  rig.Settings.Analog[1].UpperLimit = 53.087;
  rig.Add(kStamp, {0, 53087});
  rig.Add(kStamp, {0, 0});
  const HistoryTable table = rig.Table();
  EXPECT_EQ(Row(table, 0).mid(1), (QStringList{u"35.0"_s, u"53.087"_s}));
  EXPECT_EQ(Row(table, 1).mid(1), (QStringList{u"0.0"_s, u"0.000"_s}));
}

TEST(HistoryTable, SaturationWithoutItsOxygenChannelShowsDashesOnAllRows) {
  TableRig rig(3, 0);
  rig.EnableAnalog(0, u"%Sat"_s, 1);
  rig.EnableAnalog(1, u"Temp C"_s);
  rig.Settings.Do = DoSettings::Defaults();
  rig.Settings.Do.EnableO2SaturationDisplay = 1;
  rig.Settings.Do.O2SaturationDisplayChannel = 0;
  rig.Settings.Do.WaterTempChannel = 1;
  rig.Settings.Do.PO2Channel = 2;
  rig.Add(kStamp, {100, 2000, 20000});
  rig.Add(kStamp, {200, 2100, 21000});
  const HistoryTable table = rig.Table();
  EXPECT_EQ(table.CellText(0, 1), u"---"_s);
  EXPECT_EQ(table.CellText(1, 1), u"---"_s);
  EXPECT_EQ(table.CellText(1, 2), u"21.00"_s);

  rig.EnableAnalog(2, u"mbar"_s);
  EXPECT_NE(rig.Table().CellText(0, 1), u"---"_s);
}

TEST(HistoryTable, ADerivedChannelUsesItsColumnAndDecimalsButNeverItsOwnWord) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"PSS"_s, 3);
  rig.EnableAnalog(1, u"PSS"_s, 3);
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.SalinityDisplayChannel = 1;
  rig.Settings.Do.ConductivityManualEntry = 1;
  rig.Settings.Do.ConductivityManual = 12.5;
  rig.Settings.Do.ConductivityManualEntryUnits = 2;  // is a salinity already
  rig.Settings.Analog[1].DecPlaces = 1;
  rig.Add(kStamp, {100, 0});
  rig.Add(kStamp, {100, 60000});
  const HistoryTable table = rig.Table();
  EXPECT_EQ(Row(table, 0).mid(1), (QStringList{u"1.000"_s, u"12.5"_s}));
  EXPECT_EQ(Row(table, 1).mid(1), (QStringList{u"1.000"_s, u"12.5"_s}));
}

TEST(HistoryTable, ASourceThatIsEnabledButThatTheLoggerLacksReadsZero) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"PSS"_s, 1);
  rig.Settings.Analog[5].Enable = 1;
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.ConductivityChannel = 5;
  rig.Settings.Do.ConductivityUnits = 1;
  rig.Add(kStamp, {4000});
  EXPECT_EQ(rig.Table().CellText(0, 1), u"0.0"_s);
}

// The first pulse count stands in the place that a further channel would have.
TEST(HistoryTable, ASourceBehindTheLastChannelDoesNotReadThePulses) {
  TableRig rig(1, 1);
  rig.EnableAnalog(0, u"PSS"_s, 1);
  rig.EnableAnalog(1, u"uS/cm"_s);
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.ConductivityChannel = 1;
  rig.Settings.Do.ConductivityUnits = 1;
  rig.Add(kStamp, {4000, 60000});
  EXPECT_EQ(rig.Table().CellText(0, 1), u"0.0"_s);
}

TEST(HistoryTable, RelayColumnsStandBetweenAnalogAndPulseWhenTheyAreOn) {
  TableRig rig(2, 1);
  rig.EnableAnalog(1, u"Volts"_s, 3);
  rig.EnablePulse(0, u"Pulses"_s, 1, 0);
  rig.Settings.Analog[1].UpperLimit = 10;  // a word is a millivolt
  rig.Add(kStamp, {0, 75, 9});
  rig.Add(kStamp, {0, 4095, 9});
  rig.Add(kStamp, {0, 4096, 9});
  EXPECT_EQ(rig.Table().ColumnCount(), 3);
  const HistoryTable table = rig.Table(true);
  EXPECT_EQ(Headings(table).mid(1), (QStringList{u"Volts"_s, u"Relay 1"_s, u"Relay 2"_s,
                                                 u"Relay 3"_s, u"Relay 4"_s, u"Pulses"_s}));
  EXPECT_EQ(table.Column(2).WidthTwips, 950);
  EXPECT_TRUE(table.Column(2).Centred);
  EXPECT_EQ(Row(table, 0).mid(1),
            (QStringList{u"0.075"_s, u"On"_s, u"Off"_s, u"Off"_s, u"Off"_s, u"9"_s}));
  EXPECT_EQ(Row(table, 1).mid(2, 4), (QStringList{u"Pulse"_s, u"Pulse"_s, u"Pulse"_s, u"Pulse"_s}));
  EXPECT_EQ(Row(table, 2).mid(2, 4), (QStringList{u"---"_s, u"---"_s, u"---"_s, u"---"_s}));
}

TEST(HistoryTable, RelayColumnsOfADisabledChannelShowDashes) {
  TableRig rig(2, 0);
  rig.Add(kStamp, {0, 75});
  EXPECT_EQ(rig.Table(true).CellText(0, 1), u"---"_s);
}

TEST(HistoryTable, KeepsTheSettingsAndCountsOfItsMaking) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"a"_s);
  rig.EnableAnalog(1, u"b"_s);
  rig.Add(kStamp, {100, 200});
  const HistoryTable table = rig.Table();
  rig.Settings = LoggerSettings();
  rig.Link.AnalogChannelCount = 1;
  rig.Link.PulseChannelCount = 2;
  EXPECT_EQ(Headings(table), (QStringList{u"Date / Time"_s, u"a"_s, u"b"_s}));
  EXPECT_EQ(Row(table, 0).mid(1), (QStringList{u"1.00"_s, u"2.00"_s}));
}

TEST(HistoryTable, APackDropsRecordsWhoseCellsAreTheSameWhateverTheirTimes) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"a"_s);
  rig.Add(kStamp, {100});
  rig.Add(kStamp + kMinute, {100});
  const HistoryTable table = rig.PackedTable();
  ASSERT_EQ(table.RowCount(), 1);
  EXPECT_EQ(table.CellText(0, 0), u"12/26/10 15:47:29"_s);
  EXPECT_EQ(rig.Buffer.Count(), 2);
}

TEST(HistoryTable, APackComparesTextsSoThatASmallerChangeThanTheDecimalsDoesNotCount) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"a"_s, 1);
  rig.Add(kStamp, {101});
  rig.Add(kStamp, {102});
  rig.Add(kStamp, {117});
  rig.Add(kStamp, {118});
  const HistoryTable table = rig.PackedTable();
  ASSERT_EQ(table.RowCount(), 2);
  EXPECT_EQ(table.CellText(0, 1), u"1.0"_s);
  EXPECT_EQ(table.CellText(1, 1), u"1.2"_s);
  EXPECT_EQ(table.Record(1).Value[0], 117);
}

TEST(HistoryTable, ADroppedRecordIsStillThePredecessorOfTheNext) {
  // Every step is too small to show, the way as a whole is not.
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"a"_s, 0);
  for (const std::int32_t word : {100, 140, 149, 151, 160, 140}) rig.Add(kStamp, {word});
  const HistoryTable table = rig.PackedTable();
  ASSERT_EQ(table.RowCount(), 3);
  EXPECT_EQ(table.Record(0).Value[0], 100);
  EXPECT_EQ(table.Record(1).Value[0], 151);
  EXPECT_EQ(table.Record(2).Value[0], 140);
}

TEST(HistoryTable, APackKeepsARecordInWhichOneCellChanged) {
  TableRig rig(2, 1);
  rig.EnableAnalog(0, u"a"_s);
  rig.EnableAnalog(1, u"b"_s);
  rig.EnablePulse(0, u"p"_s, 1, 0);
  rig.Add(kStamp, {1, 2, 3});
  rig.Add(kStamp, {1, 2, 4});
  rig.Add(kStamp, {1, 2, 4});
  rig.Add(kStamp, {1, 3, 4});
  EXPECT_EQ(rig.PackedTable().RowCount(), 3);
}

TEST(HistoryTable, APackLooksAtEnabledChannelsOnly) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"a"_s);
  rig.Add(kStamp, {1, 2});
  rig.Add(kStamp, {1, 900});
  EXPECT_EQ(rig.PackedTable().RowCount(), 1);
}

TEST(HistoryTable, APackFollowsTheSourcesOfADerivedChannel) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"PSS"_s, 1);
  rig.EnableAnalog(1, u"mS/cm"_s, 0);
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.ConductivityChannel = 1;
  rig.Settings.Do.ConductivityUnits = 1;
  rig.Add(kStamp, {0, 5000});
  rig.Add(kStamp, {7, 5000});
  rig.Add(kStamp, {7, 5040});  // both 50 mS/cm, but another salinity
  EXPECT_EQ(rig.PackedTable().RowCount(), 2);
}

TEST(HistoryTable, APackWithoutDataColumnsLeavesNothing) {
  TableRig rig(2, 1);
  rig.Add(kStamp, {1, 2, 3});
  rig.Add(kStamp, {4, 5, 6});
  EXPECT_EQ(rig.Table().RowCount(), 2);
  EXPECT_EQ(rig.PackedTable().RowCount(), 0);
}

TEST(HistoryTable, PackingTwiceIsTheSameAsPackingOnce) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"a"_s);
  for (const std::int32_t word : {1, 1, 2, 2, 1}) rig.Add(kStamp, {word});
  HistoryTable table = rig.PackedTable();
  EXPECT_EQ(table.RowCount(), 3);
  table.Pack([](std::int32_t) {});
  EXPECT_EQ(table.RowCount(), 3);
}

TEST(HistoryTable, AnEmptyBufferGivesHeadingsOnly) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"a"_s);
  EXPECT_EQ(rig.Table().RowCount(), 0);
  EXPECT_EQ(rig.Table().ColumnCount(), 2);
  EXPECT_EQ(rig.PackedTable().RowCount(), 0);
}

TEST(HistoryTable, RefusesWhatLiesOutside) {
  TableRig rig(1, 0);
  rig.Add(kStamp, {1});
  const HistoryTable table = rig.Table();
  EXPECT_THROW(table.CellText(1, 0), RangeFault);
  EXPECT_THROW(table.CellText(-1, 0), RangeFault);
  EXPECT_THROW(table.CellText(0, 1), RangeFault);
  EXPECT_THROW(table.Column(-1), RangeFault);
  EXPECT_THROW(rig.PackedTable().Record(0), RangeFault);
}

}  // namespace
}  // namespace tessmar
