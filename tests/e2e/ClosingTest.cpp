#include <gtest/gtest.h>

#include <QComboBox>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int kASecond = 1000;

struct Moment {
  const char* Name;
  QStringList LoggerOptions;
  std::function<void(Desk&)> Reach;
};

void PrintTo(const Moment& moment, std::ostream* out) {
  *out << moment.Name;
}

class ClosingTheWindow : public testing::TestWithParam<Moment> {};

// Whatever the program is in the middle of, it ends within a second, with the settings written.
TEST_P(ClosingTheWindow, EndsTheProgramWithinASecond) {
  Desk desk(GetParam().LoggerOptions);
  const QString trouble = desk.Work([&] {
    GetParam().Reach(desk);
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_GE(desk.MillisecondsToEnd(), 0);
  EXPECT_LT(desk.MillisecondsToEnd(), kASecond);
  EXPECT_EQ(desk.StoredValue(u"UseModemInit"_s), u"0"_s);
}

const Moment kMoments[] = {
    {"InTheConnectionDialog", {}, [](Desk&) { Robot::WaitForForm(u"frmConnect"_s); }},
    {"InTheHandshakeOnADeadLine",
     {u"--fault"_s, u"silent"_s},
     [](Desk&) {
       Robot::WaitForForm(u"frmConnect"_s);
       Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
       Robot::Pause(1500);
     }},
    {"WhileTheModemDials",
     {u"--modem"_s, u"--modem-dial-time"_s, u"60000"_s},
     [](Desk& desk) {
       desk.Dial();
       Robot::WaitFor(u"the call"_s, [] {
         const auto* said =
             qobject_cast<QPlainTextEdit*>(Robot::Control(u"frmModem"_s, u"txtModem"_s));
         return said != nullptr && said->toPlainText().contains(u"ATDT"_s);
       });
     }},
    {"AtTheQuestionAboutABlankLogger",
     {u"--blank"_s},
     [](Desk&) {
       Robot::WaitForForm(u"frmConnect"_s);
       Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
       Robot::WaitForForm(u"FMessage"_s);
     }},
    // The logger is erasing, for up to 45 seconds, and says nothing.
    {"WhileABlankLoggerIsErased",
     {u"--blank"_s, u"--fault"_s, u"silent@0x06"_s},
     [](Desk&) {
       Robot::WaitForForm(u"frmConnect"_s);
       Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
       Robot::Answer(u"Warning: the flash memory"_s);
       Robot::WaitForNoForm(u"FMessage"_s);
       Robot::Pause(700);
     }},
    // The first sample is asked for right after connecting, and never comes.
    {"InGetSample",
     {u"--fault"_s, u"silent@0x0A"_s},
     [](Desk& desk) {
       Robot::WaitForForm(u"frmConnect"_s);
       Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
       Robot::WaitFor(u"the first sample to be waited for"_s,
                      [&] { return desk.TheProgram().Link().SingleSampleRequested; });
     }},
    {"WhileSamplingContinuously",
     {},
     [](Desk& desk) {
       desk.Connect();
       Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
       Robot::Pause(700);
     }},
    {"WhileConnectedAndIdle", {}, [](Desk& desk) { desk.Connect(); }},
    {"InAnUpload",
     {u"--records"_s, u"20000"_s, u"--baud"_s, u"115200"_s},
     [](Desk& desk) {
       desk.Connect();
       desk.StartUpload();
     }},
    {"InTheViewer",
     {u"--records"_s, u"40"_s},
     [](Desk& desk) {
       desk.Connect();
       desk.OpenViewer();
     }},
    {"InTheFileDialogOfTheViewer",
     {u"--records"_s, u"40"_s},
     [](Desk& desk) {
       desk.Connect();
       desk.OpenViewer();
       Robot::Click(u"frmHistory"_s, u"cmdSave"_s);
       Robot::WaitForForm(u"dlgFile"_s);
     }},
    {"InSetupWithChanges",
     {},
     [](Desk& desk) {
       desk.Connect();
       desk.OpenSetup();
       Robot::Type(u"frmSetup"_s, u"txtName"_s, u"Elsewhere"_s);
     }},
    {"AtAQuestionOfSetup",
     {},
     [](Desk& desk) {
       desk.Connect();
       desk.OpenSetup();
       Robot::Type(u"frmSetup"_s, u"txtName"_s, u"Elsewhere"_s);
       Robot::Click(u"frmSetup"_s, u"cmdCancel"_s);
       Robot::WaitForForm(u"FMessage"_s);
     }},
    {"AtARefusedFieldOfSetup",
     {},
     [](Desk& desk) {
       desk.Connect();
       desk.OpenSetup();
       Robot::Type(u"frmSetup"_s, u"txtSampleInterval"_s, u"0"_s);
       Robot::Click(u"frmSetup"_s, u"cmdOK"_s);
       Robot::WaitForForm(u"FMessage"_s);
     }},
    {"InTheCalibrationWizard",
     {},
     [](Desk& desk) {
       desk.Connect();
       desk.OpenSetup();
       Robot::TurnTo(u"frmSetup"_s, u"TabStrip"_s, 0);
       Robot::Click(u"frmSetup"_s, u"cmdCalibrate(0)"_s);
       Robot::WaitForForm(u"frmCalibrate"_s);
       Robot::Click(u"frmCalibrate"_s, u"cmdNext"_s);
       Robot::WaitFor(u"the page of the reading"_s, [] {
         const auto* back = qobject_cast<QWidget*>(Robot::Control(u"frmCalibrate"_s, u"cmdBack"_s));
         return back->isEnabled();
       });
     }},
};

INSTANTIATE_TEST_SUITE_P(, ClosingTheWindow, testing::ValuesIn(kMoments),
                         [](const auto& moment) { return std::string(moment.param.Name); });

TEST(LeavingTheProgram, ByTheWindowFrameStoresAChangedPort) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::InGui([] {
      auto* port = qobject_cast<QComboBox*>(Robot::Control(u"frmConnect"_s, u"cmbPort1"_s));
      port->setCurrentIndex(1);
    });
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForForm(u"FMessage"_s);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_EQ(desk.StoredValue(u"DirectPort"_s), u"COM2"_s);
}

TEST(LeavingTheProgram, ByFileExitEndsAtOnceAndStoresNothing) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::InGui([] {
      auto* port = qobject_cast<QComboBox*>(Robot::Control(u"frmConnect"_s, u"cmbPort1"_s));
      port->setCurrentIndex(1);
    });
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForForm(u"FMessage"_s);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    Robot::Trigger(u"frmMain"_s, u"mnuExit"_s);
    Robot::WaitFor(u"the end"_s, [&] { return desk.EndedAtOnce(); });
    EXPECT_EQ(desk.StoredValue(u"DirectPort"_s), u"COM9"_s);
  });
  EXPECT_TRUE(desk.EndedAtOnce());
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
