#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "cli/CommandEnvironment.h"
#include "cli/CommandOptions.h"
#include "cli/SettingsDifference.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// A setup file, read but not taken over by any settings yet.
class SetupSource {
 public:
  /// Throws CommandFailure for what is not there or cannot be read.
  explicit SetupSource(const QString& path);

  /// Takes it over the defaults of a logger with so many analog channels, as loading it on the
  /// setup screen does. Throws CommandFailure for a file without a single known key, or with a
  /// value that is none.
  void Load(const SystemLocale& locale, int analogChannels, LoggerSettings& settings) const;

  const QByteArray& Bytes() const { return bytes_; }

 private:
  QString path_;
  QByteArray bytes_;
};

/// Settings that were taken from a logger, a setup file or an image file to be compared.
struct ReadSettings {
  LoggerSettings Settings;           ///< Of a setup file: not yet.
  std::optional<SetupSource> Setup;  ///< A setup file, whose defaults depend on what it is beside.
  /// The channels that there are, where the source says so.
  std::optional<int> Analog;
  std::optional<int> Pulse;
  bool HasSampleOnDemand = true;
  bool HasDerived = true;  ///< An image file has no set-up of salinity and oxygen.
};

/// Reads a port, a setup file (.set) or an image file (.bin); the channels of an image come from
/// the options. Throws CommandFailure.
ReadSettings ReadSource(CommandEnvironment& environment, const CommandOptions& options,
                        const QString& source);

/// What of two sources can be compared. Channels that the logger or the image beside a setup file
/// lacks are left out; of two of a kind that differ in their channels nothing is.
ComparedParts PartsOf(const ReadSettings& one, const ReadSettings& other);

}  // namespace tessmar
