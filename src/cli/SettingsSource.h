#pragma once

#include <QString>

#include "cli/CommandEnvironment.h"
#include "cli/CommandOptions.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// Settings that a command took from a logger, a setup file or an image file.
struct ReadSettings {
  LoggerSettings Settings;
  /// With the channel counts where the source knows them.
  LinkState Link;
  bool KnowsChannels = false;  ///< A setup file does not: its settings hold for any logger.
  bool HasDerived = true;      ///< An image file has no set-up of salinity and oxygen.
};

/// Reads a setup file over the defaults of a logger with so many analog channels, as loading it on
/// the setup screen does. Throws CommandFailure for what is not there, cannot be read, does not
/// have a single known key, or has a value that is none.
void ReadSetup(const QString& path, const SystemLocale& locale, int analogChannels,
               LoggerSettings& settings);

/// Reads a port, a setup file (.set) or an image file (.bin).
/// @param channels  of a setup file's defaults; those of an image come from the options.
ReadSettings ReadSource(CommandEnvironment& environment, const CommandOptions& options,
                        const QString& source, const LinkState& channels);

}  // namespace tessmar
