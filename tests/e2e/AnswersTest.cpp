#include <gtest/gtest.h>
#include <signal.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const QString kSetup = u"frmSetup"_s;
const QString kMessage = u"FMessage"_s;

/// The process of the window manager of this display; 0 when it is another one than openbox.
pid_t WindowManager() {
  const QByteArray display = "DISPLAY=" + qgetenv("DISPLAY");
  for (const QString& entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
    QFile name(u"/proc/%1/comm"_s.arg(entry));
    QFile environment(u"/proc/%1/environ"_s.arg(entry));
    if (!name.open(QIODevice::ReadOnly) || name.readAll().trimmed() != "openbox") continue;
    if (!environment.open(QIODevice::ReadOnly)) continue;
    if (environment.readAll().split('\0').contains(display)) return entry.toInt();
  }
  return 0;
}

/// Asks as the window manager does for a key or a click on a frame.
void RequestClose(const QString& form) {
  const QString window =
      Robot::InGui([&] { return u"0x%1"_s.arg(Robot::Form(form)->winId(), 0, 16); });
  QProcess::execute(u"wmctrl"_s, {u"-i"_s, u"-c"_s, window});
  Robot::Pause(300);
}

void WaitForActive(const QString& form) {
  Robot::WaitFor(u"%1 to be active"_s.arg(form), [&] {
    const QWidget* window = Robot::Form(form);
    return window != nullptr && window->isActiveWindow();
  });
}

int Records(Desk& desk) {
  return Robot::InGui([&] { return static_cast<int>(desk.TheProgram().Link().RecordCount); });
}

void WaitForFreeLink(Desk& desk) {
  Robot::WaitFor(u"the link to be free"_s, [&] { return !desk.TheProgram().Link().Busy; });
}

TEST(Answers, EscapeAndACloseRequestEraseNothing) {
  Desk desk({u"--records"_s, u"40"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    Robot::Click(u"frmMain"_s, u"cmdClearMemory"_s);
    Robot::WaitForForm(kMessage);
    RequestClose(kMessage);
    EXPECT_TRUE(Robot::IsShown(kMessage));
    WaitForActive(kMessage);
    Robot::Press(Qt::Key_Escape);
    Robot::WaitForNoForm(kMessage);
    WaitForFreeLink(desk);
    EXPECT_EQ(Records(desk), 40);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(Answers, EscapeInitializesNoBlankLogger) {
  Desk desk({u"--blank"_s});
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForForm(kMessage);
    WaitForActive(kMessage);
    Robot::Press(Qt::Key_Escape);
    Robot::WaitForNoForm(kMessage);
    WaitForFreeLink(desk);
    EXPECT_FALSE(Robot::InGui([&] { return desk.TheProgram().Link().Connected; }));
  });
  EXPECT_EQ(trouble, QString());
}

TEST(Answers, ASecondEnterDoesNotEndTheConnectingThatTheFirstBegan) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    WaitForActive(u"frmConnect"_s);
    Robot::Press(Qt::Key_Return);
    Robot::Press(Qt::Key_Return);
    desk.WaitForReading();
  });
  EXPECT_EQ(trouble, QString());
}

// The end answers the question with its first button.
TEST(Answers, ASignalAtTheQuestionOverwritesNoFile) {
  Desk desk({u"--records"_s, u"40"_s});
  QFile old(desk.Path(u"pond.csv"_s));
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write("precious");
  old.close();
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenViewer();
    Robot::Click(u"frmHistory"_s, u"cmdSave"_s);
    Robot::NameFile(desk.Path(u"pond.csv"_s));
    WaitForActive(u"dlgFile"_s);
    Robot::Press(Qt::Key_Return);
    Robot::WaitForForm(kMessage);
    QMetaObject::invokeMethod(
        qApp, [&] { desk.TheProgram().EndBySignal(); }, Qt::QueuedConnection);
  });
  EXPECT_EQ(trouble, QString());
  ASSERT_TRUE(old.open(QIODevice::ReadOnly));
  EXPECT_EQ(old.readAll(), "precious");
}

TEST(Answers, ASignalAtTheQuestionOverwritesNoSetupFile) {
  Desk desk;
  QFile old(desk.Path(u"pond.set"_s));
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write("precious");
  old.close();
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenSetup();
    Robot::Trigger(kSetup, u"mnuSave"_s);
    Robot::TakeFile(desk.Path(u"pond.set"_s));
    Robot::WaitForForm(kMessage);
    QMetaObject::invokeMethod(
        qApp, [&] { desk.TheProgram().EndBySignal(); }, Qt::QueuedConnection);
  });
  EXPECT_EQ(trouble, QString());
  ASSERT_TRUE(old.open(QIODevice::ReadOnly));
  EXPECT_EQ(old.readAll(), "precious");
}

/// Begins to program a logger on a slow line and waits until the blocks go out.
void BeginProgramming(Desk& desk) {
  desk.OpenSetup();
  Robot::TurnTo(kSetup, u"TabStrip"_s, 3);
  Robot::Tick(kSetup, u"chkConductivityManualEntry"_s);
  // In the last of the blocks.
  Robot::Type(kSetup, u"txtConductivityManualEntry"_s, u"37.5"_s);
  Robot::Click(kSetup, u"cmdOK"_s);
  Robot::Answer(u"Are you sure"_s);
  Robot::WaitFor(
      u"settings on their way"_s, [&] { return desk.TheProgram().IsProgramming(); }, 15000);
}

void ExpectProgrammed(Desk& desk) {
  desk.OpenSetup();
  EXPECT_EQ(Robot::Text(kSetup, u"txtConductivityManualEntry"_s), u"37.5"_s);
}

TEST(Answers, ACloseRequestWhileProgrammingIsRefused) {
  Desk desk({u"--baud"_s, u"4800"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    BeginProgramming(desk);
    RequestClose(u"frmMain"_s);
    RequestClose(kSetup);
    EXPECT_TRUE(Robot::IsShown(u"frmMain"_s));
    EXPECT_TRUE(Robot::IsShown(kSetup));
    Robot::WaitFor(u"the end of programming"_s, [] {
      const auto* back = qobject_cast<QWidget*>(Robot::Control(kSetup, u"cmdCancel"_s));
      return back->isEnabled() && back->hasFocus();
    });
    EXPECT_FALSE(Robot::IsShown(kMessage));
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_GE(desk.MillisecondsToEnd(), 0);
}

TEST(Answers, ASignalWhileProgrammingLetsTheSettingsThroughFirst) {
  Desk desk({u"--baud"_s, u"4800"_s});
  QString trouble = desk.Work([&] {
    desk.Connect();
    BeginProgramming(desk);
    desk.EndBySignal();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_GE(desk.MillisecondsToEnd(), 0);
  EXPECT_LT(desk.MillisecondsToEnd(), 3500);
  desk.StartProgramAgain();
  trouble = desk.Work([&] {
    desk.Connect();
    ExpectProgrammed(desk);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(Answers, ASignalWhileADeadLoggerIsProgrammedEndsInTime) {
  Desk desk({u"--fault"_s, u"silent@0x07"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    BeginProgramming(desk);
    desk.EndBySignal();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_GE(desk.MillisecondsToEnd(), 0);
  EXPECT_LT(desk.MillisecondsToEnd(), 3500);
}

// The question and the file dialog go in one moment, while the window manager is busy elsewhere.
TEST(Answers, SavingOverAFileLeavesTheKeyboardAtOk) {
  const pid_t manager = WindowManager();
  Desk desk({u"--records"_s, u"40"_s});
  QFile old(desk.Path(u"pond.csv"_s));
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.close();
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenViewer();
    for (int i = 0; i < 5; ++i) {
      Robot::Click(u"frmHistory"_s, u"cmdSave"_s);
      Robot::NameFile(desk.Path(u"pond.csv"_s));
      WaitForActive(u"dlgFile"_s);
      Robot::Press(Qt::Key_Return);
      Robot::WaitForForm(kMessage);
      WaitForActive(kMessage);
      if (manager > 0) ::kill(manager, SIGSTOP);
      Robot::Click(kMessage, u"cmdButton(0)"_s);
      Robot::Pause(150);
      if (manager > 0) ::kill(manager, SIGCONT);
      Robot::WaitForNoForm(u"dlgFile"_s);
      Robot::WaitFor(u"the keyboard at OK"_s, [] {
        const QWidget* viewer = Robot::Form(u"frmHistory"_s);
        const auto* ok = qobject_cast<QWidget*>(Robot::Control(u"frmHistory"_s, u"cmdOK"_s));
        return viewer->isActiveWindow() && ok->hasFocus();
      });
    }
  });
  if (manager > 0) ::kill(manager, SIGCONT);
  EXPECT_EQ(trouble, QString());
}

// A message and the dialog that it belongs to go in one moment.
TEST(Answers, AFailedConnectLeavesTheMainWindowActive) {
  const pid_t manager = WindowManager();
  Desk desk;
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Choose(u"frmConnect"_s, u"cmbPort1"_s, u"COM5"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForForm(kMessage);
    WaitForActive(kMessage);
    if (manager > 0) ::kill(manager, SIGSTOP);
    Robot::Click(kMessage, u"cmdButton(0)"_s);
    Robot::Pause(150);
    if (manager > 0) ::kill(manager, SIGCONT);
    WaitForActive(u"frmMain"_s);
  });
  if (manager > 0) ::kill(manager, SIGCONT);
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
