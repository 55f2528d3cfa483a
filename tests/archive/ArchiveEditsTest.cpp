#include "archive/ArchiveEdits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/ArchiveRig.h"
#include "archive/ArchivedUpload.h"
#include "archive/UploadsRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class ArchiveEdits : public ArchiveFolder {
 protected:
  ArchiveEdits() : store_(Path()) { store_.Open(Store::Access::Write); }

  QStringList Names() const {
    QStringList names;
    for (const LoggerRow& logger : ShownLoggers(store_)) names.append(logger.Name);
    return names;
  }
  QList<qint64> UploadsOf(qint64 logger) const {
    QList<qint64> ids;
    for (const UploadRow& upload : store_.Uploads(logger)) ids.append(upload.Id);
    return ids;
  }
  // Kind, text, before and after of the newest event of a logger.
  QString Newest(qint64 logger) const {
    const std::vector<EventRow> events = store_.Events(logger);
    if (events.empty()) return {};
    const LogbookEntry& entry = events.front().Entry;
    return NameOf(entry.Kind) + u'|' + entry.Text + u'|' + QString::fromUtf8(entry.Before) + u'|' +
           QString::fromUtf8(entry.After);
  }

  Store store_;
};

TEST_F(ArchiveEdits, ARenamedLoggerIsFoundByItsOwnNameStill) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  RenameLogger(store_, logger, u"Bridge"_s, Hour(2));
  EXPECT_EQ(Names(), QStringList{u"Bridge"_s});
  EXPECT_EQ(Newest(logger),
            u"renamed|Well 7 -> Bridge|{\"name\":\"Well 7\"}|{\"name\":\"Bridge\"}"_s);
  EXPECT_EQ(store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(3)), logger);
  RenameLogger(store_, logger, u"Bridge"_s, Hour(4));
  EXPECT_EQ(store_.Events(logger).size(), 1U);
}

TEST_F(ArchiveEdits, MergedLoggersAreOneAndStayIt) {
  const qint64 first = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  const qint64 second = store_.SeeLogger(u"Well 8"_s, 12, 3, Hour(2));
  const qint64 one = AddUpload(store_, first, Hour(1), {10});
  const qint64 other = AddUpload(store_, second, Hour(2), {20});
  MergeLoggers(store_, first, second, Hour(3));
  EXPECT_EQ(Names(), QStringList{u"Well 8"_s});
  EXPECT_EQ(UploadsOf(second), (QList<qint64>{other, one}));
  EXPECT_TRUE(Newest(second).startsWith(u"merged|Well 7 -> Well 8|{\"from\":\""_s));
  // The next upload of the first one goes to the second as well.
  EXPECT_EQ(store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(4)), second);
  EXPECT_EQ(store_.Logger(second)->FirstSeen, Hour(1));
}

TEST_F(ArchiveEdits, TwoMergingsInOppositeDirectionsMakeNoCircle) {
  const qint64 first = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  const qint64 second = store_.SeeLogger(u"Well 8"_s, 12, 3, Hour(2));
  AddUpload(store_, first, Hour(1), {10});
  MergeLoggers(store_, first, second, Hour(3));
  MergeLoggers(store_, second, first, Hour(4));
  EXPECT_EQ(Names(), QStringList{u"Well 7"_s});
  EXPECT_EQ(store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(5)), first);
  EXPECT_EQ(store_.SeeLogger(u"Well 8"_s, 12, 3, Hour(5)), first);
}

TEST_F(ArchiveEdits, MergingALoggerWithItselfDoesNothing) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  MergeLoggers(store_, logger, logger, Hour(3));
  EXPECT_TRUE(store_.Events(logger).empty());
  EXPECT_EQ(Names(), QStringList{u"Well 7"_s});
}

TEST_F(ArchiveEdits, SplitUploadsBelongToALoggerOfTheirOwn) {
  const qint64 logger = store_.SeeLogger(u"Logger"_s, 12, 3, Hour(1));
  const qint64 one = AddUpload(store_, logger, Hour(1), {10});
  const qint64 two = AddUpload(store_, logger, Hour(2), {20});
  const qint64 made = SplitLogger(store_, {two}, u"Logger at the weir"_s, Hour(3));
  EXPECT_EQ(Names(), (QStringList{u"Logger"_s, u"Logger at the weir"_s}));
  EXPECT_EQ(UploadsOf(logger), QList<qint64>{one});
  EXPECT_EQ(UploadsOf(made), QList<qint64>{two});
  EXPECT_TRUE(Newest(logger).startsWith(u"split|Logger -> Logger at the weir|{\"uploads\":["_s));
  EXPECT_EQ(store_.SeeLogger(u"Logger"_s, 12, 3, Hour(4)), logger);
  EXPECT_THROW(SplitLogger(store_, {}, u"x"_s, Hour(4)), RangeFault);
}

TEST_F(ArchiveEdits, TheBinHasAWayBackUntilItIsEmptied) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  const qint64 one = AddUpload(store_, logger, Hour(1), {10, 12});
  const qint64 two = AddUpload(store_, logger, Hour(2), {20});
  PutIntoBin(store_, {one}, Hour(3));
  PutIntoBin(store_, {one}, Hour(4));
  EXPECT_EQ(UploadsOf(logger), QList<qint64>{two});
  ASSERT_EQ(UploadsInBin(store_).size(), 1U);
  EXPECT_EQ(UploadsInBin(store_).front().Id, one);
  EXPECT_EQ(UploadsInBin(store_).front().Records, 2);
  TakeFromBin(store_, {one});
  EXPECT_EQ(UploadsOf(logger), (QList<qint64>{two, one}));
  // Only what lies in the bin can be deleted for good.
  EmptyBin(store_, {one, two});
  EXPECT_EQ(UploadsOf(logger), (QList<qint64>{two, one}));
  PutIntoBin(store_, {one}, Hour(5));
  EmptyBin(store_, {one});
  EXPECT_TRUE(UploadsInBin(store_).empty());
  EXPECT_FALSE(store_.Upload(one));
  OtherProgram other(Path());
  EXPECT_EQ(other.Get(u"SELECT count(*) FROM record"_s), 1);
}

TEST_F(ArchiveEdits, AnUploadThatRunsCannotBeDeleted) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  const qint64 upload = AddUpload(store_, logger, Hour(1), {10});
  store_.Run(u"UPDATE upload SET state = 'running'"_s);
  PutIntoBin(store_, {upload}, Hour(2));
  EXPECT_TRUE(UploadsInBin(store_).empty());
}

TEST_F(ArchiveEdits, AnUploadComesBackAsItWas) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  const ArchivedUpload upload = LoadUpload(store_, AddUpload(store_, logger, Hour(1), {10, 12}));
  EXPECT_EQ(upload.LoggerName, u"Well 7"_s);
  EXPECT_EQ(upload.Link.AnalogChannelCount, 1);
  EXPECT_EQ(upload.Settings.Analog[0].EngUnits, u"%"_s);
  ASSERT_EQ(upload.Records->Count(), 2);
  EXPECT_EQ(upload.Records->Record(1).PackedTime, StampOf(12));
  EXPECT_EQ(upload.Records->Record(1).Value[0], 12);
  EXPECT_TRUE(upload.Records->Record(1).HasTime);
  EXPECT_FALSE(upload.Cut);
  EXPECT_THROW(LoadUpload(store_, 99), RangeFault);
}

TEST_F(ArchiveEdits, AnUploadThatRunsHasTheRecordsOfItsBlocks) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  const qint64 upload = AddUpload(store_, logger, Hour(1), {});
  QByteArray block(241, '\0');
  block[0] = 2;
  for (int shift = 0; shift < 4; ++shift) {
    block[1 + shift] = static_cast<char>(StampOf(10) >> 8 * shift);
    block[7 + shift] = static_cast<char>(StampOf(12) >> 8 * shift);
  }
  block[5] = 10;
  block[11] = 12;
  store_.Run(u"INSERT INTO block VALUES (?, 1, ?)"_s, {upload, block});
  const ArchivedUpload read = LoadUpload(store_, upload);
  ASSERT_EQ(read.Records->Count(), 2);
  EXPECT_EQ(read.Records->Record(1).PackedTime, StampOf(12));
  EXPECT_EQ(read.Records->Record(1).Value[0], 12);
}

TEST_F(ArchiveEdits, TheSeriesOfALoggerHasEachRecordOnceAndNoLiveSamples) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  AddUpload(store_, logger, Hour(1), {10, 12, 14});
  AddUpload(store_, logger, Hour(2), {12, 14, 16});
  const qint64 live = AddUpload(store_, logger, Hour(3), {30});
  store_.Run(u"UPDATE upload SET kind = 'live' WHERE id = ?"_s, {live});
  const qint64 binned = AddUpload(store_, logger, Hour(4), {40});
  PutIntoBin(store_, {binned}, Hour(5));
  const ArchivedSeries series = LoadSeries(store_, logger);
  EXPECT_THAT(series.Series.Records,
              ElementsAre(SeriesRecord{0, 0, false, true}, SeriesRecord{0, 1}, SeriesRecord{0, 2},
                          SeriesRecord{1, 2}));
  EXPECT_EQ(series.Corrected.size(), 4U);
}

TEST_F(ArchiveEdits, TheSeriesKnowsOfAClearing) {
  const qint64 logger = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  AddUpload(store_, logger, Hour(1), {10, 12});
  store_.AddEvent(
      {.Uuid = u"e"_s, .LoggerId = logger, .At = Hour(2), .Entry = {.Kind = EventKind::Cleared}});
  AddUpload(store_, logger, Hour(3), {10, 12});
  EXPECT_EQ(LoadSeries(store_, logger).Series.Records.size(), 4U);
}

}  // namespace
}  // namespace tessmar::test
