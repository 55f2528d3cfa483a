#include "archive/ImageOrder.h"

#include <algorithm>

#include "archive/ClockCorrection.h"
#include "history/HistoryBuffer.h"
#include "measure/LoggerFacts.h"
#include "measure/Sample.h"

namespace tessmar {

bool MayHaveWrapped(const LoggerSettings& settings, int recordSize, std::int32_t records) {
  // The page that is being written may hold less than the others.
  const std::int32_t full = (kDataPages - 1) * RecordsPerArea(recordSize);
  return settings.DataWrapAroundFlag != 0 && records >= std::min(full, HistoryBuffer::kCapacity);
}

std::int32_t OldestOfImage(const SeriesUpload& image, bool wraps) {
  const std::int32_t count = image.Count();
  if (!wraps || count < 2) return 0;
  const auto time = [&image](std::int32_t place) { return LoggerMilliseconds(image.Stamp(place)); };
  if (time(count - 1) > time(0)) return 0;
  std::int32_t oldest = 0;
  std::int64_t before = time(0);
  for (std::int32_t place = 1; place < count; ++place) {
    const std::int64_t present = time(place);
    if (present < before && oldest != 0) return 0;
    if (present < before) oldest = place;
    before = present;
  }
  return oldest;
}

}  // namespace tessmar
