#include "archive/SaveExport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "archive/ExportRig.h"
#include "base/Fault.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class SaveExportTest : public testing::Test {
 protected:
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

 private:
  QTemporaryDir folder_;
};

TEST(ExportKindOf, IsTheEndings) {
  EXPECT_EQ(ExportKindOf(u"/a/b.csv"_s), ExportKind::AnalysisCsv);
  EXPECT_EQ(ExportKindOf(u"B.CSV"_s), ExportKind::AnalysisCsv);
  EXPECT_EQ(ExportKindOf(u"b.nc"_s), ExportKind::NetCdf);
  EXPECT_EQ(ExportKindOf(u"b.txt"_s), std::nullopt);
  EXPECT_EQ(ExportKindOf(u"csv"_s), std::nullopt);
}

TEST_F(SaveExportTest, ReplacesAFileAndCountsTheRecords) {
  const QString path = Path(u"pond.csv"_s);
  Put(path, "old");
  EXPECT_EQ(SaveExport(path, ExportKind::AnalysisCsv, PondHead(), Rows(PondRows()), NeverMind()),
            3);
  EXPECT_TRUE(Content(path).startsWith("logger_time,"));
  EXPECT_EQ(Content(path).count("\r\n"), 4);

  EXPECT_EQ(
      SaveExport(Path(u"pond.nc"_s), ExportKind::NetCdf, PondHead(), Rows(PondRows()), NeverMind()),
      3);
  EXPECT_EQ(Content(Path(u"pond.nc"_s)).left(8), "\x89HDF\r\n\x1a\n");
}

TEST_F(SaveExportTest, LeavesTheOldFileWhenBrokenOff) {
  for (const ExportKind kind : {ExportKind::AnalysisCsv, ExportKind::NetCdf}) {
    const QString path = Path(u"kept"_s);
    Put(path, "old");
    EXPECT_EQ(SaveExport(path, kind, PondHead(), Rows(std::vector<ExportRow>(9000)),
                         [](std::int64_t) { return false; }),
              std::nullopt);
    EXPECT_EQ(Content(path), "old");
  }
}

TEST_F(SaveExportTest, LeavesTheOldFileWhenTheRowsFault) {
  for (const ExportKind kind : {ExportKind::AnalysisCsv, ExportKind::NetCdf}) {
    const QString path = Path(u"kept"_s);
    Put(path, "old");
    const ExportRows faulty = [](ExportRow&) -> bool { throw FileFault("the archive is gone"); };
    EXPECT_THROW(SaveExport(path, kind, PondHead(), faulty, NeverMind()), FileFault);
    EXPECT_EQ(Content(path), "old");
  }
}

TEST_F(SaveExportTest, RefusesAFolder) {
  EXPECT_THROW(SaveExport(Path({}), ExportKind::NetCdf, {}, Rows({}), NeverMind()), FileFault);
}

}  // namespace
}  // namespace tessmar::test
