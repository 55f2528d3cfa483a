#include "app/ActivityLog.h"

#include <utility>

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

QString CommandName(MainCommand command) {
  constexpr std::pair<MainCommand, const char*> kNames[] = {
      {MainCommand::ToggleConnection, "connect or disconnect"},
      {MainCommand::Connect, "connect"},
      {MainCommand::Disconnect, "disconnect"},
      {MainCommand::ToggleSampling, "sample continuously"},
      {MainCommand::SamplingClicked, "sample continuously"},
      {MainCommand::GetSample, "get sample"},
      {MainCommand::GetHistory, "get history"},
      {MainCommand::ClearHistory, "clear history"},
      {MainCommand::SyncTime, "sync time"},
      {MainCommand::Setup, "setup"},
      {MainCommand::ResetPulseAccumulators, "reset pulse accumulators"},
      {MainCommand::LoadLoggerImageFile, "load logger image file"},
      {MainCommand::About, "about"},
      {MainCommand::Exit, "exit"},
  };
  for (const auto& [known, name] : kNames) {
    if (known == command) return QString::fromLatin1(name);
  }
  return QString::number(static_cast<int>(command));
}

}  // namespace

void ActivityLog::Command(MainCommand command) const {
  log_.Write(u"command: "_s + CommandName(command));
}

void ActivityLog::Trouble(PortCause cause) const {
  log_.Write(PortTroubleText({.Cause = cause, .Group = {}, .Holder = {}},
                             u"port COM%1"_s.arg(port_.Number())));
}

void ActivityLog::Tick() {
  // A session goes on without its device; nothing on the screen tells.
  const bool gone = link_.Connected && !port_.IsOpen();
  if (gone && !gone_) Trouble(PortCause::Gone);
  gone_ = gone;
  if (link_.Connected == connected_) return;
  connected_ = link_.Connected;
  log_.Write(connected_ ? u"connected: model %1, firmware %2, %3 analog and %4 pulse channels"_s
                              .arg(link_.LoggerModelCode)
                              .arg(link_.FirmwareVersion)
                              .arg(link_.AnalogChannelCount)
                              .arg(link_.PulseChannelCount)
                        : u"disconnected"_s);
}

}  // namespace tessmar
