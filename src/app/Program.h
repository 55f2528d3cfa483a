#pragma once

#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QTranslator>
#include <functional>
#include <optional>

#include "app/ActivityLog.h"
#include "app/CloseRequests.h"
#include "app/CommandLine.h"
#include "app/Help.h"
#include "app/HelpTarget.h"
#include "app/MainActions.h"
#include "app/SessionEnd.h"
#include "app/frmMain.h"
#include "archive/Journal.h"
#include "archive/JournalTimer.h"
#include "base/Clock.h"
#include "base/LoggedMessages.h"
#include "base/QtMessageLoop.h"
#include "base/SupportLog.h"
#include "base/SystemLocale.h"
#include "history/HistoryBuffer.h"
#include "history/ImageImport.h"
#include "link/Comm.h"
#include "link/ConnectionSettings.h"
#include "link/LinkState.h"
#include "link/LoggedPort.h"
#include "link/PortMap.h"
#include "link/QtSerialPort.h"
#include "link/cmd.h"
#include "measure/LiveDisplay.h"
#include "measure/Sample.h"
#include "plot/LiveTrend.h"
#include "plot/frmPlot.h"
#include "session/ConnectionWords.h"
#include "session/LiveLogger.h"
#include "session/PersistedSettings.h"
#include "session/PollLoop.h"
#include "session/Session.h"
#include "session/StatusLine.h"
#include "settings/LoggerSettings.h"
#include "setup/Programming.h"
#include "setup/RecentFiles.h"
#include "ui/FrameKeeper.h"
#include "ui/FrontKeeper.h"
#include "ui/HeldKeys.h"
#include "ui/MessageDialogs.h"
#include "ui/PromptClicks.h"
#include "ui/QtFileDialogs.h"

namespace tessmar {

class frmTrend;
struct ArchivedUpload;
struct HistoryViewerParts;
struct PlotRequest;

/// What the program finds around it at its start.
struct ProgramEnvironment {
  QStringList Arguments;             ///< As the process was given them, the program's name first.
  QString AppPath;                   ///< The program's folder, without a trailing separator.
  QString StorePath;                 ///< The file of the persisted settings.
  QString PortNames;                 ///< Port overrides of the environment, see PortMap.
  QString ArchivePath = {};          ///< The file of the archive; empty keeps nothing.
  QString LogPath = {};              ///< Of the log for support; empty keeps none.
  bool TraceLine = false;            ///< The log says what goes over the line, too.
  std::function<void()> EndProcess;  ///< Ends the process at once; for File, Exit.
};

/// The composition root: makes the one instance of everything, joins the rooms, starts the program
/// and ends it.
///
/// All objects live until the program object dies, which is after the message loop has returned: an
/// operation that a closing window interrupts may touch any of them while it runs out.
class Program {
 public:
  explicit Program(ProgramEnvironment environment, const SystemLocale& locale = SystemLocale());
  ~Program();

  /// Start-up, up to the main window on the screen; the connect action follows from the message
  /// loop. Throws ConversionFault for a bad switch or stored value, with a text fit for the
  /// operator.
  void Start();

  /// The shutdown of a main window closed through its frame: writes the settings, closes the port,
  /// closes every form and ends the message loop. Only the first call does anything.
  void Shutdown();

  /// The shutdown at a signal or a log-out. It asks nothing and shows nothing: settings that cannot
  /// be written are told in a line on standard error, and the message loop's result is 1 then.
  /// Settings that are on their way to the logger are let through first, for 3 seconds at most.
  void EndBySignal();

  /// True when a fault that no operation has trapped has to end the program: with faults not
  /// trapped, and not once it is ending anyway, where a closed port under an operation is nobody's
  /// fault.
  bool AreFaultsFatal() const { return !link_.TrapErrors && !ended_; }

  /// True while settings are on their way to the logger and may not be cut off.
  bool IsProgramming() const { return programming_.IsUnderWay(); }

  frmMain& Window() { return window_; }
  const LinkState& Link() const { return link_; }
  const SupportLog& Log() const { return log_; }
  const CommandLine& Switches() const { return switches_; }

 private:
  void ApplyLanguage();
  void ApplySwitches();
  void ShowStartState();
  void ReadSettings();
  void Perform(MainCommand command);
  void Timer1Tick();

  void ShowConnectDialog();
  void GetHistory();
  QString ShowUpload(std::int32_t totalRecords);
  HistoryViewerParts ViewerParts(const HistoryBuffer& buffer, const LoggerSettings& settings,
                                 const LinkState& link);
  void ShowViewer();
  void ShowArchive();
  void ShowArchivedUpload(const ArchivedUpload& upload, QWidget* parent);
  void ShowArchivedPlot(SeriesSet series, QWidget* parent);
  void ShowPlot(const PlotRequest& request);
  void ShowTrend();
  PlotParts PlotsParts();
  void ShowSetup(bool mayProgram);
  std::optional<ImportChoice> AskImportChoice();
  void ShowAbout();
  bool SaveSettings() const;
  QString NotSaved() const;
  void ProgrammingFinished();
  void EndNow();
  void CloseEverything(int status);
  QString ConnectionSource() const;
  void ReportKept();
  void ReportLiveRun();
  void Exit();

  ProgramEnvironment environment_;
  SystemLocale locale_;
  SystemClock clock_;
  SupportLog log_;
  CommandLine switches_;
  ConnectionWords words_;
  QTranslator qtTexts_;

  LinkState link_;
  LoggerSettings settings_;
  LiveRing ring_;
  HistoryBuffer history_;
  ConnectionSettings connection_;
  RecentFiles recentFiles_;
  QString csvDateTimeSingleColumn_;
  PersistedSettings store_;

  PortMap ports_;
  Journal archive_;
  QtMessageLoop loop_;
  QtSerialPort serialPort_;
  LoggedPort port_;
  frmMain window_;
  MessageDialogs messageDialogs_;
  LoggedMessages messages_;
  QtFileDialogs fileDialogs_;

  Comm comm_;
  LoggerCommands commands_;
  LiveDisplay display_;
  Programming programming_;
  LiveLogger logger_;
  PollLoop pollLoop_;
  StatusLine statusLine_;
  ActivityLog activity_;
  Session session_;
  ImageImport imageImport_;
  MainActions actions_;
  HelpFiles helpFiles_;
  Help help_;
  CloseRequests closeRequests_;
  HeldKeys heldKeys_;
  PromptClicks promptClicks_;
  FrontKeeper frontKeeper_;
  FrameKeeper frameKeeper_;
  SessionEnd sessionEnd_;

  std::optional<JournalTimer> archiveTimer_;
  std::optional<LiveTrend> trend_;
  QPointer<frmTrend> trendWindow_;

  QTimer timer1_;
  QTimer timer2_;
  bool settingsRead_ = false;  ///< The store was read as a whole, and so may be written.
  bool storeUnreadable_ = false;
  int status_ = 0;  ///< Of a process that a signal ends: 1 when the settings were lost.
  bool ended_ = false;
  bool endWanted_ = false;  ///< By a signal that waits for settings on their way to the logger.
};

}  // namespace tessmar
