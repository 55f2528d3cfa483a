#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessmar {

/// Gives every different record a number of its own, so that equal records can be told by comparing
/// two numbers. Records are equal when all their bytes are, time stamp and words alike.
///
/// It keeps no copy of a record: the bytes given to Number must outlive it.
class RecordClasses {
 public:
  /// @param records  about how many records will be given a number; makes room for so many.
  explicit RecordClasses(std::size_t records);

  /// The number of this record, from 0; a record like none before gets the next one.
  std::int32_t Number(std::span<const std::uint8_t> record);

  /// How many different records there are.
  std::int32_t Count() const { return static_cast<std::int32_t>(first_.size()); }

 private:
  /// A place of the table of hashes.
  struct Slot {
    std::uint32_t Tag = 0;  ///< The upper half of the hash.
    std::int32_t Number = kFree;
  };
  static constexpr std::int32_t kFree = -1;

  bool Is(std::int32_t number, std::uint64_t hash, std::span<const std::uint8_t> record) const;
  void Widen();

  std::vector<Slot> slots_;
  std::size_t mask_;
  std::int32_t last_ = kFree;                         ///< The number given last.
  std::vector<std::uint64_t> hashes_;                 ///< Of each number.
  std::vector<std::span<const std::uint8_t>> first_;  ///< The first record of each number.
};

}  // namespace tessmar
