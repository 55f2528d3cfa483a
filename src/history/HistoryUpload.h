#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <span>

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

  using Reply = std::array<std::uint8_t, kHistoryReplySize>;

  /// What became of a request.
  enum class Verdict {
    GoOn,        ///< Ask for the next block.
    AskAgain,    ///< Wait a little, then ask for the same block again.
    Doubtful,    ///< Looks like a copy of the last answer: see TakeBlock.
    Complete,    ///< Over: the last block has arrived.
    BufferFull,  ///< Over: no room for more.
    Failed,      ///< Over: too many failures, or an impossible count.
  };

  /// Empties the buffer. The shape of the records is that of the channel counts as they are now.
  /// @param totalRecords  what the logger says it has; only shown.
  HistoryUpload(const LinkState& link, HistoryBuffer& buffer, std::int32_t totalRecords);

  /// The block to ask for now. The very first request asks for the first block, and never again.
  HistoryBlock NextRequest();

  /// True for a good reply that TakeBlock is going to find doubtful.
  bool LooksLikeACopy(const Reply& reply) const;

  /// Decodes and stores the records of a good reply.
  ///
  /// The time stamps move on, so no block equals the one before it. When the answer to "next" does,
  /// to the byte, it is most likely a late or second copy of the last answer, and the block that
  /// was asked for is still to come: it is doubtful and not stored. The line has to go quiet, and
  /// the block is asked for again. If the logger then still gives the same bytes they are stored,
  /// and equal blocks are believed from there on, until a request goes unanswered.
  Verdict TakeBlock(const Reply& reply);

  /// Counts a request without a good reply.
  /// @param answered  a part of a reply was seen, so that no answer to this request is to come.
  Verdict TakeFailure(bool answered);

  /// After a stored block: answers to earlier requests may still be on their way, and the line has
  /// to go quiet before the next request.
  bool MustGoQuiet() const { return mustGoQuiet_; }

  std::int32_t Count() const { return buffer_.Count(); }
  std::int32_t TotalRecords() const { return totalRecords_; }
  /// The end of the progress bar: grows when more records come than were promised.
  std::int32_t BarMaximum() const { return barMaximum_; }
  std::int32_t TotalFailures() const { return totalFailures_; }

 private:
  bool Store(const Reply& reply, int count);

  const LinkState& link_;
  HistoryBuffer& buffer_;
  std::int32_t totalRecords_;
  std::int32_t barMaximum_;
  int words_;
  int recordSize_;
  int blockLimit_;
  bool firstRequest_ = true;
  std::int16_t failuresInRow_ = 0;
  std::int32_t totalFailures_ = 0;

  HistoryBlock asked_ = HistoryBlock::First;
  Reply lastBlock_{};         ///< The block stored last.
  bool unanswered_ = false;   ///< Since the last block a request went without any answer.
  bool mustGoQuiet_ = false;  ///< The last block came after such a request.
  bool doubted_ = false;      ///< A doubtful block is being asked for again.
  bool trustEqualBlocks_ = false;
};

/// The text that reports an upload's end, put together from its pieces in the current language;
/// empty for an end that is shown without a message box.
QString UploadEndText(UploadEnd end, std::int32_t count, std::int32_t total);

}  // namespace tessmar
