#include "archive/SaveExport.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include "base/FileTrouble.h"
#include "history/CsvExport.h"
#include "history/TableRig.h"
#include "support/SmallDisk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr ExportKind kAllKinds[] = {ExportKind::ViewerCsv, ExportKind::AnalysisCsv,
                                    ExportKind::NetCdf};

/// Oxygen in % on channel 1 of two, and rain.
class SaveExportTest : public testing::Test {
 protected:
  SaveExportTest() : rig_(2, 1) {
    rig_.Settings.LoggerName = u"Pond"_s;
    rig_.EnableAnalog(0, u"%"_s);
    rig_.EnablePulse(0, u"Pulses"_s, 1, 0);
  }

  void Add(int records) {
    for (int i = 0; i < records; ++i)
      rig_.Add(kStamp + kMinute * static_cast<std::uint32_t>(i), {4120 + i, 0, 3});
  }
  ExportSource Source() const { return SourceOfBuffer(rig_.Buffer, rig_.Settings, 2, 1); }
  ExportForm Form(ExportKind kind) const {
    return {.Kind = kind,
            .Locale = locale_,
            .Saved = QDateTime(QDate(2010, 12, 27), QTime(15, 5, 12), Qt::UTC),
            .Program = u"Tessmar Logger 2.1.9"_s};
  }
  QString Path(const QString& name) const { return folder_.filePath(name); }

  static QByteArray Content(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  static void Put(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  static ExportProgress NeverMind() {
    return [](std::int64_t) { return true; };
  }

  TableRig rig_;
  SystemLocale locale_ = American();
  QTemporaryDir folder_;
};

TEST(ExportKindOf, IsTheEndings) {
  EXPECT_EQ(ExportKindOf(u"/a/b.csv"_s), ExportKind::ViewerCsv);
  EXPECT_EQ(ExportKindOf(u"B.CSV"_s), ExportKind::ViewerCsv);
  EXPECT_EQ(ExportKindOf(u"b.nc"_s), ExportKind::NetCdf);
  EXPECT_EQ(ExportKindOf(u"b.txt"_s), std::nullopt);
  EXPECT_EQ(ExportKindOf(u"csv"_s), std::nullopt);
}

TEST_F(SaveExportTest, ReplacesAFileAndCountsTheRecords) {
  Add(2);
  const QString path = Path(u"pond.csv"_s);
  Put(path, "old");
  ExportSource source = Source();
  EXPECT_EQ(SaveExport(path, source, Form(ExportKind::ViewerCsv), NeverMind()), 2);
  EXPECT_EQ(Content(path),
            "Pond,12/27/2010,3:05:12 PM\r\nDate, Time, %, Pulses\r\n"
            "12/26/10, 15:47:29, 41.20, 3\r\n12/26/10, 15:48:29, 41.21, 3\r\n");

  source = Source();
  EXPECT_EQ(SaveExport(path, source, Form(ExportKind::AnalysisCsv), NeverMind()), 2);
  EXPECT_EQ(Content(path),
            "logger_time,corrected_time,Channel 1 (%),Pulse 1 (Pulses),disagreement\r\n"
            "2010-12-26T15:47:29,,41.20,3,0\r\n2010-12-26T15:48:29,,41.21,3,0\r\n");

  source = Source();
  EXPECT_EQ(SaveExport(Path(u"pond.nc"_s), source, Form(ExportKind::NetCdf), NeverMind()), 2);
  EXPECT_EQ(Content(Path(u"pond.nc"_s)).left(8), "\x89HDF\r\n\x1a\n");
}

TEST_F(SaveExportTest, TheViewersFileIsTheSameInPieces) {
  Add(10000);
  QBuffer viewer;
  viewer.open(QIODevice::WriteOnly);
  const HistoryTable table(rig_.Buffer, rig_.Settings, rig_.Link, false, locale_);
  for (const bool singleColumn : {false, true}) {
    viewer.buffer().clear();
    viewer.seek(0);
    WriteCsv(viewer, table,
             {.LoggerName = u"Pond"_s,
              .Saved = Form(ExportKind::ViewerCsv).Saved,
              .SingleColumn = singleColumn},
             [](std::int32_t) {});
    ExportForm form = Form(ExportKind::ViewerCsv);
    form.SingleColumn = singleColumn;
    QBuffer written;
    written.open(QIODevice::WriteOnly);
    ExportSource source = Source();
    EXPECT_EQ(WriteExport(written, source, form, NeverMind()), 10000);
    EXPECT_TRUE(written.data() == viewer.data());
    EXPECT_EQ(written.data().count("\r\n"), 10002);
  }
}

TEST_F(SaveExportTest, LeavesTheOldFileWhenBrokenOff) {
  Add(9000);
  for (const ExportKind kind : kAllKinds) {
    const QString path = Path(u"kept"_s);
    Put(path, "old");
    ExportSource source = Source();
    EXPECT_EQ(SaveExport(path, source, Form(kind), [](std::int64_t) { return false; }),
              std::nullopt);
    EXPECT_EQ(Content(path), "old");
  }
}

TEST_F(SaveExportTest, LeavesTheOldFileWhenTheRecordsFault) {
  for (const ExportKind kind : kAllKinds) {
    const QString path = Path(u"kept"_s);
    Put(path, "old");
    ExportSource source = Source();
    source.Next = [](ExportRecord&) -> bool { throw RangeFault("the archive is gone"); };
    EXPECT_THROW(SaveExport(path, source, Form(kind), NeverMind()), RangeFault);
    EXPECT_EQ(Content(path), "old");
  }
}

TEST_F(SaveExportTest, AFullDiskIsNamedAndLeavesTheOldFile) {
  Add(40000);
  for (const ExportKind kind : kAllKinds) {
    SmallDisk disk;
    const QString path = disk.Path(u"kept"_s);
    Put(path, "old");
    disk.Fill(65536);
    ExportSource source = Source();
    try {
      SaveExport(path, source, Form(kind), NeverMind());
      ADD_FAILURE() << "written to a full disk";
    } catch (const FileTrouble& trouble) {
      EXPECT_EQ(trouble.File(), path);
      EXPECT_TRUE(trouble.Cause() == FileCause::DiskFull || trouble.Cause() == FileCause::TooLarge);
    }
    disk.Empty();
    EXPECT_EQ(Content(path), "old");
    EXPECT_EQ(disk.Files(), QStringList{u"kept"_s});
  }
}

TEST_F(SaveExportTest, RefusesAFolder) {
  ExportSource source = Source();
  EXPECT_THROW(SaveExport(Path({}), source, Form(ExportKind::NetCdf), NeverMind()), FileTrouble);
}

}  // namespace
}  // namespace tessmar::test
