#include "archive/Sharing.h"

#include "archive/SharingRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class Sharing : public SharingRig {
 protected:
  QString NameThere(const QString& name) const {
    return There(u"SELECT name FROM tessmar.logger WHERE uuid = '%1'"_s.arg(LoggerUuid(name, 220)))
        .join(u' ');
  }
  // Names of the loggers with so many uploads and entries each.
  QStringList Owners() const {
    return There(
        u"SELECT l.name, (SELECT count(*) FROM tessmar.upload WHERE logger_id = l.id),"
        " (SELECT count(*) FROM tessmar.event WHERE logger_id = l.id AND kind = 'synced')"
        " FROM tessmar.logger l ORDER BY l.name"_s);
  }
  qint64 See(int laptop, const QString& name, int hour = 1) {
    return Laptop(laptop).SeeLogger(name, 220, 52, Hour(hour));
  }
  void Sync(int laptop, qint64 logger) {
    Laptop(laptop).AddEvent({.Uuid = QUuid::createUuid().toString(QUuid::WithoutBraces),
                             .LoggerId = logger,
                             .At = Hour(1),
                             .Entry = {.Kind = EventKind::Synced}});
  }
};

TEST_F(Sharing, EverythingIsThereAsItIsHere) {
  FillLaptop(1, u"Weiher Ä 'x'"_s);
  FillLaptop(1, u"Pond 7"_s, 3);
  const PushResult result = Push(1);
  EXPECT_EQ(result.Uploads, 2);
  EXPECT_EQ(result.Records, 9003);
  EXPECT_EQ(result.Events, 6);
  EXPECT_EQ(result.Skipped, 0);
  ExpectTheSameEverywhere(1);
}

TEST_F(Sharing, ASecondPushChangesNothing) {
  FillLaptop(1, u"Pond 7"_s, 20);
  RenameLogger(Laptop(1), 1, u"Bridge"_s, Hour(3));
  const qint64 other = See(1, u"Well 2"_s);
  AddUpload(Laptop(1), other, Hour(4), {1, 2});
  MergeLoggers(Laptop(1), other, 1, Hour(5));
  Push(1);
  // xmin is the transaction that wrote a row's present state.
  const auto writers = [this] {
    QStringList rows;
    for (const char* table : {"logger", "upload", "block", "record", "channel", "event"})
      rows +=
          There(u"SELECT '%1', xmin::text, count(*) FROM tessmar.%1 GROUP BY 2 ORDER BY 2"_s.arg(
              QLatin1StringView(table)));
    return rows;
  };
  const QStringList before = writers();
  const PushResult again = Push(1);
  EXPECT_EQ(again.Uploads, 0);
  EXPECT_EQ(again.Records, 0);
  EXPECT_EQ(again.Events, 0);
  EXPECT_EQ(again.Skipped, 2);
  EXPECT_EQ(writers(), before);
}

TEST_F(Sharing, ARunningUploadWaitsAndOneInTheBinStaysHere) {
  const qint64 logger = See(1, u"Pond 7"_s);
  const qint64 running = AddUpload(Laptop(1), logger, Hour(1), {1});
  Laptop(1).Run(u"UPDATE upload SET state = 'running' WHERE id = ?"_s, {running});
  PutIntoBin(Laptop(1), {AddUpload(Laptop(1), logger, Hour(2), {2})}, Hour(3));
  PushResult result = Push(1);
  EXPECT_EQ(result.Uploads, 0);
  EXPECT_EQ(result.Running, 1);
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.upload"_s), QStringList{u"0"_s});
  Laptop(1).Run(u"UPDATE upload SET state = 'interrupted' WHERE id = ?"_s, {running});
  result = Push(1);
  EXPECT_EQ(result.Uploads, 1);
  EXPECT_EQ(result.Running, 0);
}

TEST_F(Sharing, WhatWasDeletedHereStaysThere) {
  const qint64 upload = FillLaptop(1, u"Pond 7"_s, 20);
  Push(1);
  PutIntoBin(Laptop(1), {upload}, Hour(3));
  Push(1);
  EmptyBin(Laptop(1), {upload});
  Push(1);
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.record"_s), QStringList{u"20"_s});
}

TEST_F(Sharing, AnEndThatWasSeenWinsOverOneThatWasNot) {
  const qint64 upload = FillLaptop(1, u"Pond 7"_s, 20);
  // A copy of the archive in the middle of the upload, which another laptop calls interrupted.
  Laptop(1).Run(u"VACUUM INTO ?"_s, {Laptop(2).Path() + u".copy"_s});
  Laptop(2).Close();
  QFile::remove(Laptop(2).Path());
  ASSERT_TRUE(QFile::rename(Laptop(2).Path() + u".copy"_s, Laptop(2).Path()));
  Laptop(2).Open(Store::Access::Write);
  Laptop(2).Run(u"UPDATE upload SET state = 'interrupted', ended = NULL, records = 7"_s);
  Laptop(2).Run(u"DELETE FROM record WHERE number > 7"_s);
  Laptop(2).Run(u"DELETE FROM block WHERE number > 10"_s);
  EXPECT_EQ(Push(2).Uploads, 1);
  EXPECT_EQ(There(u"SELECT state, records FROM tessmar.upload"_s), QStringList{u"interrupted|7"_s});
  EXPECT_EQ(Push(1).Uploads, 1);
  ExpectTheSameEverywhere(1);
  // The earlier state does not come back.
  EXPECT_EQ(Push(2).Skipped, 1);
  ExpectTheSameEverywhere(1);
  EXPECT_EQ(Laptop(1).Upload(upload)->Records, 20);
}

TEST_F(Sharing, TheLastNameWinsWhoeverComesFirst) {
  for (const bool laterFirst : {false, true}) {
    const QString name = laterFirst ? u"Pond"_s : u"Well"_s;
    const qint64 one = See(1, name);
    const qint64 two = See(2, name);
    RenameLogger(Laptop(1), one, u"early"_s, Hour(3));
    RenameLogger(Laptop(2), two, u"late"_s, Hour(4));
    Push(laterFirst ? 2 : 1);
    Push(laterFirst ? 1 : 2);
    EXPECT_EQ(NameThere(name), u"late"_s);
    // A laptop that knows nothing of all that changes nothing.
    See(3, name, 9);
    Push(3);
    EXPECT_EQ(NameThere(name), u"late"_s);
  }
}

TEST_F(Sharing, ANameThatTheOfficeGaveStandsUntilALaterOne) {
  const qint64 logger = See(1, u"Well"_s);
  RenameLogger(Laptop(1), logger, u"early"_s, Hour(3));
  Push(1);
  Admin->Run(u"UPDATE tessmar.logger SET name = 'office', name_at = '2026-03-03T05:00:00Z'"_s);
  RenameLogger(Laptop(1), logger, u"middle"_s, Hour(4));
  Push(1);
  EXPECT_EQ(NameThere(u"Well"_s), u"office"_s);
  RenameLogger(Laptop(1), logger, u"late"_s, Hour(6));
  Push(1);
  EXPECT_EQ(NameThere(u"Well"_s), u"late"_s);
}

TEST_F(Sharing, ANameGivenInTheSameSecondIsTheSameWhoeverComesFirst) {
  for (const bool turned : {false, true}) {
    const QString name = turned ? u"Pond"_s : u"Well"_s;
    RenameLogger(Laptop(1), See(1, name), u"a"_s, Hour(3));
    RenameLogger(Laptop(2), See(2, name), u"b"_s, Hour(3));
    Push(turned ? 2 : 1);
    Push(turned ? 1 : 2);
    EXPECT_EQ(NameThere(name), u"b"_s);
  }
}

TEST_F(Sharing, ALoggerKeepsItsNameWhenARenamedOneWasMergedIntoIt) {
  const qint64 first = See(1, u"Well 7"_s);
  const qint64 second = See(1, u"Well 8"_s);
  RenameLogger(Laptop(1), first, u"Bridge"_s, Hour(3));
  MergeLoggers(Laptop(1), first, second, Hour(4));
  RenameLogger(Laptop(2), See(2, u"Well 8"_s), u"Weir"_s, Hour(2));
  Push(2);
  Push(1);
  EXPECT_EQ(NameThere(u"Well 8"_s), u"Weir"_s);
}

TEST_F(Sharing, AMergingTakesAlongWhatOtherLaptopsBring) {
  for (const bool mergingFirst : {false, true}) {
    Admin->Run(u"DROP SCHEMA IF EXISTS tessmar CASCADE"_s);
    const int knowing = mergingFirst ? 11 : 1;
    const int other = knowing + 1;
    const qint64 from = See(knowing, u"Well 7"_s);
    const qint64 into = See(knowing, u"Well 8"_s);
    AddUpload(Laptop(knowing), from, Hour(1), {1});
    Sync(knowing, from);
    MergeLoggers(Laptop(knowing), from, into, Hour(5));
    const qint64 there = See(other, u"Well 7"_s);
    AddUpload(Laptop(other), there, Hour(2), {2});
    Sync(other, there);
    Push(mergingFirst ? knowing : other);
    Push(mergingFirst ? other : knowing);
    EXPECT_EQ(Owners(), (QStringList{u"Well 7|0|0"_s, u"Well 8|2|2"_s})) << mergingFirst;
  }
}

TEST_F(Sharing, OfMergingsInOppositeDirectionsTheLastOneCounts) {
  for (const bool turned : {false, true}) {
    Admin->Run(u"DROP SCHEMA IF EXISTS tessmar CASCADE"_s);
    const int one = turned ? 11 : 1;
    const int two = one + 1;
    for (const int laptop : {one, two}) {
      AddUpload(Laptop(laptop), See(laptop, u"Well 7"_s), Hour(1), {1});
      AddUpload(Laptop(laptop), See(laptop, u"Well 8"_s), Hour(1), {2});
    }
    MergeLoggers(Laptop(one), 1, 2, Hour(5));
    MergeLoggers(Laptop(two), 2, 1, Hour(6));
    Push(turned ? two : one);
    Push(turned ? one : two);
    EXPECT_EQ(Owners(), (QStringList{u"Well 7|4|0"_s, u"Well 8|0|0"_s})) << turned;
  }
}

TEST_F(Sharing, SplitUploadsBelongToTheirOwnLoggerThereToo) {
  const qint64 logger = See(1, u"Logger"_s);
  AddUpload(Laptop(1), logger, Hour(1), {1});
  const qint64 off = AddUpload(Laptop(1), logger, Hour(2), {2});
  Push(1);
  EXPECT_EQ(Owners(), QStringList{u"Logger|2|0"_s});
  SplitLogger(Laptop(1), {off}, u"At the weir"_s, Hour(3));
  Push(1);
  EXPECT_EQ(Owners(), (QStringList{u"At the weir|1|0"_s, u"Logger|1|0"_s}));
}

TEST_F(Sharing, BrokenOffLeavesWholeUploadsOnly) {
  FillLaptop(1, u"Pond 7"_s);
  FillLaptop(1, u"Pond 8"_s);
  // In the middle of the second upload.
  bool seen = false;
  const PushResult result = Push(1, {.GoOn = [&] { return !seen; },
                                     .Changed =
                                         [&](const PushProgress& progress) {
                                           EXPECT_EQ(progress.Uploads, 2);
                                           seen = progress.Upload == 2 && progress.Records > 9000;
                                         }});
  EXPECT_TRUE(result.BrokenOff);
  EXPECT_EQ(result.Uploads, 1);
  EXPECT_EQ(result.Records, 9000);
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.record"_s), QStringList{u"9000"_s});
  EXPECT_EQ(There(u"SELECT count(*) FROM tessmar.upload"_s), QStringList{u"1"_s});
  EXPECT_EQ(Push(1).Uploads, 1);
  ExpectTheSameEverywhere(1);
}

TEST_F(Sharing, EveryRecordOnceInReading) {
  const qint64 logger = See(1, u"Pond 7"_s);
  // Fast logging has equal records; an upload has each as often as the logger has.
  AddUpload(Laptop(1), logger, Hour(1), {1, 1, 2, 3});
  AddUpload(Laptop(1), logger, Hour(2), {1, 2, 3, 3, 4});
  Push(1);
  EXPECT_EQ(There(u"SELECT get_byte(raw, 0) FROM tessmar.reading ORDER BY 1"_s),
            (QStringList{u"1"_s, u"1"_s, u"2"_s, u"3"_s, u"3"_s, u"4"_s}));
}

}  // namespace
}  // namespace tessmar::test
