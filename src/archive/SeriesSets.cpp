#include "archive/SeriesSets.h"

#include <QHash>
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

#include "archive/ClockReadings.h"
#include "archive/RecordMaker.h"
#include "archive/UploadTimes.h"
#include "archive/WindowTexts.h"
#include "history/TableSeries.h"
#include "measure/StampTime.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
/// What happens to the logger itself; the rest is the archive's book-keeping.
constexpr std::array kMarked{EventKind::Synced,      EventKind::Cleared,    EventKind::Programmed,
                             EventKind::Initialized, EventKind::Calibrated, EventKind::Reset};

std::vector<SeriesMark> MarksOf(const std::vector<EventRow>& events,
                                std::span<const ClockReading> readings) {
  std::vector<SeriesMark> marks;
  for (const EventRow& event : events) {
    if (std::ranges::find(kMarked, event.Entry.Kind) == kMarked.end()) continue;
    marks.push_back({.Time = SecondsOnScale(LoggerTimeAt(readings, event.At)),
                     .Corrected = SecondsOnScale(event.At.toMSecsSinceEpoch()),
                     .Text = ShownName(event.Entry.Kind)});
  }
  // The archive has the newest first.
  std::ranges::reverse(marks);
  return marks;
}

// Empty where no record has one.
std::vector<double> CorrectedOnScale(const std::vector<std::int64_t>& corrected) {
  const auto isKnown = [](std::int64_t time) { return time != kNoCorrectedTime; };
  std::vector<double> times;
  if (std::ranges::none_of(corrected, isKnown)) return times;
  times.reserve(corrected.size());
  for (const std::int64_t time : corrected)
    times.push_back(isKnown(time) ? SecondsOnScale(time) : kNone);
  return times;
}

/// How the records of uploads with the same settings become values.
struct Layout {
  Layout(const UploadRow& row, const HistoryBuffer& none, const SystemLocale& locale)
      : Link(LinkOf(row)),
        Table(none, SettingsOfImage(row.Settings, row.Analog, row.Pulse), Link, false, locale),
        Words(row.Analog + row.Pulse) {}

  static LinkState LinkOf(const UploadRow& row) {
    LinkState link;
    link.TrapErrors = true;
    link.AnalogChannelCount = static_cast<std::int16_t>(row.Analog);
    link.PulseChannelCount = static_cast<std::int16_t>(row.Pulse);
    return link;
  }

  LinkState Link;
  HistoryTable Table;
  int Words;
  std::vector<std::size_t> Channels;  ///< Place in the set, by column from 1.
};

/// Joins the uploads of a series into one set.
class SetMaker {
 public:
  SetMaker(const Store& store, const ArchivedSeries& series, const SystemLocale& locale)
      : store_(store), series_(series), locale_(locale), none_(0) {}

  SeriesSet Make() {
    layoutOfUpload_.resize(series_.Uploads.size(), nullptr);
    set_.Times.reserve(series_.Series.Records.size());
    for (const SeriesRecord& record : series_.Series.Records) AddRecord(record);
    for (Series& channel : set_.Channels) channel.Values.resize(set_.Times.size(), kNone);
    set_.Corrected = CorrectedOnScale(series_.Corrected);
    std::ranges::stable_sort(set_.Channels, {}, &Series::Place);
    return std::move(set_);
  }

 private:
  Layout& LayoutOf(std::size_t upload) {
    if (layoutOfUpload_[upload] != nullptr) return *layoutOfUpload_[upload];
    const UploadRow row = store_.Upload(series_.Rows[upload].Id).value_or(series_.Rows[upload]);
    const QByteArray key =
        row.Settings + static_cast<char>(row.Analog) + static_cast<char>(row.Pulse);
    std::shared_ptr<Layout>& layout = layouts_[key];
    if (!layout) {
      layout = std::make_shared<Layout>(row, none_, locale_);
      // Its channels, which have no values yet.
      for (const Series& channel : SeriesOf(layout->Table, {}).Channels)
        layout->Channels.push_back(PlaceOf(channel));
    }
    layoutOfUpload_[upload] = layout.get();
    return *layout;
  }

  // The set's channel of this place and unit, made where there is none yet.
  std::size_t PlaceOf(const Series& channel) {
    const auto same = std::ranges::find_if(set_.Channels, [&](const Series& known) {
      return known.Place == channel.Place && known.Unit == channel.Unit;
    });
    if (same == set_.Channels.end()) {
      set_.Channels.push_back(channel);
      return set_.Channels.size() - 1;
    }
    same->Decimals = std::max(same->Decimals, channel.Decimals);
    return static_cast<std::size_t>(same - set_.Channels.begin());
  }

  void AddRecord(const SeriesRecord& record) {
    const std::size_t place = set_.Times.size();
    const SeriesUpload& upload = series_.Uploads[static_cast<std::size_t>(record.Upload)];
    Layout& layout = LayoutOf(static_cast<std::size_t>(record.Upload));
    LiveSample sample;
    DecodeRecord(layout.Link, upload.Record(record.Number), 0, layout.Words, sample);
    set_.Times.push_back(sample.HasTime ? StampSeconds(sample.PackedTime) : kNone);
    for (std::size_t column = 0; column < layout.Channels.size(); ++column) {
      std::vector<double>& values = set_.Channels[layout.Channels[column]].Values;
      values.resize(place, kNone);
      values.push_back(layout.Table.CellValue(sample, static_cast<int>(column) + 1));
    }
    const double interval = LoggedInterval(layout.Table.Settings());
    if (place == 0 || set_.Stretches.back().Interval != interval)
      set_.Stretches.push_back({.First = place, .Interval = interval});
    if (record.AfterSeam && place > 0) set_.Seams.push_back(place);
    if (record.Disputed) AddDispute(record.Upload, place);
    uploadBefore_ = record.Upload;
  }

  void AddDispute(std::int32_t upload, std::size_t place) {
    const bool goesOn =
        !set_.Disputes.empty() && set_.Disputes.back().End == place && uploadBefore_ == upload;
    if (!goesOn) set_.Disputes.push_back({.First = place, .End = place});
    set_.Disputes.back().End = place + 1;
  }

  const Store& store_;
  const ArchivedSeries& series_;
  const SystemLocale& locale_;
  const HistoryBuffer none_;
  SeriesSet set_;
  QHash<QByteArray, std::shared_ptr<Layout>> layouts_;
  std::vector<Layout*> layoutOfUpload_;
  std::int32_t uploadBefore_ = -1;
};

// What lies between two records of a live run: what most of them have, and not less than sampling
// takes.
double LiveInterval(const std::vector<double>& times) {
  std::vector<double> steps;
  for (std::size_t i = 1; i < times.size(); ++i) {
    const double step = times[i] - times[i - 1];
    if (step >= 0) steps.push_back(step);
  }
  const double least = kLongestLiveStep / kIntervalsToHole;
  if (steps.empty()) return least;
  const auto middle = steps.begin() + std::ssize(steps) / 2;
  std::ranges::nth_element(steps, middle);
  return std::max(least, *middle);
}

std::vector<LiveSample> SamplesOf(const HistoryBuffer& records) {
  std::vector<LiveSample> samples;
  samples.reserve(static_cast<std::size_t>(records.Count()));
  for (std::int32_t i = 0; i < records.Count(); ++i) samples.push_back(records.Record(i));
  return samples;
}

}  // namespace

SeriesSet SeriesSetOfLogger(const Store& store, qint64 logger, const SystemLocale& locale) {
  const ArchivedSeries series = LoadSeries(store, logger);
  SeriesSet set = SetMaker(store, series, locale).Make();
  if (const std::optional<LoggerRow> row = store.Logger(logger)) set.LoggerName = row->Name;
  set.Marks = MarksOf(store.Events(logger), series.Readings);
  return set;
}

SeriesSet SeriesSetOfUpload(const Store& store, qint64 id, const ArchivedUpload& upload,
                            const SystemLocale& locale) {
  const HistoryTable table(*upload.Records, upload.Settings, upload.Link, false, locale);
  SeriesSet set = SeriesOf(table, upload.LoggerName);
  const std::optional<UploadRow> row = store.Upload(id);
  if (!row) return set;
  if (row->Kind == UploadKind::Live) {
    set.Stretches = {{.First = 0, .Interval = LiveInterval(set.Times)}};
    for (Series& channel : set.Channels) channel.IsTotal = channel.IsPulse();
  }
  const std::vector<UploadRow> uploads = store.Uploads(row->LoggerId);
  const std::vector<EventRow> events = store.Events(row->LoggerId);
  set.Marks = MarksOf(events, ClockReadingsOf(uploads, events, {}));
  set.Corrected = CorrectedOnScale(CorrectedTimesOf(store, *row, SamplesOf(*upload.Records)));
  return set;
}

}  // namespace tessmar
