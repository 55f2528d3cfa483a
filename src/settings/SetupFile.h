#pragma once

#include <QByteArray>
#include <QLocale>
#include <QString>
#include <optional>

#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// The first lines of a setup file. They are written for people; no program reads them.
struct SetupFileHead {
  QString Program;  ///< Name of the running program, without folder or extension.
  QString Version;  ///< major.minor.revision
  QString Date;     ///< Of saving, in the locale's short form.
  QString Time;
};

/// A complete set-up as the text of a setup file: Latin-1, key=value lines ended by carriage return
/// and line feed, all channels whatever the channel counts. Characters outside Latin-1 become "?".
QByteArray WriteSetupFile(const SetupFileHead& head, const LinkState& link,
                          const LoggerSettings& settings);

/// Overwrites the settings with what a setup file says; a key that is missing leaves its field
/// alone.
///
/// Lines may also end in a line feed or a carriage return alone. Keys are known by their exact
/// spelling; unknown keys and lines that are none are skipped. Real numbers take "," for ".", whole
/// numbers follow the locale. Texts are cut to what their field holds, and control characters in
/// them become blanks.
///
/// Throws ConversionFault for a whole number that is none or does not fit its field, RangeFault for
/// a field of a channel that does not exist; the lines ahead of that one are taken over then.
/// @return how many lines set a field; 0 for a text that is no setup file.
int ReadSetupFile(const QByteArray& file, const QLocale& locale, LoggerSettings& settings);

/// How many channels the logger of a setup file had, as far as the file says so.
struct SetupFileChannels {
  std::optional<int> Analog;  ///< 0 to 8.
  std::optional<int> Pulse;   ///< 0 to 2.
};

/// Reads the channel counts of a setup file. What is no possible count counts as not said.
SetupFileChannels ChannelsOfSetupFile(const QByteArray& file);

}  // namespace tessmar
