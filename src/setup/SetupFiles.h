#pragma once

#include <QString>
#include <array>
#include <functional>

#include "base/Clock.h"
#include "base/FileDialogs.h"
#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "base/SystemLocale.h"
#include "base/TextTable.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"
#include "settings/config.h"
#include "setup/RecentFiles.h"

namespace tessmar {

/// What saving and loading need of the setup screen.
struct SetupFileScreen {
  std::function<void()> ControlsToSettings;
  std::function<void()> SettingsToControls;
  /// Asks about changes that were not saved. True when the operator chooses to stay.
  std::function<bool()> OfferSaveIfChanged;
};

/// What saving and loading work with. All of it outlives SetupFiles.
struct SetupFileServices {
  const LinkState& Link;
  LoggerSettings& Settings;
  RecentFiles& Recent;
  ConfigImage& FileBaseline;  ///< The settings as last saved or loaded.
  Messages& Asker;
  FileDialogs& Dialogs;
  const Clock& Time;
  const SystemLocale& Locale;
  QString AppPath;  ///< The program's folder, without a separator at its end.
  /// Tells that the program is ending: an answer overwrites nothing then. None never ends.
  const MessageLoop* Loop = nullptr;
};

/// Saves the setup screen to a setup file and loads one into it. Made with the screen.
class SetupFiles {
 public:
  SetupFiles(SetupFileServices services, SetupFileScreen screen);

  /// Asks for a file and writes the settings of the screen to it. A file that cannot be written
  /// whole keeps its old content, and the operator is told.
  /// @return true only when the file was written.
  bool SaveSetupFile();

  /// Asks for a file and takes its settings over into the record and the screen. A file with a
  /// mistake leaves the record with what stands ahead of it, and the screen as it was; the operator
  /// is told.
  void LoadSetupFile();

  /// LoadSetupFile with the dialog pointing at a recent file. Nothing happens for an empty entry or
  /// a file that is gone.
  /// @param entry  0 to 3.
  void OpenRecentFile(std::size_t entry);

  /// The setup file in use, without its folder; empty at first.
  const QString& CurrentSetupFileName() const { return currentSetupFileName_; }

 private:
  FileDialogRequest Request(TextId title) const;
  void Remember(const QString& path);
  void WriteFile(const QString& path) const;
  void ReadFile(const QString& path);
  void TakeFileBaseline();

  SetupFileServices services_;
  SetupFileScreen screen_;
  QString currentSetupFileName_;
};

}  // namespace tessmar
