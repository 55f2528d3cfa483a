#include "archive/NetCdf.h"

#include <gtest/gtest.h>

#include <QFile>

#include "archive/ExportRig.h"
#include "support/Ncdump.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray Made(const ExportHead& head, std::vector<ExportRow> rows) {
  const std::optional<NetCdfBytes> bytes = MakeNetCdf(head, Rows(std::move(rows)), NeverMind());
  return bytes ? bytes->View().toByteArray() : QByteArray();
}

TEST(NetCdf, DescribesItselfByTheConventions) {
  QFile expected(QStringLiteral(TESSMAR_TEST_DATA "/pond.cdl"));
  ASSERT_TRUE(expected.open(QIODevice::ReadOnly));
  EXPECT_EQ(Dumped(Made(PondHead(), PondRows()), {u"-h"_s}).toStdString(),
            expected.readAll().toStdString());
}

TEST(NetCdf, HoldsTheRecordsInTheLoggersOrder) {
  const QString dump = Dumped(Made(PondHead(), PondRows()),
                              {u"-v"_s, u"time,time_corrected,a1,a3,p1,disagreement,row_size"_s});
  const std::string expected =
      "data:\n\n"
      " a1 = 8.5, _, -0.25 ;\n\n"
      " a3 = 120, 0, 65535 ;\n\n"
      " disagreement = 0, 0, 1 ;\n\n"
      " p1 = 3, 0, 1 ;\n\n"
      " row_size = 3 ;\n\n"
      " time = 1774749599, 1774749600, 1774746000 ;\n\n"
      " time_corrected = 1774749612.25, _, _ ;\n"
      "}\n";
  EXPECT_EQ(dump.mid(dump.indexOf(u"data:"_s)).toStdString(), expected);
}

TEST(NetCdf, HoldsMoreRecordsThanOnePiece) {
  ExportHead head;
  head.Columns = {{u"a1"_s, {}, {}, 0, {}}};
  std::vector<ExportRow> rows(70001);
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i].Values = {static_cast<double>(i)};
  const QString dump = Dumped(Made(head, rows), {u"-v"_s, u"a1"_s});
  EXPECT_TRUE(dump.contains(u"obs = UNLIMITED ; // (70001 currently)"_s));
  QStringList expected;
  for (int i = 0; i <= 70000; ++i) expected.append(QString::number(i));
  const qsizetype data = dump.indexOf(u" a1 = "_s) + 6;
  EXPECT_EQ(dump.mid(data, dump.indexOf(u" ;"_s, data) - data).simplified(),
            expected.join(u", "_s));
}

TEST(NetCdf, ARecordThatIsCutOffHasNoTime) {
  std::vector<ExportRow> rows = PondRows();
  rows[1].LoggerSeconds = std::nullopt;
  const QString dump = Dumped(Made(PondHead(), rows), {u"-v"_s, u"time"_s});
  EXPECT_TRUE(dump.contains(u" time = 1774749599, _, 1774746000 ;"_s)) << dump.toStdString();
}

TEST(NetCdf, OfNothingIsAFileWithoutRecords) {
  const QString dump = Dumped(Made({}, {}), {u"-h"_s});
  EXPECT_TRUE(dump.contains(u"obs = UNLIMITED ; // (0 currently)"_s)) << dump.toStdString();
}

TEST(NetCdf, IsBrokenOffByTheProgress) {
  EXPECT_FALSE(MakeNetCdf(PondHead(), Rows(EmptyRows(5000)), [](std::int64_t) {
                 return false;
               }).has_value());
}

}  // namespace
}  // namespace tessmar::test
