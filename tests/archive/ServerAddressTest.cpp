#include "archive/ServerAddress.h"

#include <gtest/gtest.h>

#include "archive/Server.h"
#include "archive/ServerFault.h"
#include "archive/ServerRows.h"
#include "support/QtPrinting.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

struct Row {
  const char* Text;
  const char* Parameters;  ///< name=value, in the order of their names.
};

class Address : public testing::TestWithParam<Row> {};

TEST_P(Address, IsReadAsLibpqReadsIt) {
  const ServerAddress address = ParseServerAddress(QString::fromUtf8(GetParam().Text));
  QStringList parts;
  for (auto it = address.Parameters.cbegin(); it != address.Parameters.cend(); ++it)
    parts.append(it.key() + u'=' + it.value());
  EXPECT_EQ(parts.join(u' '), QString::fromUtf8(GetParam().Parameters));
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, Address,
    testing::Values(
        Row{"postgresql://", ""}, Row{"postgres:///loggers", "dbname=loggers"},
        Row{"postgresql://db.example.org/loggers", "dbname=loggers host=db.example.org"},
        Row{"postgresql://ada@db:5433/loggers", "dbname=loggers host=db port=5433 user=ada"},
        Row{"postgresql://ada%40x:@db", "host=db user=ada@x"},  // An empty password is none.
        Row{"postgresql://[2001:db8::1]:5433/x", "dbname=x host=2001:db8::1 port=5433"},
        Row{"postgresql://a:1,b:2/x", "dbname=x host=a,b port=1,2"},
        Row{"postgresql://%2Frun%2Fpg/x", "dbname=x host=/run/pg"},
        Row{"postgresql:///x?host=/run/pg&sslmode=verify-full",
            "dbname=x host=/run/pg sslmode=verify-full"},
        Row{"postgresql://?service=office", "service=office"},
        Row{"postgresql://db/x?ssl=true", "dbname=x host=db sslmode=require"},
        Row{"postgresql:///x%20y?application_name=a%26b", "application_name=a&b dbname=x y"}));

ServerTrouble TroubleOf(const QString& text) {
  try {
    ParseServerAddress(text);
  } catch (const ServerFault& fault) {
    EXPECT_FALSE(fault.Text().contains(u"secret")) << fault.what();
    return fault.Trouble();
  }
  return ServerTrouble::Refused;
}

TEST(ServerAddress, RefusesWhatIsNone) {
  for (const char* text :
       {"", "db", "http://db/x", "postgresql:/x", "postgresql://a:b:c/x", "postgresql://db:port/x",
        "postgresql:///x?sslmode", "postgresql:///x?=y", "postgresql://%zz/x",
        "postgresql://a%00/x", "postgresql:///x?options=-c%3Ba", "postgresql:///x?a'b=c",
        "postgresql:///x?password%0A=secret", "postgresql://db:5432\n/x"}) {
    EXPECT_EQ(TroubleOf(QString::fromLatin1(text)), ServerTrouble::BadAddress) << text;
  }
}

TEST(ServerAddress, RefusesAPasswordAndDoesNotTellIt) {
  for (const char* text : {"postgresql://ada:secret@db/x", "postgresql://ada:secret%40@db/x",
                           "postgresql://:secret@db/x", "postgresql:///x?password=secret",
                           "postgresql://db/x?sslpassword=secret", "postgresql://a:se@cret@db/x"}) {
    EXPECT_EQ(TroubleOf(QString::fromLatin1(text)), ServerTrouble::HasPassword) << text;
  }
}

TEST(ServerAddress, SaysWhereItIsWithoutTheUser) {
  EXPECT_EQ(ParseServerAddress(u"postgresql://ada@db/loggers"_s).Shown(), u"db/loggers"_s);
  EXPECT_EQ(ParseServerAddress(u"postgresql:///x?service=office"_s).Shown(), u"office/x"_s);
}

TEST(ServerAddress, GivesUpAServerThatDoesNotAnswer) {
  const QString options =
      ParseServerAddress(u"postgresql://db/x?connect_timeout=3&sslcert=a'b\\c"_s).ConnectOptions();
  EXPECT_EQ(options,
            u"connect_timeout='3' fallback_application_name='tessmar' keepalives_idle='10'"
            u" sslcert='a\\'b\\\\c' tcp_user_timeout='30000'"_s);
}

TEST(ServerTroubles, FollowFromTheState) {
  EXPECT_EQ(ServerTroubleOf({}), ServerTrouble::Lost);
  EXPECT_EQ(ServerTroubleOf(u"57P01"_s), ServerTrouble::Lost);
  EXPECT_EQ(ServerTroubleOf(u"25P03"_s), ServerTrouble::Lost);
  EXPECT_EQ(ServerTroubleOf(u"25006"_s), ServerTrouble::NoRights);
  EXPECT_EQ(ServerTroubleOf(u"08006"_s), ServerTrouble::Lost);
  EXPECT_EQ(ServerTroubleOf(u"40P01"_s), ServerTrouble::Again);
  EXPECT_EQ(ServerTroubleOf(u"40001"_s), ServerTrouble::Again);
  EXPECT_EQ(ServerTroubleOf(u"55P03"_s), ServerTrouble::Again);
  EXPECT_EQ(ServerTroubleOf(u"53100"_s), ServerTrouble::Full);
  EXPECT_EQ(ServerTroubleOf(u"42501"_s), ServerTrouble::NoRights);
  EXPECT_EQ(ServerTroubleOf(u"22P02"_s), ServerTrouble::Refused);
}

TEST(ServerVersion, TwelveIsTheOldest) {
  EXPECT_NO_THROW(CheckServerVersion(120000));
  EXPECT_NO_THROW(CheckServerVersion(170004));
  try {
    CheckServerVersion(119999);
    FAIL() << "11 is too old";
  } catch (const ServerFault& fault) {
    EXPECT_EQ(fault.Trouble(), ServerTrouble::TooOld);
    EXPECT_EQ(fault.Text(), u"PostgreSQL 11"_s);
  }
}

TEST(ServerArray, IsWhatTheServerReads) {
  tessmar::ServerArray array;
  EXPECT_EQ(array.Text(), u"{}"_s);
  array.AddNumber(-7);
  array.AddNull();
  array.AddReal(0.1);
  array.AddText(u"a\"b\\c,{d}"_s);
  array.AddText(u""_s);
  array.AddText({});
  array.AddBytes(QByteArray("\x00\xff", 2));
  array.AddBytes({});
  EXPECT_EQ(array.Text(), uR"({-7,NULL,0.1,"a\"b\\c,{d}","",NULL,00ff,""})"_s);
  EXPECT_EQ(array.Count(), 8);
}

TEST(ServerRows, AreWhatCopyReads) {
  tessmar::ServerRows rows;
  rows.AddNumber(-7);
  rows.AddNull();
  rows.AddReal(0.1);
  rows.AddPlain(u"2026-03-03T12:00:00"_s);
  rows.EndRow();
  rows.AddBytes(QByteArray("\x00\xff", 2));
  rows.AddBytes({});
  rows.AddPlain({});
  rows.AddReal(-1e300);
  rows.EndRow();
  EXPECT_EQ(rows.Text().toStdString(),
            "-7\t\\N\t0.1\t2026-03-03T12:00:00\n\\\\x00ff\t\\\\x\t\\N\t-1e+300\n");
  EXPECT_EQ(rows.Count(), 2);
  rows.Clear();
  EXPECT_TRUE(rows.Text().isEmpty());
}

TEST(ServerTimes, CarryOverWhatADayDoesNotHave) {
  EXPECT_EQ(ServerTime(u"2026-03-03T23:59:59"_s), u"2026-03-03T23:59:59"_s);
  EXPECT_EQ(ServerTime(u"2026-03-03T24:01:63"_s), u"2026-03-04T00:02:03"_s);
  EXPECT_EQ(ServerTime(u"2026-12-31T31:63:63"_s), u"2027-01-01T08:04:03"_s);
  EXPECT_TRUE(ServerTime({}).isNull());
  EXPECT_TRUE(ServerTime(u"nonsense"_s).isNull());
}

}  // namespace
}  // namespace tessmar::test
