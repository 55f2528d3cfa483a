#include "app/MainActions.h"

#include <QScopeGuard>
#include <utility>

#include "base/TextTable.h"
#include "session/LogbookEntries.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const auto kSamplingBox = u"chkSampleContinuously"_s;

}  // namespace

MainActions::MainActions(const LiveLogger& logger, Session& session, PollLoop& pollLoop,
                         MainScreen& screen, Messages& messages, MessageLoop& loop,
                         MainActionScreens screens)
    : logger_(logger),
      link_(logger.Link),
      session_(session),
      pollLoop_(pollLoop),
      screen_(screen),
      messages_(messages),
      loop_(loop),
      screens_(std::move(screens)) {}

void MainActions::Connect() {
  session_.Connect();
}

void MainActions::ConnectEntry() {
  if (!link_.Connected) session_.Connect();
}

void MainActions::DisconnectEntry() {
  if (link_.Connected) session_.Connect();
}

void MainActions::SampleContinuouslyClicked() {
  if (screen_.IsChecked(kSamplingBox) && !link_.Connected) screen_.SetChecked(kSamplingBox, false);
}

void MainActions::SampleContinuouslyEntry() {
  if (link_.Connected) screen_.SetChecked(kSamplingBox, !screen_.IsChecked(kSamplingBox));
}

void MainActions::GetSample() {
  pollLoop_.GetSample();
}

void MainActions::GetHistory() {
  if (!MayStartOperation(link_)) return;
  // What is uploaded is kept under the logger's name and with its settings.
  if (!logger_.Configuration.HasReadAll()) {
    const BusyScope busy(link_);
    const WaitCursorScope waiting(screen_);
    logger_.Configuration.RefreshFromLogger();
    if (loop_.Ending()) return;
  }
  screens_.GetHistory();
}

void MainActions::ClearHistory() {
  if (!MayStartOperation(link_)) return;
  const BusyScope busy(link_);
  const int answer = messages_.MsgBox(GetText(TextId::AskClearHistory), kYesNo | kQuestion,
                                      GetText(TextId::ClearHistoryTitle));
  if (answer != kYes || loop_.Ending()) return;
  const std::int32_t records = link_.RecordCount;
  if (logger_.Commands.ClearHistory()) logger_.Book.Note(ClearedEntry(records));
  ReadStatusAndClock();
}

void MainActions::SynchronizeTime() {
  const int answer = messages_.MsgBox(GetText(TextId::AskSyncTime), kYesNo | kInformation,
                                      GetText(TextId::SynchronizeTimeTitle));
  if (answer != kYes || loop_.Ending()) return;
  if (!MayStartOperation(link_)) return;
  const BusyScope busy(link_);
  const WaitCursorScope waiting(screen_);
  const std::optional<std::int32_t> before = link_.ClockOffsetS;
  const bool set = logger_.Commands.SetLoggerTime(logger_.Commands.ClockText());
  ReadStatusAndClock();
  if (set) logger_.Book.Note(SyncedEntry(before, link_.ClockOffsetS));
}

void MainActions::ReadStatusAndClock() {
  logger_.Commands.GetLoggerStatus();
  link_.LoggerTimeText = logger_.Commands.GetLoggerTime();
}

void MainActions::Setup() {
  if (!MayStartOperation(link_)) return;
  const BusyScope busy(link_);
  logger_.Configuration.RefreshFromLogger();
  if (loop_.Ending()) return;
  // The box may have been ticked while the logger was read, and cannot be reached any more.
  pollLoop_.HoldSampling(true);
  const auto resume = qScopeGuard([this] { pollLoop_.HoldSampling(false); });
  screens_.ShowSetup();
  if (loop_.Ending()) return;
  // The setup screen has handled Busy by itself. What was not programmed does not survive it.
  link_.Busy = true;
  const WaitCursorScope waiting(screen_);
  logger_.Configuration.RefreshFromLogger();
}

void MainActions::ResetPulseAccumulators() {
  if (!MayStartOperation(link_)) return;
  const BusyScope busy(link_);
  if (logger_.Commands.ResetPulseAccumulators())
    logger_.Book.Note({.Kind = EventKind::Reset, .Text = u"pulse accumulators reset"_s});
  logger_.Display.ZeroPulseValues();
}

void MainActions::LoadLoggerImageFile() {
  screens_.LoadLoggerImageFile();
}

void MainActions::FirmwareVersion() {
  messages_.MsgBox(
      GetText(TextId::LoggerFirmwareVersion) + u" = "_s + QString::number(link_.FirmwareVersion),
      kOkOnly, GetText(TextId::FirmwareVersion));
}

}  // namespace tessmar
