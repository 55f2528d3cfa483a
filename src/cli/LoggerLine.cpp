#include "cli/LoggerLine.h"

#include <QFileInfo>
#include <QRegularExpression>

#include "archive/ArchiveTexts.h"
#include "base/Fault.h"
#include "cli/ArchiveFile.h"
#include "cli/HistoryFile.h"
#include "link/ConnectChoices.h"
#include "link/ConnectOperation.h"
#include "link/PortTrouble.h"
#include "session/ConnectedEntry.h"
#include "session/LiveLogger.h"
#include "session/Session.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Where a device that was named by its path stands in the map of this one command.
constexpr std::int16_t kPathNumber = 1;
/// Tenths of a second that another program may hold the archive once the work is done.
constexpr int kPatienceTicks = 50;

bool IsComName(const QString& operand) {
  static const QRegularExpression form(u"^COM[1-9][0-9]{0,3}\\z"_s,
                                       QRegularExpression::CaseInsensitiveOption);
  return form.match(operand).hasMatch();
}

PortTrouble Trouble(PortCause cause) {
  return {.Cause = cause, .Group = {}, .Holder = {}};
}

}  // namespace

bool NamesAPort(const QString& operand) {
  if (IsComName(operand)) return true;
  if (!operand.contains(u'/')) return false;
  // A regular file or a folder is none; what is not there may be a device that was pulled out.
  const QFileInfo info(operand);
  return !info.exists() || (!info.isFile() && !info.isDir());
}

QString IsoUtc(const QDateTime& time) {
  return time.toUTC().toString(u"yyyy-MM-ddTHH:mm:ss"_s) + u'Z';
}

QString IsoBare(const QDateTime& time) {
  return time.toString(u"yyyy-MM-ddTHH:mm:ss"_s);
}

LoggerLine::LoggerLine(CommandEnvironment& environment, const QString& port,
                       const CommandOptions& options)
    : environment_(environment),
      name_(port),
      ports_(environment.Ports),
      number_(IsComName(port) ? PortNumber(port.toUpper()) : kPathNumber),
      port_([&] {
        if (!IsComName(port)) ports_.Assign(kPathNumber, QFileInfo(port).absoluteFilePath());
        return environment.MakePort(ports_);
      }()),
      Line(*port_, environment.Loop, Link),
      Commands(Line, Link, environment.Time, environment.Locale),
      Display(Link, Settings, Ring, Screen, environment.Locale),
      Programmer(Commands, Link, Settings, Display),
      Archive(ArchivePathOf(options), {.Link = Link,
                                       .Settings = Settings,
                                       .Time = environment.Time,
                                       .Source = [this] { return name_; },
                                       .Program = WrittenBy()}),
      Poll({Link, Settings, Commands, Programmer, Display, Archive}, Screen, environment.Loop,
           words_) {
  if (!NamesAPort(port)) {
    throw CommandFailure(
        TwoLanguages{
            u"\"%1\" is no port: a COM name (COM5) or a device (/dev/ttyUSB0) is wanted",
            u"\"%1\" ist kein Anschluss: ein COM-Name (COM5) oder ein Gerät (/dev/ttyUSB0) "
            u"wird gebraucht"}
            .Text()
            .arg(port),
        kCommandWrongUsage);
  }
  Link.TrapErrors = true;
  Link.LinkTimeoutTicks = kDirectTimeoutTicks;
  Link.Busy = true;
  environment_.OnTick = [this] {
    Poll.Timer1Tick();
    Poll.Timer2Tick();
    Archive.Tick();
  };
  environment_.IsUncut = [this] { return Programmer.IsUnderWay(); };
  try {
    Open(options.Baud);
    ShakeHands();
    ReadIdentifier();
    ReadEverything();
  } catch (...) {
    Leave();
    throw;
  }
  Archive.Note(ConnectedEntry(Link, PackedSettings(), Archive.LastSettings()));
}

LoggerLine::~LoggerLine() {
  KeepAll();
  TellOfLogbook();
  Leave();
}

void LoggerLine::Leave() {
  environment_.OnTick = {};
  environment_.IsUncut = {};
  Line.ClosePort();
}

ConfigImage LoggerLine::PackedSettings() const {
  ConfigImage image;
  PackConfigImage(Link, Settings, image);
  return image;
}

void LoggerLine::Note(const LogbookEntry& entry) {
  isChanged_ = true;
  isKept_ = false;
  Archive.Note(entry);
}

void LoggerLine::KeepAll() {
  if (isKept_) return;
  isKept_ = true;
  for (int tries = 0; tries < kPatienceTicks && !Archive.WriteAll(); ++tries) {
    if (Archive.Trouble() != ArchiveTrouble::Busy) break;
    Line.WaitForBytes(1, 0);
  }
  Archive.Finish();
}

// That somebody looked at a logger is a remark; that it was changed, and nobody will know, is not.
void LoggerLine::TellOfLogbook() {
  const QString report = Archive.TakeReport();
  if (!report.isEmpty()) environment_.Out.Complaint(report);
  if (Archive.EventsWaiting() == 0) return;
  const QString text =
      TwoLanguages{u"this is not in the logbook; archive %1: %2",
                   u"dies steht nicht im Logbuch; Archiv %1: %2"}
          .Text()
          .arg(Archive.Path(), TroubleText(Archive.Trouble().value_or(ArchiveTrouble::Unwritable)));
  if (isChanged_) {
    environment_.Out.Complaint(text);
  } else {
    environment_.Out.Remark(text);
  }
}

QString LoggerLine::Device() const {
  return ports_.Device(number_);
}

void LoggerLine::Open(int baud) {
  if (Line.OpenPort(number_, QString::number(baud) + u",N,8,1"_s)) return;
  const QString device = Device();
  throw CommandFailure(PortTroubleText(
      device.isEmpty() ? Trouble(PortCause::NoSuchDevice) : FindPortTrouble(device), name_));
}

void LoggerLine::ShakeHands() {
  // A device that has gone by now is found out by the handshake.
  Trapped(Link, [&] { Line.SetHandshaking(Handshaking::None); });
  if (Commands.SyncWithLogger([this] { return environment_.StopWanted(); })) {
    Link.Connected = true;
    return;
  }
  const CommandFailure unlucky = Failure({u"", u""});
  if (!unlucky.Text.isEmpty()) throw unlucky;
  throw CommandFailure(PortTroubleText(Trouble(NoContactCause(Line, Commands)), name_));
}

void LoggerLine::ReadIdentifier() {
  const QString identifier = Programmer.ReadIdentifier();
  if (identifier.startsWith(kIdentifierMark)) return;
  if (identifier.isEmpty())
    throw Failure({u"the logger's identifier could not be read; check the cable and try again",
                   u"die Kennung des Loggers ist nicht lesbar; Kabel prüfen und neu versuchen"});
  throw Failure({u"this logger was never initialized; connect to it with Tessmar Logger once",
                 u"dieser Logger wurde nie initialisiert; einmal mit Tessmar Logger verbinden"});
}

void LoggerLine::ReadEverything() {
  const std::optional<ConfigImage> image = Programmer.ReadImage();
  if (!image || !ReadStatus())
    throw Failure({u"settings and status of the logger could not be read; try again",
                   u"Einstellungen und Zustand des Loggers sind nicht lesbar; neu versuchen"});
  image_ = *image;
  UnpackConfigImage(Link, image_, Settings);
  Display.RefreshMainScreen();
  Display.UpdateSampleDisplay();
  ReadClock();
}

bool LoggerLine::ReadStatus() {
  return Commands.GetLoggerStatus();
}

void LoggerLine::ReadClock() {
  clock_ = Commands.ReadClock();
  if (!clock_) Link.ClockOffsetS.reset();
}

CommandFailure LoggerLine::Failure(const TwoLanguages& text) const {
  if (environment_.StopWanted() || environment_.Loop.Ending())
    return CommandFailure(name_ + TwoLanguages{u": broken off", u": abgebrochen"}.Text());
  if (!Line.IsPortOpen()) return CommandFailure(PortTroubleText(Trouble(PortCause::Gone), name_));
  const QString words = text.Text();
  return CommandFailure(words.isEmpty() ? words : name_ + u": "_s + words);
}

void LoggerLine::Describe(JsonLine& json) const {
  json.Text("name", Settings.LoggerName)
      .Number("model", Link.LoggerModelCode)
      .Number("firmware", Link.FirmwareVersion)
      .Number("analog", Link.AnalogChannelCount)
      .Number("pulse", Link.PulseChannelCount);
}

}  // namespace tessmar
