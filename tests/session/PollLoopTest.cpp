#include "session/PollLoop.h"

#include <gtest/gtest.h>

#include <QSet>
#include <utility>

#include "app/AppRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const auto kBox = u"chkSampleContinuously"_s;

class Timer1Test : public AppRig {};

TEST_F(Timer1Test, LowersWaitTicksToZeroAndNoFurther) {
  Link.WaitTicks = 2;
  Poll.Timer1Tick();
  EXPECT_EQ(Link.WaitTicks, 1);
  Poll.Timer1Tick();
  EXPECT_EQ(Link.WaitTicks, 0);
  Poll.Timer1Tick();
  EXPECT_EQ(Link.WaitTicks, 0);
}

TEST_F(Timer1Test, EmptiesTheTextsWhileThereIsNoSession) {
  Settings.LoggerName = u"Pond 7"_s;
  Link.LoggerTimeText = u"12/27/10 15:05:12"_s;
  Link.LoggingStateText = u"Logging"_s;
  Link.RecordCount = 5;
  Screen.Captions = {{u"lblLoggerName"_s, u"Pond 7"_s},
                     {u"lblDateTime"_s, u"12/27/10 15:05:12"_s},
                     {u"lblLoggingState"_s, u"Logging"_s},
                     {u"lblRecordings"_s, u"5"_s}};
  Poll.Timer1Tick();
  EXPECT_EQ(Settings.LoggerName, QString());
  EXPECT_EQ(Link.LoggerTimeText, QString());
  EXPECT_EQ(Link.LoggingStateText, QString());
  for (const QString& caption : std::as_const(Screen.Captions)) EXPECT_EQ(caption, QString());
  EXPECT_EQ(Screen.Captions.size(), 4);
}

TEST_F(Timer1Test, MovesTheTextsOfASessionToTheirLabels) {
  Link.Connected = Link.DisplayedConnected = true;
  Settings.LoggerName = u"Weir"_s;
  Link.LoggerTimeText = u"01/02/03 04:05:06"_s;
  Link.LoggingStateText = u"Not Logging"_s;
  Link.RecordCount = 16777215;
  Poll.Timer1Tick();
  EXPECT_EQ(Screen.Caption(u"lblLoggerName"_s), u"Weir"_s);
  EXPECT_EQ(Screen.Caption(u"lblDateTime"_s), u"01/02/03 04:05:06"_s);
  EXPECT_EQ(Screen.Caption(u"lblLoggingState"_s), u"Not Logging"_s);
  EXPECT_EQ(Screen.Caption(u"lblRecordings"_s), u"16777215"_s);
}

TEST_F(Timer1Test, MovesNoTextWhileNothingHasChanged) {
  Connect();
  Loop.RunFor(2000);
  EXPECT_EQ(Screen.Written, QStringList());
  EXPECT_EQ(Screen.Paints, 0);
  Link.RecordCount = 6;
  Poll.Timer1Tick();
  EXPECT_EQ(Screen.Written, QStringList{u"lblRecordings"_s});
}

TEST_F(Timer1Test, MovesNoTextWhileNothingHasChangedWithoutASession) {
  Poll.Timer1Tick();
  Forget();
  Loop.RunFor(1000);
  EXPECT_EQ(Screen.Written, QStringList());
}

TEST_F(Timer1Test, UnticksTheBoxWithoutASessionAndSendsNothing) {
  Screen.Checked[kBox] = true;
  Poll.Timer1Tick();
  Poll.Timer2Tick();
  EXPECT_FALSE(Screen.Checked[kBox]);
  EXPECT_FALSE(Link.SampleContinuously);
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_EQ(Port.Opened, 0);
}

TEST_F(Timer1Test, StartsSamplingWhenTheBoxIsTicked) {
  Connect();
  Link.SampleStep = 7;
  StartSampling();
  EXPECT_EQ(Link.SampleStep, 0);
  EXPECT_EQ(Link.LoggerTimeText, QString());
  EXPECT_EQ(Screen.Caption(u"lblDateTime"_s), QString());
  EXPECT_FALSE(Link.DisplayedConnected);
}

TEST_F(Timer1Test, StartsNoSamplingWhileTheLinkIsBusy) {
  Connect();
  Link.Busy = true;
  Screen.Checked[kBox] = true;
  Poll.Timer1Tick();
  EXPECT_FALSE(Link.SampleContinuously);
  EXPECT_TRUE(Screen.Checked[kBox]);
  Link.Busy = false;
  Poll.Timer1Tick();
  EXPECT_TRUE(Link.SampleContinuously);
}

TEST_F(Timer1Test, KeepsTheStepWhileSamplingGoesOn) {
  Connect();
  StartSampling();
  Link.SampleStep = 4;
  Poll.Timer1Tick();
  EXPECT_EQ(Link.SampleStep, 4);
}

TEST_F(Timer1Test, StopsSamplingWhenTheBoxIsNotTicked) {
  Connect();
  StartSampling();
  StopSampling();
  Poll.Timer1Tick();
  EXPECT_FALSE(Link.SampleContinuously);
}

TEST_F(Timer1Test, PaintsNoMetersUnderConstruction) {
  Poll.SetUnderConstruction(true);
  Poll.Timer1Tick();
  EXPECT_EQ(Screen.Paints, 0);
  Poll.SetUnderConstruction(false);
  Poll.Timer1Tick();
  EXPECT_EQ(Screen.Paints, 8);
}

QSet<QString> EnabledControls(const FakeMainScreen& screen) {
  QSet<QString> enabled;
  for (auto control = screen.Enabled.begin(); control != screen.Enabled.end(); ++control) {
    // The readings' own labels are not the poll loop's.
    if (control.value() && !control.key().startsWith(u"lbl") && !control.key().startsWith(u"fra")) {
      enabled.insert(control.key());
    }
  }
  return enabled;
}

const QSet<QString> kEnabledInASession{u"cmdGetSettings"_s,
                                       u"cmdGetHistoryData"_s,
                                       u"cmdClearMemory"_s,
                                       u"cmdSynchronizeTime"_s,
                                       u"cmdSetup"_s,
                                       u"cmdConnect"_s,
                                       u"mnuDisconnect"_s,
                                       u"imnuDisconnect"_s,
                                       u"mnuFirmwareVersion"_s,
                                       u"chkSampleContinuously"_s,
                                       u"mnuSampleContinuously"_s,
                                       u"imnuSampleContinuously"_s,
                                       u"mnuGetSettings"_s,
                                       u"imnuGetSettings"_s,
                                       u"mnuGetHistoryData"_s,
                                       u"imnuGetHistoryData"_s,
                                       u"mnuClearHistory"_s,
                                       u"imnuClearHistory"_s,
                                       u"mnuSynchronizeTime"_s,
                                       u"imnuSynchronizeTime"_s,
                                       u"mnuSetup"_s,
                                       u"imnuSetup"_s,
                                       u"mnuResetPulseAccs"_s,
                                       u"imnuResetPulseAccs"_s};

TEST_F(Timer1Test, EnablesEverythingButConnectingInASession) {
  Connect();
  EXPECT_EQ(EnabledControls(Screen), kEnabledInASession);
  EXPECT_FALSE(Screen.Enabled.value(u"mnuConnect"_s, true));
  EXPECT_FALSE(Screen.Enabled.value(u"imnuConnect"_s, true));
  EXPECT_EQ(Screen.Caption(u"lblCommStatus"_s), u"Connected"_s);
  EXPECT_EQ(Screen.TextColours[u"lblCommStatus"_s], (Rgb{0, 128, 0}));
  EXPECT_EQ(Screen.Caption(u"cmdConnect"_s), u"Disconnect"_s);
  EXPECT_TRUE(Link.DisplayedConnected);
}

TEST_F(Timer1Test, EnablesOnlyConnectingAfterASession) {
  Connect();
  TheSession.Connect();
  ASSERT_FALSE(Link.Connected);
  Poll.Timer1Tick();
  EXPECT_EQ(EnabledControls(Screen),
            (QSet<QString>{u"cmdConnect"_s, u"mnuConnect"_s, u"imnuConnect"_s}));
  EXPECT_EQ(Screen.Caption(u"lblCommStatus"_s), u"Disconnected"_s);
  EXPECT_EQ(Screen.TextColours[u"lblCommStatus"_s], (Rgb{192, 0, 0}));
  EXPECT_EQ(Screen.Caption(u"cmdConnect"_s), u"Connect"_s);
  EXPECT_FALSE(Link.DisplayedConnected);
}

TEST_F(Timer1Test, LeavesOnlyTheWaysOutDuringSampling) {
  Connect();
  StartSampling();
  EXPECT_EQ(EnabledControls(Screen),
            (QSet<QString>{u"chkSampleContinuously"_s, u"mnuSampleContinuously"_s,
                           u"imnuSampleContinuously"_s, u"mnuFirmwareVersion"_s}));
}

TEST_F(Timer1Test, DisablesDuringSamplingOnEveryTickEvenWhileBusy) {
  Connect();
  StartSampling();
  Link.Busy = true;
  Screen.Enabled[u"cmdSetup"_s] = true;
  Poll.Timer1Tick();
  EXPECT_FALSE(Screen.Enabled[u"cmdSetup"_s]);
}

TEST_F(Timer1Test, GivesTheButtonsBackOnTheTickAfterSamplingStops) {
  Connect();
  StartSampling();
  Poll.Timer1Tick();
  StopSampling();
  Poll.Timer1Tick();
  EXPECT_EQ(EnabledControls(Screen), kEnabledInASession);
  EXPECT_TRUE(Link.DisplayedConnected);
}

TEST_F(Timer1Test, LeavesTheControlsAloneWhileTheLinkIsBusy) {
  Link.Connected = true;
  Link.Busy = true;
  Poll.Timer1Tick();
  EXPECT_TRUE(EnabledControls(Screen).isEmpty());
  EXPECT_FALSE(Link.DisplayedConnected);
}

TEST_F(Timer1Test, CountsForWaitsAndShowsNothingWhilePaused) {
  Link.Connected = true;
  Link.RecordCount = 3;
  Link.WaitTicks = 3;
  Poll.SetPaused(true);
  Poll.Timer1Tick();
  EXPECT_TRUE(Screen.Captions.isEmpty());
  EXPECT_EQ(Screen.Paints, 0);
  EXPECT_EQ(Link.WaitTicks, 2);
  Poll.SetPaused(false);
  Poll.Timer1Tick();
  EXPECT_EQ(Screen.Caption(u"lblRecordings"_s), u"3"_s);
}

TEST_F(Timer1Test, ShowsNothingOnceTheProgramEnds) {
  Link.Connected = true;
  Link.RecordCount = 3;
  Link.WaitTicks = 3;
  Loop.End();
  Poll.Timer1Tick();
  EXPECT_TRUE(Screen.Captions.isEmpty());
  EXPECT_EQ(Link.WaitTicks, 2);
}

}  // namespace
}  // namespace tessmar::test
