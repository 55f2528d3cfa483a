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
  std::function<bool()> Running;  ///< Asked after each block and each wait; false cancels.
  std::function<void()> Changed;  ///< Told once for each block and each failure.
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
