#include "session/Session.h"

#include <optional>
#include <utility>

#include "ProgramVersion.h"
#include "base/TextTable.h"
#include "session/ConnectedEntry.h"
#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kIdentifierLength = 8;

}  // namespace

QString NewIdentifier() {
  const QString text = u"%1 %2%3%4"_s.arg(kIdentifierMark)
                           .arg(kVersionMajor)
                           .arg(kVersionMinor)
                           .arg(kVersionRevision);
  return text.leftJustified(kIdentifierLength, u' ', true);
}

Session::Session(const LiveLogger& logger, Comm& comm, PollLoop& pollLoop, MainScreen& screen,
                 Messages& messages, MessageLoop& loop, std::function<void()> showConnectDialog)
    : logger_(logger),
      link_(logger.Link),
      comm_(comm),
      pollLoop_(pollLoop),
      screen_(screen),
      messages_(messages),
      loop_(loop),
      showConnectDialog_(std::move(showConnectDialog)) {}

void Session::Connect() {
  if (link_.Busy || link_.SampleContinuously) return;
  FirstContact contact = FirstContact::Abandoned;
  {
    const BusyScope busy(link_);
    ForgetLogger();
    if (!link_.Connected) {
      showConnectDialog_();
      if (link_.Connected) {
        logger_.Configuration.BeginSession();
        contact = MeetLogger();
      }
    }
    if (contact == FirstContact::Abandoned) Leave();
  }
  if (contact == FirstContact::Ready) {
    pollLoop_.GetSample();
    NoteConnected();
  }
  if (contact == FirstContact::Failed) {
    messages_.MsgBox(GetText(TextId::InitializationFailed), kCritical,
                     GetText(TextId::InitializationErrorTitle));
    Leave();
  }
}

void Session::ForgetLogger() {
  logger_.Display.EmptyRing();
  logger_.Settings.LoggerName.clear();
  for (const QString& label : {u"lblSampleInterval"_s, u"lblWarmup"_s, u"lblLoggingState"_s,
                               ElementName("lblAlarm", 0), ElementName("lblAlarm", 1)}) {
    screen_.SetCaption(label, QString());
  }
  link_.RecordCount = 0;
  link_.StatusAt = {};
  link_.ClockOffsetS.reset();
  logger_.Display.HideChannels();
}

// There is no command for leaving a session: the logger is simply left.
void Session::Leave() {
  link_.Connected = false;
  comm_.ClosePort();
}

Session::FirstContact Session::MeetLogger() {
  QString identifier;
  {
    const WaitCursorScope waiting(screen_);
    identifier = logger_.Configuration.ReadIdentifier();
  }
  if (loop_.Ending()) return FirstContact::Abandoned;
  if (identifier.startsWith(kIdentifierMark)) return FirstContact::Ready;
  return InitializeLogger();
}

Session::FirstContact Session::InitializeLogger() {
  const int answer = messages_.MsgBox(GetText(TextId::AskInitializeFlash), kOkCancel | kExclamation,
                                      GetText(TextId::InitializationRequiredTitle));
  // A program that ends answers its questions by itself; that is nobody's leave to erase a logger.
  if (answer != kOk || loop_.Ending()) return FirstContact::Abandoned;

  const WaitCursorScope waiting(screen_);
  const bool initialized = InitializeMemory();
  if (loop_.Ending()) return FirstContact::Abandoned;
  if (!initialized) return FirstContact::Failed;
  logger_.Commands.SetLoggerTime(logger_.Commands.ClockText());
  logger_.Book.Note({.Kind = EventKind::Initialized, .Text = u"flash memory initialised"_s});
  return FirstContact::Ready;
}

void Session::NoteConnected() {
  if (!link_.Connected || loop_.Ending()) return;
  std::optional<ConfigImage> found;
  if (logger_.Configuration.HasReadAll()) {
    LinkState trapping = link_;
    trapping.TrapErrors = true;
    PackConfigImage(trapping, logger_.Settings, found.emplace());
  }
  logger_.Book.Note(ConnectedEntry(link_, found, logger_.Book.LastSettings()));
}

// The identifier is written last, so that a logger left half-way is offered initialisation again.
bool Session::InitializeMemory() {
  if (!logger_.Commands.InitializeFlash()) return false;
  const ProgrammingScope whole(logger_.Configuration);
  LoadDefaultSettings(logger_.Settings, link_.AnalogChannelCount);
  if (!logger_.Configuration.ProgramConfiguration()) return false;
  const QString identifier = NewIdentifier();
  // Only what is read back decides: an answer can be lost behind a writing that was done.
  logger_.Configuration.WriteIdentifier(identifier);
  return logger_.Configuration.ReadIdentifier() == identifier;
}

}  // namespace tessmar
