#include "plot/PlotCsv.h"

#include <gtest/gtest.h>

#include "history/TableRig.h"
#include "measure/StampTime.h"
#include "plot/PlotRig.h"

namespace tessmar {
namespace {

using test::kNone;

PlotData TwoChannels() {
  const double t = StampSeconds(test::kStamp);
  SeriesSet set = test::OneChannel({t, t + 60, t + 30, t + 120}, {1.005, kNone, 3, 4});
  set.Channels.push_back({.Place = QStringLiteral("p1"),
                          .Unit = QStringLiteral("mm²"),
                          .Decimals = 0,
                          .Values = {1, 2, 3, 4}});
  return PlotData(set);
}

const QDateTime kSaved(QDate(2010, 12, 27), QTime(15, 5, 12));

TEST(PlotCsv, HasTheFormOfTheHistorysFile) {
  const PlotData data = TwoChannels();
  const QByteArray text =
      PlotCsv(data, {.Range = data.Whole(), .Channels = {0, 1}, .Saved = kSaved}, test::American());
  EXPECT_EQ(text,
            "Well 7,12/27/2010,3:05:12 PM\r\n"
            "Date, Time, mg/L, mm²\r\n"
            "12/26/10, 15:47:29, 1.00, 1\r\n"
            "12/26/10, 15:48:29, ---, 2\r\n"
            "12/26/10, 15:47:59, 3.00, 3\r\n"
            "12/26/10, 15:49:29, 4.00, 4\r\n");
}

TEST(PlotCsv, HasOnlyWhatIsInView) {
  const PlotData data = TwoChannels();
  const double t = StampSeconds(test::kStamp);
  const QByteArray text = PlotCsv(
      data, {.Range = {t + 30, t + 60}, .Channels = {1}, .Saved = kSaved, .SingleColumn = true},
      test::German());
  EXPECT_EQ(text,
            "Well 7,27.12.2010,15:05:12\r\n"
            "Date Time, mm²\r\n"
            "26.12.10 15:48:29, 2\r\n"
            "26.12.10 15:47:59, 3\r\n");
}

TEST(PlotCsv, SaysThatTimesAreCorrected) {
  SeriesSet set = test::OneChannel({0, 60}, {1, 2});
  set.Corrected = {86400, kNone};
  PlotData data(set);
  data.ShowCorrectedTimes(true);
  const auto text = [&](bool single) {
    return PlotCsv(
        data, {.Range = data.Whole(), .Channels = {0}, .Saved = kSaved, .SingleColumn = single},
        test::American());
  };
  EXPECT_EQ(text(false),
            "Well 7,12/27/2010,3:05:12 PM\r\n"
            "Date, Time (UTC), mg/L\r\n"
            "1/2/00, 00:00:00, 1.00\r\n");
  EXPECT_TRUE(text(true).contains("Date Time (UTC), mg/L\r\n"));
}

}  // namespace
}  // namespace tessmar
