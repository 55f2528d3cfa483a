#include "app/Program.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <cstdio>
#include <cstdlib>

#include "app/MainLocalizer.h"
#include "app/VersionText.h"
#include "app/frmSplash.h"
#include "base/FileNames.h"
#include "base/Localize.h"
#include "base/TextTable.h"
#include "plot/frmTrend.h"
#include "ui/ActiveWindow.h"
#include "ui/Pictures.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kTickMs = 100;
/// For settings on their way to the logger, when a signal wants the end.
constexpr int kLongestFinishMs = 3000;

// The ports file stands beside the store.
QString PortsPath(const QString& storePath) {
  return QFileInfo(storePath).dir().filePath(u"ports.conf"_s);
}

QString Title() {
  return u"Tessmar DO Monitor v"_s + ProgramVersionText();
}

}  // namespace

Program::Program(ProgramEnvironment environment, const SystemLocale& locale)
    : environment_(std::move(environment)),
      locale_(locale),
      log_(environment_.LogPath, clock_),
      store_(environment_.StorePath, locale_.Locale()),
      ports_(environment_.PortNames, ReadPortsFile(PortsPath(environment_.StorePath))),
      archive_(environment_.ArchivePath,
               {.Link = link_,
                .Settings = settings_,
                .Time = clock_,
                .Source = [this] { return ConnectionSource(); },
                .Program = ProgramVersionText(),
                .AsRead = [this]() -> const LoggerAsRead& { return programming_.AsRead(); }}),
      serialPort_(ports_),
      port_(serialPort_, log_, environment_.TraceLine),
      messageDialogs_([this] { return loop_.Ending(); }),
      messages_(messageDialogs_, log_),
      fileDialogs_(messages_, [this] { return loop_.Ending(); }),
      comm_(port_, loop_, link_),
      commands_(comm_, link_, clock_, locale_),
      display_(link_, settings_, ring_, window_, locale_),
      programming_(commands_, link_, settings_, display_),
      logger_{link_, settings_, commands_, programming_, display_, archive_},
      pollLoop_(logger_, window_, loop_, words_),
      statusLine_(link_, settings_, locale_, window_,
                  [this] { return archive_.RecordsNotArchived(); }),
      activity_(log_, link_, port_),
      session_(logger_, comm_, pollLoop_, window_, messages_, loop_,
               [this] { ShowConnectDialog(); }),
      imageImport_(link_, settings_, display_, window_, history_, archive_, messages_, fileDialogs_,
                   loop_, environment_.AppPath,
                   {.AskChoice = [this] { return AskImportChoice(); },
                    // Its count goes on: a wait under an import has to end.
                    .StopTimer1 = [this] { pollLoop_.SetPaused(true); },
                    .StartTimer1 = [this] { pollLoop_.SetPaused(false); },
                    .ShowSetup = [this](bool mayProgram) { ShowSetup(mayProgram); },
                    .ShowViewer = [this] { ShowViewer(); },
                    .ReportKept = [this] { ReportKept(); }}),
      actions_(logger_, session_, pollLoop_, window_, messages_, loop_,
               {.GetHistory = [this] { GetHistory(); },
                .ShowSetup = [this] { ShowSetup(true); },
                .LoadLoggerImageFile = [this] { imageImport_.LoadLoggerImageFile(); }}),
      helpFiles_(FindHelpFiles(environment_.AppPath)),
      help_(environment_.AppPath),
      closeRequests_(window_, [this] { return loop_.IsRunningOnce(); }),
      sessionEnd_([this] { EndBySignal(); }) {
  programming_.OnFinished = [this] { ProgrammingFinished(); };
  // What is half-way to the logger would stay there half, not committed.
  window_.MayClose = [this] { return ended_ || !programming_.IsUnderWay(); };
  QGuiApplication::setWindowIcon(ProgramIcon());
  QObject::connect(&window_, &frmMain::CommandRequested, &window_,
                   [this](MainCommand command) { Perform(command); });
  // The connection dialog opens by itself, over the window that stands.
  QObject::connect(&window_, &frmMain::FirstPainted, &window_,
                   [this] { Perform(MainCommand::ToggleConnection); });
  QObject::connect(&window_, &frmMain::Painted, &window_, [this] { display_.RedrawMeters(); });
  display_.SamplePushed = [this] {
    if (!trendWindow_.isNull()) trendWindow_->TakeSample();
  };
  QObject::connect(&window_, &frmMain::Closed, &window_, [this] { Shutdown(); });
  for (QTimer* timer : {&timer1_, &timer2_}) {
    timer->setInterval(kTickMs);
    timer->setTimerType(Qt::PreciseTimer);
  }
  pollLoop_.KeepSamples(archive_);
  QObject::connect(&timer1_, &QTimer::timeout, &window_, [this] { Timer1Tick(); });
  QObject::connect(&timer2_, &QTimer::timeout, &window_, [this] { pollLoop_.Timer2Tick(); });
}

Program::~Program() {
  // It looks at what goes before the main window does.
  delete trendWindow_;
  // By now the window is gone, and nobody waits for the last records.
  pollLoop_.StopKeeping();
  archive_.Finish();
}

void Program::Start() {
  log_.Write(Title() + u" begins"_s);
  ApplyLanguage();
  ApplySwitches();
  window_.SetCaption(u"frmMain"_s, u"Tessmar DO Monitor"_s);
  window_.SetVisible(u"mnuLaunchDOHelp"_s, !helpFiles_.DissolvedOxygen.isEmpty());

  frmSplash splash;
  splash.show();
  splash.repaint();

  ShowStartState();
  ReadSettings();

  splash.close();
  window_.show();
  timer1_.start();
  timer2_.start();
  archiveTimer_.emplace(archive_);
  pollLoop_.SetUnderConstruction(false);
}

void Program::ApplyLanguage() {
  const UserLocale user = DetectUserLocale(locale_);
  std::int16_t language = store_.Language(user.Language);
  switches_ = ParseCommandLine(CommandLineText(environment_.Arguments), locale_.Locale());
  language = switches_.Language.value_or(language);
  SetTextLanguage(language);
  // Qt's own words: the context menus of text fields, parts of the file dialogs.
  if (language == kLanguageGerman &&
      qtTexts_.load(u"qtbase_de"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&qtTexts_);
  }
  words_ = LocalizeMainScreen(window_, language);
}

void Program::ApplySwitches() {
  link_.AnalogChannelCount = kAnalogChannels;
  link_.PulseChannelCount = kPulseChannels;
  ApplyCommandLine(switches_, link_, window_);
}

void Program::ShowStartState() {
  window_.SetCaption(u"lblCommStatus"_s, words_.Disconnected);
  window_.SetTextColour(u"lblCommStatus"_s, kDisconnectedColour);
  window_.SetCaption(u"frmMain"_s, Title());
  for (const char* label :
       {"lblPulseValue1", "lblPulseValue2", "lblLoggerName", "lblDateTime", "lblSampleInterval",
        "lblWarmup", "lblLoggingState", "lblRecordings", "lblAlarm(0)", "lblAlarm(1)"}) {
    window_.SetCaption(QString::fromLatin1(label), {});
  }
}

void Program::ReadSettings() {
  settingsRead_ = store_.Load(connection_, recentFiles_, csvDateTimeSingleColumn_);
  storeUnreadable_ = !settingsRead_;
}

void Program::Shutdown() {
  if (ended_) return;
  ended_ = true;
  if (!SaveSettings()) {
    status_ = EXIT_FAILURE;
    messages_.MsgBox(NotSaved(), kExclamation, window_.windowTitle());
    // A signal may have ended the program under the message.
    if (loop_.Ending()) return;
  }
  pollLoop_.StopKeeping();
  const QString lost = archive_.TakeLiveReport(true);
  if (!lost.isEmpty()) {
    messages_.MsgBox(lost, kExclamation, window_.windowTitle());
    if (loop_.Ending()) return;
  }
  CloseEverything(EXIT_SUCCESS);
}

void Program::EndBySignal() {
  if (!programming_.IsUnderWay()) return EndNow();
  if (endWanted_) return;
  endWanted_ = true;
  QTimer::singleShot(kLongestFinishMs, &window_, [this] { EndNow(); });
}

void Program::ProgrammingFinished() {
  if (!endWanted_) return;
  // At once, so that whatever follows on the stack asks nothing and goes to the logger no more; the
  // rest when the stack has unwound.
  loop_.End();
  QMetaObject::invokeMethod(
      &window_, [this] { EndNow(); }, Qt::QueuedConnection);
}

void Program::EndNow() {
  if (!ended_ && !SaveSettings()) {
    status_ = EXIT_FAILURE;
    std::fprintf(stderr, "TessmarLogger: %s\n", qPrintable(NotSaved().replace("\r\n"_L1, " "_L1)));
  }
  ended_ = true;
  pollLoop_.StopKeeping();
  const QString lost = archive_.TakeLiveReport(true);
  if (!lost.isEmpty()) std::fprintf(stderr, "TessmarLogger: %s\n", qPrintable(lost.simplified()));
  CloseEverything(status_);
}

void Program::CloseEverything(int status) {
  log_.Write(u"ends"_s);
  comm_.ClosePort();
  timer1_.stop();
  timer2_.stop();
  loop_.End();
  const QWidgetList forms = QApplication::topLevelWidgets();
  for (QWidget* form : forms) {
    if (auto* dialog = qobject_cast<QDialog*>(form)) dialog->done(QDialog::Rejected);
  }
  // Not quit(), which would ask every window for its consent first.
  QCoreApplication::exit(status);
}

bool Program::SaveSettings() const {
  // What was never read is not known, and writing it would lose what stands there.
  if (!settingsRead_) return !storeUnreadable_;
  return store_.Save(connection_, recentFiles_, csvDateTimeSingleColumn_);
}

QString Program::NotSaved() const {
  const QString lost = TextLanguage() == kLanguageGerman
                           ? u"Die Einstellungen konnten nicht gespeichert werden:"_s
                           : u"The settings could not be saved:"_s;
  return lost + u"\r\n"_s + QDir::toNativeSeparators(environment_.StorePath);
}

void Program::Perform(MainCommand command) {
  activity_.Command(command);
  switch (command) {
    case MainCommand::ToggleConnection:
      return actions_.Connect();
    case MainCommand::Connect:
      return actions_.ConnectEntry();
    case MainCommand::Disconnect:
      return actions_.DisconnectEntry();
    case MainCommand::ToggleSampling:
      return actions_.SampleContinuouslyEntry();
    case MainCommand::SamplingClicked:
      return actions_.SampleContinuouslyClicked();
    case MainCommand::GetSample:
      return actions_.GetSample();
    case MainCommand::GetHistory:
      return actions_.GetHistory();
    case MainCommand::ClearHistory:
      return actions_.ClearHistory();
    case MainCommand::SyncTime:
      return actions_.SynchronizeTime();
    case MainCommand::Setup:
      return actions_.Setup();
    case MainCommand::ResetPulseAccumulators:
      return actions_.ResetPulseAccumulators();
    case MainCommand::LoadLoggerImageFile:
      return actions_.LoadLoggerImageFile();
    case MainCommand::Archive:
      return ShowArchive();
    case MainCommand::FirmwareVersion:
      return actions_.FirmwareVersion();
    case MainCommand::LiveTrend:
      return ShowTrend();
    case MainCommand::LaunchHelp:
      return help_.Open(helpFiles_.Logger);
    case MainCommand::LaunchDoHelp:
      return help_.Open(helpFiles_.DissolvedOxygen);
    case MainCommand::About:
      return ShowAbout();
    case MainCommand::Exit:
      return Exit();
  }
}

void Program::Exit() {
  pollLoop_.StopKeeping();
  archive_.Finish();
  environment_.EndProcess();
}

QString Program::ConnectionSource() const {
  if (connection_.ConnectionIsModem) return connection_.CurrentPhoneNumber;
  const int number = port_.Number();
  return (u"COM%1 "_s.arg(number) + ports_.Device(number)).trimmed();
}

void Program::ReportKept() {
  const QString report = archive_.TakeReport();
  if (!report.isEmpty()) messages_.MsgBox(report, kExclamation, window_.windowTitle());
}

void Program::Timer1Tick() {
  pollLoop_.Timer1Tick();
  if (!loop_.Ending()) statusLine_.Show();
  activity_.Tick();
  ReportLiveRun();
}

// A run of sampling ends in a tick, which must not wait for anybody, and may end while something
// else is on the screen.
void Program::ReportLiveRun() {
  if (loop_.Ending() || link_.Busy || QApplication::activeModalWidget() != nullptr) return;
  const QString report = archive_.TakeLiveReport();
  if (report.isEmpty()) return;
  QMetaObject::invokeMethod(
      &window_, [this, report] { messages_.MsgBox(report, kExclamation, window_.windowTitle()); },
      Qt::QueuedConnection);
}

}  // namespace tessmar
