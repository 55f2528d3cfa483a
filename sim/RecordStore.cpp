#include "RecordStore.h"

#include <algorithm>

#include "LoggerSetup.h"

namespace tessmar::sim {
namespace {
constexpr CivilSeconds kQuarterHour = 900;
}

void AppendNumber(Bytes& bytes, std::uint32_t value, int size) {
  for (; size > 0; --size, value >>= 8U) bytes.push_back(static_cast<std::uint8_t>(value));
}

RecordStore::RecordStore(const LoggerOptions& options, const PondModel& pond)
    : options_(options), pond_(pond), count_(options.BlankFlash ? 0 : options.Records) {
  const CivilSeconds last = options.ClockAtStart - options.ClockAtStart % kQuarterHour;
  const std::int64_t room = std::max<std::int64_t>(count_, 1);
  interval_ = std::clamp<CivilSeconds>(last / room, 1, kQuarterHour);
  first_ = last - (room - 1) * interval_;
  if (count_ == 0) first_ = last + interval_;
}

void RecordStore::Clear(CivilSeconds now) {
  first_ = options_.RecordsOnSignal > 0 ? TimeOf(count_) : now - now % interval_ + interval_;
  count_ = 0;
}

void RecordStore::AdvanceTo(CivilSeconds now) {
  if (now < TimeOf(count_)) return;
  count_ += (now - TimeOf(count_)) / interval_ + 1;
}

void RecordStore::AppendRecord(Bytes& bytes, std::int64_t index) const {
  const bool stopped = options_.ClockStopsAt >= 0 && index > options_.ClockStopsAt;
  const CivilSeconds time = TimeOf(stopped ? options_.ClockStopsAt : index);
  const PondReading reading = pond_.At(time);
  AppendNumber(bytes, PackTimeStamp(time), 4);
  for (int channel = 0; channel < options_.AnalogChannels; ++channel)
    AppendNumber(bytes, RawWord(PlanOf(channel, options_.AnalogChannels), reading), 2);
  for (int channel = 0; channel < options_.PulseChannels; ++channel)
    AppendNumber(bytes, static_cast<std::uint32_t>(pond_.Pulses(channel, time - interval_, time)),
                 2);
}

}  // namespace tessmar::sim
