#include "archive/JournalQueue.h"

#include <algorithm>

#include "archive/RecordMaker.h"

namespace tessmar {

std::int32_t KeptUpload::RecordsOf(std::size_t first, std::size_t last) const {
  std::int32_t records = 0;
  for (std::size_t i = first; i < last; ++i)
    records += RecordsOfBlock(BytesOf(Blocks[i]), Row.Analog, Row.Pulse);
  return records;
}

bool JournalQueue::IsUnwritten() const {
  return !Events.empty() ||
         std::any_of(Uploads.begin(), Uploads.end(),
                     [](const KeptUpload& upload) { return !upload.IsWritten(); });
}

KeptUpload* JournalQueue::NextToFill() {
  const auto found = std::find_if(Uploads.begin(), Uploads.end(), [](const KeptUpload& upload) {
    return upload.End && upload.IsWritten();
  });
  return found == Uploads.end() ? nullptr : &*found;
}

void JournalQueue::ForgetWritten() {
  std::erase_if(Uploads, [](const KeptUpload& upload) { return upload.Recovered; });
  for (KeptUpload& upload : Uploads) {
    upload.Row.Id = 0;
    upload.Written = 0;
  }
}

}  // namespace tessmar
