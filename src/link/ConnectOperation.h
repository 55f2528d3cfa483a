#pragma once

#include <QString>
#include <functional>

#include "base/MainScreen.h"
#include "base/Messages.h"
#include "link/Comm.h"
#include "link/ConnectionSettings.h"
#include "link/LinkState.h"
#include "link/PortTrouble.h"
#include "link/cmd.h"

namespace tessmar {

/// The ticks that a logger on a direct line has for a reply.
inline constexpr std::int16_t kDirectTimeoutTicks = 10;

/// Why a handshake came to nothing: the device is gone, nothing answered, or what answered is no
/// logger.
PortCause NoContactCause(const Comm& comm, const LoggerCommands& commands);

/// What the connection dialog does when Connect is pressed: open the port, dial, shake hands.
class ConnectOperation {
 public:
  /// The dialog's choice, as its controls show it.
  struct Choice {
    bool IsModem = false;
    QString PortText;
    QString BaudText;
  };

  /// @param connectModem  makes the modem connection on the open port; false when there is none,
  ///   which it has told the operator itself.
  ConnectOperation(Comm& comm, LoggerCommands& commands, LinkState& link,
                   ConnectionSettings& settings, Messages& messages, MainScreen& screen,
                   std::function<bool()> connectModem);

  /// Connects. On success LinkState::Connected is set and the port is open; otherwise the port is
  /// closed and the operator knows why, unless it was by Cancel. The choice is remembered either
  /// way.
  /// @return true when the work was done, well or not, and the dialog is to be closed; false when
  ///   nothing happened because the work is going on already.
  bool Run(const Choice& choice);

  /// Asks the work to end at its next check.
  void Cancel() { isCancelled_ = true; }
  bool IsConnecting() const { return isConnecting_; }

  /// Told of a handshake that came to nothing, unless it was cancelled; the messages to the
  /// operator do not tell the causes apart.
  std::function<void(PortCause)> NoContact = [](PortCause) {};

 private:
  void Connect(const Choice& choice);
  bool OpenPort(const Choice& choice);
  bool PrepareLine(bool isModem);
  bool ShakeHands();

  Comm& comm_;
  LoggerCommands& commands_;
  LinkState& link_;
  ConnectionSettings& settings_;
  Messages& messages_;
  MainScreen& screen_;
  std::function<bool()> connectModem_;
  bool isConnecting_ = false;
  bool isCancelled_ = false;
};

}  // namespace tessmar
