#include "setup/Calibration.h"

#include <utility>

#include "base/Fault.h"
#include "measure/Sample.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int16_t kLastPhase = 3;

// clang-format off
using Texts = Calibration::Texts;
constexpr std::array<Calibration::PageView, 4> kPages{{
    // Label                        Next             Back   Live   Text
    {TextId::EnterHighestValue,     TextId::Next,    false, false, &Texts::HighEU},
    {TextId::PressNextWhenSettled,  TextId::Next,    true,  true,  &Texts::HighRaw},
    {TextId::EnterLowestValue,      TextId::Next,    true,  false, &Texts::LowEU},
    {TextId::PressNextWhenSettled,  TextId::Finish,  true,  true,  &Texts::LowRaw},
}};
// clang-format on

}  // namespace

Calibration::Calibration(LoggerCommands& commands, LinkState& link, std::int16_t channel,
                         QString highEU, QString lowEU)
    : commands_(commands), link_(link), channel_(channel) {
  texts_.HighEU = std::move(highEU);
  texts_.LowEU = std::move(lowEU);
}

QString Calibration::Title(int channel, const QString& units) {
  return GetText(TextId::CalibrateChannel) + u' ' + QString::number(channel + 1) + u" ("_s +
         units.trimmed() + u')';
}

const Calibration::PageView& Calibration::View() const {
  return kPages[static_cast<std::size_t>(page_) - 1];
}

bool Calibration::Next(const QString& text) {
  texts_.*View().Text = text;
  if (page_ == Page::LowReading) return true;
  Show(static_cast<Page>(static_cast<int>(page_) + 1));
  return false;
}

void Calibration::Back() {
  if (page_ == Page::HighValue) return;
  Show(static_cast<Page>(static_cast<int>(page_) - 1));
}

void Calibration::Show(Page page) {
  ++visit_;
  if (page_ == Page::HighReading || page == Page::LowReading) measurementPhase_ = 0;
  page_ = page;
}

std::optional<std::int32_t> Calibration::Tick() {
  if (ticking_ || !link_.Connected || !View().LiveReading) return std::nullopt;
  ticking_ = true;
  const int visit = visit_;
  std::optional<std::int32_t> reading;
  try {
    reading = ReadSample();
  } catch (const Fault&) {
    if (!link_.TrapErrors) {
      ticking_ = false;
      throw;
    }
  }
  ticking_ = false;
  if (measurementPhase_ > kLastPhase) measurementPhase_ = 0;
  if (visit != visit_) return std::nullopt;
  return reading;
}

std::optional<std::int32_t> Calibration::ReadSample() {
  if (measurementPhase_ == 0) {
    measurementPhase_ = 1;
    commands_.StartMeasurement();
    return std::nullopt;
  }
  ++measurementPhase_;
  std::array<std::uint8_t, kSampleReplySize> reply{};
  if (commands_.GetSample(reply) != SampleAnswer::Sample) return std::nullopt;
  CompactSampleReply(reply, link_.AnalogChannelCount, link_.PulseChannelCount);
  LiveSample sample;
  DecodeRecord(link_, reply, 0, kSampleValues, sample);
  return sample.Value.at(static_cast<std::size_t>(channel_));
}

}  // namespace tessmar
