#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "FailureMode.h"
#include "FrameCodec.h"
#include "LineDevice.h"
#include "LoggerMemory.h"
#include "LoggerOptions.h"
#include "PondModel.h"
#include "RecordStore.h"
#include "WireTiming.h"

namespace tessmar::sim {

/// A logger at a pond: answers the handshake letters and every command, and fails on demand.
///
/// A request that is malformed, unknown or without its guard bytes is not answered at all.
class SimulatedLogger final : public LineDevice {
 public:
  explicit SimulatedLogger(const LoggerOptions& options = {});
  SimulatedLogger(const SimulatedLogger&) = delete;
  SimulatedLogger& operator=(const SimulatedLogger&) = delete;

  void Receive(std::span<const std::uint8_t> bytes, Micros now) override;
  std::vector<Output> TakeOutput() override { return wire_.Take(); }

  /// LoggerOptions::RecordsOnSignal records more. They follow the last ones 15 minutes apart,
  /// whatever the clock says and whether or not the history was cleared between, so that every one
  /// has a stamp of its own and a hole in them shows.
  void TimePassed() override { records_.Add(options_.RecordsOnSignal); }

  /// Adds a fault to those in force.
  void AddFault(const Fault& fault) { faults_.Add(fault); }
  void AddFault(FailureMode mode) { faults_.Add({.Mode = mode}); }
  /// The logger works again.
  void ClearFaults() { faults_.Clear(); }

  /// The address that StuckConfigurationByte keeps as it is; the low byte of the sampling interval
  /// unless set.
  void SetStuckAddress(std::uint32_t address) { stuckAddress_ = address; }
  void SetPastHandshake(bool deaf) { options_.PastHandshake = deaf; }
  /// How long InitializeFlash takes; 2 seconds unless set. The logger is deaf meanwhile.
  void SetEraseTime(Micros time) { eraseTime_ = time; }

  const LoggerOptions& Options() const { return options_; }
  LoggerMemory& Memory() { return memory_; }
  const RecordStore& Records() const { return records_; }
  /// Good frames with this opcode that have reached the logger.
  int Requests(std::uint8_t opcode) const { return requests_[opcode]; }
  /// Times that a commit was carried out.
  int Commits() const { return commits_; }
  /// The logger's clock at a time of the caller's.
  CivilSeconds Clock(Micros now) const;

 private:
  using Request = std::span<const std::uint8_t>;

  /// What follows the acknowledge: status bytes, then a reply frame.
  struct Answer {
    Bytes Status;
    std::optional<Bytes> Reply = std::nullopt;
    Micros WorkTime{};  ///< Between the acknowledge and the rest.
  };

  struct Command {
    std::array<std::uint8_t, 7> Start;  ///< Opcode, guard bytes and constants.
    std::size_t StartLength;
    std::size_t Least;  ///< Length of the whole payload.
    std::size_t Most;
    /// Nothing: the request makes no sense and is not answered.
    std::optional<Answer> (SimulatedLogger::*Execute)(Request request, Micros now);
  };
  static const std::array<Command, 13> kCommands;

  void OnLetter(std::uint8_t letter, Micros now);
  void OnRequest(Request request, Micros now);
  void Hold(const Bytes& acknowledge, const Bytes& rest);
  void ReleaseHeld(Micros now);
  void Reply(const Answer& answer, std::uint8_t opcode, Micros now);
  Bytes AcknowledgeBytes(std::uint8_t opcode);
  Bytes RestBytes(const Answer& answer, std::uint8_t opcode);
  Bytes ReplyBytes(const Bytes& payload, std::uint8_t opcode);
  void DamageFrame(Bytes& frame, std::uint8_t opcode);

  std::optional<Answer> GetClock(Request request, Micros now);
  std::optional<Answer> SetClock(Request request, Micros now);
  std::optional<Answer> ClearHistory(Request request, Micros now);
  std::optional<Answer> InitializeFlash(Request request, Micros now);
  std::optional<Answer> WriteMemory(Request request, Micros now);
  std::optional<Answer> ReadMemory(Request request, Micros now);
  std::optional<Answer> StartMeasurement(Request request, Micros now);
  std::optional<Answer> GetSample(Request request, Micros now);
  std::optional<Answer> Commit(Request request, Micros now);
  std::optional<Answer> GetStatus(Request request, Micros now);
  std::optional<Answer> GetBlock(Request request, Micros now);
  std::optional<Answer> ResetPulses(Request request, Micros now);
  std::optional<Answer> GetVersion(Request request, Micros now);

  CivilSeconds World(Micros now) const;
  void ForgetHistory(Micros now);
  void FinishMeasurement(Micros now);
  Bytes Measure(Micros now) const;

  LoggerOptions options_;
  PondModel pond_;
  RecordStore records_;
  LoggerMemory memory_;
  FaultPlan faults_;
  WireTiming wire_;
  FrameReceiver receiver_;

  CivilSeconds clockBase_;  ///< Clock at clockSetAt_.
  Micros clockSetAt_{};
  bool twelveHour_;
  std::uint8_t dayOfWeek_ = 1;

  std::optional<Bytes> sample_;           ///< Of the last finished measurement.
  std::optional<Micros> measuringUntil_;  ///< A measurement is under way.
  CivilSeconds pulsesSince_;

  std::int64_t nextRecord_ = 0;
  std::optional<std::int64_t> lastBlock_;  ///< First record of the block sent last.

  Micros eraseTime_{2'000'000};
  Micros deafUntil_{};
  std::uint32_t stuckAddress_;
  Bytes held_;  ///< Answers that wait for the next request.
  std::array<int, 256> requests_{};
  int commits_ = 0;
};

}  // namespace tessmar::sim
