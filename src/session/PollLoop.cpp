#include "session/PollLoop.h"

#include <QScopeGuard>
#include <QScopedValueRollback>
#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "base/Fault.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::int16_t kGetSampleTicks = 25;

// Places in the sampling cycle at which something is sent.
constexpr std::int16_t kFirstStart = 0;
constexpr std::int16_t kContinuousRequest = 5;
constexpr std::int16_t kContinuousEnd = 10;
constexpr std::int16_t kSingleSecondStart = 10;
constexpr std::int16_t kSingleRequest = 12;

enum class When { Connected, Disconnected, Always };

struct ControlRow {
  const char16_t* Control;
  When Enabled;
};

// What may be pressed with and without a connection.
constexpr std::array kControls{
    ControlRow{u"cmdGetSettings", When::Connected},
    ControlRow{u"cmdGetHistoryData", When::Connected},
    ControlRow{u"cmdClearMemory", When::Connected},
    ControlRow{u"cmdSynchronizeTime", When::Connected},
    ControlRow{u"cmdSetup", When::Connected},
    ControlRow{u"cmdConnect", When::Always},
    ControlRow{u"mnuConnect", When::Disconnected},
    ControlRow{u"imnuConnect", When::Disconnected},
    ControlRow{u"mnuDisconnect", When::Connected},
    ControlRow{u"imnuDisconnect", When::Connected},
    ControlRow{u"mnuFirmwareVersion", When::Connected},
    ControlRow{u"chkSampleContinuously", When::Connected},
    ControlRow{u"mnuSampleContinuously", When::Connected},
    ControlRow{u"imnuSampleContinuously", When::Connected},
    ControlRow{u"mnuGetSettings", When::Connected},
    ControlRow{u"imnuGetSettings", When::Connected},
    ControlRow{u"mnuGetHistoryData", When::Connected},
    ControlRow{u"imnuGetHistoryData", When::Connected},
    ControlRow{u"mnuClearHistory", When::Connected},
    ControlRow{u"imnuClearHistory", When::Connected},
    ControlRow{u"mnuSynchronizeTime", When::Connected},
    ControlRow{u"imnuSynchronizeTime", When::Connected},
    ControlRow{u"mnuSetup", When::Connected},
    ControlRow{u"imnuSetup", When::Connected},
    ControlRow{u"mnuResetPulseAccs", When::Connected},
    ControlRow{u"imnuResetPulseAccs", When::Connected},
};

// What may not be pressed during continuous sampling; the ways out of it may.
constexpr std::array kOffWhileSampling{
    u"cmdConnect",         u"cmdGetSettings",   u"cmdGetHistoryData",  u"cmdClearMemory",
    u"cmdSynchronizeTime", u"cmdSetup",         u"mnuDisconnect",      u"imnuDisconnect",
    u"mnuGetSettings",     u"imnuGetSettings",  u"mnuGetHistoryData",  u"imnuGetHistoryData",
    u"mnuClearHistory",    u"imnuClearHistory", u"mnuSynchronizeTime", u"imnuSynchronizeTime",
    u"mnuSetup",           u"imnuSetup",        u"mnuResetPulseAccs",  u"imnuResetPulseAccs",
};

}  // namespace

PollLoop::PollLoop(const LiveLogger& logger, MainScreen& screen, MessageLoop& loop,
                   const ConnectionWords& words)
    : logger_(logger), link_(logger.Link), screen_(screen), loop_(loop), words_(words) {}

void PollLoop::Timer1Tick() {
  // Whatever else is going on, waits have to end.
  if (link_.WaitTicks > 0) --link_.WaitTicks;
  if (inTimer1_ || paused_ || loop_.Ending()) return;
  const QScopedValueRollback inside(inTimer1_, true);
  Trapped(link_, [this] {
    ShowState();
    SwitchSampling();
    if (!underConstruction_) logger_.Display.DrawMeters();
    if (link_.Connected != link_.DisplayedConnected && !link_.Busy && !link_.SampleContinuously) {
      SetControls();
    }
    if (link_.SampleContinuously) DisableWhileSampling();
  });
}

void PollLoop::ShowState() {
  if (!link_.Connected) {
    logger_.Settings.LoggerName.clear();
    link_.LoggerTimeText.clear();
    link_.LoggingStateText.clear();
  }
  ShowText(u"lblLoggerName"_s, logger_.Settings.LoggerName);
  ShowText(u"lblDateTime"_s, link_.LoggerTimeText);
  ShowText(u"lblLoggingState"_s, link_.LoggingStateText);
  ShowText(u"lblRecordings"_s, link_.Connected ? QString::number(link_.RecordCount) : QString());
}

// This runs ten times a second: a label is set only when it changes.
void PollLoop::ShowText(const QString& control, const QString& text) {
  if (screen_.Caption(control) != text) screen_.SetCaption(control, text);
}

void PollLoop::SwitchSampling() {
  const auto box = u"chkSampleContinuously"_s;
  if (!screen_.IsChecked(box)) {
    link_.SampleContinuously = false;
    StopKeeping();
    return;
  }
  if (!link_.Connected) {
    screen_.SetChecked(box, false);
    return;
  }
  if (link_.Busy || samplingHeld_) return;
  if (!link_.SampleContinuously) {
    link_.SampleContinuously = true;
    link_.SampleStep = 0;
    screen_.SetCaption(u"lblDateTime"_s, QString());
    link_.LoggerTimeText.clear();
  }
  // The controls are set anew once the box is no longer ticked.
  link_.DisplayedConnected = false;
}

void PollLoop::SetControls() {
  const bool connected = link_.Connected;
  for (const ControlRow& row : kControls) {
    const bool enabled =
        row.Enabled == When::Always || connected == (row.Enabled == When::Connected);
    screen_.SetEnabled(QString::fromUtf16(row.Control), enabled);
  }
  screen_.SetCaption(u"lblCommStatus"_s, connected ? words_.Connected : words_.Disconnected);
  screen_.SetTextColour(u"lblCommStatus"_s, connected ? kConnectedColour : kDisconnectedColour);
  screen_.SetCaption(u"cmdConnect"_s, connected ? words_.Disconnect : words_.Connect);
  link_.DisplayedConnected = connected;
}

void PollLoop::DisableWhileSampling() {
  for (const char16_t* control : kOffWhileSampling) {
    screen_.SetEnabled(QString::fromUtf16(control), false);
  }
}

void PollLoop::Timer2Tick() {
  if (inTimer2_ || paused_ || loop_.Ending()) return;
  const QScopedValueRollback inside(inTimer2_, true);
  if (link_.SampleWaitTicks > 0) --link_.SampleWaitTicks;
  if (!link_.SampleContinuously && !link_.SingleSampleRequested) return;
  if (!link_.Connected) return;
  if (link_.SampleContinuously) {
    if (link_.Busy) return;
    link_.Busy = true;
  }
  // A fault that leaves the tick takes the Get Sample action's wait along.
  auto release = qScopeGuard([this] {
    link_.SingleSampleRequested = false;
    link_.Busy = false;
  });
  Trapped(link_, [this] { RunSamplingStep(); });
  release.dismiss();
  // While a single sample is waited for, the Get Sample action holds the link.
  if (!link_.SingleSampleRequested) link_.Busy = false;
}

void PollLoop::RunSamplingStep() {
  const std::int16_t step = link_.SampleStep;
  const bool single = link_.SingleSampleRequested;
  const bool continuous = link_.SampleContinuously;
  ++link_.SampleStep;
  if (step == kFirstStart || (step == kSingleSecondStart && single)) {
    logger_.Commands.StartMeasurement();
  } else if ((step == kContinuousRequest && continuous) || (step == kSingleRequest && single)) {
    RequestSample();
  } else if (continuous && link_.SampleStep >= kContinuousEnd) {
    link_.SampleStep = 0;
  }
}

void PollLoop::RequestSample() {
  std::array<std::uint8_t, kSampleReplySize> reply{};
  switch (logger_.Commands.GetSample(reply)) {
    case SampleAnswer::NotSent:
      return;
    case SampleAnswer::Nothing:
      break;
    case SampleAnswer::NoSample:
      logger_.Display.PushLiveSample(LiveSample::NoSample());
      break;
    case SampleAnswer::Sample:
      TakeSample(reply);
      break;
  }
  if (link_.SampleContinuously) logger_.Commands.GetLoggerStatus();
  link_.SingleSampleRequested = false;
}

void PollLoop::TakeSample(std::span<std::uint8_t, kSampleReplySize> reply) {
  if (link_.SampleContinuously) Keep(reply);
  CompactSampleReply(reply, link_.AnalogChannelCount, link_.PulseChannelCount);
  LiveSample sample;
  DecodeRecord(link_, reply, 0, kSampleValues, sample);
  logger_.Display.PushLiveSample(sample);
}

// With the channels of the logger itself, whatever the screens show.
void PollLoop::Keep(std::span<const std::uint8_t, kSampleReplySize> reply) {
  if (sink_ == nullptr) return;
  if (!keeping_) sink_->Begin({.Kind = UploadKind::Live});
  keeping_ = true;
  const LinkState own = WithOwnChannels(link_, logger_.Configuration.AsRead());
  std::array<std::uint8_t, kSampleReplySize> compacted{};
  std::ranges::copy(reply, compacted.begin());
  CompactSampleReply(compacted, own.AnalogChannelCount, own.PulseChannelCount);
  const int size = RecordSize(own.AnalogChannelCount, own.PulseChannelCount);
  std::vector<std::uint8_t> block{1};
  block.insert(block.end(), compacted.begin(), compacted.begin() + size);
  sink_->TakeBlock(block);
}

void PollLoop::StopKeeping() {
  if (keeping_) sink_->End(UploadEnd::Complete);
  keeping_ = false;
}

void PollLoop::GetSample() {
  if (!MayStartOperation(link_)) return;
  const BusyScope busy(link_);
  const WaitCursorScope waiting(screen_);
  logger_.Configuration.RefreshFromLogger();
  AwaitSample();
}

bool PollLoop::AwaitSample() {
  const auto over = qScopeGuard([this] {
    link_.SampleWaitTicks = 0;
    link_.SingleSampleRequested = false;
  });
  link_.SingleSampleRequested = true;
  link_.SampleStep = 0;
  link_.SampleWaitTicks = kGetSampleTicks;
  while (link_.SampleWaitTicks >= 1 && link_.SingleSampleRequested && !loop_.Ending()) {
    loop_.RunOnce();
  }
  return !link_.SingleSampleRequested;
}

}  // namespace tessmar
