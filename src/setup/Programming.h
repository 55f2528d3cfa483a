#pragma once

#include <QString>

#include "link/LinkState.h"
#include "link/cmd.h"
#include "measure/LiveDisplay.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// The road between LoggerSettings and the logger. The caller holds LinkState::Busy.
class Programming {
 public:
  Programming(LoggerCommands& commands, LinkState& link, LoggerSettings& settings,
              LiveDisplay& display);

  /// Writes the packed settings and reads them back.
  /// @return true only when all blocks worked and all 315 bytes compared equal.
  bool ProgramConfiguration();

  /// Reads the configuration, status and clock of the logger, and shows them.
  void RefreshFromLogger();

  /// The 8 characters at logger address 0; empty when the read failed.
  QString ReadIdentifier();
  /// Writes 8 characters, padded with blanks. @return true when the write was accepted.
  bool WriteIdentifier(const QString& text);

 private:
  LoggerCommands& commands_;
  LinkState& link_;
  LoggerSettings& settings_;
  LiveDisplay& display_;
};

}  // namespace tessmar
