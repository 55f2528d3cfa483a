#include "e2e/Desk.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QSettings>
#include <stdexcept>

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 15000;

}  // namespace

LoggerProcess::LoggerProcess(const QString& link, const QStringList& options) {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(QStringLiteral(TESSMAR_SIM), QStringList{u"--link"_s, link} + options);
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(kPatience)) {
      throw std::runtime_error("the simulated logger does not start");
    }
  }
}

LoggerProcess::~LoggerProcess() {
  process_.terminate();
  if (!process_.waitForFinished(kPatience)) process_.kill();
}

void LoggerProcess::PullOut() {
  process_.kill();
  process_.waitForFinished(kPatience);
}

Desk::Desk(const QStringList& loggerOptions, const QStringList& arguments,
           const SystemLocale& locale)
    : loggerOptions_(loggerOptions) {
  QSettings store(StorePath(), QSettings::IniFormat);
  store.setValue(u"Configuration/DirectPort"_s, u"COM9"_s);
  store.setValue(u"Configuration/DirectBaud"_s, u"115200"_s);
  store.sync();
  StartLogger();
  program_ = std::make_unique<Program>(
      ProgramEnvironment{
          .Arguments = QStringList{u"TessmarLogger"_s} + arguments,
          .AppPath = folder_.path(),
          .StorePath = StorePath(),
          .PortNames = u"COM9=%1,Simulated logger"_s.arg(Path(u"logger"_s)),
          .EndProcess =
              [this] {
                endedAtOnce_ = true;
                QCoreApplication::exit(0);
              },
      },
      locale);
}

Desk::~Desk() = default;

void Desk::StartLogger() {
  logger_.reset();
  logger_ = std::make_unique<LoggerProcess>(Path(u"logger"_s), loggerOptions_);
}

QString Desk::Work(const std::function<void()>& work) {
  QString trouble;
  bool done = false;
  Robot robot;
  program_->Start();
  robot.Start(work, [&](const QString& text) {
    trouble = text;
    done = true;
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
  Robot::WaitForNoForm(u"frmConnect"_s);
  Robot::WaitForText(u"frmMain"_s, u"cmdConnect"_s, u"Disconnect"_s);
  Robot::WaitFor(u"a reading"_s, [] {
    const auto* label = qobject_cast<QLabel*>(Robot::Control(u"frmMain"_s, u"lblValue(0)"_s));
    return label != nullptr && !label->text().isEmpty();
  });
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

QString Desk::StoredValue(const QString& key) const {
  return QSettings(StorePath(), QSettings::IniFormat).value(u"Configuration/"_s + key).toString();
}

}  // namespace tessmar::test
