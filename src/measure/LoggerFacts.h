#pragma once

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <optional>

#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// Pages of the logger's flash that hold records; each takes one area of kRecordAreaSize bytes.
inline constexpr int kDataPages = 4088;

/// What a look at the logger tells of its memory.
struct MemoryForecast {
  enum class Outlook {
    Unknown,      ///< The logger has not told its state yet.
    NotLogging,   ///< Nothing is added.
    Full,         ///< Nothing more fits.
    Overwriting,  ///< The oldest records give way; since At, where that can be told.
    FillsAt,      ///< The last place is taken at At.
    NotBefore,    ///< The same, but fewer records than intervals may come: At is the earliest.
    Share,        ///< When, nobody can tell: logarithmic and fast logging. Percent is taken.
    Decades,      ///< It lasts longer than any battery.
  };
  Outlook Is = Outlook::Unknown;
  bool Wraps = false;     ///< A full memory overwrites its oldest records.
  QDateTime At = {};      ///< By the computer's clock.
  bool WithTime = false;  ///< At is so near that its time of day matters.
  int Percent = 0;        ///< Of the memory in use, 0 to 100, rounded down.
  bool operator==(const MemoryForecast&) const = default;
};

/// Records that fit a logger of so many channels; 0 for counts that make no record.
std::int64_t MemoryCapacity(int analogChannelCount, int pulseChannelCount);

/// Seconds between two records of periodic logging as the logger takes them from this text; 0 for a
/// text without a count.
std::int64_t SampleIntervalSeconds(const QString& interval);

/// When the memory is full, from the record count read last, the channel counts, the logging style,
/// the interval, wrap-around, the alarms and the status word. Never more than can be known.
MemoryForecast ForecastMemory(const LinkState& link, const LoggerSettings& settings);

/// The forecast in the language of the texts; empty for an unknown one.
QString MemoryText(const MemoryForecast& forecast, bool use24HourClock);

/// How far the logger's clock is off: "clock 12 s slow". Empty for less than 2 seconds, which
/// reading two clocks of whole seconds cannot tell from none, and without an offset.
/// @param offsetS  seconds by which the logger is ahead.
QString ClockDriftText(std::optional<std::int32_t> offsetS);

}  // namespace tessmar
