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

  /// Writes the packed settings in four blocks and reads them back in three. A failure may leave
  /// part of them in the logger; the settings keep their values.
  /// @return true only when all blocks worked and all 315 bytes compared equal.
  bool ProgramConfiguration();

  /// Reads the configuration, status and clock of the logger, and shows them. The settings stay as
  /// they were when one of the first two blocks cannot be read; when only the third cannot, its
  /// fields, those of DoSettings, become zero.
  void RefreshFromLogger();

  /// The 8 characters at logger address 0, bytes outside 32 to 127 as blanks; empty when the read
  /// failed.
  QString ReadIdentifier();
  /// Writes 8 characters, cut or padded with blanks. @return true when the logger acknowledged.
  bool WriteIdentifier(const QString& text);

 private:
  LoggerCommands& commands_;
  LinkState& link_;
  LoggerSettings& settings_;
  LiveDisplay& display_;
};

}  // namespace tessmar
