#include "plot/LiveTrend.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "measure/StampTime.h"
#include "plot/PlotTexts.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kLivePulseValues = 8;

std::size_t IndexOf(const Series& series) {
  return static_cast<std::size_t>(QStringView(series.Place).mid(1).toInt() - 1);
}

}  // namespace

LiveTrend::LiveTrend(const LinkState& link, const LoggerSettings& settings, LiveDisplay& display)
    : link_(link), settings_(settings), display_(display), data_(EmptySet()) {
  for (std::int16_t entry = display_.Ring().Count; entry > 0; --entry)
    AppendEntry(static_cast<std::size_t>(entry - 1));
}

SeriesSet LiveTrend::EmptySet() const {
  SeriesSet set;
  set.LoggerName = settings_.LoggerName;
  set.Stretches.push_back({.First = 0, .Interval = kLongestLiveStep / kIntervalsToHole});
  const int analog = std::min<int>(link_.AnalogChannelCount, kAnalogChannels);
  for (int channel = 0; channel < analog; ++channel) {
    if (settings_.Analog[static_cast<std::size_t>(channel)].Enable == 0) continue;
    set.Channels.push_back({.Place = u'a' + QString::number(channel + 1),
                            .Unit = settings_.EngUnits(channel),
                            .Decimals = settings_.DecPlaces(channel),
                            .Values = {}});
  }
  const int pulse = std::min<int>(link_.PulseChannelCount, kPulseChannels);
  for (int channel = 0; channel < pulse; ++channel) {
    if (settings_.Pulse[static_cast<std::size_t>(channel)].Enable == 0) continue;
    set.Channels.push_back({.Place = u'p' + QString::number(channel + 1),
                            .Unit = settings_.EngUnits(kAnalogChannels + channel),
                            .Decimals = settings_.DecPlaces(kAnalogChannels + channel),
                            .IsTotal = true,
                            .Values = {}});
  }
  return set;
}

bool LiveTrend::IsSameSet() const {
  const SeriesSet wanted = EmptySet();
  const std::vector<Series>& have = data_.Set().Channels;
  return data_.Set().LoggerName == wanted.LoggerName &&
         std::equal(have.begin(), have.end(), wanted.Channels.begin(), wanted.Channels.end(),
                    [](const Series& a, const Series& b) {
                      return a.Place == b.Place && a.Unit == b.Unit && a.Decimals == b.Decimals;
                    });
}

double LiveTrend::ValueOf(const Series& series, std::size_t entry) const {
  const std::size_t index = IndexOf(series);
  if (!series.IsPulse()) {
    const ChannelView& view = display_.View(static_cast<int>(index));
    return view.Enabled && view.ShownValid[entry] ? view.Shown[entry] : kNoValue;
  }
  const std::int32_t count = display_.Ring().Samples[entry].Value[kLivePulseValues + index];
  return count == kNoSampleValue ? kNoValue : count * settings_.Pulse[index].PulseUnit;
}

void LiveTrend::AppendEntry(std::size_t entry) {
  const LiveSample& sample = display_.Ring().Samples[entry];
  std::vector<double> values;
  for (const Series& series : data_.Set().Channels) values.push_back(ValueOf(series, entry));
  data_.Append(sample.HasTime ? StampSeconds(sample.PackedTime) : kNoValue, values);
}

bool LiveTrend::Take(const QDateTime& now) {
  lastSample_ = now;
  const bool anew = !IsSameSet();
  if (anew) data_ = PlotData(EmptySet());
  if (data_.RecordCount() >= kMostRecords) data_.ForgetFirst(kMostRecords / 2);
  AppendEntry(0);
  return anew;
}

QString LiveTrend::StateText(const QDateTime& now, const SystemLocale& locale) const {
  if (!link_.Connected) return PlotText(PlotTextId::Disconnected);
  if (!link_.SampleContinuously) return PlotText(PlotTextId::SamplingOff);
  if (!lastSample_) return PlotText(PlotTextId::WaitingForSample);
  if (lastSample_->msecsTo(now) <= kPatienceMs) return {};
  return PlotText(PlotTextId::NoSampleSince).arg(locale.ShortTime(lastSample_->time()));
}

}  // namespace tessmar
