#include "history/PullHistory.h"

#include <QScopeGuard>

#include <algorithm>
#include <limits>
#include <optional>

#include "base/Fault.h"

namespace tessmar {
namespace {

using Verdict = HistoryUpload::Verdict;

/// Between a failure and the next request, for late bytes to die away.
constexpr std::int16_t kPauseTicks = 5;
/// For the rest of an answer whose first bytes have come.
constexpr std::int16_t kFrameTailTicks = 3;
/// For an answer that follows another on its heels, from a logger that gives equal blocks.
constexpr std::int16_t kShortListenTicks = 2;
/// No block begins with this count, so a reply buffer that no longer does was written to.
constexpr std::uint8_t kNothingReceived = 0xFF;

// Answers to several tries come as far apart as the tries were: a wait for the acknowledge, one for
// the reply, the flush of what came, the pause, and the purges ahead of the next request.
std::int16_t QuietTicks(const LinkState& link) {
  const int ticks = link.LinkTimeoutTicks + (link.LinkTimeoutTicks + 3) + 2 + kPauseTicks + 2 + 4;
  return static_cast<std::int16_t>(std::min<int>(ticks, std::numeric_limits<std::int16_t>::max()));
}

/// One upload on the line.
class Puller {
 public:
  Puller(HistoryUpload& upload, LoggerCommands& commands, Comm& comm, const LinkState& link,
         const UploadWatcher& watcher, BlockSink& sink)
      : upload_(upload),
        commands_(commands),
        comm_(comm),
        link_(link),
        watcher_(watcher),
        sink_(sink) {}

  UploadEnd Pull() {
    while (true) {
      std::optional<Verdict> verdict = AskForBlock();
      while (verdict == Verdict::Listen) verdict = Listen();
      if (!verdict) return UploadEnd::Cancelled;
      if (const std::optional<UploadEnd> end = Follow(*verdict)) return *end;
      if (!watcher_.Running()) return UploadEnd::Cancelled;
    }
  }

 private:
  // Gives nothing when the upload was cancelled in the middle of it.
  std::optional<Verdict> AskForBlock() {
    HistoryUpload::Reply reply{};
    reply[0] = kNothingReceived;
    if (commands_.GetHistoryBlock(upload_.NextRequest(), reply)) return upload_.TakeBlock(reply);
    if (!watcher_.Running()) return std::nullopt;
    return upload_.TakeFailure(reply[0] != kNothingReceived);
  }

  // An answer that comes unasked follows at once, or within the time that a logger has for one.
  std::optional<Verdict> Listen() {
    const WaitTold told(watcher_);
    HistoryUpload::Reply reply{};
    const std::int16_t ticks =
        upload_.BelievesEqualBlocks() ? kShortListenTicks : link_.LinkTimeoutTicks;
    const int first = comm_.ReadByte(ticks);
    if (first == kAcknowledge && comm_.ReceiveFrame(reply)) return upload_.TakeBlock(reply);
    if (!watcher_.Running()) return std::nullopt;
    const bool silent = first < 0 && comm_.IsPortOpen();
    return silent ? upload_.TakeSilence() : upload_.TakeNoise();
  }

  // Does what a verdict asks for; gives the end that it may be.
  std::optional<UploadEnd> Follow(Verdict verdict) {
    switch (verdict) {
      case Verdict::GoOn:
        watcher_.Changed();
        if (upload_.MustGoQuiet()) LetLineGoQuiet();
        return std::nullopt;
      case Verdict::AskAgain:
        watcher_.Changed();
        comm_.WaitForBytes(kPauseTicks, 0);
        return std::nullopt;
      case Verdict::Listen:
        return std::nullopt;
      case Verdict::BegunAnew:
        sink_.BeginAnew();
        watcher_.Changed();
        LetLineGoQuiet();
        return std::nullopt;
      case Verdict::Doubtful:
        LetLineGoQuiet();
        return std::nullopt;
      case Verdict::Repeated:
        if (!LetLineGoQuiet()) upload_.TakeNoise();
        return std::nullopt;
      case Verdict::Complete:
        watcher_.Changed();
        return UploadEnd::Complete;
      case Verdict::BufferFull:
        return UploadEnd::BufferFull;
      case Verdict::Failed:
        break;
    }
    return UploadEnd::Failed;
  }

  // Throws away what arrives for one quiet time, however much that is. A line that never goes quiet
  // is left to the next request, which cannot succeed on it. Gives false when something has come.
  bool LetLineGoQuiet() {
    const WaitTold told(watcher_);
    bool quiet = true;
    Trapped(link_, [&] {
      for (int left = QuietTicks(link_); left > 0 && watcher_.Running();) {
        comm_.WaitForBytes(static_cast<std::int16_t>(left), 1);
        if (comm_.InputCount() == 0) return;
        quiet = false;
        left = link_.WaitTicks;
        const int tail = std::min<int>(left, kFrameTailTicks);
        if (tail > 0) comm_.WaitForBytes(static_cast<std::int16_t>(tail), 0);
        left -= tail;
        comm_.DiscardInput();
      }
    });
    return quiet;
  }

  /// Tells the watcher of a wait while it lasts.
  class WaitTold {
   public:
    explicit WaitTold(const UploadWatcher& watcher) : watcher_(watcher) { Tell(true); }
    ~WaitTold() { Tell(false); }
    WaitTold(const WaitTold&) = delete;
    WaitTold& operator=(const WaitTold&) = delete;

   private:
    void Tell(bool waits) const {
      if (watcher_.Waiting) watcher_.Waiting(waits);
    }
    const UploadWatcher& watcher_;
  };

  HistoryUpload& upload_;
  LoggerCommands& commands_;
  Comm& comm_;
  const LinkState& link_;
  const UploadWatcher& watcher_;
  BlockSink& sink_;
};

}  // namespace

UploadEnd PullHistory(HistoryUpload& upload, LoggerCommands& commands, Comm& comm,
                      const LinkState& link, const UploadWatcher& watcher, BlockSink& sink) {
  const WaitsWhile running(comm, watcher.Running);
  sink.Begin({.Kind = UploadKind::History, .Promised = upload.TotalRecords()});
  auto failed = qScopeGuard([&sink] { sink.End(UploadEnd::Failed); });
  upload.KeepWith([&sink](const HistoryUpload::Reply& reply) { sink.TakeBlock(reply); });
  const auto keptNoMore = qScopeGuard([&upload] { upload.KeepWith({}); });
  const UploadEnd end = Puller(upload, commands, comm, link, watcher, sink).Pull();
  failed.dismiss();
  sink.End(end);
  return end;
}

}  // namespace tessmar
