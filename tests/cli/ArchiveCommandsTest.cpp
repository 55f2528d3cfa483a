#include <QFileInfo>

#include "archive/Store.h"
#include "cli/CommandRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ArchiveCommandsTest : public CommandRig {
 protected:
  int Archive(const QStringList& arguments) {
    return Run(QStringList{u"archive"_s} + arguments +
               QStringList{u"--archive"_s, File("archive.sqlite")});
  }

  /// An archive with one upload of two records of two channels.
  void FillArchive() {
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Write);
    const QDateTime when(QDate(2026, 3, 3), QTime(2, 0, 0), Qt::UTC);
    const qint64 logger = store.SeeLogger(u"Weir"_s, 208, 21, when);
    UploadRow upload;
    upload.Uuid = u"5a1c4e9e-0c0a-4d6e-9b3c-0d9a3b1f2c3d"_s;
    upload.LoggerId = logger;
    upload.Started = when;
    upload.Ended = when.addSecs(10);
    upload.State = UploadState::Complete;
    upload.Promised = 2;
    upload.Records = 2;
    upload.Analog = 3;
    upload.Pulse = 1;
    upload.ClockOffsetS = -12;
    upload.Source = u"COM9"_s;
    upload.Program = u"2.1.9"_s;
    const qint64 id = store.AddUpload(upload);
    store.Run(u"INSERT INTO channel VALUES (?, 'a2', 'Channel 2', 'Volts', 2, NULL)"_s, {id});
    store.Run(u"INSERT INTO channel VALUES (?, 'p1', 'Pulse 1', 'Liters', 0, NULL)"_s, {id});
    const QString record =
        u"INSERT INTO record (upload_id, number, stamp, logger_time, raw, a2, p1) VALUES (?, ?, 1, ?, x'00', ?, ?)"_s;
    store.Run(record, {id, 1, u"2026-03-03T12:00:00"_s, 12.5, 7});
    store.Run(record, {id, 2, u"2026-03-03T12:15:00"_s, QVariant(), 8});
  }
};

TEST_F(ArchiveCommandsTest, ListsUploads) {
  FillArchive();
  ASSERT_EQ(Archive({u"list"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Out(), u"    1  2026-03-03T02:00:00Z  history  complete           2  Weir\n"_s);
  ASSERT_EQ(Archive({u"list"_s, u"--json"_s}), 0);
  EXPECT_EQ(
      Out(),
      u"{\"id\":1,\"uuid\":\"5a1c4e9e-0c0a-4d6e-9b3c-0d9a3b1f2c3d\",\"name\":\"Weir\",\"model\":"
      u"208,\"kind\":\"history\",\"started\":\"2026-03-03T02:00:00Z\",\"ended\":\"2026-03-03T02:"
      u"00:10Z\",\"state\":\"complete\",\"promised\":2,\"records\":2,\"analog\":3,\"pulse\":1,"
      u"\"clock_offset_s\":-12,\"source\":\"COM9\",\"program\":\"2.1.9\"}\n"_s);
}

TEST_F(ArchiveCommandsTest, ShowsRecordsWithTheirDecimals) {
  FillArchive();
  ASSERT_EQ(Archive({u"show"_s, u"1"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Out().section(u'\n', 1),
            u"number\tlogger_time\ta2 Channel 2 Volts\tp1 Pulse 1 Liters\n"
            u"1\t2026-03-03T12:00:00\t12.50\t7\n"
            u"2\t2026-03-03T12:15:00\t\t8\n"_s);
  ASSERT_EQ(Archive({u"show"_s, u"1"_s, u"--json"_s}), 0);
  EXPECT_EQ(Out().section(u'\n', 1),
            u"{\"number\":1,\"logger_time\":\"2026-03-03T12:00:00\",\"a2\":12.50,\"p1\":7}\n"
            u"{\"number\":2,\"logger_time\":\"2026-03-03T12:15:00\",\"a2\":null,\"p1\":8}\n"_s);
}

TEST_F(ArchiveCommandsTest, RefusesAnUploadThatIsNotThere) {
  FillArchive();
  EXPECT_EQ(Archive({u"show"_s, u"2"_s}), 1);
  EXPECT_EQ(Archive({u"show"_s, u"many"_s}), 2);
  EXPECT_EQ(Archive({u"show"_s}), 2);
}

TEST_F(ArchiveCommandsTest, ChecksTheArchive) {
  FillArchive();
  EXPECT_EQ(Archive({u"check"_s}), 0);
  EXPECT_EQ(Words(), u"tessmar: the archive is in order\n"_s);
  {
    Store store(File("archive.sqlite"));
    store.Open(Store::Access::Write);
    store.Run(u"DELETE FROM record WHERE number = 2"_s);
  }
  EXPECT_EQ(Archive({u"check"_s}), 1);
  EXPECT_EQ(Out(), u"upload 1 has 1 records and not 2\n"_s);
}

TEST_F(ArchiveCommandsTest, LeavesAloneWhatIsNoArchive) {
  EXPECT_EQ(Archive({u"list"_s}), 2);
  EXPECT_FALSE(QFileInfo::exists(File("archive.sqlite"))) << "a reader makes none";
  const QByteArray text(5000, 'x');
  WriteFile(File("archive.sqlite"), text);
  EXPECT_EQ(Archive({u"list"_s}), 1);
  EXPECT_TRUE(Words().startsWith(u"tessmar: archive "_s + File("archive.sqlite") + u": "_s));
  EXPECT_EQ(Words().count(u'\n'), 1);
  EXPECT_EQ(ReadFile(File("archive.sqlite")), text);
}

}  // namespace
}  // namespace tessmar::test
