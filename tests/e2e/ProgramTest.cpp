#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSettings>
#include <csignal>
#include <ctime>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int kASecond = 1000;

double ProcessorSeconds() {
  timespec spent{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
  return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

QString MainText(const QString& control) {
  return Robot::Text(u"frmMain"_s, control);
}

// The operator's first minute: the dialog opens by itself with the port chosen, Connect is pressed,
// readings stand on the screen and move.
TEST(FirstUse, ShowsLiveReadingsThatMove) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    ASSERT_EQ(Robot::Text(u"frmConnect"_s, u"cmbPort1"_s), u"COM9 - Simulated logger"_s);
    desk.Connect();
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Connected"_s);
    EXPECT_FALSE(MainText(u"lblLoggerName"_s).isEmpty());
    EXPECT_FALSE(MainText(u"lblRecordings"_s).isEmpty());

    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    const QString first = MainText(u"lblDateTime"_s);
    Robot::WaitFor(u"the clock of the samples to move"_s, [&] {
      const auto* label = qobject_cast<QLabel*>(Robot::Control(u"frmMain"_s, u"lblDateTime"_s));
      return !label->text().isEmpty() && label->text() != first;
    });
    Robot::WaitFor(u"older values"_s, [] {
      const auto* label = qobject_cast<QLabel*>(Robot::Control(u"frmMain"_s, u"lblHistory(0)"_s));
      return label->text().count(u'.') >= 2;
    });
    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    Robot::WaitFor(u"the buttons to come back"_s, [] {
      return qobject_cast<QWidget*>(Robot::Control(u"frmMain"_s, u"cmdSetup"_s))->isEnabled();
    });
  });
  EXPECT_EQ(trouble, QString());
}

TEST(FirstUse, GermanThroughout) {
  Desk desk({}, {u"-l7"_s}, SystemLocale(QLocale(u"de_DE"_s)));
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForText(u"frmMain"_s, u"cmdConnect"_s, u"Trennen"_s);
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Verbunden"_s);
    EXPECT_EQ(MainText(u"fraDateTime"_s), u"Loggerzeit"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(BlankLogger, IsInitializedAfterTheQuestion) {
  Desk desk({u"--blank"_s});
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForForm(u"FMessage"_s);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForText(u"frmMain"_s, u"lblLoggerName"_s, u"Tessmar Logger"_s, 60000);
    EXPECT_EQ(MainText(u"lblSampleInterval"_s), u"1 day"_s);
  });
  EXPECT_EQ(trouble, QString());
}

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
  EXPECT_EQ(desk.StoredValue(u"ModemBaud"_s), u"38400"_s);
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
    {"AtTheQuestionAboutABlankLogger",
     {u"--blank"_s},
     [](Desk&) {
       Robot::WaitForForm(u"frmConnect"_s);
       Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
       Robot::WaitForForm(u"FMessage"_s);
     }},
    {"WhileSamplingContinuously",
     {},
     [](Desk& desk) {
       desk.Connect();
       Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
       Robot::Pause(700);
     }},
    {"WhileConnectedAndIdle", {}, [](Desk& desk) { desk.Connect(); }},
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

// Pulled out, the port closes; the program goes on, costs nothing, and connects again.
TEST(AdapterPulledOut, WhileSamplingThenConnectsAgain) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    Robot::Pause(600);
    Robot::InGui([&] { desk.PullOut(); });
    Robot::Pause(300);
    const double before = ProcessorSeconds();
    Robot::Pause(1000);
    EXPECT_LT(ProcessorSeconds() - before, 0.5) << "the program spins";
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Connected"_s);

    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    Robot::Click(u"frmMain"_s, u"cmdConnect"_s);
    Robot::WaitForText(u"frmMain"_s, u"lblCommStatus"_s, u"Disconnected"_s);
    Robot::InGui([&] { desk.StartLogger(); });
    Robot::Click(u"frmMain"_s, u"cmdConnect"_s);
    desk.Connect();
  });
  EXPECT_EQ(trouble, QString());
}

TEST(AdapterPulledOut, InTheHandshakeEndsWithTheMessage) {
  Desk desk({u"--fault"_s, u"silent"_s});
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::Pause(700);
    Robot::InGui([&] { desk.PullOut(); });
    Robot::WaitForForm(u"FMessage"_s, 5000);
    EXPECT_EQ(Robot::Text(u"FMessage"_s, u"lblMessage"_s),
              u"Error: unable to establish communication with logger."_s);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(ASilentLogger, CancelEndsTheHandshakeAfterThePass) {
  Desk desk({u"--fault"_s, u"silent"_s});
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::Pause(300);
    Robot::Click(u"frmConnect"_s, u"cmdCancel"_s);
    Robot::WaitForForm(u"FMessage"_s, 3000);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    Robot::WaitForText(u"frmMain"_s, u"cmdConnect"_s, u"Connect"_s);
  });
  EXPECT_EQ(trouble, QString());
}

// The program as it is installed.
class TheProcess : public testing::Test {
 protected:
  void Start(const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, folder_.path());
    process_.setProcessEnvironment(environment);
    process_.start(QStringLiteral(TESSMAR_LOGGER), arguments);
    ASSERT_TRUE(process_.waitForStarted());
  }
  ~TheProcess() override {
    process_.kill();
    process_.waitForFinished();
  }

  QTemporaryDir folder_;
  QProcess process_;
};

TEST_F(TheProcess, EndsWithItsSettingsWrittenWhenItIsAskedTo) {
  Start({});
  const QString store = folder_.filePath(u"Tessmar/Tessmar Logger.ini"_s);
  // The process is up once its splash has gone; asking too early ends it by the default action.
  QElapsedTimer patience;
  patience.start();
  while (!QFile::exists(store) && patience.elapsed() < 10000) {
    process_.waitForReadyRead(300);
    ::kill(static_cast<pid_t>(process_.processId()), SIGHUP);
    if (process_.waitForFinished(1000)) break;
  }
  EXPECT_EQ(process_.state(), QProcess::NotRunning);
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_TRUE(QFile::exists(store));
}

TEST_F(TheProcess, SaysWhatIsWrongWithASwitch) {
  Start({u"-l7"_s, u"-d"_s});
  ASSERT_TRUE(process_.waitForReadyRead(10000) || process_.bytesAvailable() > 0 ||
              !process_.readAllStandardError().isEmpty());
}

}  // namespace
}  // namespace tessmar::test
