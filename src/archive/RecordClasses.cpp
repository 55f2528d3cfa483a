#include "archive/RecordClasses.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace tessmar {
namespace {

constexpr int kTagShift = 32;
constexpr std::size_t kLeastSlots = 64;

std::uint64_t Mixed(std::uint64_t value) {
  value ^= value >> 32;
  value *= 0xD6E8FEB86659FD93U;
  value ^= value >> 32;
  return value;
}

std::uint64_t HashOf(std::span<const std::uint8_t> record) {
  std::uint64_t hash = record.size();
  for (std::size_t i = 0; i < record.size(); i += sizeof(std::uint64_t)) {
    std::uint64_t piece = 0;
    std::memcpy(&piece, record.data() + i, std::min(sizeof piece, record.size() - i));
    hash = Mixed(hash ^ piece) + 0x9E3779B97F4A7C15U;
  }
  return Mixed(hash);
}

}  // namespace

RecordClasses::RecordClasses(std::size_t records)
    : slots_(std::bit_ceil(std::max(records + records / 4, kLeastSlots))),
      mask_(slots_.size() - 1) {}

bool RecordClasses::Is(std::int32_t number, std::uint64_t hash,
                       std::span<const std::uint8_t> record) const {
  const auto place = static_cast<std::size_t>(number);
  return hashes_[place] == hash && std::ranges::equal(first_[place], record);
}

std::int32_t RecordClasses::Number(std::span<const std::uint8_t> record) {
  const std::uint64_t hash = HashOf(record);
  // Where uploads overlap, one known record follows the other: no look into the table, which is far
  // greater than any cache.
  if (last_ + 1 < Count() && Is(last_ + 1, hash, record)) return ++last_;
  const auto tag = static_cast<std::uint32_t>(hash >> kTagShift);
  std::size_t slot = hash & mask_;
  for (; slots_[slot].Number != kFree; slot = (slot + 1) & mask_) {
    if (slots_[slot].Tag == tag && Is(slots_[slot].Number, hash, record)) {
      last_ = slots_[slot].Number;
      return last_;
    }
  }
  last_ = Count();
  slots_[slot] = {tag, last_};
  hashes_.push_back(hash);
  first_.push_back(record);
  if (first_.size() > slots_.size() / 4 * 3) Widen();
  return last_;
}

void RecordClasses::Widen() {
  slots_.assign(slots_.size() * 2, Slot());
  mask_ = slots_.size() - 1;
  for (std::size_t number = 0; number < hashes_.size(); ++number) {
    std::size_t slot = hashes_[number] & mask_;
    while (slots_[slot].Number != kFree) slot = (slot + 1) & mask_;
    slots_[slot] = {static_cast<std::uint32_t>(hashes_[number] >> kTagShift),
                    static_cast<std::int32_t>(number)};
  }
}

}  // namespace tessmar
