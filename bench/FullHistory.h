#pragma once

#include <random>

#include "history/HistoryBuffer.h"
#include "history/HistoryTable.h"
#include "support/Links.h"

namespace tessmar::bench {

inline LoggerSettings AllEnabled() {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  for (AnalogChannelSettings& channel : settings.Analog) {
    channel.Enable = 1;
    channel.DecPlaces = 2;
    channel.RawScaleUpper = 65535;
    channel.UpperLimit = 100;
  }
  for (PulseChannelSettings& channel : settings.Pulse) {
    channel.Enable = 1;
    channel.PulseUnit = 0.25;
    channel.DecPlaces = 2;
  }
  return settings;
}

/// A full buffer, or the first of its records. With noise all words of all records differ,
/// otherwise one record in ten does.
struct FullHistory {
  explicit FullHistory(bool noise, int records = HistoryBuffer::kCapacity) {
    std::mt19937 luck(1);
    LiveSample record;
    record.HasTime = true;
    for (int i = 0; i < records; ++i) {
      record.PackedTime = 0x20F40000U + static_cast<std::uint32_t>(i / 1000) * 0x20000U +
                          static_cast<std::uint32_t>(i % 1000) * 60;
      if (noise || i % 10 == 0)
        for (std::int32_t& word : record.Value) word = static_cast<std::int32_t>(luck() % 65536);
      Buffer.Append(record);
    }
  }
  HistoryTable Table() const { return HistoryTable(Buffer, Settings, Link, false, Locale); }

  HistoryBuffer Buffer;
  LinkState Link = test::LinkWith(8, 2);
  LoggerSettings Settings = AllEnabled();
  SystemLocale Locale{QLocale(QLocale::English, QLocale::UnitedStates)};
};

}  // namespace tessmar::bench
