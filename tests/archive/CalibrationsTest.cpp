#include "archive/Calibrations.h"

#include <gtest/gtest.h>

#include "settings/LoggerSettings.h"
#include "settings/config.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

QDateTime Day(int day) {
  return {QDate(2027, 3, day), QTime(12, 0), Qt::UTC};
}

struct Scale {
  double Low;
  int LowRaw;
  double High;
  int HighRaw;
};

/// A logger whose channel has this scale.
QByteArray ImageWith(int channel, const Scale& scale, const QString& unit = u"mg/L"_s) {
  LinkState link;
  link.AnalogChannelCount = 8;
  link.PulseChannelCount = 2;
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  settings.Analog.at(static_cast<std::size_t>(channel) - 1) = {.Enable = 1,
                                                               .EngUnits = unit,
                                                               .DecPlaces = 1,
                                                               .RawScaleLower = scale.LowRaw,
                                                               .RawScaleUpper = scale.HighRaw,
                                                               .LowerLimit = scale.Low,
                                                               .UpperLimit = scale.High};
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(link, settings, image));
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

EventRow Event(const QDateTime& at, const QString& text, const QByteArray& before,
               const QByteArray& after, qint64 logger = 1) {
  return {.LoggerId = logger,
          .At = at,
          .Entry = {.Kind = EventKind::Calibrated, .Text = text, .Before = before, .After = after}};
}

EventRow OneChannel() {
  return Event(Day(3), u"Channel 2 (mg/L): 1 at 12000, 9 at 52000; before: 0 at 0, 20 at 60000"_s,
               ImageWith(2, {0, 0, 20, 60000}), ImageWith(2, {1, 12000, 9, 52000}));
}

// The old scale shows 20/60000 a count: 4 at 12000, and 17.3333 at 52000.
TEST(Calibrations, SayWhatTheScaleBeforeShowsAtTheNewPoints) {
  const std::vector<CalibrationRow> rows = CalibrationsIn({OneChannel()});
  ASSERT_EQ(rows.size(), 1U);
  const CalibrationRow& row = rows[0];
  EXPECT_EQ(row.At, Day(3));
  EXPECT_EQ(row.Channel, 2);
  EXPECT_EQ(row.Unit, u"mg/L"_s);
  EXPECT_EQ(row.Low.Value, 1);
  EXPECT_EQ(row.Low.Raw, 12000);
  EXPECT_DOUBLE_EQ(row.Low.OldScale.value(), 4);
  EXPECT_DOUBLE_EQ(row.Low.Drift.value(), 3);
  EXPECT_EQ(row.High.Value, 9);
  EXPECT_EQ(row.High.Raw, 52000);
  EXPECT_NEAR(row.High.OldScale.value(), 17.333333333, 1e-9);
  EXPECT_NEAR(row.High.Drift.value(), 8.333333333, 1e-9);
  EXPECT_FALSE(row.DaysSince.has_value());
}

TEST(Calibrations, ContinueTheScaleBeforeBeyondItsPoints) {
  const std::vector<CalibrationRow> rows =
      CalibrationsIn({Event(Day(3), u"Channel 1 (mg/L): "_s, ImageWith(1, {2, 20000, 4, 40000}),
                            ImageWith(1, {0, 1000, 8, 65000}))});
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_NEAR(rows[0].Low.Drift.value(), 0.1, 1e-9);
  EXPECT_NEAR(rows[0].High.Drift.value(), -1.5, 1e-9);
}

TEST(Calibrations, AreTheNewestFirstWithTheDaysSinceTheOneBefore) {
  const QByteArray a = ImageWith(2, {0, 0, 20, 60000});
  const QByteArray b = ImageWith(2, {0, 0, 21, 60000});
  const auto calibrated = [&](int day, qint64 logger, const QString& text) {
    return Event(Day(day), text, a, b, logger);
  };
  const std::vector<CalibrationRow> rows = CalibrationsIn(
      {calibrated(9, 1, u"Channel 2 (mg/L): x\nChannel 7 (V): x"_s),
       calibrated(8, 2, u"Channel 2 (mg/L): x"_s), calibrated(3, 1, u"Channel 2 (mg/L): x"_s)});
  QStringList seen;
  for (const CalibrationRow& row : rows) {
    seen.append(u"%1 %2/%3 %4"_s.arg(row.At.date().day())
                    .arg(row.LoggerId)
                    .arg(row.Channel)
                    .arg(row.DaysSince.value_or(-1)));
  }
  EXPECT_EQ(seen, (QStringList{u"9 1/2 6"_s, u"9 1/7 -1"_s, u"8 2/2 -1"_s, u"3 1/2 -1"_s}));
}

TEST(Calibrations, HaveNoDriftWhereTheScalesCannotBeCompared) {
  const QByteArray after = ImageWith(2, {1, 12000, 9, 52000});
  // Of the last one the scale before could not be read.
  for (const QByteArray& before :
       {ImageWith(2, {0, 0, 20, 60000}, u"ppm"_s), ImageWith(2, {0, 500, 20, 500}), QByteArray()}) {
    const std::vector<CalibrationRow> rows =
        CalibrationsIn({Event(Day(3), u"Channel 2 (mg/L): x"_s, before, after)});
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].Low.Value, 1);
    EXPECT_FALSE(rows[0].Low.OldScale.has_value());
    EXPECT_FALSE(rows[0].High.Drift.has_value());
  }
}

TEST(Calibrations, AreNotMadeOfOtherEventsOrOfCutImages) {
  EventRow programmed = OneChannel();
  programmed.Entry.Kind = EventKind::Programmed;
  EventRow cut = OneChannel();
  cut.Entry.Before.chop(1);
  EXPECT_TRUE(CalibrationsIn({programmed, cut}).empty());
}

TEST(Calibrations, OfAnEventWithoutATextAreTheChannelsWhoseScaleChanged) {
  EventRow event = OneChannel();
  event.Entry.Text = u"by hand"_s;
  const std::vector<CalibrationRow> rows = CalibrationsIn({event});
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].Channel, 2);
}

TEST(Calibrations, ShowADriftWithItsSignAndTwoDecimalsMore) {
  EXPECT_EQ(DriftText(3.0, 1), u"+3.000"_s);
  EXPECT_EQ(DriftText(-0.12341, 2), u"-0.1234"_s);
  EXPECT_EQ(DriftText(0.0001, 0), u"0.00"_s);
  EXPECT_EQ(DriftText(-0.0001, 0), u"0.00"_s);
  EXPECT_EQ(DriftText(0.0000005, 6), u"0.000000"_s);
  EXPECT_EQ(DriftText(0.000002, 6), u"+0.000002"_s);
  EXPECT_EQ(DriftText(std::nullopt, 2), QString());
}

TEST(Calibrations, AreWrittenForAProgramToRead) {
  EventRow second = OneChannel();
  second.At = Day(5);
  second.Entry.Before = ImageWith(2, {0, 0, 20, 60000}, u"a,\"b\""_s);
  second.Entry.After = ImageWith(2, {1, 12000, 9, 52000}, u"a,\"b\""_s);
  EventRow third = OneChannel();
  third.At = Day(1);
  third.Entry.Before = ImageWith(2, {0, 0, 20, 60000}, u"ppm"_s);
  const auto nameOf = [](qint64) { return u"Teich, Süd"_s; };
  EXPECT_EQ(
      QString::fromUtf8(CalibrationsCsv(CalibrationsIn({second, OneChannel(), third}), nameOf)),
      u"time,logger,channel,unit,low_point,low_raw,low_before,low_drift,"
      "high_point,high_raw,high_before,high_drift,days_since\r\n"
      "2027-03-05T12:00:00Z,\"Teich, Süd\",2,\"a,\"\"b\"\"\",1,12000,4,3,"
      "9,52000,17.33333333,8.333333333,2\r\n"
      "2027-03-03T12:00:00Z,\"Teich, Süd\",2,mg/L,1,12000,4,3,"
      "9,52000,17.33333333,8.333333333,2\r\n"
      "2027-03-01T12:00:00Z,\"Teich, Süd\",2,mg/L,1,12000,,,9,52000,,,\r\n"_s);
}

}  // namespace
}  // namespace tessmar::test
