#include "measure/LiveDisplay.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <optional>

#include "base/Fault.h"
#include "base/Numbers.h"
#include "base/TextTable.h"
#include "link/cmd.h"
#include "measure/Scaling.h"
#include "settings/IntervalText.h"

namespace tessmar {
namespace {

constexpr double kFlatMeter = 1e-5;
// Where a live sample holds its pulse words, whatever the channel counts are.
constexpr std::size_t kLivePulseValues = 8;
constexpr const char* kChannelLabels[] = {"lblMax", "lblMin", "lblUnits", "lblValue", "lblHistory"};

static_assert(LiveDisplay::kMeterTopOffset > 0, "a column that begins at 0 would never rest");

QString TwoDigits(int value) {
  return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
}

// Single precision as in all the meter's arithmetic; an infinite or undefined value stays in range.
float MeterFraction(const ChannelView& view) {
  const double height = view.MeterTop - view.MeterBottom;
  if (std::abs(height) < kFlatMeter) return 0;
  const double fraction = (view.Shown[0] - view.MeterBottom) / height;
  return fraction > 0 ? static_cast<float>(std::min(fraction, 1.0)) : 0.0F;
}

std::optional<Rgb> RelayColour(RelayState state) {
  switch (state) {
    case RelayState::Off:
      return Rgb{255, 128, 128};
    case RelayState::On:
      return Rgb{128, 255, 128};
    case RelayState::Pulse:
      return Rgb{255, 255, 128};
    case RelayState::Unknown:
      break;
  }
  return std::nullopt;
}

QString NoSampleText() {
  return GetText(TextId::NoSample);
}

}  // namespace

LiveDisplay::LiveDisplay(LinkState& link, const LoggerSettings& settings, LiveRing& ring,
                         MainScreen& screen, const SystemLocale& locale)
    : link_(link), settings_(settings), ring_(ring), screen_(screen), locale_(locale) {}

void LiveDisplay::PushLiveSample(const LiveSample& sample) {
  ring_.Push(sample);
  UpdateSampleDisplay();
  if (SamplePushed) SamplePushed();
}

void LiveDisplay::EmptyRing() {
  ring_.Count = 0;
  UpdateSampleDisplay();
}

void LiveDisplay::ZeroPulseValues() {
  if (ring_.Count < 1) return;
  std::fill(ring_.Samples[0].Value.begin() + kLivePulseValues, ring_.Samples[0].Value.end(), 0);
  UpdateSampleDisplay();
}

void LiveDisplay::UpdateSampleDisplay() {
  UpdateReadings();
  UpdateShownValues();
  ShowChannelTexts();
  ShowPulseTexts();
  link_.LoggerTimeText = TimeText(ring_.Samples[0], locale_);
  if (link_.LoggerModelCode == kRelayModelCode && RelayDisplayEnabled) DecodeRelayVoltage();
}

int LiveDisplay::ChannelCount() const {
  return std::clamp<int>(link_.AnalogChannelCount, 0, kAnalogChannels);
}

void LiveDisplay::UpdateReadings() {
  for (int ch = 0; ch < ChannelCount(); ++ch) {
    const auto channel = static_cast<std::size_t>(ch);
    const AnalogChannelSettings& analog = settings_.Analog[channel];
    ChannelView& view = views_[channel];
    view.ReadingValid.fill(false);
    if (!view.Enabled) continue;
    for (std::size_t i = 0; i < kRingSize; ++i) {
      if (static_cast<int>(i) >= ring_.Count) {
        view.Reading[i] = analog.LowerLimit;
        continue;
      }
      const std::int32_t raw = ring_.Samples[i].Value[channel];
      view.ReadingValid[i] = raw != kNoSampleValue;
      view.Reading[i] = ScaleRaw(analog, view.ReadingValid[i] ? raw : analog.RawScaleLower);
    }
  }
}

std::array<ChannelReading, kAnalogChannels> LiveDisplay::ReadingsOf(std::size_t entry) const {
  std::array<ChannelReading, kAnalogChannels> readings;
  for (int ch = 0; ch < kAnalogChannels; ++ch) {
    const ChannelView& view = views_[static_cast<std::size_t>(ch)];
    readings[static_cast<std::size_t>(ch)] = {view.Reading[entry],
                                              view.ReadingValid[entry] && ch < ChannelCount()};
  }
  return readings;
}

void LiveDisplay::UpdateShownValues() {
  for (int ch = 0; ch < kAnalogChannels; ++ch) {
    if (!views_[static_cast<std::size_t>(ch)].Enabled) continue;
    for (std::size_t i = 0; i < kRingSize; ++i) UpdateShownValue(ch, i);
  }
}

void LiveDisplay::UpdateShownValue(int channel, std::size_t entry) {
  // A calculation that overflows leaves its own channel without a value and the others alone.
  const ChannelReading shown =
      Trapped(link_, [&] { return ShownReading(settings_.Do, channel, ReadingsOf(entry)); });
  ChannelView& view = views_[static_cast<std::size_t>(channel)];
  view.ShownValid[entry] = shown.Available;
  // The meter draws Shown whether valid or not: a channel's own reading falls to its lower limit
  // without a sample, a derived value stays.
  if (shown.Available || QuantityShown(settings_.Do, channel) == ShownQuantity::OwnReading)
    view.Shown[entry] = shown.Value;
}

QString LiveDisplay::ShownText(int channel, std::size_t entry) const {
  const ChannelView& view = views_[static_cast<std::size_t>(channel)];
  if (static_cast<int>(entry) >= ring_.Count) return {};
  if (!view.ShownValid[entry]) return NoSampleText();
  return FormatValue(view.Shown[entry],
                     settings_.Analog[static_cast<std::size_t>(channel)].DecPlaces);
}

void LiveDisplay::ShowChannelTexts() {
  for (int ch = 0; ch < kAnalogChannels; ++ch) {
    if (!views_[static_cast<std::size_t>(ch)].Enabled) continue;
    screen_.SetCaption(ElementName("lblValue", ch), ShownText(ch, 0));
    QStringList older;
    for (std::size_t i = 1; i < kRingSize; ++i) older.append(ShownText(ch, i));
    screen_.SetCaption(ElementName("lblHistory", ch), older.join(QStringLiteral("\r\n")));
  }
}

void LiveDisplay::ShowPulseTexts() {
  const auto text = [this](int channel) {
    return ring_.Count > 0 && channel < link_.PulseChannelCount ? PulseText(channel) : QString();
  };
  screen_.SetCaption(QStringLiteral("lblPulseValue1"), text(0));
  screen_.SetCaption(QStringLiteral("lblPulseValue2"), text(1));
}

QString LiveDisplay::PulseText(int channel) const {
  const auto index = static_cast<std::size_t>(channel);
  const PulseChannelSettings& pulse = settings_.Pulse[index];
  if (pulse.Enable == 0) return {};
  const QString value = PulseValueText(channel);
  return value.isEmpty() ? NoSampleText() : value + QLatin1Char(' ') + pulse.EngUnits;
}

QString LiveDisplay::PulseValueText(int channel) const {
  const auto index = static_cast<std::size_t>(channel);
  const PulseChannelSettings& pulse = settings_.Pulse.at(index);
  const std::int32_t count = ring_.Samples[0].Value[kLivePulseValues + index];
  if (ring_.Count == 0 || count == kNoSampleValue) return {};
  return FormatValue(count * pulse.PulseUnit, pulse.DecPlaces);
}

void LiveDisplay::RefreshMainScreen() {
  QString interval;
  switch (settings_.LoggingStyle & kLogModeMask) {
    case kLogFast:
      interval = GetText(TextId::Fast);
      break;
    case kLogLogarithmic:
      interval = GetText(TextId::Logarithmic);
      break;
    default:
      interval = IntervalDisplayText(settings_);
      break;
  }
  screen_.SetCaption(QStringLiteral("lblSampleInterval"), interval);
  screen_.SetCaption(QStringLiteral("lblWarmup"), QString::number(settings_.SensorWarmupTime) +
                                                      QLatin1Char(' ') + GetText(TextId::Sec));
  for (int a = 0; a < kAlarms; ++a) {
    const AlarmSettings& alarm = settings_.Alarm[static_cast<std::size_t>(a)];
    screen_.SetCaption(ElementName("lblAlarm", a), AlarmText(alarm));
    screen_.SetEnabled(ElementName("lblAlarm", a), alarm.Enable != 0);
  }
  for (int ch = 0; ch < ChannelCount(); ++ch) RefreshLimits(ch);

  const bool anyPulse = link_.PulseChannelCount != 0;
  screen_.SetEnabled(QStringLiteral("fraPulse1"), anyPulse);
  screen_.SetEnabled(QStringLiteral("lblPulseValue1"), anyPulse);
  if (!anyPulse) return;
  const bool bothPulses = link_.PulseChannelCount == kPulseChannels;
  screen_.SetEnabled(QStringLiteral("fraPulse2"), bothPulses);
  screen_.SetEnabled(QStringLiteral("lblPulseValue2"), bothPulses);
}

QString LiveDisplay::AlarmText(const AlarmSettings& alarm) const {
  const QString minutesAndSeconds =
      QLatin1Char(':') + TwoDigits(alarm.AlarmMin) + QLatin1Char(':') + TwoDigits(alarm.AlarmSec);
  if (locale_.Uses24HourClock()) return QString::number(alarm.AlarmHour) + minutesAndSeconds;
  int hour = alarm.AlarmHour;
  if (hour == 0) hour = 12;
  if (hour >= 13) hour -= 12;
  return QString::number(hour) + minutesAndSeconds +
         (alarm.AlarmHour >= 12 ? QStringLiteral(" PM") : QStringLiteral(" AM"));
}

void LiveDisplay::RefreshLimits(int channel) {
  const AnalogChannelSettings& analog = settings_.Analog[static_cast<std::size_t>(channel)];
  ChannelView& view = views_[static_cast<std::size_t>(channel)];
  view.Enabled = analog.Enable != 0;
  if (view.Enabled) {
    view.MeterTop = analog.DisplayTop;
    view.MeterBottom = analog.DisplayBottom;
    screen_.SetCaption(ElementName("lblMax", channel),
                       FormatValue(analog.DisplayTop, analog.DecPlaces));
    screen_.SetCaption(ElementName("lblMin", channel),
                       FormatValue(analog.DisplayBottom, analog.DecPlaces));
    screen_.SetCaption(ElementName("lblUnits", channel), analog.EngUnits);
    return;
  }
  view.MeterTop = 0;
  view.MeterBottom = 0;
  view.Shown[0] = 0;
  for (const char* label : kChannelLabels) screen_.SetCaption(ElementName(label, channel), {});
}

void LiveDisplay::DrawMeters() {
  for (int ch = 0; ch < ChannelCount(); ++ch) DrawMeter(ch);
  for (int ch = 0; ch < kAnalogChannels; ++ch) ShowChannelEnabled(ch);
}

void LiveDisplay::DrawMeter(int channel) {
  ChannelView& view = views_[static_cast<std::size_t>(channel)];
  const float fraction = MeterFraction(view);
  const std::int32_t filled = RoundToInt32(static_cast<double>(fraction) * kMeterHeight);
  const std::int32_t y = kMeterTopOffset + kMeterHeight - filled;
  if (y == view.LastMeterY && view.Enabled == view.ShownEnabled) return;
  view.LastMeterY = y;
  screen_.PaintMeter(channel, fraction, view.Enabled);
}

void LiveDisplay::ShowChannelEnabled(int channel) {
  ChannelView& view = views_[static_cast<std::size_t>(channel)];
  if (view.Enabled == view.ShownEnabled) return;
  view.ShownEnabled = view.Enabled;
  for (const char* label : kChannelLabels)
    screen_.SetVisible(ElementName(label, channel), view.Enabled);
  // A column that the logger no longer has is drawn by no tick; what it last showed goes with it.
  if (channel >= ChannelCount()) screen_.PaintMeter(channel, 0, false);
}

void LiveDisplay::RedrawMeters() {
  for (ChannelView& view : views_) view.LastMeterY = 0;
}

void LiveDisplay::HideChannels() {
  for (ChannelView& view : views_) view.Enabled = false;
}

const ChannelView& LiveDisplay::View(int channel) const {
  if (channel < 0 || channel >= kAnalogChannels) throw RangeFault("there are eight channels");
  return views_[static_cast<std::size_t>(channel)];
}

void LiveDisplay::DecodeRelayVoltage() {
  // A caption that is no number, such as the no-sample text, reads as 0 volts.
  RelayStates = DecodeRelays(screen_.Caption(ElementName("lblValue", 1)).toFloat());
  ShowRelayStates();
}

void LiveDisplay::ShowRelayStates() {
  for (int r = 0; r < kRelayCount; ++r) {
    const RelayState state = RelayStates[static_cast<std::size_t>(r)];
    screen_.SetCaption(ElementName("lblRelayState", r), RelayStateText(state));
    for (const char* control : {"pctRelay", "lblRelayNumber", "lblRelayState"})
      screen_.SetBackground(ElementName(control, r), RelayColour(state));
  }
}

}  // namespace tessmar
