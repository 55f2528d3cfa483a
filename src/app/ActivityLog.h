#pragma once

#include "app/frmMain.h"
#include "base/SupportLog.h"
#include "link/LinkState.h"
#include "link/PortTrouble.h"
#include "link/SerialPort.h"

namespace tessmar {

/// Writes what the operator asks for, and when a logger comes and goes, into the log for support.
class ActivityLog {
 public:
  ActivityLog(const SupportLog& log, const LinkState& link, const SerialPort& port)
      : log_(log), link_(link), port_(port) {}

  void Command(MainCommand command) const;
  /// What is wrong with the line on the port. The screen has one message for several causes, or
  /// none at all.
  void Trouble(PortCause cause) const;
  /// Looks at the connection; called with every tick.
  void Tick();

 private:
  const SupportLog& log_;
  const LinkState& link_;
  const SerialPort& port_;
  bool connected_ = false;  ///< As it was told last.
  bool gone_ = false;       ///< The device of this connection, as it was told last.
};

}  // namespace tessmar
