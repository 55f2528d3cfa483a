#pragma once

#include <functional>

#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "link/LinkState.h"
#include "link/cmd.h"
#include "settings/LoggerSettings.h"
#include "settings/config.h"
#include "setup/Programming.h"

namespace tessmar {

/// True when two images have the same size and the same bytes.
bool ImagesEqual(const ConfigImage& a, const ConfigImage& b);

/// What programming needs of the setup screen.
struct SetupScreenPort {
  std::function<void()> ControlsToSettings;
  /// False when a warning about the dissolved-oxygen set-up was answered with Cancel.
  std::function<bool()> CheckDoSetup;
  /// True when the setup file was written.
  std::function<bool()> SaveSetupFile;
  std::function<void(bool)> SetCancelEnabled;
  std::function<void()> FocusCancel;
  std::function<void(bool)> SetWaitCursor;
  /// Told after each success: what the logger held before, empty where that could not be read, and
  /// what it holds now.
  std::function<void(const ConfigImage& before, const ConfigImage& after)> Programmed = {};
};

/// Programs the logger from the setup screen and asks about changes that were neither saved nor
/// programmed. Nothing counts as programmed that was not read back and compared.
class SetupProgramming {
 public:
  SetupProgramming(LoggerCommands& commands, Programming& programming, LinkState& link,
                   const LoggerSettings& settings, const MessageLoop& loop, Messages& messages,
                   SetupScreenPort screen);

  /// Takes the present settings as what the logger and the file hold, as the screen opens.
  void TakeBaselines();
  /// Takes the present settings as what the file holds, after a save or a load.
  void TakeFileBaseline();
  ConfigImage& FileBaseline() { return fileBaseline_; }
  const ConfigImage& LoggerBaseline() const { return loggerBaseline_; }

  /// The Program Settings action: asks, checks, programs, commits. Does nothing unless connected
  /// and neither busy nor sampling continuously. A success shows no message.
  void ProgramSettings();

  /// Offers to save changes against the file. @return true to stay on the screen.
  bool OfferSaveIfChanged();
  /// Offers to program changes against the logger. @return true to stay on the screen.
  bool OfferProgramIfChanged();

  /// Asked by everything that wants to close the screen. Refused without a word while the link is
  /// busy; an accepted close leaves LinkState::Busy set until the main screen has read the logger.
  /// @return true when the screen closes.
  bool MayClose();

 private:
  bool ConfirmAndProgram();
  bool ProgramOnClosing();
  bool WriteAndCommit();
  void TakeLoggerBaseline();
  bool DiffersFrom(const ConfigImage& baseline);
  ConfigImage Packed() const;

  LoggerCommands& commands_;
  Programming& programming_;
  LinkState& link_;
  const LoggerSettings& settings_;
  const MessageLoop& loop_;
  Messages& messages_;
  SetupScreenPort screen_;

  ConfigImage fileBaseline_;
  ConfigImage loggerBaseline_;
  bool baselineIsLoggers_ = false;  ///< Read from the logger, or written and read back.
  ConfigImage currentImage_;
};

}  // namespace tessmar
