#include "history/PullHistory.h"

#include <QScopeGuard>

#include "base/Fault.h"

namespace tessmar {
namespace {

using Verdict = HistoryUpload::Verdict;

/// Between a failure and the next request, for late bytes to die away.
constexpr std::int16_t kPauseTicks = 5;
/// For the rest of an answer whose first bytes have come.
constexpr std::int16_t kFrameTailTicks = 3;
constexpr int kMostLateAnswers = 2 * HistoryUpload::kMostFailuresInRow;
/// No block begins with this count, so a reply buffer that no longer does was written to.
constexpr std::uint8_t kNothingReceived = 0xFF;

// Answers to several tries come as far apart as the tries were: a wait for the acknowledge, one for
// the reply, the flush of what came, the pause, and the purges ahead of the next request.
std::int16_t QuietTicks(const LinkState& link) {
  return static_cast<std::int16_t>(link.LinkTimeoutTicks + (link.LinkTimeoutTicks + 3) + 2 +
                                   kPauseTicks + 2 + 4);
}

// Throws away what arrives until nothing has come for QuietTicks. A line that never goes quiet is
// left to the next request, which cannot succeed on it.
void LetLineGoQuiet(Comm& comm, const LinkState& link, const UploadWatcher& watcher) {
  Trapped(link, [&] {
    for (int i = 0; i < kMostLateAnswers && watcher.Running(); ++i) {
      comm.WaitForBytes(QuietTicks(link), 1);
      if (comm.InputCount() == 0) return;
      comm.WaitForBytes(kFrameTailTicks, 0);
      comm.DiscardInput();
    }
  });
}

Verdict AskForBlock(HistoryUpload& upload, LoggerCommands& commands, BlockSink& sink) {
  HistoryUpload::Reply reply{};
  reply[0] = kNothingReceived;
  if (!commands.GetHistoryBlock(upload.NextRequest(), reply))
    return upload.TakeFailure(reply[0] != kNothingReceived);
  if (!upload.LooksLikeACopy(reply)) sink.TakeBlock(reply);
  return upload.TakeBlock(reply);
}

UploadEnd PullBlocks(HistoryUpload& upload, LoggerCommands& commands, Comm& comm,
                     const LinkState& link, const UploadWatcher& watcher, BlockSink& sink) {
  for (;;) {
    switch (AskForBlock(upload, commands, sink)) {
      case Verdict::GoOn:
        watcher.Changed();
        if (upload.MustGoQuiet()) LetLineGoQuiet(comm, link, watcher);
        break;
      case Verdict::AskAgain:
        watcher.Changed();
        comm.WaitForBytes(kPauseTicks, 0);
        break;
      case Verdict::Doubtful:
        LetLineGoQuiet(comm, link, watcher);
        break;
      case Verdict::Complete:
        watcher.Changed();
        return UploadEnd::Complete;
      case Verdict::BufferFull:
        return UploadEnd::BufferFull;
      case Verdict::Failed:
        return UploadEnd::Failed;
    }
    if (!watcher.Running()) return UploadEnd::Cancelled;
  }
}

}  // namespace

UploadEnd PullHistory(HistoryUpload& upload, LoggerCommands& commands, Comm& comm,
                      const LinkState& link, const UploadWatcher& watcher, BlockSink& sink) {
  sink.Begin({.Kind = UploadKind::History, .Promised = upload.TotalRecords()});
  auto failed = qScopeGuard([&sink] { sink.End(UploadEnd::Failed); });
  const UploadEnd end = PullBlocks(upload, commands, comm, link, watcher, sink);
  failed.dismiss();
  sink.End(end);
  return end;
}

}  // namespace tessmar
