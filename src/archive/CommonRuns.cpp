#include "archive/CommonRuns.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>

namespace tessmar {
namespace {

/// From here (included) to there (excluded), in the upload and in the series.
struct Range {
  std::int32_t UploadBegin = 0;
  std::int32_t UploadEnd = 0;
  std::int32_t SeriesBegin = 0;
  std::int32_t SeriesEnd = 0;
};

template <typename Value>
Value At(std::span<const Value> values, std::int32_t place) {
  return values[static_cast<std::size_t>(place)];
}

/// All runs that can be prolonged at neither end, and which of the upload's records may start one.
class Runs {
 public:
  explicit Runs(const RunGround& ground) : ground_(ground) {
    starters_.reserve(ground.Upload.size() + 1);
    starters_.push_back(0);
    const auto length = static_cast<std::int32_t>(ground.Upload.size());
    for (std::int32_t place = 0; place < length; ++place) {
      const std::span<const std::int32_t> found = ground.Places(At(ground.Upload, place));
      starters_.push_back(starters_.back() + (found.empty() ? 0 : 1));
      for (const std::int32_t other : found) TakeRunThrough(place, other);
    }
  }

  std::vector<CommonRun>& All() { return runs_; }

  /// The part of a run that lies in a range; nothing when there is none that may stand alone.
  std::optional<CommonRun> Clipped(const CommonRun& run, const Range& range) const {
    const std::int32_t cut =
        std::max({0, range.UploadBegin - run.Upload, range.SeriesBegin - run.Series});
    const std::int32_t end =
        std::min({run.Length, range.UploadEnd - run.Upload, range.SeriesEnd - run.Series});
    if (end <= cut) return std::nullopt;
    const CommonRun part{run.Upload + cut, run.Series + cut, end - cut};
    const auto starters = [this](std::int32_t place) {
      return starters_[static_cast<std::size_t>(place)];
    };
    if (starters(part.UploadEnd()) == starters(part.Upload)) return std::nullopt;
    return part;
  }

 private:
  bool Same(std::int32_t upload, std::int32_t series) const {
    return At(ground_.Upload, upload) == At(ground_.Series, series) && ground_.Allowed(series);
  }

  // On one diagonal, where upload and series go on side by side, runs never overlap.
  void TakeRunThrough(std::int32_t upload, std::int32_t series) {
    const std::int32_t diagonal = series - upload;
    std::int32_t& taken = takenTo_[diagonal];
    if (upload < taken) return;
    const auto uploadSize = static_cast<std::int32_t>(ground_.Upload.size());
    const auto seriesSize = static_cast<std::int32_t>(ground_.Series.size());
    std::int32_t begin = upload;
    while (begin > 0 && begin + diagonal > 0 && Same(begin - 1, begin - 1 + diagonal)) --begin;
    std::int32_t end = upload + 1;
    while (end < uploadSize && end + diagonal < seriesSize && Same(end, end + diagonal)) ++end;
    runs_.push_back({begin, begin + diagonal, end - begin});
    taken = end;
  }

  const RunGround& ground_;
  std::vector<CommonRun> runs_;
  std::vector<std::int32_t> starters_;  ///< How many records before a place may start a run.
  std::unordered_map<std::int32_t, std::int32_t> takenTo_;  ///< By diagonal.
};

bool IsBetter(const CommonRun& a, const CommonRun& b) {
  if (a.Length != b.Length) return a.Length > b.Length;
  if (a.Upload != b.Upload) return a.Upload < b.Upload;
  return a.Series > b.Series;
}

/// A range still to be looked at, with the runs that have a part in it.
struct Task {
  Range Where;
  std::vector<CommonRun> Candidates;
};

Range Before(const CommonRun& run, const Range& range, bool atStart) {
  Range before{range.UploadBegin, run.Upload, range.SeriesBegin, run.Series};
  const std::int32_t reach = 2 * (run.Upload - range.UploadBegin) + kEdgeReach;
  if (atStart) before.SeriesBegin = std::max(before.SeriesBegin, run.Series - reach);
  return before;
}

Range Behind(const CommonRun& run, const Range& range, bool atEnd) {
  Range behind{run.UploadEnd(), range.UploadEnd, run.SeriesEnd(), range.SeriesEnd};
  const std::int32_t reach = 2 * (range.UploadEnd - run.UploadEnd()) + kEdgeReach;
  if (atEnd) behind.SeriesEnd = std::min(behind.SeriesEnd, run.SeriesEnd() + reach);
  return behind;
}

}  // namespace

std::vector<CommonRun> FindCommonRuns(const RunGround& ground) {
  Runs runs(ground);
  const auto uploadSize = static_cast<std::int32_t>(ground.Upload.size());
  const auto seriesSize = static_cast<std::int32_t>(ground.Series.size());
  std::vector<CommonRun> chosen;
  std::vector<Task> tasks;
  if (runs.All().empty()) return chosen;
  tasks.push_back({{0, uploadSize, 0, seriesSize}, std::move(runs.All())});
  while (!tasks.empty()) {
    const Task task = std::move(tasks.back());
    tasks.pop_back();
    const CommonRun best =
        *std::min_element(task.Candidates.begin(), task.Candidates.end(), IsBetter);
    chosen.push_back(best);
    const Range& whole = task.Where;
    for (const Range& part : {Before(best, whole, whole.UploadBegin == 0),
                              Behind(best, whole, whole.UploadEnd == uploadSize)}) {
      Task rest{part, {}};
      for (const CommonRun& run : task.Candidates) {
        if (const auto clipped = runs.Clipped(run, part)) rest.Candidates.push_back(*clipped);
      }
      if (!rest.Candidates.empty()) tasks.push_back(std::move(rest));
    }
  }
  std::sort(chosen.begin(), chosen.end(),
            [](const CommonRun& a, const CommonRun& b) { return a.Upload < b.Upload; });
  return chosen;
}

ContinuationLength FindContinuation(std::span<const std::int32_t> series,
                                    std::span<const std::int32_t> upload) {
  const std::size_t most = std::min(series.size(), upload.size());
  if (most == 0) return {};
  // For each start of the upload the longest shorter one that it also ends with.
  std::vector<std::int32_t> shorter(most, 0);
  std::int32_t matched = 0;
  const auto advance = [&](std::int32_t number) {
    while (matched > 0 && At(upload, matched) != number)
      matched = shorter[static_cast<std::size_t>(matched) - 1];
    if (At(upload, matched) == number) ++matched;
  };
  for (std::size_t i = 1; i < most; ++i) {
    advance(upload[i]);
    shorter[i] = matched;
  }
  matched = 0;
  for (const std::int32_t number : series.last(most)) {
    if (matched == static_cast<std::int32_t>(most)) matched = shorter[most - 1];
    advance(number);
  }
  if (matched == 0) return {};
  return {matched, shorter[static_cast<std::size_t>(matched) - 1]};
}

}  // namespace tessmar
