// settings get, put and diff, and convert.

#include <QFileInfo>

#include "cli/CommandRig.h"
#include "sim/FlashImage.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class SettingsCommandsTest : public CommandRig {
 protected:
  /// The logger's settings as a setup file.
  QByteArray Get() {
    EXPECT_EQ(Run({u"settings"_s, u"get"_s, u"COM9"_s, File("got.set")}), 0)
        << Words().toStdString();
    return ReadFile(File("got.set"));
  }
  /// Programs a setup file. @return the exit status.
  int Put(const QByteArray& file, const QStringList& more = {}) {
    WriteFile(File("put.set"), file);
    return Run(QStringList{u"settings"_s, u"put"_s, u"COM9"_s, File("put.set"), u"--yes"_s} + more);
  }
  int Diff(const QString& a, const QString& b, const QStringList& more = {}) {
    return Run(QStringList{u"settings"_s, u"diff"_s, a, b} + more);
  }
  void WriteImage(const QString& path) {
    const sim::Bytes image = sim::FlashImage(*Logger);
    WriteFile(path, QByteArray(reinterpret_cast<const char*>(image.data()),
                               static_cast<qsizetype>(image.size())));
  }
};

TEST_F(SettingsCommandsTest, GetSavesASetupFile) {
  const QByteArray file = Get();
  EXPECT_TRUE(
      file.startsWith("Program=tessmar\r\nVersion=2.1.9\r\nDate=12/27/2010\r\n"
                      "Time=3:05:12 PM\r\nLoggerName=Mill Pond 3\r\n"
                      "SampleInterval=15 minutes\r\n"))
      << file.left(200).toStdString();
  EXPECT_EQ(Out(), u"Mill Pond 3: settings saved in "_s + File("got.set") + u'\n');
}

TEST_F(SettingsCommandsTest, WhatWasGotDoesNotDiffer) {
  Get();
  EXPECT_EQ(Diff(u"COM9"_s, File("got.set")), 0) << Out().toStdString();
  EXPECT_EQ(Diff(File("got.set"), u"COM9"_s), 0) << Out().toStdString();
  EXPECT_EQ(Diff(u"COM9"_s, u"COM9"_s), 0);
}

TEST_F(SettingsCommandsTest, DiffNamesFieldOldAndNew) {
  QByteArray file = Get();
  file.replace("SampleInterval=15 minutes", "SampleInterval=5 minutes");
  file.replace("LoggerName=Mill Pond 3", "LoggerName=Weir");
  WriteFile(File("b.set"), file);
  EXPECT_EQ(Diff(u"COM9"_s, File("b.set")), 1);
  EXPECT_EQ(Out(),
            u"Name\tMill Pond 3\tWeir\nSample periodically every\t15 minutes\t5 minutes\n"_s);
  EXPECT_EQ(Diff(File("b.set"), File("got.set"), {u"--json"_s}), 1);
  EXPECT_EQ(
      Out(),
      u"{\"field\":\"Name\",\"old\":\"Weir\",\"new\":\"Mill Pond 3\"}\n"
      u"{\"field\":\"Sample periodically every\",\"old\":\"5 minutes\",\"new\":\"15 minutes\"}\n"_s);
}

TEST_F(SettingsCommandsTest, DiffOfASourceThatIsNoneIsNotADifference) {
  EXPECT_EQ(Diff(u"nowhere"_s, u"COM9"_s), 2);
  EXPECT_EQ(Diff(File("missing.set"), u"COM9"_s), 2);
  EXPECT_EQ(Diff(File("missing.bin"), u"COM9"_s), 2);
  EXPECT_EQ(
      Words(),
      u"tessmar: an image file does not know its channels: give --analog N and --pulse N\n"_s);
}

TEST_F(SettingsCommandsTest, DiffOfTwoFilesTakesTheChannelsThatTheySay) {
  const QByteArray file = Get();
  ASSERT_TRUE(file.contains("NumAnalogChannels=8\r\nNumDigitalChannels=2\r\n"));
  QByteArray few = file;
  few.replace("NumAnalogChannels=8", "NumAnalogChannels=4");
  QByteArray other = few;
  other.replace("Channel=6\r\nEnable=1\r\n", "Channel=6\r\nEnable=0\r\n");
  ASSERT_NE(other, few);
  WriteFile(File("few.set"), few);
  WriteFile(File("other.set"), other);
  EXPECT_EQ(Diff(File("few.set"), File("other.set")), 0) << Out().toStdString();
  EXPECT_EQ(Diff(File("got.set"), File("other.set")), 1);
  EXPECT_EQ(Out(), u"Channel 7: Enable\tYes\tNo\n"_s) << "one of the two has that channel";
}

TEST_F(SettingsCommandsTest, DiffWithALoggerLeavesOutWhatItLacks) {
  QByteArray file = Get();
  Use({.AnalogChannels = 6, .PulseChannels = 1});
  const QByteArray sixes = Get();
  file = sixes;
  file.replace("NumAnalogChannels=6", "NumAnalogChannels=8");
  file.replace("Channel=7\r\nEnable=0\r\n", "Channel=7\r\nEnable=1\r\n");
  file.replace("EnableSOD=0", "EnableSOD=1");
  ASSERT_NE(file, sixes);
  WriteFile(File("b.set"), file);
  EXPECT_EQ(Diff(u"COM9"_s, File("b.set")), 0) << Out().toStdString();
  EXPECT_EQ(Diff(File("b.set"), u"COM9"_s), 0) << Out().toStdString();
}

TEST_F(SettingsCommandsTest, DiffOfWhatNoMemoryTakesIsAFailure) {
  QByteArray file = Get();
  file.replace("Deadband=", "Deadband=70000");
  WriteFile(File("b.set"), file);
  EXPECT_EQ(Diff(File("got.set"), File("b.set")), 1);
  EXPECT_EQ(Words(), u"tessmar: a value does not fit a logger's memory; put the file right\n"_s);
  EXPECT_EQ(Out(), QString());
}

TEST_F(SettingsCommandsTest, DiffReadsImages) {
  Get();
  WriteImage(File("a.bin"));
  const QStringList channels{u"--analog"_s, u"8"_s, u"--pulse"_s, u"2"_s};
  EXPECT_EQ(Diff(File("a.bin"), u"COM9"_s, channels), 0) << Out().toStdString();
  EXPECT_EQ(Diff(File("got.set"), File("a.bin"), channels), 0) << Out().toStdString();
}

TEST_F(SettingsCommandsTest, PutProgramsReadsBackAndCommits) {
  QByteArray file = Get();
  file.replace("SampleInterval=15 minutes", "SampleInterval=5 minutes");
  ASSERT_EQ(Put(file), 0) << Words().toStdString();
  EXPECT_EQ(Out(), u"Mill Pond 3: programmed from "_s + File("put.set") + u'\n');
  EXPECT_EQ(Logger->Commits(), 1);
  EXPECT_EQ(Diff(u"COM9"_s, File("put.set")), 0) << Out().toStdString();
}

TEST_F(SettingsCommandsTest, AWishToEndIsHeardAheadOfProgramming) {
  const QByteArray file = Get();
  Port.OnWrite = [this, carry = Port.OnWrite](const Bytes& bytes) {
    StopWanted = true;
    carry(bytes);
  };
  EXPECT_EQ(Put(file), 1);
  EXPECT_EQ(Words(), u"tessmar: COM9: broken off\n"_s);
  EXPECT_EQ(Logger->Requests(0x07), 0);
}

TEST_F(SettingsCommandsTest, AWishToEndCutsNothingThatIsBeingProgrammed) {
  QByteArray file = Get();
  file.replace("SampleInterval=15 minutes", "SampleInterval=5 minutes");
  bool wasUncut = false;
  Port.OnWrite = [this, &wasUncut, carry = Port.OnWrite](const Bytes& bytes) {
    if (Logger->Requests(0x07) == 2) {
      StopWanted = true;
      wasUncut = Environment != nullptr && Environment->IsUncut && Environment->IsUncut();
    }
    carry(bytes);
  };
  EXPECT_EQ(Put(file), 0) << Words().toStdString();
  EXPECT_TRUE(wasUncut);
  EXPECT_EQ(Logger->Requests(0x07), 4);
  EXPECT_EQ(Logger->Commits(), 1);
  EXPECT_EQ(Out(), u"Mill Pond 3: programmed from "_s + File("put.set") + u'\n');
  StopWanted = false;
  EXPECT_EQ(Diff(u"COM9"_s, File("put.set")), 0) << Out().toStdString();
}

TEST_F(SettingsCommandsTest, WhatIsCutAllTheSameIsSaid) {
  const QByteArray file = Get();
  Port.OnWrite = [this, carry = Port.OnWrite](const Bytes& bytes) {
    if (Logger->Requests(0x07) == 2) {
      StopWanted = true;
      Loop.End();
      return;
    }
    carry(bytes);
  };
  EXPECT_EQ(Put(file), 1);
  EXPECT_EQ(Words(),
            u"tessmar: COM9: broken off in the middle, the logger may hold half of the settings; "
            u"program them again\n"_s);
  EXPECT_EQ(Logger->Commits(), 0);
}

TEST_F(SettingsCommandsTest, PutCommitsNothingThatDidNotReadBack) {
  const QByteArray file = Get();
  QByteArray other = file;
  other.replace("SampleInterval=15 minutes", "SampleInterval=5 minutes");
  Logger->AddFault(sim::FailureMode::StuckConfigurationByte);
  EXPECT_EQ(Put(other), 1);
  EXPECT_EQ(Logger->Commits(), 0);
  EXPECT_EQ(Words(),
            u"tessmar: COM9: the settings were not programmed, or it cannot be proved; try "
            u"again\n"_s);
}

TEST_F(SettingsCommandsTest, PutThatIsNotCommittedIsAFailure) {
  const QByteArray file = Get();
  Logger->AddFault(sim::FailureMode::CommitRefused);
  EXPECT_EQ(Put(file), 1);
}

TEST_F(SettingsCommandsTest, PutRefusesAFileWithoutASingleSetting) {
  for (const QByteArray& file :
       {QByteArray(), QByteArray("hello\r\n"), QByteArray("Program=x\r\nVersion=1\r\n"),
        QByteArray("Date, Time, hPa\r\n1/1/26, 12:00:00, 5\r\n")}) {
    EXPECT_EQ(Put(file), 1) << file.toStdString();
    EXPECT_EQ(Words(), u"tessmar: "_s + File("put.set") +
                           u": not a setup file: there is not a single setting in it\n"_s);
  }
  EXPECT_EQ(Port.Opened, 0);
  EXPECT_EQ(Logger->Requests(0x07), 0);
}

TEST_F(SettingsCommandsTest, PutRefusesWhatIsNoValueAndWhatDoesNotFit) {
  EXPECT_EQ(Put("LoggerName=A\r\nDeadband=many\r\n"), 1);
  EXPECT_TRUE(Words().contains(u"a value in it is not one that its field takes"_s));
  QByteArray file = Get();
  file.replace("Deadband=", "Deadband=70000");
  EXPECT_EQ(Put(file), 1);
  EXPECT_TRUE(
      Words().contains(u"a value does not fit the logger's memory; nothing was programmed"_s))
      << Words().toStdString();
  EXPECT_EQ(Logger->Requests(0x07), 0);
}

TEST_F(SettingsCommandsTest, PutWarnsAsTheScreenDoes) {
  QByteArray file = Get();
  // The column of the oxygen sensor gets other units than the DO set-up has.
  file.replace("Channel=0\r\nEnable=1\r\nEngUnits=hPa", "Channel=0\r\nEnable=1\r\nEngUnits=Volts");
  EXPECT_EQ(Put(file), 1);
  EXPECT_EQ(Words(),
            u"tessmar: Warning: units for O2 Sensor Channel #1 as configured on DO tab: hPa do not "
            u"match engineering units on Analog Channels tab for the same channel: Volts\n"
            u"tessmar: nothing was programmed; put the file right, or say --force\n"_s);
  EXPECT_EQ(Logger->Requests(0x07), 0);
  EXPECT_EQ(Put(file, {u"--force"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Words().count(u'\n'), 1) << "the warning stays";
  EXPECT_EQ(Logger->Commits(), 1);
}

TEST_F(SettingsCommandsTest, PutFitsALoggerWithFewChannels) {
  Use({.AnalogChannels = 2, .PulseChannels = 0});
  ASSERT_EQ(Put(Get(), {u"--force"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Diff(u"COM9"_s, File("got.set")), 0) << Out().toStdString();
}

TEST_F(SettingsCommandsTest, ConvertGivesTheTableOfTheImport) {
  WriteImage(File("a.bin"));
  const QStringList channels{u"--analog"_s, u"8"_s, u"--pulse"_s, u"2"_s};
  ASSERT_EQ(Run(QStringList{u"convert"_s, File("a.bin"), File("a.csv")} + channels), 0)
      << Words().toStdString();
  EXPECT_EQ(Out(), File("a.bin") + u": 960 records in "_s + File("a.csv") + u'\n');
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("b.csv")}), 0);
  EXPECT_EQ(ReadFile(File("a.csv")).count('\n'), 962);
  // The import takes the set-up of the derived channels from nowhere, so that only the times and
  // the readings of the sensors are those of the upload.
  EXPECT_EQ(ReadFile(File("a.csv")).split('\n')[961].left(30),
            ReadFile(File("b.csv")).split('\n')[961].left(30));
  ASSERT_EQ(Run(QStringList{u"convert"_s, File("a.bin"), u"-"_s} + channels), 0);
  EXPECT_EQ(Out().toUtf8(), ReadFile(File("a.csv")));
}

TEST_F(SettingsCommandsTest, ConvertRefusesWhatIsNoImage) {
  const QStringList channels{u"--analog"_s, u"8"_s, u"--pulse"_s, u"2"_s};
  const auto convert = [&](const QString& image, const QString& file) {
    return Run(QStringList{u"convert"_s, image, file} + channels);
  };
  WriteFile(File("short.bin"), QByteArray(2111, '\0'));
  EXPECT_EQ(convert(File("short.bin"), File("a.csv")), 1);
  EXPECT_EQ(Words(), u"tessmar: "_s + File("short.bin") + u": too short for an image file\n"_s);
  EXPECT_EQ(convert(File("missing.bin"), File("a.csv")), 2);
  EXPECT_EQ(convert(Folder.path(), File("a.csv")), 2);
  EXPECT_EQ(convert(u"/dev/zero"_s, File("a.csv")), 2);
  EXPECT_EQ(convert(File("short.bin"), File("a.txt")), 2);
  EXPECT_EQ(Run({u"convert"_s, File("short.bin"), File("a.csv")}), 2);
  EXPECT_EQ(Run({u"convert"_s, File("short.bin"), File("a.csv"), u"--analog"_s, u"5"_s,
                 u"--pulse"_s, u"0"_s}),
            2);
  EXPECT_TRUE(Words().contains(u"14 bytes for each record"_s));
  EXPECT_FALSE(QFileInfo::exists(File("a.csv")));
}

TEST_F(SettingsCommandsTest, ConvertWritesNothingForAnErasedImage) {
  WriteFile(File("erased.bin"), QByteArray(4096 * 264, '\xFF'));
  EXPECT_EQ(Run({u"convert"_s, File("erased.bin"), File("a.csv"), u"--analog"_s, u"8"_s,
                 u"--pulse"_s, u"2"_s}),
            0);
  EXPECT_EQ(Out(), File("erased.bin") + u": no records; no file was written\n"_s);
  EXPECT_FALSE(QFileInfo::exists(File("a.csv")));
}

}  // namespace
}  // namespace tessmar::test
