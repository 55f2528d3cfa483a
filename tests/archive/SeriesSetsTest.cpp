#include "archive/SeriesSets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "archive/ArchiveEdits.h"
#include "archive/ArchiveRig.h"
#include "archive/UploadsRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::DoubleEq;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::NanSensitiveDoubleEq;

constexpr double kNoon = 9558.5 * 86400;  // 3 March 2026, 12:00, since the beginning of 2000.
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

/// The settings of one channel of a logger.
struct Channel {
  QString Unit = u"%"_s;
  int Decimals = 2;
  QString Interval = u"2 seconds"_s;
  int Pulse = 0;  ///< 1 for a pulse channel in mm beside it, 0.5 a pulse.
};

QByteArray ImageWith(const Channel& channel) {
  LinkState link;
  link.AnalogChannelCount = 1;
  link.PulseChannelCount = static_cast<std::int16_t>(channel.Pulse);
  LoggerSettings settings;
  LoadDefaultSettings(settings, 1);
  settings.LoggerName = u"Well 7"_s;
  settings.LoggingStyle = kLogPeriodic;
  settings.SampleInterval = channel.Interval;
  settings.Analog[0].Enable = 1;
  settings.Analog[0].EngUnits = channel.Unit;
  settings.Analog[0].DecPlaces = static_cast<std::int16_t>(channel.Decimals);
  settings.Analog[0].RawScaleUpper = 10000;
  settings.Analog[0].LowerLimit = 0;
  settings.Analog[0].UpperLimit = 100;
  if (channel.Pulse > 0) {
    settings.Pulse[0].Enable = 1;
    settings.Pulse[0].EngUnits = u"mm"_s;
    settings.Pulse[0].DecPlaces = 1;
    settings.Pulse[0].PulseUnit = 0.5F;
  }
  ConfigImage image;
  PackConfigImage(link, settings, image);
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

class SeriesSets : public ArchiveFolder {
 protected:
  SeriesSets() : store_(Path()) {
    qputenv("TZ", "UTC");
    store_.Open(Store::Access::Write);
    logger_ = store_.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
  }

  qint64 Add(const QDateTime& started, const std::vector<int>& records,
             const Channel& channel = {}) {
    const qint64 upload = AddUpload(store_, logger_, started, records);
    store_.Run(u"UPDATE upload SET settings = ?, pulse = ? WHERE id = ?"_s,
               {ImageWith(channel), channel.Pulse, upload});
    if (channel.Pulse > 0)
      store_.Run(u"UPDATE record SET raw = CAST(raw || X'0300' AS BLOB) WHERE upload_id = ?"_s,
                 {upload});
    return upload;
  }
  void Note(const QDateTime& at, EventKind kind, const QByteArray& before = {},
            const QByteArray& after = {}) {
    store_.AddEvent({.Uuid = QUuid::createUuid().toString(QUuid::WithoutBraces),
                     .LoggerId = logger_,
                     .At = at,
                     .Entry = {.Kind = kind, .Before = before, .After = after}});
  }
  SeriesSet Whole() { return SeriesSetOfLogger(store_, logger_, locale_); }
  SeriesSet One(qint64 upload) {
    return SeriesSetOfUpload(store_, upload, LoadUpload(store_, upload), locale_);
  }

  Store store_;
  qint64 logger_ = 0;
  SystemLocale locale_{QLocale::c()};
};

TEST_F(SeriesSets, HasEachRecordOnceWithItsValue) {
  Add(Hour(13), {1000, 1002, 1004});
  Add(Hour(14), {1002, 1004, 1006});
  const SeriesSet set = Whole();
  EXPECT_EQ(set.LoggerName, u"Well 7"_s);
  EXPECT_THAT(set.Times, ElementsAre(kNoon + 1000, kNoon + 1002, kNoon + 1004, kNoon + 1006));
  ASSERT_EQ(set.Channels.size(), 1U);
  EXPECT_EQ(set.Channels[0].Place, u"a1"_s);
  EXPECT_EQ(set.Channels[0].Unit, u"%"_s);
  EXPECT_EQ(set.Channels[0].Decimals, 2);
  EXPECT_THAT(set.Channels[0].Values,
              ElementsAre(DoubleEq(10), DoubleEq(10.02), DoubleEq(10.04), DoubleEq(10.06)));
  EXPECT_THAT(set.Stretches, ElementsAre(LoggingStretch{0, 2}));
  EXPECT_THAT(set.Seams, IsEmpty());
  EXPECT_THAT(set.Disputes, IsEmpty());
}

TEST_F(SeriesSets, LeavesLiveSamplesAndTheBinOut) {
  Add(Hour(13), {1000});
  const qint64 live = Add(Hour(14), {1100});
  store_.Run(u"UPDATE upload SET kind = 'live' WHERE id = ?"_s, {live});
  PutIntoBin(store_, {Add(Hour(15), {1200})}, Hour(16));
  EXPECT_THAT(Whole().Times, ElementsAre(kNoon + 1000));
}

TEST_F(SeriesSets, LeavesUploadsOutWhoseSettingsNobodyKnows) {
  Add(Hour(13), {1000});
  const qint64 unknown = Add(Hour(14), {1000, 1100});
  store_.Run(u"UPDATE upload SET settings = NULL WHERE id = ?"_s, {unknown});
  EXPECT_THAT(Whole().Times, ElementsAre(kNoon + 1000));
}

TEST_F(SeriesSets, JudgesEachUploadByItsOwnIntervalAndSeesTheSeam) {
  Add(Hour(13), {1000, 1002});
  Add(Hour(14), {1200, 1260}, {.Interval = u"1 minutes"_s});
  Add(Hour(15), {1260, 1320}, {.Interval = u"1 minutes"_s});
  const SeriesSet set = Whole();
  EXPECT_THAT(set.Stretches, ElementsAre(LoggingStretch{0, 2}, LoggingStretch{2, 60}));
  EXPECT_THAT(set.Seams, ElementsAre(2U));
}

TEST_F(SeriesSets, KeepsUnitsApartAndSettingsEachToItsOwn) {
  Add(Hour(13), {1000, 1002});
  Add(Hour(14), {1200}, {.Unit = u"mg/L"_s, .Decimals = 3, .Pulse = 1});
  Add(Hour(15), {1300}, {.Decimals = 1});
  const SeriesSet set = Whole();
  ASSERT_EQ(set.Channels.size(), 3U);
  EXPECT_EQ(set.Channels[0].Place + set.Channels[0].Unit, u"a1%"_s);
  EXPECT_EQ(set.Channels[0].Decimals, 2);
  EXPECT_THAT(set.Channels[0].Values, ElementsAre(DoubleEq(10), DoubleEq(10.02),
                                                  NanSensitiveDoubleEq(kNone), DoubleEq(13)));
  EXPECT_EQ(set.Channels[1].Place + set.Channels[1].Unit, u"a1mg/L"_s);
  EXPECT_EQ(set.Channels[1].Decimals, 3);
  EXPECT_THAT(set.Channels[1].Values,
              ElementsAre(NanSensitiveDoubleEq(kNone), NanSensitiveDoubleEq(kNone), DoubleEq(12),
                          NanSensitiveDoubleEq(kNone)));
  EXPECT_EQ(set.Channels[2].Place + set.Channels[2].Unit, u"p1mm"_s);
  EXPECT_TRUE(set.Channels[2].IsCounted());
  EXPECT_THAT(set.Channels[2].Values[2], DoubleEq(1.5));
}

TEST_F(SeriesSets, MarksWhereUploadsDisagree) {
  // The second reads two records of the middle differently, at the same times.
  Add(Hour(13), {1000, 1002, 1004, 1006, 1008, 1010, 1012, 1014, 1016, 1018});
  const qint64 other =
      Add(Hour(14), {1000, 1002, 1004, 1006, 1008, 1010, 1012, 1014, 1016, 1018, 1020});
  store_.Run(u"UPDATE record SET raw = X'0100' WHERE upload_id = ? AND number IN (5, 6)"_s,
             {other});
  const SeriesSet set = Whole();
  EXPECT_EQ(set.Times.size(), 13U);
  EXPECT_THAT(set.Disputes, ElementsAre(SeriesDispute{4, 6}, SeriesDispute{6, 8}));
  EXPECT_THAT(set.Times[6], kNoon + 1008);
  EXPECT_THAT(set.Channels[0].Values[6], DoubleEq(0.01));
  EXPECT_THAT(set.Seams, IsEmpty());
}

TEST_F(SeriesSets, MarksWhatHappenedToTheLoggerOnBothClocks) {
  Add(Hour(12), {1000});
  Add(Hour(14), {1000, 5000});
  store_.Run(u"UPDATE upload SET clock_offset_s = 60"_s);
  Note(Hour(13), EventKind::Programmed);
  Note(Hour(13), EventKind::Connected);
  Note(Hour(13), EventKind::Uploaded);
  Note(Hour(13), EventKind::Renamed);
  const SeriesSet set = Whole();
  ASSERT_EQ(set.Marks.size(), 1U);
  EXPECT_EQ(set.Marks[0].Text, u"programmed"_s);
  EXPECT_EQ(set.Marks[0].Corrected, kNoon + 3600);
  EXPECT_EQ(set.Marks[0].Time, kNoon + 3660);
}

TEST_F(SeriesSets, HasCorrectedTimesBetweenTwoKnownOffsets) {
  const qint64 first = Add(Hour(12), {0});
  const qint64 second = Add(Hour(13), {0, 1800});
  EXPECT_THAT(Whole().Corrected, ElementsAre(NanSensitiveDoubleEq(kNone), DoubleEq(kNoon + 1788)));
  store_.Run(u"UPDATE upload SET clock_offset_s = 0 WHERE id = ?"_s, {first});
  store_.Run(u"UPDATE upload SET clock_offset_s = 24 WHERE id = ?"_s, {second});
  // At noon right, an hour later 24 s fast: of 3624 s by the logger 3600 had gone.
  EXPECT_THAT(Whole().Corrected, ElementsAre(NanSensitiveDoubleEq(kNone),
                                             DoubleNear(kNoon + 1800 * 3600 / 3624.0, 0.001)));
  // One upload alone has the same: the other is known by its clock.
  EXPECT_THAT(One(second).Corrected, ElementsAre(NanSensitiveDoubleEq(kNone),
                                                 DoubleNear(kNoon + 1800 * 3600 / 3624.0, 0.001)));
  EXPECT_THAT(One(first).Corrected, IsEmpty());
  store_.Run(u"UPDATE upload SET clock_offset_s = NULL"_s);
  EXPECT_THAT(Whole().Corrected, IsEmpty());
}

TEST_F(SeriesSets, OneUploadHasTheMarksAndTheInterval) {
  const qint64 upload = Add(Hour(12), {1000, 1002});
  Note(Hour(13), EventKind::Cleared);
  const SeriesSet set = One(upload);
  EXPECT_EQ(set.LoggerName, u"Well 7"_s);
  EXPECT_THAT(set.Times, ElementsAre(kNoon + 1000, kNoon + 1002));
  EXPECT_THAT(set.Stretches, ElementsAre(LoggingStretch{0, 2}));
  ASSERT_EQ(set.Marks.size(), 1U);
  EXPECT_EQ(set.Marks[0].Text, u"history cleared"_s);
}

TEST_F(SeriesSets, AnUploadFromTheBinIsShownAsWell) {
  const qint64 upload = Add(Hour(12), {1000});
  PutIntoBin(store_, {upload}, Hour(13));
  EXPECT_THAT(One(upload).Times, ElementsAre(kNoon + 1000));
}

TEST_F(SeriesSets, ALiveRunCountsTotalsAndHasNoLoggingInterval) {
  const qint64 quick =
      Add(Hour(12), {1000, 1001, 1002, 1500}, {.Interval = u"1 hours"_s, .Pulse = 1});
  const qint64 slow = Add(Hour(13), {1000, 1060, 1120, 1500}, {.Interval = u"1 hours"_s});
  store_.Run(u"UPDATE upload SET kind = 'live'"_s);
  const SeriesSet set = One(quick);
  EXPECT_THAT(set.Stretches, ElementsAre(LoggingStretch{0, 4}));
  ASSERT_EQ(set.Channels.size(), 2U);
  EXPECT_FALSE(set.Channels[0].IsTotal);
  EXPECT_TRUE(set.Channels[1].IsTotal);
  EXPECT_FALSE(set.Channels[1].IsCounted());
  EXPECT_THAT(One(slow).Stretches, ElementsAre(LoggingStretch{0, 60}));
}

TEST_F(SeriesSets, ALoggerWithoutRecordsHasAnEmptyOne) {
  const SeriesSet set = Whole();
  EXPECT_THAT(set.Times, IsEmpty());
  EXPECT_TRUE(set.Channels.empty());
}

}  // namespace
}  // namespace tessmar::test
