#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace tessmar {

/// What a number of values come to. Values that are none, not a number, are not counted.
struct Extent {
  double Least = std::numeric_limits<double>::infinity();
  double Greatest = -std::numeric_limits<double>::infinity();
  double Sum = 0;
  std::size_t Count = 0;

  bool Any() const { return Count > 0; }
  double Mean() const { return Sum / static_cast<double>(Count); }
  void Add(double value);
  void Add(const Extent& other);
};

/// Levels of detail of a series: the extents of its buckets of 16 values, of 8 of these buckets,
/// and so on. With them the extent of any range of values takes a few dozen steps, however long it
/// is, and is exact: a single value among 200000 is its greatest at every zoom.
///
/// They know places, not times, so that one build serves every time axis.
class Levels {
 public:
  /// Takes in the values from where the last call ended; values taken in before may not change.
  void Extend(std::span<const double> values);

  /// The extent of values[first] to values[end - 1].
  /// @param values  all those that Extend was given.
  Extent Of(std::span<const double> values, std::size_t first, std::size_t end) const;

 private:
  static constexpr std::size_t kBucket = 16;
  static constexpr std::size_t kFan = 8;

  void Close(std::size_t level);

  std::vector<std::vector<Extent>> levels_;  ///< Whole buckets only.
  std::size_t taken_ = 0;                    ///< Values in whole buckets.
};

}  // namespace tessmar
