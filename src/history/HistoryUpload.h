#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>

#include "history/HistoryBuffer.h"
#include "link/LinkState.h"
#include "link/cmd.h"

namespace tessmar {

/// How an upload ended.
enum class UploadEnd {
  Complete,    ///< The logger has no more records.
  BufferFull,  ///< HistoryBuffer took its last record; the logger may have more.
  Cancelled,   ///< The operator stopped it.
  Failed,      ///< Too many failures in a row, or a block that cannot be.
};

/// The bookkeeping of one upload: which block to ask for, what is counted, when it is over.
/// Passive: it has no window, no timer and no port, and is told what came of each request.
class HistoryUpload {
 public:
  /// So many failures in a row are borne; the next one ends the upload.
  static constexpr std::int16_t kMostFailuresInRow = 100;
  /// So often an upload is begun anew; after that it ends with what has come.
  static constexpr int kMostTimesBegunAnew = 5;

  using Reply = std::array<std::uint8_t, kHistoryReplySize>;

  /// What became of a request.
  enum class Verdict {
    GoOn,        ///< Ask for the next block.
    AskAgain,    ///< Wait a little, then ask for the same block again.
    Listen,      ///< Another answer may follow unasked: listen, then TakeBlock, TakeSilence or
                 ///< TakeNoise.
    Doubtful,    ///< Not stored: let the line go quiet, then ask again.
    Repeated,    ///< Not stored: let the line go quiet; if it was not, TakeNoise. Then go on.
    BegunAnew,   ///< Nothing is stored any more: let the line go quiet, then ask from the first
                 ///< block.
    Complete,    ///< Over: the last block has arrived.
    BufferFull,  ///< Over: no room for more.
    Failed,      ///< Over: too many failures, or an impossible count.
  };

  /// Empties the buffer. The shape of the records is that of the channel counts as they are now.
  /// @param totalRecords  what the logger says it has.
  HistoryUpload(const LinkState& link, HistoryBuffer& buffer, std::int32_t totalRecords);

  /// Takes each reply that is stored, in order and before its records are decoded, the one without
  /// records at the end too. After BegunAnew they come once more from the first.
  void KeepWith(std::function<void(const Reply&)> keep) { keep_ = std::move(keep); }

  /// The block to ask for now. The very first request of an upload, and of one begun anew, asks for
  /// the first block, and none after it.
  HistoryBlock NextRequest();

  /// Decodes and stores the records of a good reply, unless it is an answer that was there already.
  ///
  /// Blocks carry no number, but their time stamps move on, so that a reply that equals the block
  /// stored last, to the byte, is one of these:
  /// - the answer to "next" on a line without a failure: a second copy of the last answer, with the
  ///   true one behind it, or an equal block. Listen decides, without a request.
  /// - the answer to "next" once a request went without an answer: most likely a late copy. It is
  ///   Doubtful; a logger that insists on it is believed.
  /// - the answer to "again" after a request without any answer: the request was lost, and the
  ///   logger repeats itself. It is Repeated, and the next block is due.
  ///
  /// A guess that was wrong shows in the number of records at the end, and so does a first request
  /// that was lost: then the logger repeats a block of an upload before this one, and goes on from
  /// there. An upload that ends so is begun anew, a few times at most.
  Verdict TakeBlock(const Reply& reply);

  /// After Listen: nothing has come, so the logger has given two equal blocks in a row.
  Verdict TakeSilence();
  /// After Listen or Repeated: something has come that is no answer.
  Verdict TakeNoise();

  /// Counts a request without a good reply.
  /// @param answered  a part of a reply was seen, so that no answer to this request is to come.
  Verdict TakeFailure(bool answered);

  /// After a stored block: answers to earlier requests may still be on their way, and the line has
  /// to go quiet before the next request.
  bool MustGoQuiet() const { return mustGoQuiet_; }
  /// Two equal blocks in a row were believed.
  bool BelievesEqualBlocks() const { return now_.Believed; }

  std::int32_t Count() const { return buffer_.Count(); }
  std::int32_t TotalRecords() const { return totalRecords_; }
  /// Fewer records than the logger said it has.
  bool IsShort() const { return Count() < totalRecords_; }
  /// The end of the progress bar: grows when more records come than were promised.
  std::int32_t BarMaximum() const { return barMaximum_; }
  /// Of the whole upload, also of what was begun anew.
  std::int32_t TotalFailures() const { return totalFailures_; }
  int TimesBegunAnew() const { return timesBegunAnew_; }

 private:
  std::optional<Verdict> JudgeEqual();
  Verdict Believe(const Reply& reply);
  bool Store(const Reply& reply, int count);
  Verdict End();
  void BeginAnew();

  /// What is known since the upload was begun, or begun anew.
  struct Attempt {
    bool FirstRequest = true;      ///< Nothing was asked for yet.
    bool FirstUnanswered = false;  ///< The first request went without any answer.
    bool Skipped = false;          ///< A reply was taken for a repetition.
    bool Believed = false;         ///< A reply that equals the one before it was stored.
    int Blocks = 0;
    std::int16_t FailuresInRow = 0;
    bool Unanswered = false;  ///< Since the last block a request went without any answer.
    bool Doubtful = false;    ///< A doubtful block is being asked for again.
    bool Listening = false;   ///< The last reply is not stored until it is known what follows.
    bool Rechecked = false;   ///< A repetition was asked for again, as the line was not quiet.
    bool TrustEqualBlocks = false;
  };

  const LinkState& link_;
  HistoryBuffer& buffer_;
  std::int32_t totalRecords_;
  std::int32_t barMaximum_;
  int words_;
  int recordSize_;
  int blockLimit_;
  std::function<void(const Reply&)> keep_;

  Attempt now_;
  HistoryBlock asked_ = HistoryBlock::First;
  std::optional<Reply> lastBlock_;  ///< The reply stored last, also before the upload began anew.
  bool lineFails_ = false;  ///< A request has gone without any answer, or an answer came twice.
  bool mustGoQuiet_ = false;
  std::int32_t totalFailures_ = 0;
  int timesBegunAnew_ = 0;
};

/// The text that reports an upload's end, put together from its pieces in the current language;
/// empty for an end that is shown without a message box.
QString UploadEndText(UploadEnd end, std::int32_t count, std::int32_t total);

/// What is said of an upload that is complete with fewer records than the logger promised.
QString ShortUploadText(std::int32_t count, std::int32_t total);

}  // namespace tessmar
