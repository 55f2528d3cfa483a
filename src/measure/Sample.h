#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <span>

#include "base/SystemLocale.h"
#include "link/LinkState.h"

namespace tessmar {

inline constexpr int kSampleValues = 10;
inline constexpr int kRecordAreaSize = 240;
/// Analog word slots of a live reply; the last channel in use is always in the last of them.
inline constexpr int kAnalogSlots = 8;
/// The raw value that marks a reply without a sample, in all ten places.
inline constexpr std::int32_t kNoSampleValue = -1;

/// One decoded record, live or stored. It keeps the packed time stamp; TimeText makes the text.
struct LiveSample {
  std::uint32_t PackedTime = 0;
  bool HasTime = false;  ///< False in the no-sample marker: TimeText is empty then.
  std::array<std::int32_t, kSampleValues> Value{};  ///< Raw words in record order, 0 to 65535.
  bool operator==(const LiveSample&) const = default;

  /// The marker of a reply without a sample: no time, -1 in all ten places.
  static LiveSample NoSample();
};

/// Fields of a packed time stamp, as stored: nothing is checked.
struct TimeStampFields {
  int Second = 0;
  int Minute = 0;
  int Hour = 0;
  int Day = 0;
  int Month = 1;
  int Year = 2000;
};
TimeStampFields UnpackTimeStamp(std::uint32_t packed);

/// Date and time of a record as text: the short date with its year shortened, a blank, and
/// two-digit hours, minutes and seconds. A day that the month does not have is carried over; empty
/// for a sample without a time.
QString TimeText(const LiveSample& sample, const SystemLocale& locale);

/// Makes the same texts as TimeText for many records in a row: the date is made once for a day.
/// The locale must outlive it.
class TimeTextMaker {
 public:
  explicit TimeTextMaker(const SystemLocale& locale) : locale_(locale) {}

  QString Text(const LiveSample& sample);

 private:
  const SystemLocale& locale_;
  std::uint32_t date_ = 0;  ///< Day and month bits of the stamp that dateText_ was made for.
  QString dateText_;
};

/// Bytes of one stored record: 4 of time and 2 for each channel.
int RecordSize(int analogChannelCount, int pulseChannelCount);
/// Records in a 240-byte area: 240 / recordSize, rounded to the nearest whole number.
int RecordsPerArea(int recordSize);

/// Brings the 24-byte live reply into the shape of a stored record, in place: the last analog
/// channel and the pulse words move up behind the analog channels in use. The pulse words also stay
/// at bytes 20 to 23, where the live screen reads them; only with seven analog and two pulse
/// channels the second pulse word covers the first there. With eight analog channels nothing moves.
/// Throws RangeFault for a reply that is too short for what has to move.
void CompactSampleReply(std::span<std::uint8_t> reply, int analogChannelCount,
                        int pulseChannelCount);

/// Decodes the time stamp at offset and the wordCount words behind it, low byte first.
/// No field is checked: any four bytes are a time, any two a value. Values past wordCount stay as
/// they are. Bytes that are too few, or more than ten words, are a fault; with TrapErrors the
/// decoding just ends there, with no time and the values decoded so far.
void DecodeRecord(const LinkState& link, std::span<const std::uint8_t> bytes, int offset,
                  int wordCount, LiveSample& record);

inline constexpr int kRingSize = 5;

/// The latest live samples, index 0 the newest.
struct LiveRing {
  std::array<LiveSample, kRingSize> Samples;
  std::int16_t Count = 0;  ///< Valid entries, 0 to 5.

  /// Moves all up one place, the oldest drops off, and puts the sample at 0.
  void Push(const LiveSample& sample);
};

}  // namespace tessmar
