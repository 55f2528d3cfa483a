// What the command does to a logger stands in the logbook in the words of the program with the
// window, which goes by it.

#include "archive/ArchiveRig.h"
#include "archive/Journal.h"
#include "cli/CommandRig.h"
#include "session/StatusLine.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class LogbookTest : public CommandRig {
 protected:
  LogbookTest() { Clock.Present = QDateTime(QDate(2026, 6, 15), QTime(14, 30, 10)); }

  /// "kind|text|before|after" of each entry, the oldest first; images as their size.
  QStringList Book() {
    if (!QFile::exists(File("archive.sqlite"))) return {};
    return OtherProgram(File("archive.sqlite"))
        .Rows(
            u"SELECT kind, text, CASE WHEN length(before) = 315 THEN 'image' ELSE before END,"
            " CASE WHEN length(after) = 315 THEN 'image'"
            " WHEN json_valid(after) THEN json_remove(after, '$.settings')"
            " ELSE after END FROM event ORDER BY id"_s);
  }
  /// What stands at the foot of the main window while this logger is connected.
  QString ArchivedCaption(std::int32_t records) {
    LinkState link;
    link.TrapErrors = true;
    link.Connected = true;
    link.LoggerModelCode = 208;
    link.RecordCount = records;
    link.AnalogChannelCount = 8;
    link.PulseChannelCount = 2;
    link.StatusAt = Clock.Now();
    LoggerSettings settings;
    settings.LoggerName = u"Mill Pond 3"_s;
    Journal journal(File("archive.sqlite"), {.Link = link,
                                             .Settings = settings,
                                             .Time = Clock,
                                             .Source = [] { return QString(); },
                                             .Program = {}});
    FakeMainScreen screen;
    StatusLine(link, settings, Locale, screen, [&] { return journal.RecordsNotArchived(); }).Show();
    return screen.Caption(u"lblArchived"_s);
  }
};

const auto kConnected =
    u"connected|connected, 960 records|-|{\"analog\":8,\"clock_offset_s\":-10,\"firmware\":21,"
    u"\"model\":208,\"pulse\":2,\"records\":960,\"status\":128}"_s;

TEST_F(LogbookTest, EachConnectionIsNotedWithWhatItFound) {
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Book(), QStringList{kConnected});
  ASSERT_EQ(Run({u"sample"_s, u"COM9"_s}), 0);
  ASSERT_EQ(Run({u"settings"_s, u"get"_s, u"COM9"_s, File("a.set")}), 0);
  ASSERT_EQ(Run({u"settings"_s, u"diff"_s, u"COM9"_s, File("a.set")}), 0);
  ASSERT_EQ(Run({u"clock"_s, u"COM9"_s}), 0);
  EXPECT_EQ(Book().filter(u"connected|"_s).size(), 5);
  EXPECT_EQ(Book().size(), 5);
}

TEST_F(LogbookTest, AConnectionSaysWhatSomebodyElseChanged) {
  ASSERT_EQ(Run({u"settings"_s, u"get"_s, u"COM9"_s, File("a.set")}), 0);
  QByteArray file = ReadFile(File("a.set"));
  file.replace("SampleInterval=15 minutes", "SampleInterval=5 minutes");
  WriteFile(File("a.set"), file);
  ASSERT_EQ(Run({u"settings"_s, u"put"_s, u"COM9"_s, File("a.set"), u"--yes"_s, u"--no-archive"_s}),
            0);
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s}), 0) << Words().toStdString();
  const QString last = Book().last();
  EXPECT_TRUE(last.contains(u"\n1 setting differs from how it was left (connected 2026-06-15T"_s))
      << last.toStdString();
  EXPECT_TRUE(last.contains(u"\nSample periodically every: 5 minutes; before: 15 minutes|"_s));
}

TEST_F(LogbookTest, WhatFailedIsNotNoted) {
  Logger->AddFault({.Mode = sim::FailureMode::RequestLost, .Opcode = 0x04});
  EXPECT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s}), 1);
  EXPECT_EQ(Book(), QStringList{kConnected});
  Wire->SetPlugged(false);
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s}), 1);
  EXPECT_EQ(Book(), QStringList{kConnected});
}

TEST_F(LogbookTest, AClearedHistorySaysHowManyRecordsThereWere) {
  ASSERT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Book(), (QStringList{kConnected,
                                 u"cleared|history cleared, 960 records|"
                                 u"{\"records\":960}|-"_s}));
}

TEST_F(LogbookTest, ASetClockSaysHowFarItWasOff) {
  ASSERT_EQ(Run({u"clock"_s, u"COM9"_s, u"--sync"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Book(), (QStringList{kConnected,
                                 u"synced|clock set, it was -10 s off|"
                                 u"{\"clock_offset_s\":-10}|{\"clock_offset_s\":0}"_s}));
}

TEST_F(LogbookTest, ProgrammedSettingsAreNotedWithBothImages) {
  ASSERT_EQ(Run({u"settings"_s, u"get"_s, u"COM9"_s, File("a.set")}), 0);
  QByteArray file = ReadFile(File("a.set"));
  file.replace("SampleInterval=15 minutes", "SampleInterval=5 minutes");
  file.replace("LoggerName=Mill Pond 3", "LoggerName=Weir");
  WriteFile(File("a.set"), file);
  ASSERT_EQ(Run({u"settings"_s, u"put"_s, u"COM9"_s, File("a.set"), u"--yes"_s}), 0)
      << Words().toStdString();
  EXPECT_EQ(Book().last(), u"programmed|2 settings changed|image|image"_s);
  EXPECT_EQ(OtherProgram(File("archive.sqlite"))
                .Rows(u"SELECT l.name FROM event e JOIN logger l ON l.id = e.logger_id "
                      "WHERE e.kind = 'programmed'"_s),
            QStringList{u"Weir"_s})
      << "what renames a logger is the new name's entry";
}

TEST_F(LogbookTest, AnUploadIsNotedBehindItsConnection) {
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s}), 0) << Words().toStdString();
  ASSERT_EQ(Book().size(), 2);
  EXPECT_EQ(Book().first(), kConnected);
  EXPECT_TRUE(Book().last().startsWith(u"uploaded|960 records, complete|-|{\"records\":960,"_s))
      << Book().last().toStdString();
}

TEST_F(LogbookTest, NoArchiveNotesNothing) {
  const QString no = u"--no-archive"_s;
  ASSERT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s, no}), 0) << Words().toStdString();
  ASSERT_EQ(Run({u"clock"_s, u"COM9"_s, u"--sync"_s, no}), 0);
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s, no}), 0);
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s, u"--csv"_s, u"-"_s, no}), 0);
  EXPECT_FALSE(QFile::exists(File("archive.sqlite")));
}

TEST_F(LogbookTest, TheArchiveMayBeAnother) {
  ASSERT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s, u"--archive"_s, File("b.sqlite")}), 0);
  EXPECT_FALSE(QFile::exists(File("archive.sqlite")));
  EXPECT_EQ(OtherProgram(File("b.sqlite")).Get(u"SELECT count(*) FROM event"_s).toInt(), 2);
}

TEST_F(LogbookTest, TheMainWindowKnowsOfWhatTheCommandCleared) {
  EXPECT_EQ(ArchivedCaption(960), u"960 of 960 records are not in the archive yet"_s);
  ASSERT_EQ(Run({u"upload"_s, u"COM9"_s}), 0) << Words().toStdString();
  EXPECT_EQ(ArchivedCaption(960), u"all 960 records are in the archive"_s);
  Clock.Present = Clock.Present.addSecs(60);
  ASSERT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s}), 0);
  // The next thousand is another thousand.
  EXPECT_EQ(ArchivedCaption(1000), u"1,000 of 1,000 records are not in the archive yet"_s);
}

TEST_F(LogbookTest, AnArchiveThatCannotBeHadIsToldAndStopsNothing) {
  WriteFile(File("blocked"), "");
  const QString path = File("blocked/archive.sqlite");
  EXPECT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s, u"--archive"_s, path, u"--quiet"_s}), 0);
  EXPECT_EQ(Out(), u"960 records erased\n"_s);
  EXPECT_EQ(Words(), u"tessmar: this is not in the logbook; archive "_s + path +
                         u": It cannot be written.\n"_s);
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s, u"--archive"_s, path}), 0);
  EXPECT_EQ(Words().count(u'\n'), 1);
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s, u"--archive"_s, path, u"--quiet"_s}), 0);
  EXPECT_EQ(Words(), QString());
}

TEST_F(LogbookTest, ADamagedArchiveIsMovedAsideAndThatIsTold) {
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s}), 0);
  QByteArray archive = ReadFile(File("archive.sqlite"));
  archive.replace(100, archive.size() - 100, QByteArray(archive.size() - 100, '\xAA'));
  WriteFile(File("archive.sqlite"), archive);
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s, u"--quiet"_s}), 0);
  EXPECT_TRUE(
      Words().startsWith(u"tessmar: The archive was damaged. It was moved aside, and a new "
                         u"one was begun: "_s))
      << Words().toStdString();
  EXPECT_EQ(Words().count(u'\n'), 1);
  EXPECT_EQ(Book(), QStringList{kConnected});
}

TEST_F(LogbookTest, AnArchiveThatIsLockedIsWaitedFor) {
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s}), 0);
  OtherProgram other(File("archive.sqlite"));
  ASSERT_TRUE(other.Do(u"BEGIN IMMEDIATE"_s));
  Loop.After(4000, [&] { other.Do(u"COMMIT"_s); });
  EXPECT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s}), 0);
  EXPECT_EQ(Words(), QString());
  EXPECT_TRUE(Book().last().startsWith(u"cleared|"_s));
}

}  // namespace
}  // namespace tessmar::test
