#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "cli/CommandTable.h"

namespace tessmar {

/// What one call of the command was asked for, with numbers that can be.
struct CommandOptions {
  CommandWork Work = CommandWork::Ports;
  QStringList Operands;  ///< As many as the command takes.
  int Baud = 38400;
  bool Json = false;
  bool Quiet = false;
  QString ArchivePath;  ///< Empty for the usual place.
  bool NoArchive = false;
  std::optional<int> Every;  ///< Seconds.
  std::optional<int> Count;
  bool Analysis = false;  ///< CSV of the style "analysis".
  QString Logger;         ///< Its name in the archive; empty for none.
  QString Csv;            ///< A path, "-" for standard output, empty for none.
  bool Sync = false;
  bool Yes = false;
  bool Force = false;
  std::optional<int> Analog;
  std::optional<int> Pulse;
};

/// A command line: options, or a text to show in place of work, or what is wrong with it.
struct ParsedCommand {
  std::optional<CommandOptions> Options;
  QString Text;   ///< Of --help or --version.
  QString Error;  ///< One line.
};

/// Reads a command line, program name first.
ParsedCommand ParseCommand(const QStringList& arguments);

}  // namespace tessmar
