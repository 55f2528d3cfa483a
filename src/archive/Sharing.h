#pragma once

#include <functional>

#include "archive/Server.h"
#include "archive/Store.h"

namespace tessmar {

/// What came to the server.
struct PushResult {
  int Uploads = 0;     ///< Whole ones, that it did not have, or had in an earlier state.
  int Skipped = 0;     ///< Uploads that it has already.
  int Running = 0;     ///< Uploads that are being written; they are left for the next time.
  qint64 Records = 0;  ///< In the uploads.
  int Events = 0;
  bool BrokenOff = false;  ///< Somebody wanted an end; what was brought by then is there.
};

struct PushProgress {
  int Upload = 0;  ///< The one that is on its way, from 1.
  int Uploads = 0;
  qint64 Records = 0;  ///< So far, those on their way too.
};

struct PushWatcher {
  /// False for an end; asked some ten times a second.
  std::function<bool()> GoOn;
  std::function<void(const PushProgress&)> Changed;
};

/// Brings what a server does not have yet: loggers, uploads with their blocks, records and
/// channels, and the logbook. The store is open, the server too, and its tables are of this
/// version.
///
/// Each upload comes whole or not at all, in one transaction, and is known by its uuid. So a push
/// may be broken off anywhere and repeated, and many computers may push at once. The last change of
/// a name, of the logger that an upload belongs to, or of an upload's state wins, whoever brings it
/// first. What is in the bin stays here, and what was deleted here stays there.
///
/// @param result  what came to the server, when a ServerFault or an ArchiveFault ends it too.
void PushArchive(const Store& store, const Server& server, const PushWatcher& watcher,
                 PushResult& result);

}  // namespace tessmar
