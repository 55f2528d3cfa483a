#include "link/ModemConnection.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QTemporaryDir>

#include "link/CommandsBench.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

QStringList CommandsIn(const QByteArray& text) {
  QBuffer file;
  file.setData(text);
  file.open(QIODevice::ReadOnly);
  return ReadModemCommands(file);
}

TEST(ReadModemCommands, DropsTheComment) {
  EXPECT_EQ(CommandsIn("ATS0=0 ;auto answer off\r\n"), QStringList{u"ATS0=0"_s});
  EXPECT_EQ(CommandsIn("ATS0=0;auto answer off\r\n"), QStringList{u"ATS0=0"_s});
}

TEST(ReadModemCommands, TakesTheFirstWordInCapitals) {
  EXPECT_EQ(CommandsIn("  at&f1 x4\nate0\tv1\n"), (QStringList{u"AT&F1"_s, u"ATE0"_s}));
}

// A modem is told Latin-1. What has no capital there stays as it is.
TEST(ReadModemCommands, KeepsWhatHasNoCapitalOnTheLine) {
  EXPECT_EQ(CommandsIn("at\xE4\xDF\xFF\xB5\n"), QStringList{u"AT\u00C4\u00DF\u00FF\u00B5"_s});
}

TEST(ReadModemCommands, SkipsLinesThatHoldNothing) {
  EXPECT_EQ(CommandsIn("\r\n;all of it\r\n   \r\n\tATX\r\n ;ATY\r\nATZ\r\n"),
            QStringList{u"ATZ"_s});
}

TEST(ReadModemCommands, TakesEveryKindOfLineEndAndALastLineWithoutOne) {
  EXPECT_EQ(CommandsIn("AT1\r\nAT2\nAT3\rAT4"),
            (QStringList{u"AT1"_s, u"AT2"_s, u"AT3"_s, u"AT4"_s}));
}

TEST(ReadModemCommands, StopsAt256Commands) {
  QByteArray text;
  for (int i = 0; i < 300; ++i) text += "ATX" + QByteArray::number(i) + "\n;comment\n";
  const QStringList commands = CommandsIn(text);
  EXPECT_EQ(commands.size(), 256);
  EXPECT_EQ(commands.last(), u"ATX255"_s);
}

TEST(ReadModemCommands, IsEmptyForAnEmptyFile) {
  EXPECT_TRUE(CommandsIn("").isEmpty());
}

using Numbers = std::array<QString, 4>;

Numbers After(Numbers numbers, const QString& number) {
  RememberNumber(numbers, number);
  return numbers;
}

TEST(RememberNumber, PutsANewNumberFirstAndDropsTheLast) {
  EXPECT_THAT(After({u"1"_s, u"2"_s, u"3"_s, u"4"_s}, u"5"_s),
              ElementsAre(u"5"_s, u"1"_s, u"2"_s, u"3"_s));
  EXPECT_THAT(After({}, u"5"_s), ElementsAre(u"5"_s, QString(), QString(), QString()));
}

TEST(RememberNumber, ChangesNothingForTheFirst) {
  EXPECT_THAT(After({u"1"_s, u"2"_s, u"3"_s, u"4"_s}, u"1"_s),
              ElementsAre(u"1"_s, u"2"_s, u"3"_s, u"4"_s));
}

TEST(RememberNumber, MovesAnOldNumberToTheFront) {
  EXPECT_THAT(After({u"1"_s, u"2"_s, u"3"_s, u"4"_s}, u"2"_s),
              ElementsAre(u"2"_s, u"1"_s, u"3"_s, u"4"_s));
  EXPECT_THAT(After({u"1"_s, u"2"_s, u"3"_s, u"4"_s}, u"3"_s),
              ElementsAre(u"3"_s, u"1"_s, u"2"_s, u"4"_s));
  EXPECT_THAT(After({u"1"_s, u"2"_s, u"3"_s, u"4"_s}, u"4"_s),
              ElementsAre(u"4"_s, u"1"_s, u"2"_s, u"3"_s));
}

TEST(RememberNumber, KeepsAtMostFourWithoutDuplicatesAmongTheFirstThree) {
  Numbers numbers;
  for (const char digit : std::string_view("12341223314")) {
    RememberNumber(numbers, QString(QLatin1Char(digit)));
    for (int i = 0; i < 3; ++i) {
      for (int j = i + 1; j < 3; ++j) {
        const auto first = static_cast<std::size_t>(i);
        const auto second = static_cast<std::size_t>(j);
        EXPECT_TRUE(numbers[first].isEmpty() || numbers[first] != numbers[second]);
      }
    }
  }
  EXPECT_THAT(numbers, ElementsAre(u"4"_s, u"1"_s, u"3"_s, u"2"_s));
}

const FakeMessages::Asked kNoNumber{u"Error: no phone number specified"_s, 16, u"Modem Connect"_s};
const FakeMessages::Asked kNoFile{u"Error: cannot open modem command file"_s, 16,
                                  u"Modem Initialize"_s};
const FakeMessages::Asked kNoModem{
    u"Unable to communicate with a modem on this port at selected rate."_s, 16,
    u"Modem Initialize"_s};

struct ModemBench : CommandsBench {
  bool Connect(const ModemRequest& request) {
    return ConnectModem(request, Channel, Link, Settings, Messages,
                        [this](const QStringList& commands, const QString& number) {
                          ++Shown;
                          List = commands;
                          Number = number;
                          if (Fails) throw PortFault("gone");
                          return Result;
                        });
  }

  ConnectionSettings Settings;
  FakeMessages Messages;
  ModemResult Result = ModemResult::Connect;
  bool Fails = false;
  int Shown = 0;
  QStringList List;
  QString Number;
};

TEST(ConnectModem, WithoutANumberEndsAheadOfThePortAndLeavesItOpen) {
  ModemBench bench;
  EXPECT_FALSE(bench.Connect({}));
  EXPECT_THAT(bench.Messages.All, ElementsAre(kNoNumber));
  EXPECT_EQ(bench.Shown, 0);
  EXPECT_TRUE(bench.Port.IsOpen());
  EXPECT_TRUE(bench.Port.Written.empty());
}

TEST(ConnectModem, SendsTheDefaultLineWithoutAFile) {
  ModemBench bench;
  EXPECT_TRUE(bench.Connect({u"555-0100"_s, false, u"/nowhere/at.txt"_s}));
  EXPECT_EQ(bench.List, (QStringList{u"ATZ"_s, u"ATE1V1Q0"_s}));
  EXPECT_EQ(bench.Number, u"555-0100"_s);
  EXPECT_EQ(bench.Settings.ModemNumbers[0], u"555-0100"_s);
  EXPECT_TRUE(bench.Port.IsOpen());
  EXPECT_THAT(bench.Messages.All, IsEmpty());
}

TEST(ConnectModem, SendsTheDefaultLineForAnEmptyPath) {
  ModemBench bench;
  EXPECT_TRUE(bench.Connect({u"1"_s, true, QString()}));
  EXPECT_EQ(bench.List, (QStringList{u"ATZ"_s, u"ATE1V1Q0"_s}));
}

TEST(ConnectModem, SendsTheLinesOfTheFileBehindTheReset) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"at.txt"_s);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("at&f\r\nats0=0 ;auto answer off\r\n");
  file.close();
  ModemBench bench;
  EXPECT_TRUE(bench.Connect({u"1"_s, true, path}));
  EXPECT_EQ(bench.List, (QStringList{u"ATZ"_s, u"AT&F"_s, u"ATS0=0"_s}));
}

TEST(ConnectModem, LeavesOnlyTheResetForAnEmptyFile) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"at.txt"_s);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  ModemBench bench;
  EXPECT_TRUE(bench.Connect({u"1"_s, true, path}));
  EXPECT_EQ(bench.List, QStringList{u"ATZ"_s});
}

TEST(ConnectModem, SaysThatTheFileIsMissing) {
  const QTemporaryDir folder;
  for (const QString& path : {folder.filePath(u"none.txt"_s), folder.path()}) {
    ModemBench bench;
    EXPECT_FALSE(bench.Connect({u"1"_s, true, path}));
    EXPECT_THAT(bench.Messages.All, ElementsAre(kNoFile));
    EXPECT_FALSE(bench.Port.IsOpen());
    EXPECT_EQ(bench.Shown, 0);
    EXPECT_EQ(bench.Settings.ModemNumbers[0], u"1"_s);
  }
}

TEST(ConnectModem, RefusesAPipeAndADeviceAndAFileFarTooLarge) {
  const QTemporaryDir folder;
  const QString pipe = folder.filePath(u"pipe"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  QFile huge(folder.filePath(u"huge.txt"_s));
  ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
  ASSERT_TRUE(huge.resize(qint64{1} << 33));
  for (const QString& path : {pipe, u"/dev/zero"_s, huge.fileName()}) {
    ModemBench bench;
    EXPECT_FALSE(bench.Connect({u"1"_s, true, path}));
    EXPECT_THAT(bench.Messages.All, ElementsAre(kNoFile)) << path.toStdString();
    EXPECT_EQ(bench.Shown, 0);
  }
}

TEST(ConnectModem, TreatsAFileThatCannotBeReadAsAModemThatDoesNotAnswer) {
  // Opening works and reading fails, for the owner of the machine as well.
  ModemBench bench;
  EXPECT_FALSE(bench.Connect({u"1"_s, true, u"/proc/self/mem"_s}));
  EXPECT_THAT(bench.Messages.All, ElementsAre(kNoModem));
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_EQ(bench.Shown, 0);

  ModemBench untrapped;
  untrapped.Link.TrapErrors = false;
  EXPECT_THROW(untrapped.Connect({u"1"_s, true, u"/proc/self/mem"_s}), FileFault);
}

TEST(ConnectModem, CancelledClosesThePortAndSaysNothing) {
  ModemBench bench;
  bench.Result = ModemResult::Cancel;
  EXPECT_FALSE(bench.Connect({u"1"_s}));
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_THAT(bench.Messages.All, IsEmpty());
}

TEST(ConnectModem, SaysThatTheModemDoesNotAnswer) {
  ModemBench bench;
  bench.Result = ModemResult::Error;
  EXPECT_FALSE(bench.Connect({u"1"_s}));
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_THAT(bench.Messages.All, ElementsAre(kNoModem));
}

TEST(ConnectModem, TreatsAFaultAsAModemThatDoesNotAnswer) {
  ModemBench bench;
  bench.Fails = true;
  EXPECT_FALSE(bench.Connect({u"1"_s}));
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_THAT(bench.Messages.All, ElementsAre(kNoModem));

  ModemBench untrapped;
  untrapped.Fails = true;
  untrapped.Link.TrapErrors = false;
  EXPECT_THROW(untrapped.Connect({u"1"_s}), PortFault);
}

}  // namespace
}  // namespace tessmar::test
