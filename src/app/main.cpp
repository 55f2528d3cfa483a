#include <QMessageBox>
#include <cstdio>
#include <cstdlib>

#include "app/Application.h"
#include "app/Program.h"
#include "archive/Store.h"
#include "base/TerminationSignals.h"
#include "session/PersistedSettings.h"

namespace {

using namespace tessmar;

constexpr int kStartFailed = 1;
constexpr int kFaulted = 3;

/// Says what ends the program, to a person and to whoever reads standard error.
void Report(const QString& text) {
  std::fprintf(stderr, "TessmarLogger: %s\n", qPrintable(text));
  QMessageBox::critical(nullptr, QStringLiteral("Tessmar DO Monitor"), text);
}

}  // namespace

int main(int argc, char** argv) {
  // Taken before Qt takes the arguments out that it knows itself.
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments.append(QString::fromLocal8Bit(argv[i]));
  Application application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("TessmarLogger"));
  QGuiApplication::setDesktopFileName(QStringLiteral("tessmar-logger"));
  QGuiApplication::setQuitOnLastWindowClosed(false);

  Program program({
      .Arguments = arguments,
      .AppPath = QCoreApplication::applicationDirPath(),
      .StorePath = PersistedSettings::DefaultPath(),
      .PortNames = qEnvironmentVariable("TESSMAR_PORTS"),
      .ArchivePath = Store::DefaultPath(),
      .LogPath = SupportLog::DefaultPath(),
      .TraceLine = qEnvironmentVariable("TESSMAR_TRACE") == QLatin1StringView("1"),
      .EndProcess = [] { std::_Exit(EXIT_SUCCESS); },
  });
  application.OnFault = [&program](const Fault& fault) {
    // Otherwise a fault that no operation has caught ends what it happened in, no more.
    std::fprintf(stderr, "TessmarLogger: %s\n", fault.what());
    program.Log().Write(QStringLiteral("fault: ") + QString::fromUtf8(fault.what()));
    if (!program.AreFaultsFatal()) return;
    QMessageBox::critical(nullptr, QStringLiteral("Tessmar DO Monitor"),
                          QString::fromUtf8(fault.what()));
    std::_Exit(kFaulted);
  };
  const TerminationSignals signals([&program] { program.EndBySignal(); });
  try {
    program.Start();
  } catch (const Fault& fault) {
    Report(QString::fromUtf8(fault.what()));
    return kStartFailed;
  }
  return QApplication::exec();
}
