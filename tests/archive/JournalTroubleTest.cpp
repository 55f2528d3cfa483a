// The archive cannot be had: nobody waits for it, nothing of it is destroyed, and what was not kept
// is written once it can be.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QDir>
#include <QFileInfo>
#include <QThread>

#include "archive/JournalRig.h"
#include "support/SmallDisk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class JournalTrouble : public JournalRig {
 protected:
  QStringList Aside() const {
    return QDir(folder_.path()).entryList({u"archive.sqlite.damaged-*"_s});
  }
  QString FirstLine() { return journal_->TakeReport().section(u"\r\n"_s, 0, 0); }
};

TEST_F(JournalTrouble, ALockForAWhileCostsNothing) {
  Upload({24, 1});
  OtherProgram other(Path());
  ASSERT_TRUE(other.Do(u"BEGIN EXCLUSIVE"_s));
  journal_->Begin({});
  Take({24});
  Pass(1000);
  Take({24});
  ASSERT_TRUE(other.Do(u"COMMIT"_s));
  Pass(300);
  EXPECT_EQ(BlockCount(), 4);
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(States(), u"complete 25, complete 48"_s);
  EXPECT_EQ(journal_->TakeReport(), QString());
}

TEST_F(JournalTrouble, ALockForGoodIsToldOnceAndTheRestWaits) {
  Upload({24, 1});
  OtherProgram other(Path());
  ASSERT_TRUE(other.Do(u"BEGIN EXCLUSIVE"_s));
  Upload({24, 12});
  EXPECT_EQ(journal_->TakeReport(),
            u"36 of the 36 records of this upload are not in the archive. Another program holds it"
            " locked.\r\n%1\r\n\r\nThey are kept in memory and written as soon as that is possible,"
            " while the program runs. Save what matters to a file."_s.arg(Path()));
  ASSERT_TRUE(other.Do(u"COMMIT"_s));
  Pass(300);
  EXPECT_EQ(States(), u"complete 25, complete 36"_s);
  EXPECT_EQ(journal_->TakeReport(), QString());
}

TEST_F(JournalTrouble, TheReportIsGermanToo) {
  ASSERT_TRUE(QDir().mkdir(Path()));
  SetTextLanguage(kLanguageGerman);
  Upload({24});
  EXPECT_EQ(FirstLine(),
            u"24 von 24 Datensätzen dieses Abrufs sind nicht im Archiv. An seiner Stelle steht"
            " keine gewöhnliche Datei."_s);
}

TEST_F(JournalTrouble, AFolderOrAPipeInItsPlaceIsLeftThere) {
  ASSERT_TRUE(QDir().mkdir(Path()));
  Upload({24});
  EXPECT_TRUE(FirstLine().endsWith(u"There is no regular file in its place."_s));
  ASSERT_TRUE(QDir().rmdir(Path()));
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path()).constData(), 0600), 0);
  Upload({24, 24});
  EXPECT_TRUE(FirstLine().startsWith(u"48 of the 48"_s));
  ASSERT_TRUE(QFile::remove(Path()));
  Pass(3000);
  EXPECT_EQ(States(), u"complete 24, complete 48"_s);
}

TEST_F(JournalTrouble, AFolderThatTakesNoFileIsToldAndTriedAgain) {
  const OrdinaryUser user;
  journal_.emplace(u"/proc/archive.sqlite"_s, Context());
  Upload({24});
  EXPECT_TRUE(FirstLine().endsWith(u"It cannot be written."_s));
}

TEST_F(JournalTrouble, GarbageIsMovedAsideAndToldWithItsNewName) {
  Put("this is no database, though somebody may need it");
  Upload({24, 1});
  EXPECT_EQ(States(), u"complete 25"_s);
  ASSERT_EQ(Aside().size(), 1);
  EXPECT_EQ(Content(folder_.filePath(Aside()[0])),
            QByteArray("this is no database, though somebody may need it"));
  EXPECT_EQ(journal_->TakeReport(),
            u"The archive was damaged. It was moved aside, and a new one was begun:\r\n"_s +
                folder_.filePath(Aside()[0]));
  EXPECT_EQ(journal_->TakeReport(), QString());
}

TEST_F(JournalTrouble, ANewerAndAForeignFileAreLeftUntouched) {
  {
    OtherProgram newer(Path());
    newer.Do(u"PRAGMA application_id = 1414746957"_s);
    newer.Do(u"PRAGMA user_version = 99"_s);
  }
  const QByteArray before = Content(Path());
  Upload({24});
  EXPECT_TRUE(FirstLine().endsWith(u"It was written by a later version of this program."_s));
  EXPECT_EQ(Content(Path()), before);
  {
    OtherProgram foreign(Path());
    foreign.Do(u"PRAGMA application_id = 7"_s);
  }
  Upload({24});
  EXPECT_TRUE(FirstLine().endsWith(u"The file in its place belongs to another program."_s));
  EXPECT_TRUE(Aside().isEmpty());
}

TEST_F(JournalTrouble, AFileRemovedInMidUploadIsBegunAnewWithTheWholeUpload) {
  journal_->Begin({.Promised = 60});
  Take({24});
  Pass(300);
  for (const char* file : {"", "-wal", "-shm"}) QFile::remove(Path() + QLatin1StringView(file));
  Take({24, 12});
  Pass(300);
  EXPECT_EQ(BlockCount(), 3);
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(States(), u"complete 60"_s);
  EXPECT_EQ(journal_->TakeReport(), QString());
}

TEST_F(JournalTrouble, AFolderRemovedInMidUploadIsMadeAnew) {
  const QString folder = folder_.filePath(u"deep/down"_s);
  journal_.emplace(folder + u"/archive.sqlite"_s, Context());
  journal_->Begin({});
  Take({24});
  Pass(300);
  ASSERT_TRUE(QDir(folder_.filePath(u"deep"_s)).removeRecursively());
  Take({3});
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(OtherProgram(journal_->Path()).Get(u"SELECT records FROM upload"_s), 27);
}

TEST_F(JournalTrouble, AFileThatComesBackHasTheUploadOnce) {
  journal_->Begin({});
  Take({24});
  Pass(300);
  for (const char* file : {"", "-wal", "-shm"})
    ASSERT_TRUE(QFile::rename(Path() + QLatin1StringView(file),
                              folder_.filePath(u"away"_s) + QLatin1StringView(file)));
  Take({24});
  Pass(300);
  for (const char* file : {"", "-wal", "-shm"}) {
    QFile::remove(Path() + QLatin1StringView(file));
    ASSERT_TRUE(QFile::rename(folder_.filePath(u"away"_s) + QLatin1StringView(file),
                              Path() + QLatin1StringView(file)));
  }
  Take({1});
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(States(), u"complete 49"_s);
}

// Overwrites all but the first page of the archive.
void Break(const QString& path) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  file.seek(4096);
  file.write(QByteArray(static_cast<int>(file.size()) - 4096, '\x5A'));
}

TEST_F(JournalTrouble, AFileThatBreaksInMidUploadIsMovedAside) {
  Upload({24, 1});
  journal_->Finish();
  Break(Path());
  Upload({24, 24});
  EXPECT_EQ(Aside().filter(QRegularExpression(u"Z$"_s)).size(), 1);
  EXPECT_EQ(States(), u"complete 48"_s);
  EXPECT_TRUE(FirstLine().startsWith(u"The archive was damaged."_s));
}

TEST_F(JournalTrouble, ALargeFileIsCheckedBesideTheUpload) {
  Upload({24, 1});
  journal_->Finish();
  Break(Path());
  JournalContext context = Context();
  context.MostToCheckAtOnce = 0;
  journal_.emplace(Path(), context);
  Upload({24, 24});
  // The check has time of its own; until it is over nothing is moved, and nothing waits.
  for (int i = 0; i < 1000 && Aside().isEmpty(); ++i) {
    QThread::msleep(5);
    Pass(100);
  }
  Pass(300);
  EXPECT_EQ(Aside().filter(QRegularExpression(u"Z$"_s)).size(), 1);
  EXPECT_EQ(States(), u"complete 48"_s);
}

TEST_F(JournalTrouble, TheEndOfTheProgramWaitsForTheCheck) {
  Upload({24, 1});
  journal_->Finish();
  Break(Path());
  JournalContext context = Context();
  context.MostToCheckAtOnce = 0;
  journal_.emplace(Path(), context);
  journal_->Begin({});
  Take({24, 24});
  journal_->End(UploadEnd::Complete);
  journal_->Finish();
  EXPECT_EQ(Aside().filter(QRegularExpression(u"Z$"_s)).size(), 1);
  EXPECT_EQ(States(), u"complete 48"_s);
}

TEST_F(JournalTrouble, TheCheckTellsSoundFromDamagedAndFromLost) {
  Upload({24, 1});
  journal_->Finish();
  EXPECT_EQ(IntegrityCheck(Path()).Wait(), IntegrityCheck::Result::Sound);
  EXPECT_EQ(IntegrityCheck(Path() + u"-none"_s).Wait(), IntegrityCheck::Result::Unknown);
  Break(Path());
  EXPECT_EQ(IntegrityCheck(Path()).Wait(), IntegrityCheck::Result::Damaged);
}

TEST_F(JournalTrouble, ALiveRunThatWasNotKeptIsToldOnceAfterItsEnd) {
  ASSERT_TRUE(QDir().mkdir(Path()));
  journal_->Begin({.Kind = UploadKind::Live});
  Take({1, 1, 1});
  Pass(5000);
  EXPECT_EQ(journal_->TakeLiveReport(), QString());
  journal_->End(UploadEnd::Complete);
  Pass(1900);
  EXPECT_EQ(journal_->TakeLiveReport(), QString());
  Pass(200);
  EXPECT_EQ(journal_->TakeLiveReport(),
            u"3 of the 3 live samples are not in the archive. There is no regular file in its"
            " place.\r\n"_s +
                Path() +
                u"\r\n\r\nThey are kept in memory and written as soon as that is possible, while"
                " the program runs."_s);
  EXPECT_EQ(journal_->TakeLiveReport(), QString());
  // The next run has its own count.
  journal_->Begin({.Kind = UploadKind::Live});
  Take({1, 1});
  journal_->End(UploadEnd::Complete);
  EXPECT_TRUE(journal_->TakeLiveReport(true).startsWith(u"2 of the 2 live samples"_s));
  ASSERT_TRUE(QDir().rmdir(Path()));
  Pass(3000);
  EXPECT_EQ(States(), u"complete 3, complete 2"_s);
}

TEST_F(JournalTrouble, ALiveRunThatIsWrittenInTimeIsNotTold) {
  ASSERT_TRUE(QDir().mkdir(Path()));
  journal_->Begin({.Kind = UploadKind::Live});
  Take({1, 1, 1});
  journal_->End(UploadEnd::Complete);
  ASSERT_TRUE(QDir().rmdir(Path()));
  Pass(2500);
  EXPECT_EQ(journal_->TakeLiveReport(), QString());
  EXPECT_EQ(States(), u"complete 3"_s);
}

TEST_F(JournalTrouble, AtTheEndOfTheProgramALiveRunIsToldToBeLost) {
  ASSERT_TRUE(QDir().mkdir(Path()));
  journal_->Begin({.Kind = UploadKind::Live});
  Take({1});
  journal_->End(UploadEnd::Complete);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(
      journal_->TakeLiveReport(true),
      u"1 von 1 Live-Messwerten sind nicht im Archiv. An seiner Stelle steht keine gewöhnliche"
      " Datei.\r\n"_s +
          Path() + u"\r\n\r\nSie gehen verloren."_s);
}

TEST_F(JournalTrouble, AFullDiskIsToldAndWrittenOnceThereIsRoom) {
  SmallDisk disk;
  journal_.emplace(disk.Path(u"archive.sqlite"_s), Context());
  Upload({24, 1});
  disk.Fill(0);
  Upload({24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24});
  const QString told = FirstLine();
  disk.Empty();
  Pass(3000);
  EXPECT_EQ(OtherProgram(journal_->Path()).Rows(u"SELECT state, records FROM upload"_s),
            (QStringList{u"complete|25"_s, u"complete|480"_s}));
  EXPECT_TRUE(told.startsWith(u"480 of the 480 records"_s)) << told.toStdString();
}

TEST_F(JournalTrouble, RecordsThatDoNotFitWaitForRoom) {
  SmallDisk disk;
  journal_.emplace(disk.Path(u"archive.sqlite"_s), Context());
  Upload({24, 1});
  journal_->Begin({});
  Take({24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24, 24});
  journal_->End(UploadEnd::Complete);
  disk.Fill(0);
  Pass(300);
  EXPECT_EQ(OtherProgram(journal_->Path()).Rows(u"SELECT state FROM upload"_s).at(1), u"running"_s);
  // The blocks are in the file, so nothing is lost and nothing is told.
  EXPECT_EQ(journal_->TakeReport(), QString());
  disk.Empty();
  Pass(3000);
  EXPECT_EQ(OtherProgram(journal_->Path()).Rows(u"SELECT state FROM upload"_s).at(1),
            u"complete"_s);
}

TEST_F(JournalTrouble, WhatWaitsForAnArchiveHasAnEnd) {
  ASSERT_TRUE(QDir().mkdir(Path()));
  for (int i = 0; i < 8; ++i) {
    journal_->Begin({});
    for (int block = 0; block < 20000; ++block) Take({1});
    journal_->End(UploadEnd::Failed);
  }
  ASSERT_TRUE(QDir().rmdir(Path()));
  Pass(3000);
  EXPECT_EQ(BlockCount(), 100000 + 20000);
}

}  // namespace
}  // namespace tessmar::test
