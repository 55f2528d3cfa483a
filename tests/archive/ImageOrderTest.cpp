#include "archive/ImageOrder.h"

#include <gtest/gtest.h>

#include "archive/ArchiveRig.h"
#include "archive/ArchivedUpload.h"
#include "archive/UploadsRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

// Seconds behind noon as an image.
std::int32_t Oldest(const std::vector<int>& seconds, bool wraps = true) {
  std::vector<std::uint8_t> bytes;
  for (const int second : seconds)
    for (int shift = 0; shift < 32; shift += 8)
      bytes.push_back(static_cast<std::uint8_t>(StampOf(second) >> shift));
  return OldestOfImage({.Records = bytes, .RecordSize = 4}, wraps);
}

TEST(ImageOrder, BeginsAtTheOneStepBackOfAWrappedMemory) {
  EXPECT_EQ(Oldest({50, 60, 20, 30, 40}), 2);
  EXPECT_EQ(Oldest({60, 20, 30, 40, 50}), 1);
  EXPECT_EQ(Oldest({30, 40, 50, 60, 20}), 4);
  // Equal times, as in fast logging, and the same second at the end and at the beginning.
  EXPECT_EQ(Oldest({50, 50, 20, 20, 50}), 2);
}

TEST(ImageOrder, LeavesTheFilesOrderWhereItIsTheLoggersOrNobodyCanTell) {
  EXPECT_EQ(Oldest({}), 0);
  EXPECT_EQ(Oldest({20}), 0);
  EXPECT_EQ(Oldest({20, 30, 40}), 0);
  EXPECT_EQ(Oldest({20, 20, 20}), 0);
  // The clock was set back, and the memory has not wrapped: it ends later than it begins.
  EXPECT_EQ(Oldest({20, 40, 30, 50}), 0);
  // Wrapped, and the clock was set back as well: two places could be the oldest.
  EXPECT_EQ(Oldest({50, 60, 20, 40, 30, 45}), 0);
  // A logger that stops when it is full.
  EXPECT_EQ(Oldest({50, 60, 20, 30, 40}, false), 0);
}

TEST(ImageOrder, OnlyAFullMemoryThatOverwritesMayHaveWrapped) {
  LoggerSettings settings;
  settings.DataWrapAroundFlag = 1;
  // 24 bytes a record, ten a page, 4088 pages of which one is being written.
  EXPECT_TRUE(MayHaveWrapped(settings, 24, 40870));
  EXPECT_FALSE(MayHaveWrapped(settings, 24, 40869));
  // 4 bytes, 60 a page: the import ends at 200000 records.
  EXPECT_TRUE(MayHaveWrapped(settings, 4, 200000));
  EXPECT_FALSE(MayHaveWrapped(settings, 4, 199999));
  settings.DataWrapAroundFlag = 0;
  EXPECT_FALSE(MayHaveWrapped(settings, 24, 40880));
}

class ImagesInASeries : public ArchiveFolder {
 protected:
  static constexpr int kFull = 4088 * 40;

  ImagesInASeries() : store_(Path()) {
    store_.Open(Store::Access::Write);
    logger_ = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  }
  // The image of a full memory with a record a second, of which the oldest stands here.
  void AddFullImage(int oldest, bool wraps) {
    const qint64 upload = AddUpload(store_, logger_, Hour(5), {});
    LinkState link;
    link.AnalogChannelCount = 1;
    LoggerSettings settings;
    LoadDefaultSettings(settings, 1);
    settings.DataWrapAroundFlag = wraps ? 1 : 0;
    ConfigImage image;
    PackConfigImage(link, settings, image);
    store_.Run(u"UPDATE upload SET kind = 'image', records = ?, settings = ? WHERE id = ?"_s,
               {kFull,
                QByteArray(reinterpret_cast<const char*>(image.data()),
                           static_cast<qsizetype>(image.size())),
                upload});
    store_.Run(
        u"WITH RECURSIVE place (i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM place WHERE i < ? - 1),"
        " second (i, s) AS (SELECT i, (i + ?) % ? FROM place)"
        " INSERT INTO record (upload_id, number, stamp, raw) SELECT ?, i + 1,"
        " ((26 * 12 + 2) << 22) | ((3 + s / 86400) << 17) | ((s / 3600 % 24) << 12)"
        " | ((s / 60 % 60) << 6) | (s % 60), X'0100' FROM second"_s,
        {kFull, kFull - oldest, kFull, upload});
  }
  // The first and the last stamp of the series, and those beside a place.
  std::vector<std::uint32_t> StampsAt(std::initializer_list<std::size_t> places) const {
    const ArchivedSeries series = LoadSeries(store_, logger_);
    EXPECT_EQ(series.Series.Records.size(), static_cast<std::size_t>(kFull));
    std::vector<std::uint32_t> stamps;
    for (const std::size_t place : places) {
      const SeriesRecord& record = series.Series.Records.at(place);
      stamps.push_back(
          series.Uploads[static_cast<std::size_t>(record.Upload)].Stamp(record.Number));
    }
    return stamps;
  }

  // The day, hour, minute and second of March 2026.
  static std::uint32_t At(unsigned day, unsigned hour, unsigned minute, unsigned second) {
    return (26U * 12 + 2) << 22 | day << 17 | hour << 12 | minute << 6 | second;
  }

  Store store_;
  qint64 logger_ = 0;
};

TEST_F(ImagesInASeries, AWrappedOneIsTakenFromItsOldestRecord) {
  AddFullImage(1000, true);
  // 163520 seconds: one day, 21 hours, 25 minutes and 20 seconds.
  EXPECT_EQ(StampsAt({0, 1, 162520, kFull - 1}),
            (std::vector{At(3, 0, 0, 0), At(3, 0, 0, 1), At(4, 21, 8, 40), At(4, 21, 25, 19)}));
}

TEST_F(ImagesInASeries, OneOfALoggerThatDoesNotOverwriteStaysAsItIs) {
  AddFullImage(1000, false);
  EXPECT_EQ(StampsAt({0, 999, 1000, kFull - 1}),
            (std::vector{At(4, 21, 8, 40), At(4, 21, 25, 19), At(3, 0, 0, 0), At(4, 21, 8, 39)}));
}

}  // namespace
}  // namespace tessmar::test
