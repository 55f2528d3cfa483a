// tessmar: the work of Tessmar Logger from a shell.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <memory>

#include "base/Fault.h"
#include "base/Localize.h"
#include "base/QtMessageLoop.h"
#include "base/TerminationSignals.h"
#include "base/TextTable.h"
#include "cli/Commands.h"
#include "cli/StopRequest.h"
#include "link/QtSerialPort.h"
#include "session/PersistedSettings.h"

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

using namespace tessmar;

constexpr int kTickMs = 100;

bool IsTerminal(std::FILE* file) {
#ifdef Q_OS_UNIX
  return ::isatty(::fileno(file)) == 1;
#else
  Q_UNUSED(file);
  return false;
#endif
}

/// The words of the program itself: its own setting, or else the system's language.
void ChooseLanguage(const SystemLocale& locale, const QString& storePath) {
  std::int16_t language = DetectUserLocale(locale).Language;
  try {
    language = PersistedSettings(storePath, locale.Locale()).Language(language);
  } catch (const Fault&) {
    // The program tells of a stored language that is none; here the system's is good enough.
    language = DetectUserLocale(locale).Language;
  }
  SetTextLanguage(language);
}

int Run(const QStringList& arguments) {
  QFile out;
  QFile words;
  if (!out.open(stdout, QIODevice::WriteOnly) ||
      !words.open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered))
    return kCommandFailed;
  Output output(out, words, IsTerminal(stderr));

  const SystemLocale locale;
  const QString store = PersistedSettings::DefaultPath();
  ChooseLanguage(locale, store);
  QtMessageLoop loop;
  const SystemClock clock;
  StopRequest stop(clock, [&loop] { loop.End(); });
  const TerminationSignals signals([&stop] { stop.Press(); });
  const SupportLog log(SupportLog::DefaultPath(), clock);
  CommandEnvironment environment{
      .Out = output,
      .Loop = loop,
      .Time = clock,
      .Locale = locale,
      .Log = log,
      .Ports =
          PortMap(qEnvironmentVariable("TESSMAR_PORTS"),
                  ReadPortsFile(QFileInfo(store).dir().filePath(QStringLiteral("ports.conf")))),
      .StorePath = store,
      .MakePort = [](const PortMap& ports) { return std::make_shared<QtSerialPort>(ports); },
      .StopWanted = [&stop] { return stop.Wanted(); }};
  stop.IsUncut = [&environment] { return environment.IsUncut && environment.IsUncut(); };
  QTimer ticks;
  ticks.setTimerType(Qt::PreciseTimer);
  // Queued, because a tick may wait, and waits live on ticks: Qt does not let a timer go off again
  // while what it called is still at work.
  const auto tick = [&environment, &stop] {
    stop.Tick();
    if (environment.OnTick) environment.OnTick();
  };
  QObject::connect(&ticks, &QTimer::timeout, &ticks, tick, Qt::QueuedConnection);
  ticks.start(kTickMs);
  return RunCommand(environment, arguments);
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("tessmar"));
#ifdef Q_OS_UNIX
  // A reader that has gone is told by the write that fails, so that the port is closed in order.
  std::signal(SIGPIPE, SIG_IGN);
#endif
  return Run(QCoreApplication::arguments());
}
