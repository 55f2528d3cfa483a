#pragma once

#include <QString>
#include <functional>

#include "archive/JournalQueue.h"
#include "base/Clock.h"
#include "history/BlockSink.h"
#include "link/LinkState.h"
#include "settings/LoggerAsRead.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// What the journal knows of the logger and the program around it.
struct JournalContext {
  const LinkState& Link;
  const LoggerSettings& Settings;
  const Clock& Time;
  std::function<QString()> Source;  ///< Of the connection: a port, a device, a number.
  QString Program;                  ///< Its version.
  /// Bytes of a damaged archive that are checked at once; what is larger is checked beside the
  /// program's work, see IntegrityCheck.
  qint64 MostToCheckAtOnce = qint64{16} * 1024 * 1024;
  /// The connected logger, where Settings may be another's or no logger's. Without it Settings and
  /// Link are the logger's own.
  std::function<const LoggerAsRead&()> AsRead = {};
};

/// What the connected logger is known by.
LoggerName ConnectedLogger(const JournalContext& context);

/// The settings of the connected logger; null while they are not known.
const LoggerSettings* KnownSettingsOf(const JournalContext& context);

/// The link with the channels that the connected logger's own records have.
LinkState OwnShape(const JournalContext& context);

/// An upload as it begins. One from the connected logger is under its name and with its settings;
/// with none, and so without channels, where they are not known. One from an image file has those
/// of the file.
KeptUpload BeginningUpload(const JournalContext& context, const UploadStart& start);

}  // namespace tessmar
