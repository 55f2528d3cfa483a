#include "history/HistoryUpload.h"

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
  if (firstRequest_) {
    firstRequest_ = false;
    asked_ = HistoryBlock::First;
  } else {
    asked_ = failuresInRow_ < 1 && !doubted_ ? HistoryBlock::Next : HistoryBlock::Again;
  }
  return asked_;
}

HistoryUpload::Verdict HistoryUpload::TakeBlock(const Reply& reply) {
  if (LooksLikeACopy(reply)) {
    doubted_ = true;
    return Verdict::Doubtful;
  }
  failuresInRow_ = 0;
  if (doubted_ && reply == lastBlock_) trustEqualBlocks_ = true;
  doubted_ = false;
  mustGoQuiet_ = unanswered_;
  unanswered_ = false;

  const int count = reply[0];
  if (count == 0) return Verdict::Complete;
  if (count > blockLimit_) return Verdict::Failed;
  const bool full = Store(reply, count);
  if (barMaximum_ < Count()) barMaximum_ = Count();
  if (full) return Verdict::BufferFull;
  return count < blockLimit_ ? Verdict::Complete : Verdict::GoOn;
}

HistoryUpload::Verdict HistoryUpload::TakeFailure(bool answered) {
  if (!answered) {
    unanswered_ = true;
    trustEqualBlocks_ = false;
  }
  ++failuresInRow_;
  ++totalFailures_;
  return failuresInRow_ > kMostFailuresInRow ? Verdict::Failed : Verdict::AskAgain;
}

bool HistoryUpload::LooksLikeACopy(const Reply& reply) const {
  return asked_ == HistoryBlock::Next && !trustEqualBlocks_ && reply == lastBlock_;
}

// Gives true when the buffer is full.
bool HistoryUpload::Store(const Reply& reply, int count) {
  lastBlock_ = reply;
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

}  // namespace tessmar
