#include "archive/ExportSource.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QProcess>

#include "archive/ArchiveRig.h"
#include "archive/SaveExport.h"
#include "archive/UploadsRig.h"
#include "history/HistoryTable.h"
#include "measure/SalinityConductivity.h"
#include "support/Ncdump.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// A well's logger, whose clock is 12 s fast at each upload.
class ExportSourceTest : public ArchiveFolder {
 protected:
  ExportSourceTest() : store_(Path()) {
    qputenv("TZ", "UTC");
    store_.Open(Store::Access::Write);
    well_ = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  }

  void SetSettings(qint64 upload, const std::function<void(AnalogChannelSettings&)>& change) {
    SetAll(upload, [&](LoggerSettings& settings) { change(settings.Analog[0]); });
  }
  void SetAll(qint64 upload, const std::function<void(LoggerSettings&)>& change) {
    const UploadRow row = store_.Upload(upload).value_or(UploadRow());
    LinkState link;
    link.AnalogChannelCount = 1;
    LoggerSettings settings;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(row.Settings.constData());
    UnpackConfigImage(link, {bytes, static_cast<std::size_t>(row.Settings.size())}, settings);
    change(settings);
    ConfigImage image;
    PackConfigImage(link, settings, image);
    store_.Run(u"UPDATE upload SET settings = ? WHERE id = ?"_s,
               {QByteArray(reinterpret_cast<const char*>(image.data()),
                           static_cast<qsizetype>(image.size())),
                upload});
  }

  /// An upload that runs and has this block.
  qint64 AddRunning(const QByteArray& block) {
    const qint64 running = store_.AddUpload({.Uuid = u"r"_s,
                                             .LoggerId = well_,
                                             .Started = Hour(15),
                                             .State = UploadState::Running,
                                             .Settings = ImageOf(u"Well 7"_s),
                                             .Analog = 1});
    store_.Run(u"INSERT INTO block (upload_id, number, bytes) VALUES (?, 1, ?)"_s,
               {running, block});
    return running;
  }

  QByteArray Written(ExportSource source, ExportKind kind) const {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const std::optional<std::int64_t> count = WriteExport(
        buffer, source,
        {.Kind = kind, .Locale = locale_, .Saved = Hour(20), .Program = u"Tessmar Logger 2.1.9"_s},
        [](std::int64_t) { return true; });
    EXPECT_EQ(count, source.Count);
    return buffer.data();
  }
  QByteArray Analysis(ExportSource source) const {
    return Written(std::move(source), ExportKind::AnalysisCsv);
  }

  Store store_;
  qint64 well_ = 0;
  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
};

TEST_F(ExportSourceTest, AnUploadHasItsOwnRecordsAndWhatIsSaidOfThem) {
  AddUpload(store_, well_, Hour(13), {10, 12});
  const qint64 second = AddUpload(store_, well_, Hour(14), {10, 12, 14}, u"COM5"_s);
  ExportSource source = SourceOfUpload(store_, second);
  EXPECT_EQ(source.Head.LoggerName, u"Well 7"_s);
  EXPECT_EQ(source.Head.LoggerModel, u"12"_s);
  EXPECT_EQ(source.Head.Firmware, u"3"_s);
  EXPECT_EQ(source.Head.LoggerUuid, store_.Logger(well_)->Uuid);
  EXPECT_EQ(source.Head.Source, u"upload 2 of 2026-03-03T14:00:00Z from COM5"_s);
  EXPECT_EQ(Analysis(std::move(source)),
            "logger_time,corrected_time,Channel 1 (%),disagreement\r\n"
            "2026-03-03T12:00:10,,0.10,0\r\n2026-03-03T12:00:12,,0.12,0\r\n"
            "2026-03-03T12:00:14,,0.14,0\r\n");
  EXPECT_EQ(Written(SourceOfUpload(store_, second), ExportKind::ViewerCsv),
            "Well 7,3/3/2026,8:00:00 PM\r\nDate, Time, %\r\n"
            "3/3/26, 12:00:10, 0.10\r\n3/3/26, 12:00:12, 0.12\r\n3/3/26, 12:00:14, 0.14\r\n");
  EXPECT_THROW(SourceOfUpload(store_, 99), RangeFault);
}

TEST_F(ExportSourceTest, AnUploadWhoseSettingsNobodyKnowsHasTimesAlone) {
  AddUpload(store_, well_, Hour(12), {10});
  const qint64 unknown = AddUpload(store_, well_, Hour(13), {10, 42});
  store_.Run(u"UPDATE upload SET settings = NULL WHERE id = ?"_s, {unknown});
  EXPECT_EQ(Analysis(SourceOfUpload(store_, unknown)),
            "logger_time,corrected_time,disagreement\r\n"
            "2026-03-03T12:00:10,,0\r\n2026-03-03T12:00:42,2026-03-03T12:00:30Z,0\r\n");
  EXPECT_EQ(Written(SourceOfUpload(store_, unknown), ExportKind::ViewerCsv),
            ",3/3/2026,8:00:00 PM\r\nDate, Time\r\n3/3/26, 12:00:10\r\n3/3/26, 12:00:42\r\n");
  EXPECT_TRUE(
      Dumped(Written(SourceOfUpload(store_, unknown), ExportKind::NetCdf), {u"-v"_s, u"time"_s})
          .contains(u" time = 1772539210, 1772539242 ;"_s));
  EXPECT_EQ(SourceOfSeries(store_, well_).Count, 1);
}

TEST_F(ExportSourceTest, TheCorrectedTimeOfAnUploadLiesBetweenTheReadingsOfAll) {
  // 12 s fast at noon and at one: what the logger calls 12:00:42 was half past twelve seconds.
  AddUpload(store_, well_, Hour(12), {10});
  const qint64 second = AddUpload(store_, well_, Hour(13), {10, 42, 3012});
  EXPECT_EQ(Analysis(SourceOfUpload(store_, second)),
            "logger_time,corrected_time,Channel 1 (%),disagreement\r\n"
            "2026-03-03T12:00:10,,0.10,0\r\n"
            "2026-03-03T12:00:42,2026-03-03T12:00:30Z,0.42,0\r\n"
            "2026-03-03T12:50:12,2026-03-03T12:50:00Z,30.12,0\r\n");
}

TEST_F(ExportSourceTest, ASeriesHasEachRecordOnceAndMarksWhereUploadsDisagree) {
  AddUpload(store_, well_, Hour(12), {10, 20, 30, 50, 60, 70});
  AddUpload(store_, well_, Hour(13), {10, 20, 30, 40, 60, 70, 80});
  ExportSource source = SourceOfSeries(store_, well_);
  EXPECT_EQ(source.Count, 8);
  EXPECT_EQ(source.Disagreements, 2);
  EXPECT_EQ(source.Head.Source,
            u"series of uploads 1, 2, taken from 2026-03-03T12:00:00Z to 2026-03-03T13:00:00Z"_s);
  EXPECT_EQ(Analysis(std::move(source)),
            "logger_time,corrected_time,Channel 1 (%),disagreement\r\n"
            "2026-03-03T12:00:10,,0.10,0\r\n2026-03-03T12:00:20,,0.20,0\r\n"
            "2026-03-03T12:00:30,,0.30,0\r\n2026-03-03T12:00:50,,0.50,1\r\n"
            "2026-03-03T12:00:40,,0.40,1\r\n2026-03-03T12:01:00,,0.60,0\r\n"
            "2026-03-03T12:01:10,,0.70,0\r\n2026-03-03T12:01:20,2026-03-03T12:01:08Z,0.80,0\r\n");
  const QString dump = Dumped(Written(SourceOfSeries(store_, well_), ExportKind::NetCdf),
                              {u"-v"_s, u"time,time_corrected,a1,disagreement"_s});
  EXPECT_EQ(dump.mid(dump.indexOf(u"data:"_s)).simplified().toStdString(),
            "data: a1 = 0.1, 0.2, 0.3, 0.5, 0.4, 0.6, 0.7, 0.8 ; "
            "disagreement = 0, 0, 0, 1, 1, 0, 0, 0 ; "
            "time = 1772539210, 1772539220, 1772539230, 1772539250, 1772539240, 1772539260, "
            "1772539270, 1772539280 ; "
            "time_corrected = _, _, _, _, _, _, _, 1772539268 ; }");
}

TEST_F(ExportSourceTest, AnotherUnitHasAColumnOfItsOwn) {
  AddUpload(store_, well_, Hour(12), {10, 20});
  const qint64 second = AddUpload(store_, well_, Hour(13), {10, 20, 30});
  SetSettings(second, [](AnalogChannelSettings& channel) { channel.EngUnits = u"Volts"_s; });
  EXPECT_EQ(Analysis(SourceOfSeries(store_, well_)),
            "logger_time,corrected_time,Channel 1 (%),Channel 1 (Volts),disagreement\r\n"
            "2026-03-03T12:00:10,,0.10,,0\r\n2026-03-03T12:00:20,,0.20,,0\r\n"
            "2026-03-03T12:00:30,2026-03-03T12:00:18Z,,0.30,0\r\n");
  const QString dump = Dumped(Written(SourceOfSeries(store_, well_), ExportKind::NetCdf), {});
  EXPECT_TRUE(dump.contains(u"a1:units = \"percent\""_s) || dump.contains(u"a1:units = \"%\""_s));
  EXPECT_TRUE(dump.contains(u"a1_2:units = \"volt\""_s) || dump.contains(u"a1_2:units = \"V\""_s))
      << dump.toStdString();
  EXPECT_THROW(Written(SourceOfSeries(store_, well_), ExportKind::ViewerCsv), MixedChannels);
}

TEST_F(ExportSourceTest, TheViewersFileOfASeriesScalesEachRecordByItsOwnUpload) {
  AddUpload(store_, well_, Hour(12), {10, 20});
  const qint64 second = AddUpload(store_, well_, Hour(13), {10, 20, 30});
  SetSettings(second, [](AnalogChannelSettings& channel) { channel.UpperLimit = 200; });
  EXPECT_EQ(Written(SourceOfSeries(store_, well_), ExportKind::ViewerCsv),
            "Well 7,3/3/2026,8:00:00 PM\r\nDate, Time, %\r\n"
            "3/3/26, 12:00:10, 0.10\r\n3/3/26, 12:00:20, 0.20\r\n3/3/26, 12:00:30, 0.60\r\n");
}

TEST_F(ExportSourceTest, MoreDecimalsAreNoOtherColumn) {
  AddUpload(store_, well_, Hour(12), {10, 20});
  const qint64 second = AddUpload(store_, well_, Hour(13), {10, 20, 30});
  SetSettings(second, [](AnalogChannelSettings& channel) { channel.DecPlaces = 3; });
  EXPECT_EQ(Analysis(SourceOfSeries(store_, well_)),
            "logger_time,corrected_time,Channel 1 (%),disagreement\r\n"
            "2026-03-03T12:00:10,,0.100,0\r\n2026-03-03T12:00:20,,0.200,0\r\n"
            "2026-03-03T12:00:30,2026-03-03T12:00:18Z,0.300,0\r\n");
}

TEST_F(ExportSourceTest, AColumnTellsSinceWhenItsValuesAreMadeInAnotherWay) {
  const qint64 uploads[] = {AddUpload(store_, well_, Hour(12), {10, 20}),
                            AddUpload(store_, well_, Hour(13), {10, 20, 30}),
                            AddUpload(store_, well_, Hour(14), {20, 30, 40}),
                            AddUpload(store_, well_, Hour(15), {30, 40, 50})};
  const double conductivity[] = {40, 40, 35, 40};
  for (int i = 0; i < 4; ++i) {
    SetAll(uploads[i], [&](LoggerSettings& settings) {
      settings.Do.EnableSalinityDisplay = 1;
      settings.Do.SalinityDisplayChannel = 0;
      settings.Do.ConductivityManualEntry = 1;
      settings.Do.ConductivityManual = conductivity[i];
      settings.Do.ConductivityManualEntryUnits = kMilliSiemensPerCm;
    });
  }
  const std::vector<ExportColumn> columns = ColumnsOf(SourceOfSeries(store_, well_).Settings);
  ASSERT_EQ(columns.size(), 1U);
  EXPECT_EQ(columns[0].Name, u"Salinity"_s);
  const QString method =
      u"practical salinity scale 1978 with its coefficients at 25 °C, extended to low salinities "
      "after Hill, Dauphinee and Woods (1986); from conductivity at 25 °C %1 mS/cm as typed in; "
      "largest deviation from the full scale 0.0006 for water at 25 °C up to a salinity of 42"_s;
  EXPECT_EQ(columns[0].Method, u"from 2026-03-03T12:00:10: "_s + method.arg(40) +
                                   u"; from 2026-03-03T12:00:40: "_s + method.arg(35) +
                                   u"; from 2026-03-03T12:00:50: "_s + method.arg(40));
  // One that stays the same needs no time.
  EXPECT_EQ(ColumnsOf(SourceOfUpload(store_, uploads[2]).Settings).at(0).Method, method.arg(35));
}

TEST_F(ExportSourceTest, AReadingAndWhatIsDerivedInItsPlaceAreTwoColumns) {
  AddUpload(store_, well_, Hour(12), {10, 20});
  const qint64 second = AddUpload(store_, well_, Hour(13), {10, 20, 30});
  SetAll(second, [](LoggerSettings& settings) {
    settings.Do.EnableSalinityDisplay = 1;
    settings.Do.SalinityDisplayChannel = 0;
  });
  const std::vector<ExportColumn> columns = ColumnsOf(SourceOfSeries(store_, well_).Settings);
  ASSERT_EQ(columns.size(), 2U);
  EXPECT_EQ(columns[0].Name, u"Channel 1"_s);
  EXPECT_EQ(columns[0].Method, u""_s);
  EXPECT_EQ(columns[1].Place, u"a1_2"_s);
  EXPECT_EQ(columns[1].Name, u"Salinity"_s);
  EXPECT_TRUE(columns[1].Method.startsWith(u"practical salinity"_s));
}

TEST_F(ExportSourceTest, TheBlocksOfAnUploadThatRunsAreItsRecords) {
  QByteArray block(241, '\0');
  block[0] = 1;
  for (int i = 0; i < 4; ++i) block[1 + i] = static_cast<char>(StampOf(77) >> (8 * i));
  block[5] = 77;
  EXPECT_EQ(Analysis(SourceOfUpload(store_, AddRunning(block))),
            "logger_time,corrected_time,Channel 1 (%),disagreement\r\n"
            "2026-03-03T12:01:17,,0.77,0\r\n");
}

// A count that no block of such records can have is no count, here as where the archive's own
// records are made from blocks.
TEST_F(ExportSourceTest, ABlockWithAnImpossibleCountHasNoRecords) {
  EXPECT_EQ(SourceOfUpload(store_, AddRunning(QByteArray(241, '\xFF'))).Count, 0);
}

// Any program may have written the row, and the number of its records with it.
TEST_F(ExportSourceTest, ASeriesDoesNotTrustTheNumberInTheRow) {
  const qint64 upload = AddUpload(store_, well_, Hour(13), {10, 12});
  for (const qint64 number : {-1LL, 2147483647LL}) {
    store_.Run(u"UPDATE upload SET records = ? WHERE id = ?"_s, {number, upload});
    EXPECT_EQ(SourceOfSeries(store_, well_).Count, 2) << number;
  }
}

TEST_F(ExportSourceTest, ALoggerWithoutUploadsIsAFileWithoutRecords) {
  EXPECT_EQ(Analysis(SourceOfSeries(store_, well_)), "logger_time,corrected_time,disagreement\r\n");
  EXPECT_THROW(SourceOfSeries(store_, 99), RangeFault);
}

TEST_F(ExportSourceTest, ValuesAndUnitsAreThoseOfTheViewersTable) {
  std::vector<int> records;
  for (int second = 0; second < 600; ++second) records.push_back(second * 5);
  const qint64 upload = AddUpload(store_, well_, Hour(12), records);
  SetSettings(upload, [](AnalogChannelSettings& channel) {
    channel.UpperLimit = -37.5F;
    channel.DecPlaces = 4;
    channel.EngUnits = u"Temp C"_s;
  });
  QFile csv(folder_.filePath(u"well.csv"_s));
  ASSERT_TRUE(csv.open(QIODevice::WriteOnly));
  csv.write(Analysis(SourceOfUpload(store_, upload)));
  csv.close();
  QProcess python;
  python.start(u"python3"_s,
               {u"-c"_s,
                u"import csv, sys\n"
                "for row in csv.DictReader(open(sys.argv[1], newline='', encoding='utf-8')):\n"
                "    print(row['Channel 1 (Temp C)'])\n"_s,
                csv.fileName()});
  ASSERT_TRUE(python.waitForFinished(30000));
  EXPECT_EQ(python.readAllStandardError(), "");
  const QStringList read = QString::fromUtf8(python.readAllStandardOutput()).split(u'\n');

  const ArchivedUpload shown = LoadUpload(store_, upload);
  const HistoryTable table(*shown.Records, shown.Settings, shown.Link, false, locale_);
  ASSERT_EQ(table.Column(1).Heading, u"Temp C"_s);
  ASSERT_EQ(read.size(), 601);
  for (int row = 0; row < 600; ++row) EXPECT_EQ(read[row], table.CellText(row, 1));

  // Written as a decimal number with all digits of a double, each is that number again.
  const QString dump = Dumped(Written(SourceOfUpload(store_, upload), ExportKind::NetCdf),
                              {u"-v"_s, u"a1"_s, u"-p"_s, u"9,17"_s});
  const qsizetype data = dump.indexOf(u" a1 = "_s) + 6;
  const QStringList numbers = dump.mid(data, dump.indexOf(u" ;"_s, data) - data).split(u',');
  ASSERT_EQ(numbers.size(), 600);
  for (int row = 0; row < 600; ++row)
    EXPECT_EQ(numbers[row].trimmed().toDouble(), table.CellText(row, 1).toDouble());
}

}  // namespace
}  // namespace tessmar::test
