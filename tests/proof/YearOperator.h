#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "proof/ProgramCore.h"
#include "sim/SimulatedLogger.h"
#include "sim/SimulatedModem.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {

/// What was done and met, for the figures.
struct YearTally {
  int Sessions = 0;
  int Refused = 0;   ///< Attempts to connect that came to nothing.
  int Nameless = 0;  ///< Sessions in which the logger's settings could not be read at first.
  int PulledOut = 0;
  int Uploads = 0;
  int Complete = 0;
  int Short = 0;  ///< Complete, and said to have fewer records than promised.
  int BrokenOff = 0;
  int Cleared = 0;
  int Programmed = 0;
  int ClockSet = 0;
  int EraseOffered = 0;  ///< The logger looked blank; the operator does not have it erased.
  std::int64_t Samples = 0;
  std::int64_t SamplesOff = 0;  ///< Not at their due time.
  std::int64_t Lost = 0;
  std::int64_t Twice = 0;
  std::int64_t Wrong = 0;
  int LongestBusy = 0;  ///< Ticks in a row in which the link was held.
  int LeftBusy = 0;     ///< Actions after which it was still held, or something else stayed on.
};

/// Somebody who works the program with one logger, at random, in virtual time.
class YearOperator {
 public:
  YearOperator(const QString& archive, std::uint32_t seed);
  YearOperator(const YearOperator&) = delete;
  YearOperator& operator=(const YearOperator&) = delete;

  /// A day with one to three sessions. It ends without a connection, with all in the archive.
  void LiveThroughDay();
  /// Uploads everything on a good line, so that the archive has all that the logger stored.
  void UploadAtLast();

  const YearTally& Tally() const { return tally_; }
  /// Packed times of the records that were uploaded whole, over all clearings, in order.
  const std::vector<std::uint32_t>& RecordTimes() const { return recordTimes_; }
  /// Packed times of all samples that continuous sampling showed, in order.
  const std::vector<std::uint32_t>& SampleTimes() const { return sampleTimes_; }
  ProgramCore& Core() { return core_; }

 private:
  int Any(int end) { return static_cast<int>(luck_() % static_cast<std::uint32_t>(end)); }
  bool Chance(int percent) { return Any(100) < percent; }

  void RunUntil(qint64 ms);
  void WatchTick();
  void TakeSample();
  void PlugIn(bool modem);
  void AddFaults();
  void RunSession();
  bool ConnectAndRead(bool modem);
  void Act();
  void CheckRest();
  void SampleForAWhile();
  void UploadHistory(bool mayBreakOff);
  void CheckWhole();
  std::string StoredAt(std::size_t record) const;
  void ClearHistory();
  void ChangeSettings();
  void PullOutSoon();
  void Leave();

  std::mt19937 luck_;
  ProgramCore core_;
  sim::SimulatedLogger logger_;
  std::optional<sim::SimulatedModem> modem_;
  std::optional<SimulatedLine> line_;
  YearTally tally_;
  std::vector<std::uint32_t> recordTimes_;
  std::size_t clearedAt_ = 0;  ///< The place in it of the first record since the last clearing.
  std::vector<std::uint32_t> sampleTimes_;
  int day_ = 0;
  int lastClear_ = 0;
  bool uploadedAll_ = false;  ///< Since the last record that the logger stored.
  int busyTicks_ = 0;
  bool sampling_ = false;
  int firstSampleTick_ = 0;
  int heldTicks_ = 0;  ///< Since the run's first sample: ticks that fell into an exchange.
};

}  // namespace tessmar::test
