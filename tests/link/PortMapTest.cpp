#include "link/PortMap.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QTemporaryDir>

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

TEST(PortMap, HasTheUsualPlaces) {
  const struct {
    int Number;
    const char* Device;
  } rows[] = {{1, "/dev/ttyS0"},    {4, "/dev/ttyS3"},    {5, "/dev/ttyUSB0"}, {8, "/dev/ttyUSB3"},
              {12, "/dev/ttyUSB7"}, {13, "/dev/ttyACM0"}, {16, "/dev/ttyACM3"}};
  const PortMap map;
  for (const auto& row : rows) {
    EXPECT_EQ(map.Device(row.Number), QLatin1StringView(row.Device));
    EXPECT_EQ(map.Number(QString::fromLatin1(row.Device)), row.Number);
  }
}

TEST(PortMap, HasNoDeviceBeyondTheUsualPlaces) {
  const PortMap map;
  EXPECT_EQ(map.Device(0), QString());
  EXPECT_EQ(map.Device(17), QString());
  EXPECT_EQ(map.Device(-1), QString());
  EXPECT_EQ(map.Number(u"/dev/ttyUSB8"_s), std::nullopt);
  EXPECT_EQ(map.Number(u"/dev/null"_s), std::nullopt);
}

TEST(PortMap, TakesNoNumberForOneOfFewerBits) {
  const PortMap map(u"COM9=/dev/pond"_s);
  for (const int number : {65536 + 9, 65536 + 5, INT32_MIN, INT32_MAX})
    EXPECT_EQ(map.Device(number), QString()) << number;
}

TEST(PortMap, TakesAnOverrideWithAFriendlyName) {
  const PortMap map(u"COM9=/tmp/logger,Simulated logger"_s);
  EXPECT_EQ(map.Device(9), u"/tmp/logger"_s);
  EXPECT_EQ(map.Overrides().at(9).FriendlyName, u"Simulated logger"_s);
  EXPECT_EQ(map.Number(u"/tmp/logger"_s), 9);
  EXPECT_EQ(map.Number(u"/dev/ttyUSB4"_s), std::nullopt);
}

TEST(PortMap, TakesSeveralOverridesOfTheEnvironment) {
  const PortMap map(u"COM9=/tmp/a,Alpha;COM2=/tmp/b,Beta, the second; com20 = /tmp/c ,Gamma;"_s);
  ASSERT_EQ(map.Overrides().size(), 3u);
  EXPECT_EQ(map.Device(9), u"/tmp/a"_s);
  EXPECT_EQ(map.Device(2), u"/tmp/b"_s);
  EXPECT_EQ(map.Overrides().at(2).FriendlyName, u"Beta, the second"_s);
  EXPECT_EQ(map.Device(20), u"/tmp/c"_s);
}

TEST(PortMap, TakesTheLinesOfTheFile) {
  const PortMap map(
      {}, u"# Ports of the field laptop\r\nCOM9=/tmp/a,Alpha\r\n\r\nCOM10=/tmp/b,Beta\n"_s);
  ASSERT_EQ(map.Overrides().size(), 2u);
  EXPECT_EQ(map.Device(9), u"/tmp/a"_s);
  EXPECT_EQ(map.Overrides().at(10).FriendlyName, u"Beta"_s);
}

TEST(PortMap, PutsTheEnvironmentAboveTheFile) {
  const PortMap map(u"COM9=/tmp/env,Env"_s, u"COM9=/tmp/file,File\nCOM10=/tmp/other,Other"_s);
  EXPECT_EQ(map.Device(9), u"/tmp/env"_s);
  EXPECT_EQ(map.Device(10), u"/tmp/other"_s);
}

TEST(PortMap, LetsTheLaterOverrideOfANumberStand) {
  EXPECT_EQ(PortMap(u"COM9=/tmp/a,A;COM9=/tmp/b,B"_s).Device(9), u"/tmp/b"_s);
}

TEST(PortMap, NamesAPortByItsDeviceWhenTheFriendlyNameIsMissing) {
  EXPECT_EQ(PortMap(u"COM9=/tmp/a"_s).Overrides().at(9).FriendlyName, u"/tmp/a"_s);
  EXPECT_EQ(PortMap(u"COM9=/tmp/a,"_s).Overrides().at(9).FriendlyName, u"/tmp/a"_s);
}

TEST(PortMap, PassesOverWhatIsNoOverride) {
  const PortMap map(
      u"COM9;=/tmp/a;COM=/tmp/a;COM0=/tmp/a;COM9=;COM9=,x;LPT1=/tmp/a;COM99999=/x,y"_s);
  EXPECT_TRUE(map.Overrides().empty());
  EXPECT_EQ(map.Device(9), u"/dev/ttyUSB4"_s);
}

TEST(ReadPortsFile, GivesTheTextOfTheFileOrNothing) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"ports.conf"_s);
  EXPECT_EQ(ReadPortsFile(path), QString());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("COM9=/tmp/a,M\xC3\xBChle\n");
  file.close();
  EXPECT_EQ(ReadPortsFile(path), u"COM9=/tmp/a,Mühle\n"_s);
}

TEST(ReadPortsFile, WaitsForNothingAndReadsNothingWithoutAnEnd) {
  const QTemporaryDir folder;
  const QString pipe = folder.filePath(u"pipe"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  const QString endless = folder.filePath(u"ports.conf"_s);
  ASSERT_TRUE(QFile::link(u"/dev/zero"_s, endless));
  QFile huge(folder.filePath(u"huge"_s));
  ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
  huge.write("COM9=/tmp/a\n");
  ASSERT_TRUE(huge.resize(qint64{1} << 33));
  for (const QString& path : {pipe, endless, folder.path(), huge.fileName()})
    EXPECT_EQ(ReadPortsFile(path), QString()) << path.toStdString();
}

}  // namespace
}  // namespace tessmar::test
