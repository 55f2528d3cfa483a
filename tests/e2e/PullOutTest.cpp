#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const QString kMain = u"frmMain"_s;

// Pulled out, the port closes; the program goes on, costs nothing, and connects again.
TEST(AdapterPulledOut, WhileIdleThenConnectsAgain) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.PullOut();
    ExpectNoSpin();
    // Nothing on the screen tells of it; the log does.
    EXPECT_TRUE(desk.TheProgram().Log().Last(3).join(u'\n').contains(
        u"COM9: the device is gone; plug it in again"_s));
    Robot::Click(kMain, u"cmdGetSettings"_s);
    Robot::WaitFor(u"the button to do no more than that"_s,
                   [&] { return !desk.TheProgram().Link().Busy; });
    desk.PlugInAndConnect({});
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Connected"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(AdapterPulledOut, WhileSamplingThenConnectsAgain) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    Robot::Click(kMain, u"chkSampleContinuously"_s);
    Robot::Pause(600);
    desk.PullOut();
    ExpectNoSpin();
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Connected"_s);
    Robot::Click(kMain, u"chkSampleContinuously"_s);
    desk.PlugInAndConnect({});
  });
  EXPECT_EQ(trouble, QString());
}

TEST(AdapterPulledOut, InTheHandshakeEndsWithTheMessage) {
  Desk desk({u"--fault"_s, u"silent"_s});
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::Pause(700);
    desk.PullOut();
    Robot::Answer(u"Error: unable to establish communication with logger."_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(AdapterPulledOut, InAnUploadEndsWithTheMessage) {
  Desk desk({u"--records"_s, u"20000"_s, u"--baud"_s, u"115200"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.StartUpload();
    desk.PullOut();
    Robot::Answer(u"Error During Retrieval.  Received "_s);
    Robot::WaitForNoForm(u"frmGetHistoryData"_s);
    Robot::WaitForForm(kMain);
    ExpectNoSpin();
    desk.PlugInAndConnect({});
  });
  EXPECT_EQ(trouble, QString());
}

TEST(AdapterPulledOut, UnderSetupFailsToProgramAndKeepsWhatWasTyped) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenSetup();
    Robot::Type(u"frmSetup"_s, u"txtName"_s, u"Elsewhere"_s);
    desk.PullOut();
    ExpectNoSpin();
    Robot::Click(u"frmSetup"_s, u"cmdOK"_s);
    Robot::Answer(u"Are you sure you want to program"_s);
    Robot::Answer(u"Error: programming not completed successfully."_s);
    Robot::WaitForForm(u"frmSetup"_s);
    EXPECT_EQ(Robot::Text(u"frmSetup"_s, u"txtName"_s), u"Elsewhere"_s);

    constexpr int kNo = 1;
    Robot::Click(u"frmSetup"_s, u"cmdCancel"_s);
    Robot::Answer(u"The settings information has changed without being saved"_s, kNo);
    Robot::Answer(u"The settings information has changed without being programmed"_s, kNo);
    Robot::WaitForNoForm(u"frmSetup"_s);
    desk.PlugInAndConnect({});
    EXPECT_EQ(MainText(u"lblLoggerName"_s), u"Mill Pond 3"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(AdapterPulledOut, InTheCalibrationWizardKeepsTheLastReading) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenSetup();
    Robot::TurnTo(u"frmSetup"_s, u"TabStrip"_s, 0);
    Robot::Click(u"frmSetup"_s, u"cmdCalibrate(0)"_s);
    Robot::WaitForForm(u"frmCalibrate"_s);
    Robot::Click(u"frmCalibrate"_s, u"cmdNext"_s);
    Robot::WaitFor(u"a reading"_s, [] {
      const auto* field =
          qobject_cast<QLineEdit*>(Robot::Control(u"frmCalibrate"_s, u"txtCalibrate"_s));
      const auto* back = qobject_cast<QWidget*>(Robot::Control(u"frmCalibrate"_s, u"cmdBack"_s));
      return back->isEnabled() && field->text() != "65535"_L1;
    });
    desk.PullOut();
    ExpectNoSpin();
    EXPECT_GT(Robot::Text(u"frmCalibrate"_s, u"txtCalibrate"_s).toInt(), 0);
    Robot::Click(u"frmCalibrate"_s, u"cmdCancel"_s);
    Robot::WaitForNoForm(u"frmCalibrate"_s);
    Robot::ClickUntilGone(u"frmSetup"_s, u"cmdCancel"_s);
  });
  EXPECT_EQ(trouble, QString());
}

// A call may take any time, so it is the operator who gives it up.
TEST(AdapterPulledOut, WhileTheModemDialsLeavesItToCancel) {
  Desk desk({u"--modem"_s, u"--modem-dial-time"_s, u"60000"_s});
  const QString trouble = desk.Work([&] {
    desk.Dial();
    Robot::WaitFor(u"the call"_s, [] {
      const auto* said =
          qobject_cast<QPlainTextEdit*>(Robot::Control(u"frmModem"_s, u"txtModem"_s));
      return said != nullptr && said->toPlainText().contains(u"ATDT"_s);
    });
    desk.PullOut();
    ExpectNoSpin();
    Robot::Click(u"frmModem"_s, u"cmdCancel"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    Robot::InGui([&] { desk.StartLogger({}); });
    Robot::Click(kMain, u"cmdConnect"_s);
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Tick(u"frmConnect"_s, u"optDirect"_s);
    desk.Connect();
  });
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
