#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "cli/CommandRig.h"
#include "history/CsvExport.h"
#include "session/PersistedSettings.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class UploadCommandTest : public CommandRig {
 protected:
  /// Stops the upload once so many of its requests have been sent.
  void StopAfterBlocks(int blocks) {
    Port.OnWrite = [this, blocks, carry = Port.OnWrite](const Bytes& bytes) {
      if (Logger->Requests(0x0D) >= blocks) StopWanted = true;
      carry(bytes);
    };
  }
};

TEST_F(UploadCommandTest, SavesWhatTheViewerWouldSave) {
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv")}), 0) << Words().toStdString();
  EXPECT_EQ(Out(),
            u"Mill Pond 3: 960 records in "_s + File("a.csv") + u", upload 1 in the archive\n"_s);
  const QList<QByteArray> lines = ReadFile(File("a.csv")).split('\n');
  ASSERT_EQ(lines.size(), 963);
  EXPECT_EQ(lines[0], "Mill Pond 3,12/27/2010,3:05:12 PM\r");
  EXPECT_EQ(lines[1],
            "Date, Time, hPa, Temp C, uS/cm, mbar, %Sat, mg/L, PSS, Volts, Inches, Liters\r");
  EXPECT_TRUE(lines[2].startsWith("6/5/26, 14:45:00, ")) << lines[2].toStdString();
  EXPECT_TRUE(lines[961].startsWith("6/15/26, 14:30:00, ")) << lines[961].toStdString();
  EXPECT_EQ(lines[962], "");
}

TEST_F(UploadCommandTest, UsesTheDateFormOfTheProgramsSettings) {
  WriteFile(File("store.ini"), "[Configuration]\nCSVDateTimeSingleColumn=Yes\n");
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, u"-"_s}), 0);
  EXPECT_TRUE(Out().section(u'\n', 1, 1).startsWith(u"Date Time, hPa, "_s));
  EXPECT_TRUE(Out().section(u'\n', 2, 2).startsWith(u"6/5/26 14:45:00, "_s));
}

TEST_F(UploadCommandTest, WritesNothingButTheDataToStandardOutput) {
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, u"-"_s, u"--json"_s}), 0);
  EXPECT_EQ(Out().count(u'\n'), 962);
  EXPECT_EQ(Words(), QString());
}

TEST_F(UploadCommandTest, TellsWhatWasKeptAsJson) {
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--json"_s}), 0);
  const QJsonObject json = QJsonDocument::fromJson(Out().toUtf8()).object();
  EXPECT_EQ(json.value(u"state"_s).toString(), u"complete"_s);
  EXPECT_EQ(json.value(u"promised"_s).toInt(), 960);
  EXPECT_EQ(json.value(u"records"_s).toInt(), 960);
  EXPECT_EQ(json.value(u"kind"_s).toString(), u"history"_s);
}

TEST_F(UploadCommandTest, AnEmptyHistoryIsDoneAndWritesNothing) {
  Use({.Records = 0});
  WriteFile(File("a.csv"), "yesterday's");
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv")}), 0);
  EXPECT_EQ(Words(), u"tessmar: COM9: the logger has no records; nothing was written\n"_s);
  EXPECT_EQ(ReadFile(File("a.csv")), "yesterday's");
}

TEST_F(UploadCommandTest, KeepsWhatCameInTheArchive) {
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--json"_s}), 0) << Words().toStdString();
  const QJsonObject json = QJsonDocument::fromJson(Out().toUtf8()).object();
  EXPECT_EQ(json.value(u"id"_s).toInt(), 1);
  EXPECT_EQ(json.value(u"archive"_s).toString(), File("archive.sqlite"));
  ASSERT_EQ(Run({u"archive"_s, u"check"_s}), 0) << Out().toStdString();
  ASSERT_EQ(Run({u"archive"_s, u"show"_s, u"1"_s}), 0);
  EXPECT_EQ(Out().count(u'\n'), 962);
  EXPECT_TRUE(Out().contains(u"\n960\t2026-06-15T14:30:00\t"_s));
}

TEST_F(UploadCommandTest, APartIsInTheArchiveAndNoFileIsMade) {
  StopAfterBlocks(5);
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv")}), 3);
  EXPECT_FALSE(QFileInfo::exists(File("a.csv")));
  EXPECT_FALSE(QFileInfo::exists(File("a.csv.part")));
  StopWanted = false;
  ASSERT_EQ(Run({u"archive"_s, u"list"_s, u"--json"_s}), 0);
  EXPECT_TRUE(Out().contains(u"\"state\":\"cancelled\""_s)) << Out().toStdString();
  ASSERT_EQ(Run({u"archive"_s, u"check"_s}), 0) << Out().toStdString();
}

TEST_F(UploadCommandTest, AnArchiveThatCannotBeHadIsToldAndIsNoSuccess) {
  WriteFile(File("blocked"), "");
  const QString path = File("blocked/archive.sqlite");
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--archive"_s, path}), 1);
  EXPECT_TRUE(Words().startsWith(u"tessmar: "_s)) << Words().toStdString();
  EXPECT_EQ(
      Run({u"upload"_s, u"COM9"_s, u"--archive"_s, path, u"--csv"_s, File("a.csv"), u"--json"_s}),
      0)
      << "all of it is in the file";
  EXPECT_TRUE(Out().contains(u"\"archive\":null"_s)) << Out().toStdString();
}

TEST_F(UploadCommandTest, RefusesToKeepNothing) {
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--no-archive"_s}), 2);
  EXPECT_EQ(Port.Opened, 0);
}

TEST_F(UploadCommandTest, CtrlCEndsAtTheNextBlockAndKeepsThePart) {
  WriteFile(File("a.csv"), "yesterday's");
  StopAfterBlocks(5);
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv"), u"--no-archive"_s}), 3);
  EXPECT_EQ(Words(), u"tessmar: COM9: broken off (60 of 960 records came)\n"_s);
  EXPECT_EQ(ReadFile(File("a.csv")), "yesterday's") << "a part does not take its place";
  EXPECT_EQ(ReadFile(File("a.csv.part")).count('\n'), 62);
  EXPECT_FALSE(Port.IsOpen());
}

TEST_F(UploadCommandTest, AnUnpluggedDeviceKeepsThePart) {
  Port.OnWrite = [this, carry = Port.OnWrite](const Bytes& bytes) {
    if (Logger->Requests(0x0D) >= 5) {
      Port.Unplug();
      return;
    }
    carry(bytes);
  };
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv"), u"--no-archive"_s}), 3);
  EXPECT_EQ(Words(),
            u"tessmar: COM9: the device is gone; plug it in again (50 of 960 records came)\n"_s);
  EXPECT_FALSE(QFileInfo::exists(File("a.csv")));
  EXPECT_EQ(ReadFile(File("a.csv.part")).count('\n'), 52);
}

TEST_F(UploadCommandTest, AnUnpluggedDeviceIsAFailureInTheArchiveToo) {
  Port.OnWrite = [this, carry = Port.OnWrite](const Bytes& bytes) {
    if (Logger->Requests(0x0D) >= 5) {
      Port.Unplug();
      return;
    }
    carry(bytes);
  };
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--json"_s}), 3);
  EXPECT_TRUE(Out().contains(u"\"state\":\"failed\",\"promised\":960,\"records\":50,"_s))
      << Out().toStdString();
  ASSERT_EQ(Run({u"archive"_s, u"list"_s, u"--json"_s}), 0);
  EXPECT_TRUE(Out().contains(u"\"state\":\"failed\",\"promised\":960,\"records\":50,"_s))
      << Out().toStdString();
}

TEST_F(UploadCommandTest, ASilentLoggerKeepsThePart) {
  Port.OnWrite = [this, carry = Port.OnWrite](const Bytes& bytes) {
    if (Logger->Requests(0x0D) < 5) carry(bytes);
  };
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv"), u"--no-archive"_s}), 3);
  EXPECT_TRUE(Words().contains(u"(50 of 960 records came)"_s)) << Words().toStdString();
}

TEST_F(UploadCommandTest, FewerRecordsThanPromisedAreNotTheWhole) {
  // 22 bytes a record do not fill a block: this logger sends ten where eleven are awaited.
  Use({.AnalogChannels = 7, .PulseChannels = 2});
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv"), u"--no-archive"_s}), 3);
  EXPECT_EQ(Words(),
            u"tessmar: COM9: the logger ended early; upload again (10 of 960 records came)\n"_s);
  EXPECT_FALSE(QFileInfo::exists(File("a.csv")));
}

TEST_F(UploadCommandTest, MoreRecordsThanPromisedAreTheWhole) {
  Logger->AddFault({.Mode = sim::FailureMode::MoreRecords, .Count = 25});
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("a.csv")}), 0) << Words().toStdString();
  EXPECT_EQ(ReadFile(File("a.csv")).count('\n'), 987);
}

TEST_F(UploadCommandTest, AFileThatCannotBeCostsNoUpload) {
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, File("nowhere/a.csv")}), 1);
  EXPECT_EQ(Words(), u"tessmar: The folder does not exist: "_s + File("nowhere") + u'\n');
  EXPECT_EQ(Port.Opened, 0);
  EXPECT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, Folder.path()}), 1);
  EXPECT_EQ(Port.Opened, 0);
}

TEST_F(UploadCommandTest, ShowsProgressOnATerminalOnly) {
  Use({.Records = 5000, .BaudRate = 38400});
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s}), 0);
  EXPECT_EQ(Words(), QString());
}

}  // namespace
}  // namespace tessmar::test
