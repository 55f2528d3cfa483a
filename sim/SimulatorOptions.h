#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "FailureMode.h"
#include "LoggerOptions.h"
#include "SimulatedModem.h"

namespace tessmar::sim {

/// What tessmar-sim was asked to do.
struct SimulatorOptions {
  LoggerOptions Logger;
  std::vector<Fault> Faults;
  std::optional<std::uint32_t> StuckAddress;
  bool Modem = false;
  ModemOptions ModemSetup;
  QString LinkPath;   ///< Where to serve; empty with --image.
  QString ImagePath;  ///< The image file to write; empty with --link.
  bool Help = false;
};

/// Options, or what is wrong with them.
struct ParsedOptions {
  SimulatorOptions Options;
  QString Error;  ///< Empty when all is well.
};

/// Reads a command line, program name first.
/// @param now  what the logger's clock shows unless --clock says otherwise.
ParsedOptions ParseSimulatorOptions(const QStringList& arguments, const QDateTime& now);

/// The text of --help.
QString SimulatorHelp();

}  // namespace tessmar::sim
