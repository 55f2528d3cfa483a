#include "e2e/Desk.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QSettings>
#include <ctime>

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

/// Less would fail a program that merely paints, more would let one pass that never sleeps.
constexpr double kMostOfACore = 0.5;

double ProcessorSeconds() {
  timespec spent{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
  return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

}  // namespace

QString MainText(const QString& control) {
  return Robot::Text(u"frmMain"_s, control);
}

void ExpectNoSpin() {
  constexpr int kWhileMs = 600;
  Robot::Pause(200);
  const double before = ProcessorSeconds();
  Robot::Pause(kWhileMs);
  EXPECT_LT(ProcessorSeconds() - before, kMostOfACore * kWhileMs / 1000.0) << "the program spins";
}

Desk::Desk(const QStringList& loggerOptions, const QStringList& arguments,
           const SystemLocale& locale)
    : arguments_(arguments), locale_(locale) {
  QSettings store(StorePath(), QSettings::IniFormat);
  store.setValue(u"Configuration/DirectPort"_s, u"COM9"_s);
  store.setValue(u"Configuration/DirectBaud"_s, u"115200"_s);
  store.sync();
  StartLogger(loggerOptions);
  MakeProgram();
}

void Desk::MakeProgram() {
  program_ = std::make_unique<Program>(
      ProgramEnvironment{
          .Arguments = QStringList{u"TessmarLogger"_s} + arguments_,
          .AppPath = folder_.path(),
          .StorePath = StorePath(),
          .PortNames = u"COM9=%1,Simulated logger"_s.arg(Path(u"logger"_s)),
          .ArchivePath = Path(u"archive.sqlite"_s),
          .LogPath = Path(u"tessmar.log"_s),
          .EndProcess =
              [this] {
                endedAtOnce_ = true;
                QCoreApplication::exit(0);
              },
      },
      locale_);
}

void Desk::StartProgramAgain() {
  program_.reset();
  sinceClose_.invalidate();
  MakeProgram();
}

Desk::~Desk() = default;

void Desk::StartLogger(const QStringList& loggerOptions) {
  logger_.reset();
  logger_ = std::make_unique<LoggerProcess>(QStringLiteral(TESSMAR_SIM), Path(u"logger"_s),
                                            loggerOptions);
}

void Desk::PullOut() {
  Robot::InGui([this] { logger_->PullOut(); });
}

void Desk::OpenSetup() {
  Robot::Click(u"frmMain"_s, u"cmdSetup"_s);
  Robot::WaitForForm(u"frmSetup"_s);
}

void Desk::Disconnect() {
  Robot::WaitForForm(u"frmMain"_s);
  Robot::WaitFor(u"the link to be free"_s, [this] { return !program_->Link().Busy; });
  Robot::Click(u"frmMain"_s, u"cmdConnect"_s);
  Robot::WaitFor(u"the session's end"_s, [this] { return !program_->Link().DisplayedConnected; });
}

void Desk::PlugInAndConnect(const QStringList& loggerOptions) {
  Disconnect();
  Robot::InGui([&] { StartLogger(loggerOptions); });
  Robot::Click(u"frmMain"_s, u"cmdConnect"_s);
  Connect();
}

QString Desk::Work(const std::function<void()>& work) {
  QString trouble;
  bool done = false;
  Robot robot;
  program_->Start();
  robot.Start(work, [&](const QString& text) {
    trouble = text;
    done = true;
    // What the robot has left going must not keep the test.
    if (!text.isEmpty()) program_->Shutdown();
    QCoreApplication::exit(0);
  });
  QApplication::exec();
  if (sinceClose_.isValid()) millisecondsToEnd_ = sinceClose_.elapsed();
  // The program may have ended first; the robot then has nothing more to do in it.
  while (!done) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  robot.Join();
  program_->Shutdown();
  return trouble;
}

void Desk::Connect() {
  Robot::WaitForForm(u"frmConnect"_s);
  Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
  WaitForReading();
}

void Desk::Dial() {
  const QString dialog = u"frmConnect"_s;
  Robot::WaitForForm(dialog);
  Robot::Tick(dialog, u"optModem"_s);
  Robot::Choose(dialog, u"cmbPort2"_s, u"COM9"_s);
  Robot::Type(dialog, u"cmbNumber"_s, u"5551234"_s);
  Robot::Click(dialog, u"cmdConnect"_s);
}

void Desk::WaitForReading() {
  Robot::WaitForNoForm(u"frmConnect"_s);
  Robot::WaitFor(u"a session with a reading"_s, [this] {
    const LinkState& link = program_->Link();
    const auto* label = qobject_cast<QLabel*>(Robot::Control(u"frmMain"_s, u"lblValue(0)"_s));
    return link.DisplayedConnected && !link.Busy && label != nullptr && !label->text().isEmpty();
  });
}

void Desk::StartUpload() {
  Robot::Click(u"frmMain"_s, u"cmdGetHistoryData"_s);
  Robot::WaitFor(u"records"_s, [] {
    const auto* bar =
        qobject_cast<QProgressBar*>(Robot::Control(u"frmGetHistoryData"_s, u"ProgressBar1"_s));
    return bar != nullptr && bar->value() > 0;
  });
}

void Desk::OpenViewer() {
  Robot::Click(u"frmMain"_s, u"cmdGetHistoryData"_s);
  Robot::WaitForForm(u"frmGetHistoryData"_s);
  Robot::Click(u"frmGetHistoryData"_s, u"cmdOkay"_s);
  Robot::WaitForForm(u"frmHistory"_s);
}

void Desk::CloseMainWindow() {
  QMetaObject::invokeMethod(
      qApp,
      [this] {
        sinceClose_.start();
        program_->Window().close();
      },
      Qt::QueuedConnection);
}

void Desk::EndBySignal() {
  QMetaObject::invokeMethod(
      qApp,
      [this] {
        sinceClose_.start();
        program_->EndBySignal();
      },
      Qt::QueuedConnection);
}

QString Desk::StoredValue(const QString& key) const {
  return QSettings(StorePath(), QSettings::IniFormat).value(u"Configuration/"_s + key).toString();
}

}  // namespace tessmar::test
