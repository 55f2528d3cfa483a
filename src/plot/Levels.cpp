#include "plot/Levels.h"

#include <algorithm>

namespace tessmar {
namespace {

Extent ExtentOf(std::span<const double> values) {
  Extent extent;
  for (const double value : values) extent.Add(value);
  return extent;
}

}  // namespace

// Comparisons with what is not a number are false, so that nothing has to be asked first.
void Extent::Add(double value) {
  Least = value < Least ? value : Least;
  Greatest = value > Greatest ? value : Greatest;
  const bool counts = value == value;
  Sum += counts ? value : 0;
  Count += counts ? 1 : 0;
}

void Extent::Add(const Extent& other) {
  Least = std::min(Least, other.Least);
  Greatest = std::max(Greatest, other.Greatest);
  Sum += other.Sum;
  Count += other.Count;
}

void Levels::Extend(std::span<const double> values) {
  if (levels_.empty()) levels_.emplace_back();
  while (taken_ + kBucket <= values.size()) {
    levels_[0].push_back(ExtentOf(values.subspan(taken_, kBucket)));
    taken_ += kBucket;
    for (std::size_t level = 0; levels_[level].size() % kFan == 0; ++level) Close(level);
  }
}

// Makes the bucket above the last ones of a level.
void Levels::Close(std::size_t level) {
  if (levels_.size() == level + 1) levels_.emplace_back();
  Extent extent;
  const std::vector<Extent>& below = levels_[level];
  for (std::size_t i = below.size() - kFan; i < below.size(); ++i) extent.Add(below[i]);
  levels_[level + 1].push_back(extent);
}

Extent Levels::Of(std::span<const double> values, std::size_t first, std::size_t end) const {
  const std::size_t wholeFirst = (first + kBucket - 1) / kBucket;
  const std::size_t wholeEnd = std::min(end, taken_) / kBucket;
  if (wholeFirst >= wholeEnd) return ExtentOf(values.subspan(first, end - first));

  Extent extent = ExtentOf(values.subspan(first, wholeFirst * kBucket - first));
  extent.Add(ExtentOf(values.subspan(wholeEnd * kBucket, end - wholeEnd * kBucket)));
  // Both ends move inwards to whole buckets of the next level, as far as there are some.
  std::size_t from = wholeFirst;
  std::size_t to = wholeEnd;
  for (std::size_t level = 0; from < to; ++level) {
    const std::vector<Extent>& buckets = levels_[level];
    const bool top = level + 1 == levels_.size();
    while (from < to && (top || from % kFan != 0)) extent.Add(buckets[from++]);
    while (from < to && to % kFan != 0) extent.Add(buckets[--to]);
    from /= kFan;
    to /= kFan;
  }
  return extent;
}

}  // namespace tessmar
