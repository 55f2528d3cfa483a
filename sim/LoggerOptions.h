#pragma once

#include <cstdint>
#include <string>

#include "CivilTime.h"

namespace tessmar::sim {

/// What a simulated logger is like when it is switched on.
struct LoggerOptions {
  int AnalogChannels = 8;  ///< 1 to 8.
  int PulseChannels = 2;   ///< 0 to 2.
  int Firmware = 21;       ///< 0 to 255.
  int ModelCode = 208;     ///< 0 to 255.
  bool SampleOnDemand = false;
  int Records = 960;         ///< Stored records, 0 to 16777215.
  bool LiveRecords = false;  ///< A record is added whenever its time has come.
  int ClockStopsAt = -1;     ///< From this record on all are equal, as if the clock stood still.
  int RecordsOnSignal = 0;   ///< Added by each TimePassed, see there; 0 for an ordinary logger.
  bool BlankFlash = false;   ///< Never initialised: all memory erased, no records.
  bool TwelveHourClock = false;
  bool PastHandshake = false;  ///< Deaf to the letters; answers frames.
  int BaudRate = 0;            ///< Throttles both directions to 10 bits a byte; 0 for no limit.
  std::uint32_t Seed = 1;      ///< Of the pond's weather and of the faults' luck.
  std::string Name = "Mill Pond 3";  ///< Latin-1, up to 32 characters.

  /// The logger's clock at time 0 of the caller's; 2026-06-15 14:30:00 unless set.
  CivilSeconds ClockAtStart = ToCivilSeconds({2026, 6, 15, 14, 30, 0});
};

/// Bytes of one stored record: 4 of time and 2 for each channel.
constexpr int StoredRecordSize(const LoggerOptions& options) {
  return 4 + 2 * (options.AnalogChannels + options.PulseChannels);
}

inline constexpr int kRecordArea = 240;

/// Whole records in one 240-byte area.
constexpr int RecordsPerBlock(const LoggerOptions& options) {
  return kRecordArea / StoredRecordSize(options);
}

}  // namespace tessmar::sim
