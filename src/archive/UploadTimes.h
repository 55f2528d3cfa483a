#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "archive/Store.h"
#include "measure/Sample.h"

namespace tessmar {

/// The corrected times of one upload's records by themselves: by the readings of the logger's clock
/// at all of its uploads. See CorrectedTimes.
///
/// @param samples  the records of the upload.
/// @return for each of them milliseconds since the beginning of 1970, UTC, or kNoCorrectedTime.
std::vector<std::int64_t> CorrectedTimesOf(const Store& store, const UploadRow& upload,
                                           std::span<const LiveSample> samples);

}  // namespace tessmar
