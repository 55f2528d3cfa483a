#include "session/StatusLine.h"

#include "app/AppRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class StatusLineTest : public AppRig {
 protected:
  QString Label(const char* name) { return Screen.Captions.value(QLatin1StringView(name)); }
  QStringList Labels() {
    return {Label("lblArchived"), Label("lblClockDrift"), Label("lblMemoryFull")};
  }

  /// A second's worth of ticks.
  void ShowForASecond() {
    for (int i = 0; i < 10; ++i) Line.Show();
  }

  std::optional<std::int32_t> NotArchived;
  int Asked = 0;
  StatusLine Line{Link, Settings, Locale, Screen, [this] {
                    ++Asked;
                    return NotArchived;
                  }};
};

TEST_F(StatusLineTest, IsEmptyWithoutAConnection) {
  Link.ClockOffsetS = 12;
  Link.RecordCount = 100;
  Link.StatusAt = Clock.Present;
  NotArchived = 5;
  Line.Show();
  EXPECT_EQ(Labels(), (QStringList{{}, {}, {}}));
}

TEST_F(StatusLineTest, FollowsTheLoggerFromTheFirstReadingToTheDisconnect) {
  Connect();
  Link.ClockOffsetS = -12;
  Line.Show();
  EXPECT_EQ(Label("lblClockDrift"), u"clock 12 s slow"_s);
  EXPECT_FALSE(Label("lblMemoryFull").isEmpty());
  EXPECT_EQ(Link.StatusAt, Clock.Present);
  TheSession.Connect();
  ASSERT_FALSE(Link.Connected);
  Line.Show();
  EXPECT_EQ(Labels(), (QStringList{{}, {}, {}}));
  EXPECT_FALSE(Link.StatusAt.isValid());
}

TEST_F(StatusLineTest, CountsFromTheTimeOfTheReadingAndNotFromNow) {
  Connect();
  Settings.SampleInterval = u"15 minutes"_s;
  Settings.LoggingStyle = kLogPeriodic;
  Settings.DataWrapAroundFlag = 0;
  Link.LoggerStatusWord = 0x0080;
  Link.RecordCount = 40880 - 1;
  Line.Show();
  EXPECT_EQ(Label("lblMemoryFull"), u"memory full on 27 December 2010, 3:20 PM"_s);
  Clock.Present = Clock.Present.addSecs(3600);
  Line.Show();
  EXPECT_EQ(Label("lblMemoryFull"), u"memory full on 27 December 2010, 3:20 PM"_s);
}

TEST_F(StatusLineTest, WritesALabelOnlyWhenItChanges) {
  Connect();
  Line.Show();
  Screen.Written.clear();
  for (int i = 0; i < 10; ++i) Line.Show();
  EXPECT_EQ(Screen.Written, QStringList());
  Link.ClockOffsetS = 60;
  Line.Show();
  EXPECT_EQ(Screen.Written, QStringList{u"lblClockDrift"_s});
}

TEST_F(StatusLineTest, SaysHowManyRecordsAreNotInTheArchive) {
  Connect();
  Link.RecordCount = 1240;
  ShowForASecond();
  EXPECT_EQ(Label("lblArchived"), QString());
  NotArchived = 40;
  ShowForASecond();
  EXPECT_EQ(Label("lblArchived"), u"40 of 1,240 records are not in the archive yet"_s);
  NotArchived = 0;
  ShowForASecond();
  EXPECT_EQ(Label("lblArchived"), u"all 1,240 records are in the archive"_s);
  SetTextLanguage(kLanguageGerman);
  ShowForASecond();
  EXPECT_EQ(Label("lblArchived"), u"alle 1.240 Datensätze sind im Archiv"_s);
  NotArchived = 1240;
  ShowForASecond();
  EXPECT_EQ(Label("lblArchived"), u"1.240 von 1.240 Datensätzen sind noch nicht im Archiv"_s);
  SetTextLanguage(kLanguageEnglish);
  Link.RecordCount = 0;
  Line.Show();
  EXPECT_EQ(Label("lblArchived"), QString());
}

TEST_F(StatusLineTest, AsksTheArchiveOnceASecondAndWhenTheCountChanges) {
  Connect();
  Link.RecordCount = 1240;
  Line.Show();
  EXPECT_EQ(Asked, 1);
  for (int i = 0; i < 9; ++i) Line.Show();
  EXPECT_EQ(Asked, 1);
  Line.Show();
  EXPECT_EQ(Asked, 2);
  Link.RecordCount = 1241;
  Line.Show();
  EXPECT_EQ(Asked, 3);
  Link.Connected = false;
  ShowForASecond();
  ShowForASecond();
  EXPECT_EQ(Asked, 3);
  Link.Connected = true;
  Line.Show();
  EXPECT_EQ(Asked, 4);
}

}  // namespace
}  // namespace tessmar::test
