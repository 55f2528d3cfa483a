// What the simulated logger does on each command; SimulatedLogger.cpp has the traffic around it.

#include <algorithm>

#include "LoggerSetup.h"
#include "LoggingState.h"
#include "SimulatedLogger.h"

namespace tessmar::sim {
namespace {

using namespace std::chrono_literals;

constexpr Micros kMeasurementTime = 300ms;
constexpr std::uint8_t kTwelveHourBit = 0x40;
constexpr std::uint8_t kAfternoonBit = 0x20;
constexpr std::uint8_t kTwelveHourDigits = 0x1F;
constexpr std::size_t kBlockSize = 241;
constexpr std::size_t kSampleSize = 24;
constexpr std::size_t kLastAnalogSlot = 18;
constexpr std::size_t kPulseSlots = 20;
constexpr std::size_t kAddressBytes = 3;

std::uint8_t ToPacked(int value) {
  return static_cast<std::uint8_t>(value / 10 * 16 + value % 10);
}

/// Two packed digits; nothing for a half-byte above 9.
std::optional<int> FromPacked(std::uint8_t byte) {
  if ((byte >> 4U) > 9 || (byte & 15U) > 9) return std::nullopt;
  return (byte >> 4U) * 10 + (byte & 15U);
}

std::uint8_t HourByte(int hour, bool twelveHour) {
  if (!twelveHour) return ToPacked(hour);
  const int shown = hour % 12 == 0 ? 12 : hour % 12;
  return static_cast<std::uint8_t>(kTwelveHourBit | (hour >= 12 ? kAfternoonBit : 0) |
                                   ToPacked(shown));
}

std::optional<int> HourOf(std::uint8_t byte) {
  if ((byte & kTwelveHourBit) == 0) return FromPacked(byte);
  const std::optional<int> hour = FromPacked(byte & kTwelveHourDigits);
  if (!hour || *hour < 1 || *hour > 12) return std::nullopt;
  return *hour % 12 + ((byte & kAfternoonBit) != 0 ? 12 : 0);
}

CivilSeconds WholeSeconds(Micros time) {
  return std::chrono::floor<std::chrono::seconds>(time).count();
}

void PutWord(Bytes& bytes, std::size_t offset, std::int64_t value) {
  bytes[offset] = static_cast<std::uint8_t>(value);
  bytes[offset + 1] = static_cast<std::uint8_t>(value >> 8);
}

}  // namespace

CivilSeconds SimulatedLogger::Clock(Micros now) const {
  return clockBase_ + WholeSeconds(now - clockSetAt_);
}

/// Time at the pond, which setting the logger's clock does not change.
CivilSeconds SimulatedLogger::World(Micros now) const {
  return options_.ClockAtStart + WholeSeconds(now);
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::GetClock(Request, Micros now) {
  const CivilTime time = ToCivilTime(Clock(now));
  return Answer{
      {},
      Bytes{ToPacked(time.Second), ToPacked(time.Minute), HourByte(time.Hour, twelveHour_),
            dayOfWeek_, ToPacked(time.Day), ToPacked(time.Month), ToPacked(time.Year % 100)}};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::SetClock(Request request, Micros now) {
  const std::optional<int> second = FromPacked(request[1]);
  const std::optional<int> minute = FromPacked(request[2]);
  const std::optional<int> hour = HourOf(request[3]);
  const std::optional<int> day = FromPacked(request[5]);
  const std::optional<int> month = FromPacked(request[6]);
  const std::optional<int> year = FromPacked(request[7]);
  if (!second || !minute || !hour || !day || !month || !year) return Answer{{kNothingToGive}};
  const CivilTime time{2000 + *year, *month, *day, *hour, *minute, *second};
  if (!IsRealTime(time)) return Answer{{kNothingToGive}};
  clockBase_ = ToCivilSeconds(time);
  clockSetAt_ = now;
  dayOfWeek_ = request[4];
  twelveHour_ = (request[3] & kTwelveHourBit) != 0;
  return Answer{{kCarriedOut}};
}

void SimulatedLogger::ForgetHistory(Micros now) {
  records_.Clear(World(now));
  nextRecord_ = 0;
  lastBlock_.reset();
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::ClearHistory(Request, Micros now) {
  ForgetHistory(now);
  return Answer{{kCarriedOut}};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::InitializeFlash(Request, Micros now) {
  memory_.Erase();
  ForgetHistory(now);
  deafUntil_ = now + eraseTime_;
  return Answer{{kCarriedOut}, std::nullopt, eraseTime_};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::WriteMemory(Request request, Micros) {
  const auto first = static_cast<std::uint32_t>(request[3] + 256 * request[4]);
  const auto last = static_cast<std::uint32_t>(request[5] + 256 * request[6]);
  const Request data = request.subspan(7);
  if (last + 1 != first + data.size()) return std::nullopt;
  const std::uint8_t before = memory_.At(stuckAddress_);
  memory_.Write(first, data);
  const bool touched = stuckAddress_ >= first && stuckAddress_ <= last;
  if (touched && faults_.Strikes(FailureMode::StuckConfigurationByte, request[0]))
    memory_.Write(stuckAddress_, std::span(&before, 1));
  return Answer{};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::ReadMemory(Request request, Micros) {
  const std::size_t count = request[4];
  if (count == 0 || count + kAddressBytes > kLongestPayload) return std::nullopt;
  const auto address =
      static_cast<std::uint32_t>(request[1] + 256 * request[2] + 65536 * request[3]);
  Bytes reply(request.begin() + 1, request.begin() + 1 + kAddressBytes);
  const Bytes data = memory_.Read(address, count);
  reply.insert(reply.end(), data.begin(), data.end());
  return Answer{{}, reply};
}

void SimulatedLogger::FinishMeasurement(Micros now) {
  if (!measuringUntil_ || now < *measuringUntil_) return;
  sample_ = Measure(*measuringUntil_);
  measuringUntil_.reset();
}

/// The 24 bytes of a live sample. The last analog channel stands in the last slot, whatever their
/// number; places of channels that the logger lacks are 0.
Bytes SimulatedLogger::Measure(Micros now) const {
  Bytes bytes;
  AppendNumber(bytes, PackTimeStamp(Clock(now)), 4);
  bytes.resize(kSampleSize, 0);
  const PondReading reading = pond_.At(World(now));
  const auto word = [&](int channel) {
    return RawWord(PlanOf(channel, options_.AnalogChannels), reading);
  };
  for (int channel = 0; channel < options_.AnalogChannels; ++channel)
    PutWord(bytes, 4 + 2 * static_cast<std::size_t>(channel), word(channel));
  if (options_.AnalogChannels > 1 && options_.AnalogChannels < 8)
    PutWord(bytes, 4 + 2 * static_cast<std::size_t>(options_.AnalogChannels - 1), 0);
  PutWord(bytes, kLastAnalogSlot, word(options_.AnalogChannels - 1));
  for (int channel = 0; channel < options_.PulseChannels; ++channel)
    PutWord(bytes, kPulseSlots + 2 * static_cast<std::size_t>(channel),
            pond_.Pulses(channel, pulsesSince_, World(now)));
  return bytes;
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::StartMeasurement(Request, Micros now) {
  FinishMeasurement(now);
  measuringUntil_ = now + kMeasurementTime;
  return Answer{{kCarriedOut}};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::GetSample(Request, Micros now) {
  FinishMeasurement(now);
  if (!sample_) return Answer{{kNothingToGive}};
  return Answer{{kReceived}, sample_};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::Commit(Request request, Micros) {
  if (faults_.Strikes(FailureMode::CommitRefused, request[0])) return Answer{{kNothingToGive}};
  ++commits_;
  return Answer{{kCarriedOut}};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::GetStatus(Request, Micros now) {
  Bytes reply;
  AppendNumber(reply, static_cast<std::uint32_t>(records_.Count()), 3);
  AppendNumber(reply, StatusWord(memory_, Clock(now)), 2);
  return Answer{{}, reply};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::GetBlock(Request request, Micros) {
  enum : std::uint8_t { kFirst = 0, kNext = 1, kAgain = 2 };
  const std::uint8_t which = request[1];
  if (which > kAgain) return std::nullopt;
  if (which == kFirst || !lastBlock_) nextRecord_ = 0;
  if (which == kAgain && lastBlock_) nextRecord_ = *lastBlock_;
  lastBlock_ = nextRecord_;

  const std::int64_t stored = records_.Count() + faults_.RecordsTooMany();
  const std::int64_t limit = RecordsPerBlock(options_);
  const std::int64_t count = std::clamp<std::int64_t>(stored - nextRecord_, 0, limit);
  Bytes reply;
  reply.reserve(kBlockSize);
  reply.push_back(static_cast<std::uint8_t>(count));
  for (std::int64_t record = 0; record < count; ++record)
    records_.AppendRecord(reply, nextRecord_ + record);
  nextRecord_ += count;
  reply.resize(kBlockSize, LoggerMemory::kErased);
  if (faults_.Strikes(FailureMode::IllegalBlockCount, request[0]))
    reply[0] = static_cast<std::uint8_t>(limit + 1);
  return Answer{{}, reply};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::ResetPulses(Request, Micros now) {
  pulsesSince_ = World(now);
  return Answer{{kCarriedOut}};
}

std::optional<SimulatedLogger::Answer> SimulatedLogger::GetVersion(Request request, Micros) {
  constexpr int kTooManyChannels = 9;
  const bool illegal = faults_.Strikes(FailureMode::IllegalVersion, request[0]);
  const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
  return Answer{
      {},
      Bytes{byte(options_.Firmware), byte(illegal ? kTooManyChannels : options_.AnalogChannels),
            byte(options_.PulseChannels), byte(options_.SampleOnDemand ? 1 : 0),
            byte(options_.ModelCode), 0, 0, 0}};
}

}  // namespace tessmar::sim
