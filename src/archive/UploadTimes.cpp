#include "archive/UploadTimes.h"

#include "archive/ClockReadings.h"

namespace tessmar {

std::vector<std::int64_t> CorrectedTimesOf(const Store& store, const UploadRow& upload,
                                           std::span<const LiveSample> samples) {
  std::vector<std::uint8_t> stamps;
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (!samples[i].HasTime) continue;
    places.push_back(i);
    for (unsigned shift = 0; shift < 32; shift += 8)
      stamps.push_back(static_cast<std::uint8_t>(samples[i].PackedTime >> shift));
  }
  // A record of nothing but its stamp is all that is looked at.
  const std::vector<SeriesUpload> uploads{
      {.Records = stamps, .RecordSize = 4, .Complete = upload.State == UploadState::Complete}};
  LoggerSeries series;
  for (std::size_t i = 0; i < places.size(); ++i)
    series.Records.push_back({.Number = static_cast<std::int32_t>(i)});
  series.UploadEnds = {places.empty() ? -1 : static_cast<std::int32_t>(places.size())};

  const std::vector<UploadRow> all = store.Uploads(upload.LoggerId);
  const std::vector<EventRow> events = store.Events(upload.LoggerId);
  const std::vector<std::int64_t> timed =
      CorrectedTimes(uploads, series, ClockReadingsOf(all, events, {&upload, 1}));
  std::vector<std::int64_t> corrected(samples.size(), kNoCorrectedTime);
  for (std::size_t i = 0; i < places.size(); ++i) corrected[places[i]] = timed[i];
  return corrected;
}

}  // namespace tessmar
