#pragma once

#include <functional>

#include "history/BlockSink.h"
#include "history/HistoryUpload.h"
#include "link/Comm.h"
#include "link/LinkState.h"
#include "link/cmd.h"

namespace tessmar {

/// Who watches an upload.
struct UploadWatcher {
  /// Asked after each block and whenever a wait may end; false cancels at once. What has not
  /// arrived of the block under way is left.
  std::function<bool()> Running;
  /// Told once for each block and each failure, and when the upload is begun anew.
  std::function<void()> Changed;
  /// Told when a wait for answers that are late begins (true) and when it is over; may be empty.
  std::function<void(bool waits)> Waiting = nullptr;
};

/// Pulls all blocks of an upload, one request after the other, until it ends.
///
/// Every block goes to the sink before it is decoded; a doubtful one is no block yet. The sink is
/// told of the beginning and, on every way out, of the end.
///
/// The caller holds LinkState::Busy, because the waits run the message loop.
UploadEnd PullHistory(HistoryUpload& upload, LoggerCommands& commands, Comm& comm,
                      const LinkState& link, const UploadWatcher& watcher, BlockSink& sink);

}  // namespace tessmar
