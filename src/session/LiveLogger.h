#pragma once

#include "base/Logbook.h"
#include "link/LinkState.h"
#include "link/cmd.h"
#include "measure/LiveDisplay.h"
#include "settings/LoggerSettings.h"
#include "setup/Programming.h"

namespace tessmar {

/// The connected logger as the poll loop, the session and the operator's actions work on it: its
/// state, what it understands, its set-up and its display. The parts outlive whoever holds this.
struct LiveLogger {
  LinkState& Link;
  LoggerSettings& Settings;
  LoggerCommands& Commands;
  Programming& Configuration;
  LiveDisplay& Display;
  Logbook& Book;  ///< What happens to it.
};

}  // namespace tessmar
