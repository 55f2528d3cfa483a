#include "archive/AnalysisCsv.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "archive/ExportRig.h"
#include "base/Fault.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray Written(const ExportHead& head, std::vector<ExportRow> rows) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  EXPECT_EQ(WriteAnalysisCsv(buffer, head, Rows(rows), NeverMind()),
            static_cast<std::int64_t>(rows.size()));
  return buffer.data();
}

TEST(AnalysisCsv, HasOneHeadRowAndALineForEachRecord) {
  EXPECT_EQ(Written(PondHead(), PondRows()),
            "logger_time,corrected_time,\"Oxygen, dissolved (mg/L)\",NTU,Rain (Pulses),"
            "disagreement\r\n"
            "2026-03-29T01:59:59,2026-03-29T02:00:12.250Z,8.50,120,3,0\r\n"
            "2026-03-29T02:00:00,,,0,0,0\r\n"
            "2026-03-29T01:00:00,,-0.25,65535,1,1\r\n");
}

TEST(AnalysisCsv, OfNothingIsTheHeadRow) {
  EXPECT_EQ(Written({}, {}), "logger_time,corrected_time,disagreement\r\n");
}

TEST(AnalysisCsv, TellsChannelsOfOneHeadingApart) {
  ExportHead head;
  head.Columns = {{u"a1"_s, u"T"_s, u"Temp C"_s, 1, {}},
                  {u"a2"_s, u"T"_s, u"Temp C"_s, 1, {}},
                  {u"a4"_s, {}, {}, 1, {}}};
  EXPECT_EQ(Written(head, {}),
            "logger_time,corrected_time,T (Temp C) a1,T (Temp C) a2,a4,disagreement\r\n");
}

TEST(AnalysisCsv, QuotesQuotesAndLineFeeds) {
  ExportHead head;
  head.Columns = {{u"a1"_s, u"say \"x\"\n"_s, {}, 1, {}}};
  EXPECT_EQ(Written(head, {}), "logger_time,corrected_time,\"say \"\"x\"\"\n\",disagreement\r\n");
}

TEST(AnalysisCsv, WritesTimesBeforeTheEpochAndAtTheEndOfADay) {
  ExportHead head;
  EXPECT_EQ(Written(head, {{.LoggerSeconds = -1}, {.LoggerSeconds = 86399}, {.LoggerSeconds = 0}}),
            "logger_time,corrected_time,disagreement\r\n"
            "1969-12-31T23:59:59,,0\r\n1970-01-01T23:59:59,,0\r\n1970-01-01T00:00:00,,0\r\n");
}

TEST(AnalysisCsv, ARecordThatIsCutOffHasNoTime) {
  EXPECT_EQ(Written({}, {{.Disagrees = true}}),
            "logger_time,corrected_time,disagreement\r\n,,1\r\n");
}

TEST(AnalysisCsv, IsTheSameInPieces) {
  // More than two pieces of 256 KiB.
  std::vector<ExportRow> rows(20000);
  QByteArray expected = "logger_time,corrected_time,a1,disagreement\r\n";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i].LoggerSeconds = static_cast<std::int64_t>(i % 60);
    rows[i].Values = {static_cast<double>(i)};
    expected += "1970-01-01T00:00:" + QByteArray::number(i % 60).rightJustified(2, '0') + ",," +
                QByteArray::number(i) + ",0\r\n";
  }
  ExportHead head;
  head.Columns = {{u"a1"_s, {}, {}, 0, {}}};
  EXPECT_EQ(Written(head, rows), expected);
}

TEST(AnalysisCsv, IsBrokenOffByTheProgress) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  std::vector<std::int64_t> told;
  EXPECT_EQ(WriteAnalysisCsv(buffer, {}, Rows(std::vector<ExportRow>(10000)),
                             [&](std::int64_t rows) {
                               told.push_back(rows);
                               return told.size() < 2;
                             }),
            std::nullopt);
  EXPECT_EQ(told, (std::vector<std::int64_t>{4096, 8192}));
}

TEST(AnalysisCsv, FaultsWhenTheDeviceIsFull) {
  QFile full(u"/dev/full"_s);
  ASSERT_TRUE(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  EXPECT_THROW(WriteAnalysisCsv(full, PondHead(), Rows(PondRows()), NeverMind()), FileFault);
}

TEST(AnalysisCsv, IsReadBackByAnotherProgram) {
  const QTemporaryDir folder;
  QFile file(folder.filePath(u"pond.csv"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(Written(PondHead(), PondRows()));
  file.close();
  QProcess python;
  python.start(u"python3"_s,
               {u"-c"_s,
                u"import csv, sys\n"
                "for row in csv.DictReader(open(sys.argv[1], newline='', encoding='utf-8')):\n"
                "    print(row['logger_time'], row['Oxygen, dissolved (mg/L)'] or None, "
                "float(row['NTU']), row['disagreement'])\n"_s,
                file.fileName()});
  ASSERT_TRUE(python.waitForFinished(30000));
  EXPECT_EQ(python.readAllStandardOutput(),
            "2026-03-29T01:59:59 8.50 120.0 0\n2026-03-29T02:00:00 None 0.0 0\n"
            "2026-03-29T01:00:00 -0.25 65535.0 1\n");
  EXPECT_EQ(python.readAllStandardError(), "");
}

}  // namespace
}  // namespace tessmar::test
