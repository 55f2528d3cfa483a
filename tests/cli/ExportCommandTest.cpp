#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "archive/ArchivedUpload.h"
#include "archive/UploadsRig.h"
#include "cli/CommandRig.h"
#include "history/CsvExport.h"
#include "sim/FlashImage.h"
#include "support/Ncdump.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ExportCommandTest : public CommandRig {
 protected:
  int Export(const QStringList& arguments) {
    return Run(QStringList{u"archive"_s, u"export"_s} + arguments);
  }

  /// What the viewer's Save To File writes of an upload.
  QByteArray SavedByViewer(qint64 number, bool singleColumn) {
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Read);
    const ArchivedUpload upload = LoadUpload(store, number);
    const HistoryTable table(*upload.Records, upload.Settings, upload.Link, false, Locale);
    SaveCsv(File("viewer.csv"), table,
            {.LoggerName = upload.LoggerName, .Saved = Clock.Now(), .SingleColumn = singleColumn},
            [](std::int32_t) {});
    return ReadFile(File("viewer.csv"));
  }

  /// A well's logger with two uploads that disagree, see UploadsRig.
  qint64 AddWell() {
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Write);
    const qint64 well = store.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
    AddUpload(store, well, Hour(12), {10, 20, 30, 50, 60, 70});
    AddUpload(store, well, Hour(13), {10, 20, 30, 40, 60, 70, 80});
    return well;
  }
};

TEST_F(ExportCommandTest, WritesTheFileThatUploadAndViewerWrite) {
  for (const bool singleColumn : {false, true}) {
    if (singleColumn)
      WriteFile(File("store.ini"), "[Configuration]\nCSVDateTimeSingleColumn=Yes\n");
    ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv"), u"--json"_s}), 0);
    const QJsonObject kept = QJsonDocument::fromJson(Out().toUtf8()).object();
    const qint64 id = kept.value(u"id"_s).toInteger();
    ASSERT_EQ(Export({QString::number(id), File("b.csv")}), 0) << Words().toStdString();
    EXPECT_EQ(Out(), u"Mill Pond 3: 960 records in "_s + File("b.csv") + u'\n');
    EXPECT_EQ(ReadFile(File("b.csv")).count("\r\n"), 962);
    EXPECT_TRUE(ReadFile(File("b.csv")) == ReadFile(File("a.csv")));
    EXPECT_TRUE(ReadFile(File("b.csv")) == SavedByViewer(id, singleColumn));
    ASSERT_EQ(Export({QString::number(id), u"-"_s}), 0);
    EXPECT_TRUE(Out().toUtf8() == ReadFile(File("b.csv")));
    EXPECT_EQ(Words(), QString());
  }
}

TEST_F(ExportCommandTest, WritesASeriesWithItsDisagreements) {
  AddWell();
  ASSERT_EQ(Export({u"--logger"_s, u"Well 7"_s, File("a.csv"), u"--style"_s, u"analysis"_s}), 0)
      << Words().toStdString();
  EXPECT_EQ(Out(),
            u"Well 7: 8 records in "_s + File("a.csv") + u", 2 of them where uploads disagree\n"_s);
  EXPECT_TRUE(ReadFile(File("a.csv"))
                  .startsWith("logger_time,corrected_time,Channel 1 (%),disagreement\r\n"
                              "2026-03-03T12:00:10,,0.10,0\r\n2026-03-03T12:00:20,,0.20,0\r\n"));
  EXPECT_TRUE(ReadFile(File("a.csv")).contains("\r\n2026-03-03T12:00:50,,0.50,1\r\n"));

  ASSERT_EQ(Export({u"--logger"_s, u"Well 7"_s, File("a.nc"), u"--json"_s}), 0);
  EXPECT_EQ(Out(),
            u"{\"id\":null,\"name\":\"Well 7\",\"records\":8,\"disagreements\":2,"
            u"\"style\":\"netcdf\",\"file\":\"%1\"}\n"_s.arg(File("a.nc")));
  EXPECT_TRUE(DumpOfFile(File("a.nc"), {u"-v"_s, u"disagreement"_s})
                  .contains(u"disagreement = 0, 0, 0, 1, 1, 0, 0, 0 ;"_s));

  ASSERT_EQ(Export({u"--logger"_s, u"Well 7"_s, u"-"_s}), 0);
  EXPECT_EQ(Out().count(u'\n'), 10);
  EXPECT_TRUE(Out().startsWith(u"Well 7,"_s));
}

TEST_F(ExportCommandTest, AnUploadAndAnImageGoIntoEveryForm) {
  const QStringList upload{u"upload"_s, u"COM9"_s, u"--csv"_s};
  ASSERT_EQ(Run(upload + QStringList{File("a.csv"), u"--style"_s, u"analysis"_s}), 0);
  EXPECT_TRUE(ReadFile(File("a.csv")).startsWith("logger_time,corrected_time,Channel 1 (hPa),"));
  EXPECT_EQ(ReadFile(File("a.csv")).count("\r\n"), 961);
  ASSERT_EQ(Run(upload + QStringList{File("a.nc"), u"--no-archive"_s}), 0);
  const QString head = DumpOfFile(File("a.nc"), {u"-h"_s});
  EXPECT_TRUE(head.contains(u"(960 currently)"_s));
  EXPECT_TRUE(head.contains(u":title = \"Records of the logger Mill Pond 3\""_s));
  EXPECT_TRUE(head.contains(u"from COM9\""_s)) << head.toStdString();

  const sim::Bytes image = sim::FlashImage(*Logger);
  WriteFile(File("a.bin"),
            {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())});
  const QStringList channels{u"--analog"_s, u"8"_s, u"--pulse"_s, u"2"_s};
  ASSERT_EQ(Run(QStringList{u"convert"_s, File("a.bin"), File("b.nc")} + channels), 0)
      << Words().toStdString();
  EXPECT_TRUE(DumpOfFile(File("b.nc"), {u"-h"_s}).contains(u"(960 currently)"_s));
  ASSERT_EQ(
      Run(QStringList{u"convert"_s, File("a.bin"), u"-"_s, u"--style"_s, u"analysis"_s} + channels),
      0);
  EXPECT_EQ(Out().count(u'\n'), 961);
  EXPECT_TRUE(Out().startsWith(u"logger_time,corrected_time,Channel 1 (hPa),"_s));
}

TEST_F(ExportCommandTest, RefusesWhatIsNotThere) {
  AddWell();
  EXPECT_EQ(Export({u"1"_s, File("a.txt")}), 2);
  EXPECT_EQ(Words(), u"tessmar: "_s + File("a.txt") +
                         u": no known form; a file's name ends in .csv or .nc\n"_s);
  EXPECT_EQ(Export({u"many"_s, File("a.csv")}), 2);
  EXPECT_EQ(Export({u"99"_s, File("a.csv")}), 1);
  EXPECT_EQ(Words(), u"tessmar: there is no upload 99; \"tessmar archive list\" lists them\n"_s);
  EXPECT_EQ(Export({u"--logger"_s, u"Pond"_s, File("a.csv")}), 1);
  EXPECT_EQ(Words(),
            u"tessmar: there is no logger \"Pond\" in the archive; \"tessmar archive "
            u"list\" shows their names\n"_s);
  EXPECT_EQ(Export({u"1"_s, File("no/such/folder.csv")}), 1);
  EXPECT_EQ(Words().count(u'\n'), 1);
  EXPECT_TRUE(Words().contains(File("no/such")));
  EXPECT_FALSE(QFileInfo::exists(File("a.csv")));
}

TEST_F(ExportCommandTest, TwoLoggersOfOneNameAreToldApartByTheirUuids) {
  QString uuid;
  {
    AddWell();
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Write);
    const qint64 other = store.SeeLogger(u"Well 7"_s, 13, 3, Hour(1));
    AddUpload(store, other, Hour(12), {10});
    uuid = store.Logger(other)->Uuid;
  }
  EXPECT_EQ(Export({u"--logger"_s, u"Well 7"_s, File("a.csv")}), 1);
  EXPECT_TRUE(Words().contains(u"several loggers are called \"Well 7\""_s));
  EXPECT_TRUE(Words().contains(uuid));
  ASSERT_EQ(Export({u"--logger"_s, uuid, File("a.csv")}), 0);
  EXPECT_EQ(Out(), u"Well 7: 1 records in "_s + File("a.csv") + u'\n');
}

TEST_F(ExportCommandTest, ASeriesOfDifferentChannelsNamesTheWayOut) {
  const qint64 well = AddWell();
  {
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Write);
    AddUpload(store, well, Hour(14), {10, 20, 30, 40, 60, 70, 80, 90});
    // The unit is text in the image.
    QByteArray image = store.Upload(3)->Settings;
    image.replace('%', 'V');
    store.Run(u"UPDATE upload SET settings = ? WHERE id = 3"_s, {image});
  }
  WriteFile(File("a.csv"), "yesterday's");
  EXPECT_EQ(Export({u"--logger"_s, u"Well 7"_s, File("a.csv")}), 1);
  EXPECT_EQ(Words(),
            u"tessmar: the channels changed between the uploads, and the viewer's CSV has "
            u"one row of headings; say --style analysis\n"_s);
  EXPECT_EQ(ReadFile(File("a.csv")), "yesterday's");
  EXPECT_EQ(Export({u"--logger"_s, u"Well 7"_s, File("a.csv"), u"--style"_s, u"analysis"_s}), 0);
  EXPECT_TRUE(
      ReadFile(File("a.csv"))
          .startsWith("logger_time,corrected_time,Channel 1 (%),Channel 1 (V),disagreement\r\n"));
}

TEST_F(ExportCommandTest, BrokenOffLeavesTheFileAsItWas) {
  {
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Write);
    const qint64 well = store.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
    Transaction transaction(store);
    std::vector<int> records;
    for (int i = 0; i < 5000; ++i) records.push_back(i % 3600);
    AddUpload(store, well, Hour(12), records);
    transaction.Commit();
  }
  StopWanted = true;
  for (const char* name : {"a.csv", "a.nc"}) {
    WriteFile(File(name), "yesterday's");
    EXPECT_EQ(Export({u"1"_s, File(name)}), 1) << name;
    EXPECT_EQ(Words(), u"tessmar: broken off; "_s + File(name) + u" is as it was\n"_s);
    EXPECT_EQ(ReadFile(File(name)), "yesterday's");
    EXPECT_EQ(Export({u"--logger"_s, u"Well 7"_s, File(name)}), 1) << name;
    EXPECT_EQ(ReadFile(File(name)), "yesterday's");
  }
}

TEST_F(ExportCommandTest, AnUploadWithoutRecordsIsNoFile) {
  const qint64 well = AddWell();
  {
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Write);
    AddUpload(store, well, Hour(14), {});
  }
  EXPECT_EQ(Export({u"3"_s, File("a.csv"), u"--json"_s}), 0);
  EXPECT_EQ(Out(),
            u"{\"id\":3,\"name\":\"Well 7\",\"records\":0,\"disagreements\":0,\"style\":"
            u"\"viewer\",\"file\":null}\n"_s);
  EXPECT_EQ(Export({u"3"_s, u"-"_s}), 0);
  EXPECT_EQ(Out(), QString());
  EXPECT_EQ(Words(), u"tessmar: Well 7: no records; no file was written\n"_s);
  EXPECT_FALSE(QFileInfo::exists(File("a.csv")));
}

}  // namespace
}  // namespace tessmar::test
