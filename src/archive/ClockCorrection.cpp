#include "archive/ClockCorrection.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "measure/Sample.h"

namespace tessmar {
namespace {

constexpr std::int64_t kMsPerSecond = 1000;
constexpr std::int64_t kSecondsPerDay = 86400;

// Days since the beginning of 1970 of the first day of a month in the years 2000 to 2099, which
// have a leap year every four years.
std::int64_t DaysToMonth(int year, int month) {
  constexpr int kDaysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  constexpr std::int64_t kDaysTo2000 = 10957;
  const int years = year - 2000;
  const bool pastLeapDay = years % 4 == 0 && month > 2;
  return kDaysTo2000 + std::int64_t{365} * years + (years + 3) / 4 + kDaysBefore[month - 1] +
         (pastLeapDay ? 1 : 0);
}

/// The logger's times along a series.
class Times {
 public:
  Times(std::span<const SeriesUpload> uploads, const LoggerSeries& series) {
    times_.reserve(series.Records.size());
    for (const SeriesRecord& record : series.Records) {
      const SeriesUpload& upload = uploads[static_cast<std::size_t>(record.Upload)];
      times_.push_back(LoggerMilliseconds(upload.Stamp(record.Number)));
    }
  }

  std::int32_t Count() const { return static_cast<std::int32_t>(times_.size()); }
  std::int64_t operator[](std::int32_t place) const {
    return times_[static_cast<std::size_t>(place)];
  }

  // The first place from which on the logger's clock cannot have stood before a time any more: it
  // shows a later one, or steps back.
  std::int32_t FirstBehind(std::int64_t time, std::int32_t from, std::int32_t to) const {
    std::int32_t place = from;
    while (place < to && (*this)[place] <= time &&
           (place == from || (*this)[place] >= (*this)[place - 1])) {
      ++place;
    }
    return place;
  }

  bool NeverStepsBack(std::int32_t from, std::int32_t to) const {
    return std::is_sorted(times_.begin() + from, times_.begin() + to);
  }

 private:
  std::vector<std::int64_t> times_;
};

/// A reading with the place in the series that it stands before.
struct Mark {
  ClockReading Reading;
  std::int32_t Place = 0;
};

std::vector<Mark> PlaceReadings(std::span<const SeriesUpload> uploads, const LoggerSeries& series,
                                const Times& times, std::span<const ClockReading> readings) {
  std::vector<Mark> marks;
  std::int32_t before = 0;
  for (std::size_t i = 0; i < readings.size(); ++i) {
    const ClockReading& reading = readings[i];
    std::int32_t place = before;
    if (reading.Upload != ClockReading::kNoUpload) {
      const auto upload = static_cast<std::size_t>(reading.Upload);
      // One without records came when all that was uploaded before was there already.
      place = std::max(before, series.UploadEnds[upload]);
      // One that was broken off ends before the newest record of its time.
      if (!uploads[upload].Complete)
        place = times.FirstBehind(reading.Before, place, times.Count());
    } else {
      const auto next = std::find_if(
          readings.begin() + static_cast<std::ptrdiff_t>(i), readings.end(),
          [](const ClockReading& other) { return other.Upload != ClockReading::kNoUpload; });
      const std::int32_t end =
          next == readings.end()
              ? times.Count()
              : std::max(before, series.UploadEnds[static_cast<std::size_t>(next->Upload)]);
      place = times.FirstBehind(reading.Before, before, end);
    }
    marks.push_back({reading, place});
    before = place;
  }
  return marks;
}

}  // namespace

std::int64_t LoggerMilliseconds(std::uint32_t stamp) {
  const TimeStampFields fields = UnpackTimeStamp(stamp);
  const std::int64_t days = DaysToMonth(fields.Year, fields.Month) + fields.Day - 1;
  const std::int64_t seconds = days * kSecondsPerDay + std::int64_t{3600} * fields.Hour +
                               std::int64_t{60} * fields.Minute + fields.Second;
  return seconds * kMsPerSecond;
}

std::vector<std::int64_t> CorrectedTimes(std::span<const SeriesUpload> uploads,
                                         const LoggerSeries& series,
                                         std::span<const ClockReading> readings) {
  const Times times(uploads, series);
  std::vector<std::int64_t> corrected(series.Records.size(), kNoCorrectedTime);
  const std::vector<Mark> marks = PlaceReadings(uploads, series, times, readings);
  for (std::size_t i = 1; i < marks.size(); ++i) {
    const Mark& first = marks[i - 1];
    const Mark& second = marks[i];
    if (!times.NeverStepsBack(first.Place, second.Place)) continue;
    const std::int64_t begin = first.Reading.After;
    const std::int64_t end = second.Reading.Before;
    for (std::int32_t place = first.Place; place < second.Place; ++place) {
      if (times[place] < begin || times[place] > end) continue;
      const double share = end == begin ? 0
                                        : static_cast<double>(times[place] - begin) /
                                              static_cast<double>(end - begin);
      corrected[static_cast<std::size_t>(place)] =
          first.Reading.At +
          std::llround(share * static_cast<double>(second.Reading.At - first.Reading.At));
    }
  }
  return corrected;
}

}  // namespace tessmar
