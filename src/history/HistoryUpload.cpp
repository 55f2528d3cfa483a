#include "history/HistoryUpload.h"

#include "base/AddedTexts.h"
#include "base/TextTable.h"
#include "measure/Sample.h"

namespace tessmar {

HistoryUpload::HistoryUpload(const LinkState& link, HistoryBuffer& buffer,
                             std::int32_t totalRecords)
    : link_(link),
      buffer_(buffer),
      totalRecords_(totalRecords),
      barMaximum_(totalRecords),
      words_(link.AnalogChannelCount + link.PulseChannelCount),
      recordSize_(RecordSize(link.AnalogChannelCount, link.PulseChannelCount)),
      blockLimit_(RecordsPerArea(recordSize_)) {
  buffer_.Clear();
}

HistoryBlock HistoryUpload::NextRequest() {
  if (now_.FirstRequest) {
    now_.FirstRequest = false;
    asked_ = HistoryBlock::First;
  } else {
    asked_ = now_.FailuresInRow < 1 && !now_.Doubtful ? HistoryBlock::Next : HistoryBlock::Again;
  }
  if (asked_ == HistoryBlock::Next) now_.Rechecked = false;
  return asked_;
}

HistoryUpload::Verdict HistoryUpload::TakeBlock(const Reply& reply) {
  if (reply == lastBlock_) {
    if (const std::optional<Verdict> verdict = JudgeEqual()) return *verdict;
    now_.Believed = true;
  } else if (now_.Listening) {
    // The answer before this one came twice. It may do so again, and then be late.
    lineFails_ = true;
  }
  return Believe(reply);
}

// What to do about a reply that equals the one stored last; nothing: store it.
std::optional<HistoryUpload::Verdict> HistoryUpload::JudgeEqual() {
  switch (asked_) {
    case HistoryBlock::First:
      // From before the upload was begun anew.
      now_.Doubtful = true;
      return Verdict::Doubtful;
    case HistoryBlock::Next:
      if (!lineFails_) {
        now_.Listening = true;
        return Verdict::Listen;
      }
      if (now_.TrustEqualBlocks) return std::nullopt;
      now_.Doubtful = true;
      return Verdict::Doubtful;
    case HistoryBlock::Again:
      break;
  }
  if (now_.Blocks == 0) {
    // Nothing came of the request for the first block.
    now_.FirstUnanswered = true;
    return std::nullopt;
  }
  if (now_.Unanswered || now_.Rechecked) {
    now_.Skipped = true;
    now_.Unanswered = false;
    now_.Doubtful = false;
    now_.FailuresInRow = 0;
    return Verdict::Repeated;
  }
  if (now_.Doubtful) now_.TrustEqualBlocks = true;
  return std::nullopt;
}

HistoryUpload::Verdict HistoryUpload::TakeSilence() {
  now_.Believed = true;
  const Reply reply = *lastBlock_;
  return Believe(reply);
}

HistoryUpload::Verdict HistoryUpload::TakeNoise() {
  if (now_.Listening) {
    now_.Listening = false;
    lineFails_ = true;
    now_.Doubtful = true;
    return Verdict::Doubtful;
  }
  // An answer to the request that seemed lost may have been among it. Asking again tells, once.
  now_.Doubtful = !now_.Rechecked;
  now_.Rechecked = true;
  return Verdict::GoOn;
}

HistoryUpload::Verdict HistoryUpload::Believe(const Reply& reply) {
  mustGoQuiet_ = now_.Unanswered || now_.Doubtful || now_.Rechecked;
  now_.Unanswered = false;
  now_.FailuresInRow = 0;
  now_.Doubtful = false;
  now_.Listening = false;
  now_.Rechecked = false;

  const int count = reply[0];
  if (count > blockLimit_) return Verdict::Failed;
  if (keep_) keep_(reply);
  lastBlock_ = reply;
  ++now_.Blocks;
  if (Store(reply, count)) return Verdict::BufferFull;
  if (barMaximum_ < Count()) barMaximum_ = Count();
  return count < blockLimit_ ? End() : Verdict::GoOn;
}

HistoryUpload::Verdict HistoryUpload::TakeFailure(bool answered) {
  if (!answered) {
    now_.Unanswered = true;
    now_.TrustEqualBlocks = false;
    lineFails_ = true;
    if (asked_ == HistoryBlock::First) now_.FirstUnanswered = true;
  }
  ++now_.FailuresInRow;
  ++totalFailures_;
  return now_.FailuresInRow > kMostFailuresInRow ? Verdict::Failed : Verdict::AskAgain;
}

// The number of records tells whether what had to be guessed was right.
HistoryUpload::Verdict HistoryUpload::End() {
  const bool tooFew = IsShort() && (now_.FirstUnanswered || now_.Skipped);
  // On a good line once: a logger whose blocks are equal, and that has stored more, says the same
  // again.
  const bool mayBeCopies = now_.Believed && (lineFails_ || timesBegunAnew_ == 0);
  const bool tooMany = Count() > totalRecords_ && mayBeCopies;
  if ((!tooFew && !tooMany) || timesBegunAnew_ >= kMostTimesBegunAnew) return Verdict::Complete;
  BeginAnew();
  return Verdict::BegunAnew;
}

void HistoryUpload::BeginAnew() {
  ++timesBegunAnew_;
  now_ = {};
  buffer_.Clear();
  barMaximum_ = totalRecords_;
}

// Gives true when the buffer is full.
bool HistoryUpload::Store(const Reply& reply, int count) {
  for (int k = 0; k < count; ++k) {
    LiveSample record;
    DecodeRecord(link_, reply, k * recordSize_ + 1, words_, record);
    buffer_.Append(record);
    if (buffer_.IsFull()) return true;
  }
  return false;
}

QString UploadEndText(UploadEnd end, std::int32_t count, std::int32_t total) {
  switch (end) {
    case UploadEnd::Complete:
      return {};
    case UploadEnd::BufferFull:
      return GetText(TextId::HistoryBufferFull);
    case UploadEnd::Cancelled:
      return GetText(TextId::RetrievalCancelledHead) + QString::number(count) +
             GetText(TextId::RetrievalCancelledOf) + QString::number(total) +
             GetText(TextId::RetrievalCancelledTail);
    case UploadEnd::Failed:
      break;
  }
  return GetText(TextId::RetrievalErrorHead) + QString::number(count) +
         GetText(TextId::RetrievalErrorOf) + QString::number(total) +
         GetText(TextId::RetrievalErrorTail);
}

QString ShortUploadText(std::int32_t count, std::int32_t total) {
  return GetText(AddedText::UploadShort).arg(count).arg(total);
}

}  // namespace tessmar
