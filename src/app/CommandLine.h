#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

#include "base/MainScreen.h"
#include "link/LinkState.h"

namespace tessmar {

/// What the switches of the command line ask for.
struct CommandLine {
  std::optional<std::int16_t> Language;  ///< -l<n>: replaces the stored and the system's number.
  bool TrapErrors = true;                ///< False with -d: faults end the program.
  bool ShowImageImport = false;          ///< -i: the image import entries are shown.
  std::int16_t ModemTimeoutTicks = 4;    ///< -w<n>, ticks of 100 ms.
};

/// The command line as one text: the arguments behind the program's name, joined by single blanks.
/// @param arguments  as the process was given them, the program's name first.
QString CommandLineText(const QStringList& arguments);

/// Reads the switches, found as parts of the text wherever they stand; "-w" also as "-W".
///
/// The value of -l or -w is the whole text behind the switch, blanks at its ends allowed, rounded
/// to 16 bits. One of these two switches can therefore carry a value, and it stands last.
///
/// @param locale  says what counts as a number.
/// Throws ConversionFault, with a text fit for the operator, when a value is not such a number.
CommandLine ParseCommandLine(const QString& text, const QLocale& locale);

/// Puts the switches but -l into force: fault trapping, the two image import entries of the Action
/// menus, the time-out of modem lines.
void ApplyCommandLine(const CommandLine& line, LinkState& link, MainScreen& screen);

}  // namespace tessmar
