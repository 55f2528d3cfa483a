#include "link/ConnectOperation.h"

#include <QScopedValueRollback>

#include "base/Fault.h"
#include "base/TextTable.h"
#include "link/ConnectChoices.h"

namespace tessmar {

PortCause NoContactCause(const Comm& comm, const LoggerCommands& commands) {
  if (!comm.IsPortOpen()) return PortCause::Gone;
  return commands.HeardAnything() ? PortCause::NotALogger : PortCause::Silent;
}

ConnectOperation::ConnectOperation(Comm& comm, LoggerCommands& commands, LinkState& link,
                                   ConnectionSettings& settings, Messages& messages,
                                   MainScreen& screen, std::function<bool()> connectModem)
    : comm_(comm),
      commands_(commands),
      link_(link),
      settings_(settings),
      messages_(messages),
      screen_(screen),
      connectModem_(std::move(connectModem)) {}

bool ConnectOperation::Run(const Choice& choice) {
  if (isConnecting_) return false;
  const QScopedValueRollback connecting(isConnecting_, true);
  Connect(choice);
  if (!link_.Connected) comm_.ClosePort();
  return true;
}

void ConnectOperation::Connect(const Choice& choice) {
  if (!OpenPort(choice)) {
    messages_.MsgBox(GetText(TextId::PortOpenError), kExclamation, GetText(TextId::ConnectError));
    return;
  }
  if (!PrepareLine(choice.IsModem) || isCancelled_) return;
  if (ShakeHands()) {
    link_.Connected = true;
    return;
  }
  if (!isCancelled_ && !comm_.Loop().Ending()) NoContact(NoContactCause(comm_, commands_));
  messages_.MsgBox(GetText(TextId::NoCommunication), kExclamation, GetText(TextId::ConnectError));
}

bool ConnectOperation::OpenPort(const Choice& choice) {
  QString& port = choice.IsModem ? settings_.ModemPort : settings_.DirectPort;
  QString& baud = choice.IsModem ? settings_.ModemBaud : settings_.DirectBaud;
  baud = choice.BaudText;
  port = ExtractPort(choice.PortText);
  return Trapped(link_,
                 [&] { return comm_.OpenPort(PortNumber(port), baud + QStringLiteral(",N,8,1")); });
}

bool ConnectOperation::PrepareLine(bool isModem) {
  if (isModem) {
    link_.LinkTimeoutTicks = link_.ModemTimeoutTicks;
    return connectModem_();
  }
  link_.LinkTimeoutTicks = kDirectTimeoutTicks;
  // A device that has gone by now is found out by the handshake.
  Trapped(link_, [&] { comm_.SetHandshaking(Handshaking::None); });
  return true;
}

bool ConnectOperation::ShakeHands() {
  const WaitCursorScope waiting(screen_);
  return commands_.SyncWithLogger([this] { return isCancelled_; });
}

}  // namespace tessmar
