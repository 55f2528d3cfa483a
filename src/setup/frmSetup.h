#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <memory>

#include "base/Clock.h"
#include "base/FileDialogs.h"
#include "base/Logbook.h"
#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "base/SystemLocale.h"
#include "link/LinkState.h"
#include "link/cmd.h"
#include "settings/LoggerSettings.h"
#include "setup/CalibrationNotes.h"
#include "setup/FieldValidation.h"
#include "setup/Programming.h"
#include "setup/RecentFiles.h"
#include "setup/SetupControls.h"
#include "setup/SetupFiles.h"
#include "setup/SetupProgramming.h"

class QAction;
class QMenu;
class QMenuBar;
class QPushButton;
class QTabWidget;
class QTimer;

namespace tessmar {

class FieldChecks;
class ChangesRow;
class SetupAnalogPage;
class SetupDigitalPage;
class SetupDoPage;
class SetupGeneralPage;

/// What the setup screen works with. All of it outlives the screen.
struct SetupServices {
  LinkState& Link;
  LoggerSettings& Settings;
  LoggerCommands& Commands;
  Programming& Programmer;
  const MessageLoop& Loop;
  Messages& Asker;
  FileDialogs& Dialogs;
  const Clock& Time;
  const SystemLocale& Locale;
  RecentFiles& Recent;
  Logbook& Book;
  QString AppPath;               ///< The program's folder, without a separator at its end.
  bool ShowDoHelpEntry = false;  ///< mnuLaunchDOHelp stands in the menu.
  std::function<void()> ShowHelp;
  std::function<void()> ShowDoHelp;
  std::function<void()> ShowAbout;
};

/// The setup screen: edits everything that the logger stores, in its controls, on four pages.
///
/// Made anew for each opening and shown with exec(). The caller holds LinkState::Busy while making
/// it; the screen clears it once it is filled, sets and clears it around its own operations, and
/// leaves it set when it has closed.
class frmSetup final : public QDialog {
 public:
  explicit frmSetup(SetupServices services, QWidget* parent = nullptr);
  ~frmSetup() override;

  /// Disables everything that programs a logger, for settings that no logger gave.
  void ForbidProgramming();

  /// Every way of closing comes through here; refused while the link is busy or when the operator
  /// chooses to stay.
  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildButtons();
  void BuildPages();
  void BuildMenus();
  QAction* AddEntry(QMenu* menu, const QString& name, std::function<void()> action);
  void LocalizeSetupScreen();
  void LocalizeMenus();
  void FitToDisplay();
  void ConnectProgramming();
  void ConnectFiles();

  /// The control of this name; throws RangeFault for one that the screen does not have.
  template <typename Widget>
  Widget& Control(const QString& name) const;
  SetupControls ReadControls() const;
  void ControlsToSettings();
  void SettingsToControls();
  bool CheckDoSetup();
  void InitializeToDefaults();
  void Calibrate(int channel);
  void Timer1Tick();
  void ShowChanges();
  void NoteProgrammed(const ConfigImage& before, const ConfigImage& after);
  bool AskToClose();
  void SetWaitCursor(bool on);

  SetupServices services_;
  FieldValidation validation_;
  std::unique_ptr<FieldChecks> checks_;
  std::unique_ptr<SetupProgramming> programming_;
  std::unique_ptr<SetupFiles> files_;
  CalibrationNotes calibrated_;
  bool waitCursor_ = false;
  bool closing_ = false;
  bool hasLogger_ = true;  ///< What the screen opened on came from a logger.

  QMenuBar* menuBar_;
  QPushButton* cmdOK_;
  QPushButton* cmdCancel_;
  ChangesRow* changesRow_;
  QTabWidget* tabStrip_;
  SetupAnalogPage* analog_;
  SetupDigitalPage* digital_;
  SetupGeneralPage* general_;
  SetupDoPage* dissolved_;
  std::array<QAction*, 4> mnuHist_{};
  QTimer* timer1_;
};

}  // namespace tessmar
