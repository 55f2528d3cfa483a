#pragma once

#include <functional>
#include <vector>

#include "history/HistoryBuffer.h"
#include "history/PullHistory.h"
#include "link/Comm.h"
#include "link/cmd.h"
#include "sim/SimulatedLogger.h"
#include "support/FakeBlockSink.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"
#include "support/FakeSerialPort.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {

/// A connected program with a simulated logger at the other end of its line, in virtual time.
class UploadRig {
 public:
  explicit UploadRig(const sim::LoggerOptions& options, HistoryBuffer& buffer)
      : Logger(options), Buffer(buffer) {
    Link.TrapErrors = true;
    Link.Connected = true;
    Link.LinkTimeoutTicks = 10;
    Link.AnalogChannelCount = static_cast<std::int16_t>(options.AnalogChannels);
    Link.PulseChannelCount = static_cast<std::int16_t>(options.PulseChannels);
    Comm_.OpenPort(1, QStringLiteral("38400,N,8,1"));
  }

  /// Uploads everything. What the logger was asked for stands in Asked().
  UploadEnd Pull(const UploadWatcher& watcher) {
    Upload_.emplace(Link, Buffer, static_cast<std::int32_t>(Logger.Options().Records));
    return PullHistory(*Upload_, Commands, Comm_, Link, watcher, Sink);
  }
  UploadEnd Pull() {
    return Pull({[] { return true; }, [] {}});
  }

  HistoryUpload& Upload() { return *Upload_; }
  Comm& Channel() { return Comm_; }

  /// The blocks that were asked for, by what was written to the port: 0 first, 1 next, 2 again.
  std::vector<int> Asked() const {
    std::vector<int> asked;
    for (const Bytes& frame : Port.Writes) {
      if (frame.size() > 3 && frame[2] == 0x0D) asked.push_back(frame[3]);
    }
    return asked;
  }

  /// What the logger has stored, decoded here from its bytes.
  std::vector<LiveSample> Stored(int count) const {
    std::vector<LiveSample> records;
    for (int i = 0; i < count; ++i) {
      Bytes bytes;
      Logger.Records().AppendRecord(bytes, i);
      LiveSample record;
      record.HasTime = true;
      for (std::size_t b = 0; b < 4; ++b)
        record.PackedTime |= static_cast<std::uint32_t>(bytes[b]) << (8 * b);
      for (std::size_t word = 0; 5 + 2 * word < bytes.size(); ++word)
        record.Value[word] = bytes[4 + 2 * word] + 256 * bytes[5 + 2 * word];
      records.push_back(record);
    }
    return records;
  }

  std::vector<LiveSample> Received() const {
    std::vector<LiveSample> records;
    for (int i = 0; i < Buffer.Count(); ++i) records.push_back(Buffer.Record(i));
    return records;
  }

  LinkState Link;
  FakeMessageLoop Loop{Link};
  FakeSerialPort Port;
  sim::SimulatedLogger Logger;
  SimulatedLine Line{Port, Loop, Logger};
  FakeClock Clock;
  SystemLocale Locale{QLocale(QLocale::English, QLocale::UnitedStates)};

 private:
  Comm Comm_{Port, Loop, Link};

 public:
  LoggerCommands Commands{Comm_, Link, Clock, Locale};
  HistoryBuffer& Buffer;
  FakeBlockSink Sink;

 private:
  std::optional<HistoryUpload> Upload_;
};

}  // namespace tessmar::test
