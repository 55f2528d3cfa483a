#include "proof/YearOperator.h"

#include <algorithm>
#include <array>
#include <map>

#include "setup/SetupProgramming.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using enum sim::FailureMode;

constexpr qint64 kDayMs = 86'400'000;
constexpr qint64 kSecondMs = 1000;
constexpr qint64 kMinuteMs = 60'000;
constexpr int kSampleTicks = 10;
const auto kSamplingBox = u"chkSampleContinuously"_s;
/// Room for the year's samples and records, so that the proof's own lists do not grow on the heap.
constexpr std::size_t kMostSamples = 4'000'000;
constexpr std::size_t kMostRecords = 100'000;

/// What a line and a logger do at random; each request may meet it.
constexpr std::array kFaults{RequestLost,
                             AcknowledgeLost,
                             WrongAcknowledge,
                             AcknowledgeTwice,
                             AcknowledgeBehind,
                             ReplyLost,
                             ReplyLate,
                             StopsMidFrame,
                             CorruptCheck,
                             WrongLength,
                             BadEscape,
                             FlippedBits,
                             MissingByte,
                             DoubledByte,
                             Silent,
                             LateAnswer,
                             LateCopy,
                             HeldAnswer,
                             NoiseAhead,
                             JunkAhead,
                             NoiseBehind,
                             RandomLoss,
                             HangUp};

sim::Bytes BytesOf(const LiveSample& record, int words) {
  sim::Bytes bytes;
  sim::AppendNumber(bytes, record.PackedTime, 4);
  for (int word = 0; word < words; ++word)
    sim::AppendNumber(bytes,
                      static_cast<std::uint32_t>(record.Value[static_cast<std::size_t>(word)]), 2);
  return bytes;
}

std::string TextOf(const sim::Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

}  // namespace

YearOperator::YearOperator(const QString& archive, std::uint32_t seed)
    : luck_(seed),
      core_(archive),
      logger_({.AnalogChannels = 8,
               .PulseChannels = 2,
               .Records = 0,
               .LiveRecords = true,
               .BaudRate = 38400,
               .Seed = seed}) {
  core_.Loop.MostRuns = 2'000'000'000;
  sampleTimes_.reserve(kMostSamples);
  recordTimes_.reserve(kMostRecords);
  core_.AfterTick = [this] { WatchTick(); };
  core_.Display.SamplePushed = [this] { TakeSample(); };
  core_.SetupScreen = [this] { ChangeSettings(); };
  core_.Messages.OnMessage = [this] {
    const FakeMessages::Asked& asked = core_.Messages.All.back();
    const bool erases = asked.Title == GetText(TextId::InitializationRequiredTitle);
    tally_.EraseOffered += erases ? 1 : 0;
    core_.Messages.Default = erases ? kCancel : (asked.Buttons & kYesNo) != 0 ? kYes : kOk;
  };
}

void YearOperator::RunUntil(qint64 ms) {
  while (core_.Loop.NowMs() < ms) core_.Loop.RunOnce();
}

void YearOperator::WatchTick() {
  busyTicks_ = core_.Link.Busy ? busyTicks_ + 1 : 0;
  tally_.LongestBusy = std::max(tally_.LongestBusy, busyTicks_);
  const bool sampling = core_.Link.SampleContinuously;
  // A tick in the middle of a step's exchange is dropped, and the cycle is that much longer.
  if (sampling && core_.Link.Busy) ++heldTicks_;
  if (!sampling) sampling_ = false;
}

void YearOperator::TakeSample() {
  const LiveSample& sample = core_.Ring.Samples[0];
  if (!core_.Link.SampleContinuously || !sample.HasTime) return;
  ++tally_.Samples;
  sampleTimes_.push_back(sample.PackedTime);
  if (!sampling_) {
    sampling_ = true;
    firstSampleTick_ = core_.Loop.Ticks();
    heldTicks_ = 0;
  }
  const int ticks = core_.Loop.Ticks() - firstSampleTick_ - heldTicks_;
  tally_.SamplesOff += ticks % kSampleTicks != 0 ? 1 : 0;
}

void YearOperator::LiveThroughDay() {
  const qint64 midnight = day_++ * kDayMs;
  const int sessions = 1 + Any(3);
  for (int session = 0; session < sessions; ++session) {
    // A session takes two hours at the very most.
    const qint64 begin = midnight + kDayMs * session / sessions + Any(4 * 60) * kMinuteMs;
    RunUntil(std::max(begin, core_.Loop.NowMs()));
    RunSession();
  }
  core_.LetArchiveFinish();
  RunUntil(midnight + kDayMs);
}

void YearOperator::PlugIn(bool modem) {
  line_.reset();
  // What is under way outlives the line.
  core_.Loop.RunFor(20'000);
  logger_.ClearFaults();
  if (modem) {
    const bool loses = Chance(10);
    modem_.emplace(logger_, sim::ModemOptions{.Behaviour = loses ? sim::ModemBehaviour::CarrierLost
                                                                 : sim::ModemBehaviour::Connect});
    line_.emplace(core_.Port, core_.Loop, *modem_);
  } else {
    line_.emplace(core_.Port, core_.Loop, logger_);
  }
}

void YearOperator::AddFaults() {
  const int count = Chance(60) ? 1 + Any(3) : 0;
  for (int i = 0; i < count; ++i)
    logger_.AddFault({.Mode = kFaults[static_cast<std::size_t>(Any(int{kFaults.size()}))],
                      .Rate = 0.005 + 0.01 * Any(8)});
}

void YearOperator::RunSession() {
  const bool modem = Chance(30);
  PlugIn(modem);
  AddFaults();
  ++tally_.Sessions;
  if (!ConnectAndRead(modem)) return;
  const int actions = 1 + Any(5);
  for (int i = 0; i < actions && core_.Port.IsOpen(); ++i) {
    core_.Loop.RunFor(kSecondMs * (1 + Any(60)));
    if (Chance(4)) PullOutSoon();
    Act();
    CheckRest();
  }
  Leave();
}

// A window without the logger's name says that its settings were not read: whoever sees it reads
// them again, and does nothing without them.
bool YearOperator::ConnectAndRead(bool modem) {
  for (int attempt = 0; attempt < 3 && !core_.Link.Connected; ++attempt) {
    if (modem_ && modem) modem_->LineDropped();
    if (!core_.Connect(modem)) ++tally_.Refused;
    CheckRest();
  }
  if (!core_.Link.Connected) return false;
  tally_.Nameless += core_.Settings.LoggerName.isEmpty() ? 1 : 0;
  for (int attempt = 0; attempt < 3 && core_.Settings.LoggerName.isEmpty(); ++attempt) {
    core_.Actions.GetSample();
    CheckRest();
  }
  if (!core_.Settings.LoggerName.isEmpty()) return true;
  Leave();
  return false;
}

void YearOperator::Act() {
  switch (Any(10)) {
    case 0:
    case 1:
      return SampleForAWhile();
    case 2:
    case 3:
    case 4:
      return UploadHistory(true);
    case 5:
      return core_.Actions.GetSample();
    case 6:
      ++tally_.ClockSet;
      return core_.Actions.SynchronizeTime();
    case 7:
      return core_.Actions.Setup();
    case 8:
      return core_.Actions.ResetPulseAccumulators();
    default:
      return ClearHistory();
  }
}

void YearOperator::CheckRest() {
  const LinkState& link = core_.Link;
  const bool atRest = !link.Busy && !link.SingleSampleRequested && !link.SampleContinuously &&
                      core_.Screen.WaitCursor == 0 && !core_.Configuration.IsUnderWay();
  tally_.LeftBusy += atRest ? 0 : 1;
}

void YearOperator::SampleForAWhile() {
  core_.Screen.SetChecked(kSamplingBox, true);
  core_.Loop.RunFor(kMinuteMs * (1 + Any(20)));
  core_.Screen.SetChecked(kSamplingBox, false);
  // The step that is under way comes to its end.
  core_.Loop.RunFor(10'000);
}

void YearOperator::UploadHistory(bool mayBreakOff) {
  const int enough = mayBreakOff && Chance(15) ? Any(std::max(core_.Link.RecordCount, 1)) : -1;
  bool stopped = false;
  const std::optional<UploadEnd> end = core_.UploadHistory([&] {
    stopped = stopped || (enough >= 0 && core_.History.Count() > enough);
    return !stopped;
  });
  if (!end) return;
  ++tally_.Uploads;
  if (*end != UploadEnd::Complete) {
    ++tally_.BrokenOff;
  } else if (core_.Upload->IsShort()) {
    ++tally_.Short;
  } else {
    ++tally_.Complete;
    CheckWhole();
  }
}

// Every record that the logger had promised, once and in its order; more of them where it has
// stored some meanwhile.
void YearOperator::CheckWhole() {
  const auto count = static_cast<std::size_t>(core_.History.Count());
  const auto promised = static_cast<std::size_t>(core_.Upload->TotalRecords());
  std::map<std::string, int> seen;
  bool inOrder = true;
  recordTimes_.resize(clearedAt_);
  for (std::size_t i = 0; i < count; ++i) {
    const LiveSample& record = core_.History.Record(static_cast<std::int32_t>(i));
    const std::string bytes = TextOf(BytesOf(record, 10));
    inOrder = inOrder && bytes == StoredAt(i);
    if (++seen[bytes] > 1) ++tally_.Twice;
    recordTimes_.push_back(record.PackedTime);
  }
  for (std::size_t i = 0; i < promised; ++i) tally_.Lost += seen.contains(StoredAt(i)) ? 0 : 1;
  if (!inOrder) ++tally_.Wrong;
  uploadedAll_ = static_cast<std::int64_t>(count) == logger_.Records().Count();
}

std::string YearOperator::StoredAt(std::size_t record) const {
  sim::Bytes bytes;
  logger_.Records().AppendRecord(bytes, static_cast<std::int64_t>(record));
  return TextOf(bytes);
}

// Once in two weeks, and only what has been uploaded just before.
void YearOperator::ClearHistory() {
  if (day_ - lastClear_ < 14 || logger_.Records().Count() == 0) return;
  uploadedAll_ = false;
  UploadHistory(false);
  if (!uploadedAll_ || !core_.LetArchiveFinish()) return;
  const int before = logger_.Requests(0x04);
  core_.Actions.ClearHistory();
  if (logger_.Requests(0x04) == before) return;
  lastClear_ = day_;
  ++tally_.Cleared;
  clearedAt_ = recordTimes_.size();
}

void YearOperator::ChangeSettings() {
  // As the setup screen opens and closes.
  core_.Link.Busy = false;
  SetupProgramming programming(
      core_.Commands, core_.Configuration, core_.Link, core_.Settings, core_.Loop, core_.Messages,
      {.ControlsToSettings = [] {},
       .CheckDoSetup = [] { return true; },
       .SaveSetupFile = [] { return true; },
       .SetCancelEnabled = [](bool) {},
       .FocusCancel = [] {},
       .SetWaitCursor = [](bool) {},
       .Programmed = [this](const ConfigImage&, const ConfigImage&) { ++tally_.Programmed; }});
  programming.TakeBaselines();
  core_.Settings.SensorWarmupTime = static_cast<std::uint8_t>(Any(61));
  programming.ProgramSettings();
  core_.Link.Busy = true;
}

void YearOperator::PullOutSoon() {
  ++tally_.PulledOut;
  core_.Loop.After(Any(20'000), [this] { core_.Port.Unplug(); });
}

void YearOperator::Leave() {
  // A plug that was to be pulled out is out by now.
  core_.Loop.RunFor(20'000);
  core_.Actions.DisconnectEntry();
  CheckRest();
  tally_.LeftBusy += core_.Port.IsOpen() || core_.Link.Connected ? 1 : 0;
}

void YearOperator::UploadAtLast() {
  PlugIn(false);
  ConnectAndRead(false);
  UploadHistory(false);
  Leave();
  core_.LetArchiveFinish();
}

}  // namespace tessmar::test
