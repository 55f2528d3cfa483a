#include "plot/PlotWords.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"
#include "history/TableRig.h"
#include "plot/PlotRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr double kBegin = 4012 * 86400.0;  // 26 December 2010.
constexpr TimeRange kAll{kBegin, kBegin + 3600};

/// Ten records, one a minute, of oxygen and of rain; oxygen has no value in the second half.
SeriesSet TenMinutes() {
  SeriesSet set = OneChannel({}, {});
  set.Channels.push_back({.Place = u"p1"_s, .Unit = u"mm"_s, .Decimals = 1, .Values = {}});
  for (int i = 0; i < 10; ++i) {
    set.Times.push_back(kBegin + i * 60);
    set.Channels[0].Values.push_back(i < 5 ? 7 + i / 4.0 : kNone);
    set.Channels[1].Values.push_back(i % 2);
  }
  return set;
}

class PlotWords : public testing::Test {
 protected:
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  QString Notes(const SeriesSet& set, TimeRange view = kAll) const {
    return ViewNotes(PlotData(set), view, locale_);
  }
  /// In German, too.
  QString BothNotes(const SeriesSet& set, TimeRange view = kAll) const {
    SetTextLanguage(kLanguageEnglish);
    const QString english = Notes(set, view);
    SetTextLanguage(kLanguageGerman);
    const QString german = Notes(set, view);
    SetTextLanguage(kLanguageEnglish);
    return english + u'|' + german;
  }

  SystemLocale locale_ = German();
};

TEST_F(PlotWords, ARecordIsReadWithTheChannelsAskedFor) {
  const PlotData data(TenMinutes());
  EXPECT_EQ(RecordWords(data, {0, 1}, 3, locale_),
            u"26.12.10 00:03:00   Channel 1 (mg/L) 7.75   Pulse channel 1 (mm) 1.0"_s);
  EXPECT_EQ(RecordWords(data, {0}, 9, locale_), u"26.12.10 00:09:00   Channel 1 (mg/L) ---"_s);
  EXPECT_EQ(RecordWords(data, {}, 0, locale_), u"26.12.10 00:00:00"_s);
  EXPECT_EQ(RecordWords(data, {0, 1}, 10, locale_), QString());
  EXPECT_EQ(RecordWords(data, {0, 1}, std::nullopt, locale_), QString());
}

TEST_F(PlotWords, NothingIsSaidOfAViewThatNeedsNoWords) {
  EXPECT_EQ(Notes(TenMinutes()), QString());
}

TEST_F(PlotWords, MarksInViewAreNamedUpToThreeAndCountedBeyond) {
  SeriesSet set = TenMinutes();
  for (int i = 0; i < 4; ++i)
    set.Marks.push_back({.Time = kBegin + i * 60, .Corrected = kNone, .Text = u"m%1"_s.arg(i)});
  EXPECT_EQ(BothNotes(set), u"4 events in view|4 Ereignisse im Ausschnitt"_s);
  EXPECT_EQ(Notes(set, {kBegin + 60, kBegin + 180}),
            u"3 events in view: 26.12.10 00:01:00 m1, 26.12.10 00:02:00 m2, "
            "26.12.10 00:03:00 m3"_s);
  EXPECT_EQ(BothNotes(set, {kBegin + 180, kBegin + 600}),
            u"1 event in view: 26.12.10 00:03:00 m3|"
            "1 Ereignis im Ausschnitt: 26.12.10 00:03:00 m3"_s);
  EXPECT_EQ(Notes(set, {kBegin + 181, kBegin + 600}), QString());
}

TEST_F(PlotWords, PlacesWhereUploadsDisagreeAreCounted) {
  SeriesSet set = TenMinutes();
  set.Disputes = {{1, 2}, {2, 3}, {7, 8}};
  set.Times[2] = set.Times[1];
  EXPECT_EQ(BothNotes(set),
            u"uploads disagree at 2 places|Abrufe widersprechen sich an 2 Stellen"_s);
  EXPECT_EQ(BothNotes(set, {kBegin + 300, kBegin + 600}),
            u"uploads disagree at 1 place|Abrufe widersprechen sich an 1 Stelle"_s);
}

TEST_F(PlotWords, StepsBackOfTheClockAreCounted) {
  SeriesSet set = TenMinutes();
  set.Times[5] = kBegin + 30;
  EXPECT_EQ(BothNotes(set), u"clock set back once|Uhr einmal zurückgestellt"_s);
  set.Times[8] = kBegin + 45;
  EXPECT_EQ(BothNotes(set), u"clock set back 2 times|Uhr 2-mal zurückgestellt"_s);
  EXPECT_EQ(Notes(set, {kBegin + 31, kBegin + 60}), u"clock set back once"_s);
  EXPECT_EQ(Notes(set, {kBegin + 50, kBegin + 3600}), QString());
}

TEST_F(PlotWords, EverythingElseOfAViewIsSaidInOneLine) {
  SeriesSet set = TenMinutes();
  set.Stretches = {{.First = 0, .Interval = 0}};
  set.Corrected = set.Times;
  set.Corrected[0] = kNone;
  set.Marks = {{.Time = kBegin, .Corrected = kBegin + 120, .Text = u"synced"_s}};
  PlotData data(set);
  EXPECT_EQ(ViewNotes(data, kAll, locale_),
            u"1 event in view: 26.12.10 00:00:00 synced; "
            "Points joined at any distance: not logged periodically"_s);
  data.ShowCorrectedTimes(true);
  EXPECT_EQ(ViewNotes(data, kAll, locale_),
            u"1 event in view: 26.12.10 00:02:00 synced; "
            "Points joined at any distance: not logged periodically; "
            "1 record without a corrected time is not shown"_s);
  set.Corrected[4] = kNone;
  PlotData two(set);
  two.ShowCorrectedTimes(true);
  SetTextLanguage(kLanguageGerman);
  EXPECT_TRUE(ViewNotes(two, kAll, locale_)
                  .endsWith(u"; 2 Datensätze ohne korrigierte Zeit sind nicht gezeigt"_s));
}

TEST_F(PlotWords, DataOfNothingHaveNoRecords) {
  SeriesSet set = OneChannel({}, {});
  EXPECT_EQ(BothNotes(set), u"No records|Keine Datensätze"_s);
}

TEST_F(PlotWords, AViewIsDescribedForWhoCannotSeeIt) {
  const PlotData data(TenMinutes());
  EXPECT_EQ(ViewDescription(data, {0, 1}, {kBegin + 60, kBegin + 420}, locale_),
            u"26.12.10 00:01:00 – 26.12.10 00:07:00, 7 records in view. "
            "Channel 1 (mg/L): least 7.25, greatest 8.00. "
            "Pulse channel 1 (mm): least 0.0, greatest 1.0."_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(ViewDescription(data, {0}, {kBegin + 300, kBegin + 3600}, locale_),
            u"26.12.10 00:05:00 – 26.12.10 01:00:00, 5 Datensätze im Ausschnitt. "
            "Kanal 1 (mg/L): kein Wert."_s);
}

}  // namespace
}  // namespace tessmar::test
