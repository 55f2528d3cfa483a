// tessmar-sim: one simulated logger on a pseudo-terminal.

#include <QCoreApplication>
#include <QFile>
#include <cstdio>
#include <exception>

#include "FlashImage.h"
#include "LineServer.h"
#include "PseudoTerminal.h"
#include "SimulatedLogger.h"
#include "SimulatedModem.h"
#include "SimulatorOptions.h"

namespace {

using namespace tessmar::sim;

constexpr int kFailed = 1;
constexpr int kWrongUse = 2;

void Complain(const QString& text) {
  std::fprintf(stderr, "tessmar-sim: %s\n", qUtf8Printable(text));
}

void Serve(const SimulatorOptions& options, SimulatedLogger& logger) {
  SimulatedModem modem(logger, options.ModemSetup);
  LineDevice& device = options.Modem ? static_cast<LineDevice&>(modem) : logger;
  PseudoTerminal terminal(QFile::encodeName(options.LinkPath).toStdString());
  LineServer server(terminal, device);
  std::printf("ready: %s\n", qUtf8Printable(options.LinkPath));
  std::fflush(stdout);
  server.Run();
}

int Run(const SimulatorOptions& options) {
  SimulatedLogger logger(options.Logger);
  for (const Fault& fault : options.Faults) logger.AddFault(fault);
  if (options.StuckAddress) logger.SetStuckAddress(*options.StuckAddress);
  if (kRecordArea % StoredRecordSize(options.Logger) != 0)
    Complain(QStringLiteral("%1 bytes a record do not fill a block of 240; an upload may end early")
                 .arg(StoredRecordSize(options.Logger)));
  if (options.ImagePath.isEmpty()) {
    Serve(options, logger);
    return 0;
  }
  const std::string error =
      WriteFile(QFile::encodeName(options.ImagePath).toStdString(), FlashImage(logger));
  if (error.empty()) return 0;
  Complain(QString::fromLocal8Bit(error));
  return kFailed;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const ParsedOptions parsed =
      ParseSimulatorOptions(QCoreApplication::arguments(), QDateTime::currentDateTime());
  if (!parsed.Error.isEmpty()) {
    Complain(parsed.Error);
    return kWrongUse;
  }
  if (parsed.Options.Help) {
    std::fputs(qUtf8Printable(SimulatorHelp()), stdout);
    return 0;
  }
  try {
    return Run(parsed.Options);
  } catch (const std::exception& problem) {
    Complain(QString::fromLocal8Bit(problem.what()));
    return kFailed;
  }
}
