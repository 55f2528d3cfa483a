#include "archive/Store.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <array>
#include <climits>

#include "archive/ArchiveRig.h"

#include <sys/stat.h>

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using Access = Store::Access;

QDateTime At(int hour) {
  return {QDate(2026, 3, 3), QTime(hour, 0), Qt::UTC};
}

class ArchiveStore : public ArchiveFolder {
 protected:
  Store& Opened() {
    store_.Open(Access::Write);
    return store_;
  }
  static UploadRow AnUpload(qint64 logger, const QString& uuid, int hour) {
    return {.Uuid = uuid,
            .LoggerId = logger,
            .Kind = UploadKind::Image,
            .Started = At(hour),
            .Owner = u"me"_s,
            .Promised = 12,
            .Settings = QByteArray(315, 's'),
            .Analog = 3,
            .Pulse = 1,
            .ClockOffsetS = -4,
            .Source = u"COM7"_s,
            .Program = u"2.1.9"_s};
  }
  QTemporaryDir other_;
  Store store_{Path()};
};

TEST_F(ArchiveStore, TheFolderIsMadeWithTheFile) {
  Store store(folder_.filePath(u"a/b/archive.sqlite"_s));
  store.Open(Access::Write);
  EXPECT_TRUE(QFileInfo(store.Path()).isFile());
}

TEST_F(ArchiveStore, ThePathIsThatOfTheEnvironmentOrOfTheUsersData) {
  qputenv("TESSMAR_ARCHIVE", "/somewhere/else.sqlite");
  EXPECT_EQ(Store::DefaultPath(), u"/somewhere/else.sqlite"_s);
  qunsetenv("TESSMAR_ARCHIVE");
  qputenv("XDG_DATA_HOME", "/data");
  EXPECT_EQ(Store::DefaultPath(), u"/data/Tessmar/archive.sqlite"_s);
  qunsetenv("XDG_DATA_HOME");
}

TEST_F(ArchiveStore, AReaderMakesNothing) {
  EXPECT_EQ(TroubleOfOpening(Access::Read), ArchiveTrouble::Unwritable);
  EXPECT_FALSE(QFileInfo::exists(Path()));
}

TEST_F(ArchiveStore, GarbageIsDamagedAndStaysAsItIs) {
  for (const QByteArray& garbage :
       {QByteArray("x"), QByteArray("hello"), QByteArray(100, 'g'), QByteArray(511, '\0'),
        QByteArray(100000, '\x55'), QByteArray("SQLite format 3\0", 16) + QByteArray(9000, 'z')}) {
    Put(garbage);
    EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::Damaged) << garbage.size();
    EXPECT_EQ(Content(Path()), garbage) << garbage.size();
  }
}

TEST_F(ArchiveStore, AnotherProgramsDatabaseIsForeignAndStaysAsItIs) {
  {
    OtherProgram other(Path());
    ASSERT_TRUE(other.Do(u"CREATE TABLE bookmarks (url)"_s));
  }
  const QByteArray before = Content(Path());
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::Foreign);
  EXPECT_EQ(Content(Path()), before);
}

TEST_F(ArchiveStore, ADatabaseWithAnotherMarkIsForeignEvenWithoutTables) {
  {
    OtherProgram other(Path());
    ASSERT_TRUE(other.Do(u"PRAGMA application_id = 7"_s));
  }
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::Foreign);
}

TEST_F(ArchiveStore, ANewerVersionIsLeftAsItIs) {
  Opened();
  store_.Run(u"PRAGMA user_version = 3"_s);
  store_.Close();
  const QByteArray before = Content(Path());
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::Newer);
  EXPECT_EQ(TroubleOfOpening(Access::Read), ArchiveTrouble::Newer);
  EXPECT_EQ(Content(Path()), before);
}

TEST_F(ArchiveStore, WhatIsNoRegularFileIsNotOpened) {
  ASSERT_TRUE(QDir().mkdir(Path()));
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::NotAFile);
  ASSERT_TRUE(QDir().rmdir(Path()));
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path()).constData(), 0600), 0);
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::NotAFile);
  ASSERT_TRUE(QFile::remove(Path()));
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path() + u"-wal"_s).constData(), 0600), 0);
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::NotAFile);
}

TEST_F(ArchiveStore, AFolderThatCannotBeMadeIsUnwritable) {
  Put("a file where the folder should be");
  Store store(Path() + u"/archive.sqlite"_s);
  try {
    store.Open(Access::Write);
    FAIL();
  } catch (const ArchiveFault& fault) {
    EXPECT_EQ(fault.Trouble(), ArchiveTrouble::Unwritable);
  }
}

TEST_F(ArchiveStore, ALockedFileIsBusyAtOnce) {
  Opened();
  OtherProgram other(Path());
  ASSERT_TRUE(other.Do(u"BEGIN IMMEDIATE"_s));
  try {
    const Transaction transaction(store_);
    FAIL();
  } catch (const ArchiveFault& fault) {
    EXPECT_EQ(fault.Trouble(), ArchiveTrouble::Busy);
  }
  EXPECT_TRUE(store_.Loggers().empty());
  ASSERT_TRUE(other.Do(u"COMMIT"_s));
  const Transaction transaction(store_);
}

TEST_F(ArchiveStore, ATransactionThatIsNotCommittedLeavesNothing) {
  {
    const Transaction transaction(Opened());
    store_.SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  }
  EXPECT_TRUE(store_.Loggers().empty());
}

TEST_F(ArchiveStore, KnowsWhenItsFileIsTakenAway) {
  Opened();
  EXPECT_TRUE(store_.FileIsThere());
  ASSERT_TRUE(QFile::rename(Path(), Path() + u".old"_s));
  EXPECT_FALSE(store_.FileIsThere());
  Put("another");
  EXPECT_FALSE(store_.FileIsThere());
}

TEST_F(ArchiveStore, MovesAFileAsideUnderADatedNameAndNeverOverAnother) {
  for (const char* expected :
       {"archive.sqlite.damaged-20260303T010000Z", "archive.sqlite.damaged-20260303T010000Z-2"}) {
    Put(expected);
    const QString aside = store_.MoveAside(At(1));
    EXPECT_EQ(aside, folder_.filePath(QString::fromLatin1(expected)));
    EXPECT_EQ(Content(aside), QByteArray(expected));
    EXPECT_FALSE(QFileInfo::exists(Path()));
  }
}

// As a disk leaves it that is full before the first page of a new archive.
TEST_F(ArchiveStore, ABeginningOfOneByteIsBegunAnew) {
  Put("S");
  EXPECT_EQ(TroubleOfOpening(), std::nullopt);
  EXPECT_EQ(OtherProgram(Path()).Get(u"SELECT count(*) FROM upload"_s), 0);
  Put("x");
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::Damaged);
  Put("SQ");
  EXPECT_EQ(TroubleOfOpening(), ArchiveTrouble::Damaged);
  EXPECT_EQ(Content(Path()), "SQ");
}

// Beside a new file SQLite would remove what was committed last.
TEST_F(ArchiveStore, IsNotMovedAsideWithoutWhatWasCommittedLast) {
  // Aside it has the longest name that a file can have, so that the log beside it can have none.
  constexpr int kAdded = 25;
  const QString name(NAME_MAX - kAdded, u'a');
  const Store store(folder_.filePath(name));
  Put("damaged");
  ASSERT_TRUE(QFile::rename(Path(), store.Path()));
  EXPECT_EQ(QFileInfo(store.MoveAside(At(1))).fileName().size(), NAME_MAX);

  Put("damaged");
  ASSERT_TRUE(QFile::copy(Path(), store.Path() + u"-wal"_s));
  ASSERT_TRUE(QFile::rename(Path(), store.Path()));
  EXPECT_EQ(store.MoveAside(At(2)), QString());
  EXPECT_EQ(Content(store.Path()), "damaged");
  EXPECT_EQ(Content(store.Path() + u"-wal"_s), "damaged");
}

TEST_F(ArchiveStore, TakesWhatBelongsToItAside) {
  for (const char* side : {"-wal", "-shm", "-journal"}) {
    QFile file(Path() + QLatin1StringView(side));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(side);
  }
  Put("damaged");
  // Left by an attempt that was broken off.
  QFile other(Path() + u".damaged-20260303T010000Z-wal"_s);
  ASSERT_TRUE(other.open(QIODevice::WriteOnly));
  const QString aside = store_.MoveAside(At(1));
  EXPECT_EQ(aside, Path() + u".damaged-20260303T010000Z-2"_s);
  EXPECT_EQ(Content(aside), QByteArray("damaged"));
  for (const char* side : {"-wal", "-shm", "-journal"})
    EXPECT_EQ(Content(aside + QLatin1StringView(side)), QByteArray(side));
  EXPECT_EQ(QDir(folder_.path()).entryList({u"archive.sqlite*"_s}).size(), 5);
}

TEST_F(ArchiveStore, ChecksItsIntegrity) {
  Opened();
  EXPECT_EQ(store_.IntegrityComplaints(), QStringList());
  store_.Run(u"PRAGMA writable_schema = ON"_s);
  store_.Run(u"UPDATE sqlite_master SET rootpage = 3 WHERE name = 'bin'"_s);
  store_.Close();
  store_.Open(Access::Write);
  EXPECT_FALSE(store_.IntegrityComplaints().isEmpty());
}

TEST_F(ArchiveStore, ALoggerIsKnownAgainByNameAndModel) {
  const qint64 pond = Opened().SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  EXPECT_EQ(store_.SeeLogger(u"Pond 7"_s, 220, 6, At(2)), pond);
  const qint64 other = store_.SeeLogger(u"Pond 7"_s, 110, 5, At(3));
  EXPECT_NE(other, pond);
  const std::optional<LoggerRow> row = store_.Logger(pond);
  ASSERT_TRUE(row);
  EXPECT_EQ(row->Name, u"Pond 7"_s);
  EXPECT_EQ(row->Model, 220);
  EXPECT_EQ(row->Firmware, 6);
  EXPECT_EQ(row->FirstSeen, At(1));
  EXPECT_EQ(row->LastSeen, At(2));
  EXPECT_EQ(store_.Loggers().size(), 2U);
}

TEST_F(ArchiveStore, AnImageGoesToTheLoggerOfItsNameThatWasSeenLast) {
  Opened().SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  const qint64 later = store_.SeeLogger(u"Pond 7"_s, 110, 5, At(2));
  EXPECT_EQ(store_.SeeLogger(u"Pond 7"_s, std::nullopt, std::nullopt, At(3)), later);
  EXPECT_EQ(store_.Logger(later)->Firmware, 5);
  const qint64 unknown = store_.SeeLogger(QString(), std::nullopt, std::nullopt, At(3));
  EXPECT_EQ(store_.Logger(unknown)->Model, std::nullopt);
}

TEST_F(ArchiveStore, ALoggerThatWasRenamedInTheArchiveKeepsThatName) {
  const qint64 pond = Opened().SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  store_.Run(u"UPDATE logger SET name = 'Upper pond' WHERE id = ?"_s, {pond});
  EXPECT_EQ(store_.SeeLogger(u"Pond 7"_s, 220, 5, At(2)), pond);
  EXPECT_EQ(store_.Logger(pond)->Name, u"Upper pond"_s);
}

TEST_F(ArchiveStore, WhatWasMergedGoesWhereItWasMergedInto) {
  const qint64 a = Opened().SeeLogger(u"A"_s, 220, 5, At(1));
  const qint64 b = store_.SeeLogger(u"B"_s, 220, 5, At(1));
  const qint64 c = store_.SeeLogger(u"C"_s, 220, 5, At(1));
  const auto merge = [this](qint64 from, qint64 into, const QString& uuid, int hour) {
    store_.AddEvent(
        {.Uuid = uuid,
         .LoggerId = from,
         .At = At(hour),
         .Entry = {.Kind = EventKind::Merged,
                   .After = "{\"into\":\"" + store_.Logger(into)->Uuid.toUtf8() + "\"}"}});
  };
  merge(a, b, u"e1"_s, 1);
  merge(b, c, u"e2"_s, 2);
  EXPECT_EQ(store_.LoggerFor(u"A"_s, 220)->Id, c);
  merge(c, a, u"e3"_s, 3);
  EXPECT_TRUE(store_.LoggerFor(u"A"_s, 220));
}

TEST_F(ArchiveStore, AnUploadComesBackAsItWasAdded) {
  const qint64 pond = Opened().SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  const qint64 id = store_.AddUpload(AnUpload(pond, u"one"_s, 2));
  store_.AddUpload(AnUpload(pond, u"two"_s, 3));
  const std::optional<UploadRow> upload = store_.Upload(id);
  ASSERT_TRUE(upload);
  EXPECT_EQ(upload->Uuid, u"one"_s);
  EXPECT_EQ(upload->LoggerId, pond);
  EXPECT_EQ(upload->Kind, UploadKind::Image);
  EXPECT_EQ(upload->Started, At(2));
  EXPECT_FALSE(upload->Ended.isValid());
  EXPECT_EQ(upload->Owner, u"me"_s);
  EXPECT_EQ(upload->State, UploadState::Running);
  EXPECT_EQ(upload->Promised, 12);
  EXPECT_EQ(upload->Settings, QByteArray(315, 's'));
  EXPECT_EQ(upload->Analog, 3);
  EXPECT_EQ(upload->Pulse, 1);
  EXPECT_EQ(upload->ClockOffsetS, -4);
  EXPECT_EQ(upload->Source, u"COM7"_s);
  EXPECT_EQ(upload->Program, u"2.1.9"_s);
  ASSERT_EQ(store_.Uploads().size(), 2U);
  EXPECT_EQ(store_.Uploads().at(0).Uuid, u"two"_s);
  EXPECT_EQ(store_.Uploads(pond + 1).size(), 0U);
  EXPECT_EQ(store_.Upload(99), std::nullopt);
}

TEST_F(ArchiveStore, WhatIsInTheBinIsNotAmongTheUploads) {
  const qint64 pond = Opened().SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  const qint64 id = store_.AddUpload(AnUpload(pond, u"one"_s, 2));
  store_.Run(u"INSERT INTO bin VALUES (?, '2026-03-03T00:00:00Z')"_s, {id});
  EXPECT_TRUE(store_.Uploads().empty());
  EXPECT_TRUE(store_.Upload(id));
}

TEST_F(ArchiveStore, BlocksRecordsAndChannelsComeInTheirOrder) {
  const qint64 pond = Opened().SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  const qint64 id = store_.AddUpload(AnUpload(pond, u"one"_s, 2));
  store_.Run(u"INSERT INTO block VALUES (?, 2, x'0203'), (?, 1, x'01')"_s, {id, id});
  store_.Run(
      u"INSERT INTO record (upload_id, number, stamp, logger_time, raw, a1, p2) VALUES"
      " (?, 2, NULL, NULL, x'0100', NULL, 7), (?, 1, 4294967295, '2026-03-03T12:00:00', x'FFFF',"
      " 1.5, NULL)"_s,
      {id, id});
  store_.Run(
      u"INSERT INTO channel VALUES (?, 'p2', 'Pulse 2', 'mm', 1, NULL),"
      " (?, 'a3', 'Salinity', 'PSS', 2, 'how')"_s,
      {id, id});
  std::vector<std::vector<std::uint8_t>> blocks;
  store_.ForEachBlock(id, [&](std::span<const std::uint8_t> block) {
    blocks.emplace_back(block.begin(), block.end());
  });
  EXPECT_EQ(blocks, (std::vector<std::vector<std::uint8_t>>{{1}, {2, 3}}));
  std::vector<RecordRow> records;
  store_.ForEachRecord(id, [&](const RecordRow& record) { records.push_back(record); });
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].Stamp, 0xFFFFFFFF);
  EXPECT_EQ(records[0].LoggerTime, u"2026-03-03T12:00:00"_s);
  EXPECT_EQ(records[0].Raw, QByteArray("\xFF\xFF"));
  EXPECT_EQ(records[0].Values[0], 1.5);
  EXPECT_EQ(records[0].Values[9], std::nullopt);
  EXPECT_EQ(records[1].Stamp, std::nullopt);
  EXPECT_EQ(records[1].Values[9], 7);
  const std::vector<ChannelRow> channels = store_.Channels(id);
  ASSERT_EQ(channels.size(), 2U);
  EXPECT_EQ(channels[0].Place, 2);
  EXPECT_EQ(channels[0].Method, u"how"_s);
  EXPECT_EQ(channels[1].Place, 9);
  EXPECT_EQ(channels[1].Unit, u"mm"_s);
}

TEST_F(ArchiveStore, EventsKeepImagesAsBytesAndTheRestAsText) {
  const qint64 pond = Opened().SeeLogger(u"Pond 7"_s, 220, 5, At(1));
  const QByteArray image(315, '\xFE');
  store_.AddEvent({.Uuid = u"e1"_s,
                   .LoggerId = pond,
                   .At = At(1),
                   .Entry = {.Kind = EventKind::Programmed, .Before = image, .After = image}});
  store_.AddEvent({.Uuid = u"e2"_s,
                   .LoggerId = pond,
                   .At = At(2),
                   .Entry = {.Kind = EventKind::Synced, .Text = u"by 4 s"_s, .After = "{}"}});
  const std::vector<EventRow> events = store_.Events(pond);
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].Entry.Kind, EventKind::Synced);
  EXPECT_EQ(events[0].Entry.Text, u"by 4 s"_s);
  EXPECT_EQ(events[0].Entry.After, QByteArray("{}"));
  EXPECT_EQ(events[1].Entry.Before, image);
  OtherProgram file(Path());
  EXPECT_EQ(file.Rows(u"SELECT typeof(before), typeof(after) FROM event ORDER BY id"_s),
            (QStringList{u"blob|blob"_s, u"null|text"_s}));
}

}  // namespace
}  // namespace tessmar::test
