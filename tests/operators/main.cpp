// Random operators: work all windows of the real program, beside a simulated logger, with what no
// plan has in it. Everything is below the folder that is given. Ends with 0 when nothing was found,
// with 1 and a line for a finding. tests/proof/operators runs it.

#include <pthread.h>

#include <QCommandLineParser>
#include <QDir>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "app/Application.h"
#include "base/TerminationSignals.h"
#include "operators/Campaign.h"
#include "operators/Confinement.h"

namespace {

using namespace Qt::StringLiterals;
using namespace tessmar;
using namespace tessmar::test;

Campaign* present = nullptr;

/// What the toolkit says although nothing is wrong.
bool IsHarmless(const QString& text) {
  static constexpr QStringView kHarmless[] = {
      // The simulated mouse and keys: nobody wanted the event.
      u"not accepted by receiving widget",
      u"Mouse event occurs outside target window",
      // The platform without a screen.
      u"This plugin does not support propagateSizeHints()",
      u"This plugin does not support raise()",
      u"This plugin does not support grabbing the",
  };
  for (const QStringView harmless : kHarmless) {
    if (text.contains(harmless)) return true;
  }
  return false;
}

void TakeWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  if (type == QtDebugMsg || type == QtInfoMsg || IsHarmless(text)) return;
  std::fprintf(stderr, "toolkit: %s\n", qPrintable(text));
  if (type == QtFatalMsg) std::abort();
  if (present != nullptr) present->Tell(u"the toolkit warns: "_s + text);
}

/// Leaves at once, with what the user interface is at where a sanitizer tells of an abort: what
/// hangs would hold up every other way out.
[[noreturn]] void EndWith(const QString& finding, pthread_t userInterface) {
  std::printf("finding: %s\n", qPrintable(finding));
  std::fflush(stdout);
  if (pthread_equal(userInterface, pthread_self()) == 0) {
    pthread_kill(userInterface, SIGABRT);
    std::this_thread::sleep_for(std::chrono::seconds(10));
  }
  std::_Exit(EXIT_FAILURE);
}

int Run(Application& application, const QString& folder) {
  QCommandLineParser parser;
  const QCommandLineOption seed(u"seed"_s, u"Luck."_s, u"n"_s, u"1"_s);
  const QCommandLineOption steps(u"steps"_s, u"Steps."_s, u"n"_s, u"150"_s);
  const QCommandLineOption simulator(u"simulator"_s, u"tessmar-sim."_s, u"file"_s);
  const QCommandLineOption journal(u"journal"_s, u"A line a step."_s, u"file"_s);
  parser.addOptions({seed, steps, simulator, journal});
  parser.addHelpOption();
  parser.process(application);

  const Confinement confinement(folder);
  Campaign campaign(
      {.Seed = parser.value(seed).toULongLong(),
       .Steps = parser.value(steps).toInt(),
       .Folder = folder,
       .Simulator = parser.value(simulator),
       .Journal = parser.value(journal),
       .Found = [gui = pthread_self()](const QString& finding) { EndWith(finding, gui); }});
  present = &campaign;
  qInstallMessageHandler(TakeWarning);
  application.OnFault = [&campaign](const Fault& fault) {
    campaign.Tell(u"a fault that no operation has caught: "_s + QString::fromUtf8(fault.what()));
  };
  // Who runs this in the background may have let them be ignored.
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) std::signal(number, SIG_DFL);
  const TerminationSignals signals([&campaign] { campaign.EndBySignal(); });
  campaign.Run();
  qInstallMessageHandler(nullptr);
  present = nullptr;
  for (const QString& line : campaign.Report()) std::printf("%s\n", qPrintable(line));
  std::printf("pages of the help opened %d\n", confinement.PagesOpened());
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: random-operators FOLDER [--seed N] [--steps N] ...\n");
    return 2;
  }
  // The folder is somebody else's, who clears it away whatever becomes of this process.
  const QString folder = QDir(QString::fromLocal8Bit(argv[1])).canonicalPath();
  if (folder.isEmpty()) return 2;
  Confinement::PrepareEnvironment(folder);
  Application application(argc, argv);
  QCoreApplication::setApplicationName(u"TessmarLogger"_s);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  try {
    return Run(application, folder);
  } catch (const std::exception& finding) {
    EndWith(QString::fromUtf8(finding.what()), pthread_self());
  }
}
