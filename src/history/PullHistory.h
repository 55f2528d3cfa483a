#pragma once

#include <functional>

#include "history/HistoryUpload.h"
#include "link/Comm.h"
#include "link/LinkState.h"
#include "link/cmd.h"

namespace tessmar {

/// Who watches an upload.
struct UploadWatcher {
  std::function<bool()> Running;  ///< Asked after each block and each wait; false cancels.
  std::function<void()> Changed;  ///< Told once for each block and each failure.
};

/// Pulls all blocks of an upload, one request after the other, until it ends.
///
/// The caller holds LinkState::Busy, because the waits run the message loop.
UploadEnd PullHistory(HistoryUpload& upload, LoggerCommands& commands, Comm& comm,
                      const LinkState& link, const UploadWatcher& watcher);

}  // namespace tessmar
