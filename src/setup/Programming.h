#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "link/LinkState.h"
#include "link/cmd.h"
#include "measure/LiveDisplay.h"
#include "settings/LoggerAsRead.h"
#include "settings/LoggerSettings.h"
#include "settings/config.h"

namespace tessmar {

/// The road between LoggerSettings and the logger. The caller holds LinkState::Busy.
class Programming {
 public:
  Programming(LoggerCommands& commands, LinkState& link, LoggerSettings& settings,
              LiveDisplay& display);

  /// Forgets what was read of another logger. To be called when the connection stands, with the
  /// channels in LinkState that the logger has told.
  void BeginSession();

  /// Writes the packed settings and reads them back.
  /// @return true only when all blocks worked and all 315 bytes compared equal.
  bool ProgramConfiguration();

  /// Writes an image and reads it back. @return true only when all blocks worked and all 315 bytes
  /// compared equal.
  bool ProgramImage(const ConfigImage& image);

  /// The logger's 315 bytes; nothing when one of the reads failed.
  std::optional<ConfigImage> ReadImage();

  /// Reads the configuration, status and clock of the logger, and shows them.
  void RefreshFromLogger();
  /// True when the last RefreshFromLogger read the whole configuration.
  bool HasReadAll() const { return hasReadAll_; }
  /// What the connected logger is known to be and to have. Its settings are unknown from the moment
  /// in which new ones are sent until they are read again.
  const LoggerAsRead& AsRead() const { return asRead_; }

  /// The 8 characters at logger address 0; empty when the read failed.
  QString ReadIdentifier();
  /// Writes 8 characters, padded with blanks. @return true when the write was accepted.
  bool WriteIdentifier(const QString& text);

  /// True while settings are on their way to the logger and may not be cut off.
  bool IsUnderWay() const { return holds_ > 0; }
  /// Called each time when settings are no longer under way. Must not throw.
  std::function<void()> OnFinished;

 private:
  friend class ProgrammingScope;

  void TakeAsRead(const ConfigImage& image);
  LoggerSettings OwnSettings(const ConfigImage& image) const;

  LoggerCommands& commands_;
  LinkState& link_;
  LoggerSettings& settings_;
  LiveDisplay& display_;
  bool hasReadAll_ = false;
  LoggerAsRead asRead_;
  int holds_ = 0;
};

/// Marks settings as under way from construction to destruction: what has to reach the logger
/// wholly or be known to have failed. May be nested.
class ProgrammingScope {
 public:
  explicit ProgrammingScope(Programming& programming) : programming_(programming) {
    ++programming_.holds_;
  }
  ~ProgrammingScope() {
    if (--programming_.holds_ == 0 && programming_.OnFinished) programming_.OnFinished();
  }
  ProgrammingScope(const ProgrammingScope&) = delete;
  ProgrammingScope& operator=(const ProgrammingScope&) = delete;

 private:
  Programming& programming_;
};

}  // namespace tessmar
