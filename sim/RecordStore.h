#pragma once

#include <cstdint>

#include "LineDevice.h"
#include "LoggerOptions.h"
#include "PondModel.h"

namespace tessmar::sim {

/// The stored records of a logger. Records are made when they are asked for: the pond is a function
/// of time, so millions of them take no room.
class RecordStore {
 public:
  /// As many records as the options say, 15 minutes apart, the last at the quarter of an hour
  /// before the clock's start. So many that they would begin before 2000 lie closer together.
  RecordStore(const LoggerOptions& options, const PondModel& pond);

  std::int64_t Count() const { return count_; }
  /// Forgets all records; the next one is due after now, or follows the last one forgotten where
  /// records come on a signal.
  void Clear(CivilSeconds now);
  /// Adds so many records behind the last one.
  void Add(int count) { count_ += count; }
  /// Adds the records whose time has come since the last one.
  void AdvanceTo(CivilSeconds now);

  CivilSeconds TimeOf(std::int64_t index) const { return first_ + index * interval_; }

  /// The stored form of a record: packed time stamp, analog words, pulse words. An index beyond the
  /// last gives what would be stored next.
  void AppendRecord(Bytes& bytes, std::int64_t index) const;

 private:
  const LoggerOptions& options_;
  const PondModel& pond_;
  std::int64_t count_ = 0;
  CivilSeconds first_ = 0;
  CivilSeconds interval_ = 0;
};

/// Appends a number, low byte first.
void AppendNumber(Bytes& bytes, std::uint32_t value, int size);

}  // namespace tessmar::sim
