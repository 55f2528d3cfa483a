#include "measure/Sample.h"

#include <algorithm>

#include "base/Fault.h"

namespace tessmar {
namespace {

constexpr int kTimeStampSize = 4;
constexpr int kLastAnalogSlot = 18;
constexpr int kPulseSlots = 20;

// Where the day of month and the month index begin in a packed time stamp.
constexpr int kDateShift = 17;

std::uint8_t& ByteAt(std::span<std::uint8_t> bytes, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= bytes.size())
    throw RangeFault("the sample reply is too short");
  return bytes[static_cast<std::size_t>(index)];
}

std::uint32_t ByteAt(std::span<const std::uint8_t> bytes, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= bytes.size())
    throw RangeFault("the record ends early");
  return bytes[static_cast<std::size_t>(index)];
}

QString DateText(const TimeStampFields& fields, const SystemLocale& locale) {
  return locale.StampDate(CarriedDate(fields.Year, fields.Month, fields.Day));
}

// Appends " hh:mm:ss". Fields up to 63 are shown as they are stored.
void AppendTime(QString& text, const TimeStampFields& fields) {
  const auto append = [&text](char before, int value) {
    text.append(QLatin1Char(before));
    text.append(QLatin1Char(static_cast<char>('0' + value / 10)));
    text.append(QLatin1Char(static_cast<char>('0' + value % 10)));
  };
  append(' ', fields.Hour);
  append(':', fields.Minute);
  append(':', fields.Second);
}

void Decode(std::span<const std::uint8_t> bytes, int offset, int wordCount, LiveSample& record) {
  record.PackedTime = 0;
  record.HasTime = false;
  std::fill_n(record.Value.begin(), std::clamp(wordCount, 0, kSampleValues), 0);
  if (wordCount > kSampleValues) throw RangeFault("a record holds at most ten words");

  const std::uint32_t packed = ByteAt(bytes, offset) | ByteAt(bytes, offset + 1) << 8 |
                               ByteAt(bytes, offset + 2) << 16 | ByteAt(bytes, offset + 3) << 24;
  for (int i = 0; i < wordCount; ++i) {
    const int place = offset + kTimeStampSize + 2 * i;
    record.Value[static_cast<std::size_t>(i)] =
        static_cast<std::int32_t>(ByteAt(bytes, place) | ByteAt(bytes, place + 1) << 8);
  }
  // Last, because a record that ends early has no time.
  record.PackedTime = packed;
  record.HasTime = true;
}

}  // namespace

LiveSample LiveSample::NoSample() {
  LiveSample sample;
  sample.Value.fill(kNoSampleValue);
  return sample;
}

TimeStampFields UnpackTimeStamp(std::uint32_t packed) {
  const auto bits = [packed](int shift, int width) {
    return static_cast<int>((packed >> shift) & ((1U << width) - 1U));
  };
  const int monthIndex = bits(22, 10);
  return {.Second = bits(0, 6),
          .Minute = bits(6, 6),
          .Hour = bits(12, 5),
          .Day = bits(kDateShift, 5),
          .Month = monthIndex % 12 + 1,
          .Year = 2000 + monthIndex / 12};
}

QString TimeText(const LiveSample& sample, const SystemLocale& locale) {
  if (!sample.HasTime) return {};
  const TimeStampFields fields = UnpackTimeStamp(sample.PackedTime);
  QString text = DateText(fields, locale);
  AppendTime(text, fields);
  return text;
}

QString TimeTextMaker::Text(const LiveSample& sample) {
  if (!sample.HasTime) return {};
  const TimeStampFields fields = UnpackTimeStamp(sample.PackedTime);
  const std::uint32_t date = sample.PackedTime >> kDateShift;
  if (dateText_.isEmpty() || date != date_) {
    dateText_ = DateText(fields, locale_);
    date_ = date;
  }
  QString text;
  text.reserve(dateText_.size() + 9);
  text.append(dateText_);
  AppendTime(text, fields);
  return text;
}

int RecordSize(int analogChannelCount, int pulseChannelCount) {
  return 2 * (analogChannelCount + pulseChannelCount) + kTimeStampSize;
}

int RecordsPerArea(int recordSize) {
  if (recordSize <= 0) return 0;
  return (2 * kRecordAreaSize + recordSize) / (2 * recordSize);
}

void CompactSampleReply(std::span<std::uint8_t> reply, int analogChannelCount,
                        int pulseChannelCount) {
  if (analogChannelCount == kAnalogSlots) return;
  const int lastChannel = 2 * (analogChannelCount - 1) + kTimeStampSize;
  if (analogChannelCount != 1) {
    ByteAt(reply, lastChannel) = ByteAt(reply, kLastAnalogSlot);
    ByteAt(reply, lastChannel + 1) = ByteAt(reply, kLastAnalogSlot + 1);
  }
  // Byte by byte and rising: with seven analog and two pulse channels the places overlap, and what
  // the live screen then finds in its pulse fields follows from this order.
  for (int i = 0; i < 2 * pulseChannelCount; ++i)
    ByteAt(reply, lastChannel + 2 + i) = ByteAt(reply, kPulseSlots + i);
}

void DecodeRecord(const LinkState& link, std::span<const std::uint8_t> bytes, int offset,
                  int wordCount, LiveSample& record) {
  Trapped(link, [&] { Decode(bytes, offset, wordCount, record); });
}

void LiveRing::Push(const LiveSample& sample) {
  std::move_backward(Samples.begin(), Samples.end() - 1, Samples.end());
  Samples[0] = sample;
  if (Count < kRingSize) ++Count;
}

}  // namespace tessmar
