// settings get, put and diff.

#include "ProgramVersion.h"
#include "base/Blanks.h"
#include "base/Fault.h"
#include "cli/Commands.h"
#include "cli/LoggerLine.h"
#include "cli/OutputFile.h"
#include "cli/SettingsDifference.h"
#include "cli/SettingsSource.h"
#include "settings/SetupFile.h"
#include "setup/CalibrationNotes.h"
#include "setup/ControlsDoView.h"
#include "setup/DoSetupChecks.h"
#include "setup/SetupControls.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Takes every warning for what it is: told, and counted.
class CountedWarnings final : public Messages {
 public:
  explicit CountedWarnings(Output& out) : out_(out) {}

  int MsgBox(const QString& prompt, int /*buttons*/, const QString& /*title*/) override {
    // The last paragraph asks whether to go on; the answer is --force.
    const qsizetype question = prompt.lastIndexOf(u"\r\n\r\n"_s);
    out_.Complaint(question < 0 ? prompt : prompt.left(question));
    ++count_;
    return kOk;
  }
  int Count() const { return count_; }

 private:
  Output& out_;
  int count_ = 0;
};

/// The same checks as on the setup screen. @return the number of warnings told.
int WarnOfDoSetup(Output& out, const LinkState& link, const SetupControls& controls) {
  CountedWarnings warnings(out);
  try {
    CheckDoSetup(ViewOfControls(link, controls), warnings);
  } catch (const Fault&) {
    out.Complaint(
        TwoLanguages{u"Warning: the DO set-up names a channel that this logger does not "
                     u"have",
                     u"Warnung: die DO-Einstellungen nennen einen Kanal, den dieser "
                     u"Logger nicht hat"}
            .Text());
    return warnings.Count() + 1;
  }
  return warnings.Count();
}

/// What the setup screen would program once it had loaded the file: its controls hold what the file
/// says, and the record takes what they hold.
void PassThroughControls(const CommandEnvironment& environment, LoggerLine& logger,
                         SetupControls& controls) {
  const bool use24HourClock = environment.Locale.Uses24HourClock();
  SettingsToControls(logger.Link, use24HourClock, logger.Settings, controls);
  ControlsToSettings(logger.Link, use24HourClock, controls, logger.Settings);
}

void ReportSettings(CommandEnvironment& environment, const CommandOptions& options,
                    const LoggerLine& logger, const TwoLanguages& words) {
  const QString& file = options.Operands[1];
  if (options.Json) {
    JsonLine json;
    json.Text("port", logger.PortName());
    logger.Describe(json);
    json.Text("file", file);
    environment.Out.Data(json.Line());
    return;
  }
  environment.Out.Data(words.Text().arg(logger.Settings.LoggerName, file));
}

/// Programs, reads back, compares and commits, as one: a wish to end is heard ahead of it and
/// behind it.
void ProgramWhole(const CommandEnvironment& environment, LoggerLine& logger,
                  const ConfigImage& image) {
  if (environment.StopWanted()) throw logger.Failure({u"", u""});
  {
    const ProgrammingScope whole(logger.Programmer);
    if (logger.Programmer.ProgramImage(image) && logger.Commands.CommitConfiguration()) return;
  }
  if (environment.Loop.Ending())
    throw CommandFailure(
        logger.PortName() +
        TwoLanguages{u": broken off in the middle, the logger may hold half of the "
                     u"settings; program them again",
                     u": mittendrin abgebrochen, der Logger hat vielleicht die "
                     u"Hälfte der Einstellungen; noch einmal programmieren"}
            .Text());
  constexpr TwoLanguages kNotProved{
      u"the settings were not programmed, or it cannot be proved; try again",
      u"die Einstellungen wurden nicht programmiert oder es ist nicht zu belegen; neu versuchen"};
  if (!logger.Line.IsPortOpen()) throw logger.Failure(kNotProved);
  throw CommandFailure(logger.PortName() + u": "_s + kNotProved.Text());
}

}  // namespace

CommandStatus RunSettingsGet(CommandEnvironment& environment, const CommandOptions& options) {
  const QString& path = options.Operands[1];
  OutputFile::Check(path);
  const LoggerLine logger(environment, options.Operands[0], options);
  const QDateTime now = environment.Time.Now();
  const SetupFileHead head{
      u"tessmar"_s, u"%1.%2.%3"_s.arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision),
      environment.Locale.ShortDate(now.date()), environment.Locale.ShortTime(now.time())};
  OutputFile file(environment.Out, path);
  const QByteArray bytes = WriteSetupFile(head, logger.Link, logger.Settings);
  file.Device().write(bytes);
  file.Commit();
  if (path != kStandardOutput)
    ReportSettings(environment, options, logger,
                   {u"%1: settings saved in %2", u"%1: Einstellungen gespeichert in %2"});
  return kCommandDone;
}

CommandStatus RunSettingsPut(CommandEnvironment& environment, const CommandOptions& options) {
  const QString& path = options.Operands[1];
  // Read ahead of the connection, so that a file that is none does not cost one.
  const SetupSource file(path);
  LoggerSettings probe;
  file.Load(environment.Locale, kAnalogChannels, probe);
  LoggerLine logger(environment, options.Operands[0], options);
  const ConfigImage before = logger.PackedSettings();
  file.Load(environment.Locale, logger.Link.AnalogChannelCount, logger.Settings);
  SetupControls controls;
  PassThroughControls(environment, logger, controls);

  const int warnings = WarnOfDoSetup(environment.Out, logger.Link, controls);
  if (warnings > 0 && !options.Force)
    throw CommandFailure(TwoLanguages{u"nothing was programmed; put the file right, or say --force",
                                      u"nichts wurde programmiert; die Datei richtigstellen, oder "
                                      u"--force dazu"}
                             .Text());
  ConfigImage image;
  if (!PackConfigImage(logger.Link, logger.Settings, image))
    throw CommandFailure(path + TwoLanguages{u": a value does not fit the logger's memory; nothing "
                                             u"was programmed",
                                             u": ein Wert passt nicht in den Speicher des Loggers; "
                                             u"nichts wurde programmiert"}
                                    .Text());
  ProgramWhole(environment, logger, image);
  logger.Note(ProgrammedEntry(before, image));
  ReportSettings(environment, options, logger,
                 {u"%1: programmed from %2", u"%1: programmiert nach %2"});
  return kCommandDone;
}

CommandStatus RunSettingsDiff(CommandEnvironment& environment, const CommandOptions& options) {
  ReadSettings before = ReadSource(environment, options, options.Operands[0]);
  ReadSettings after = ReadSource(environment, options, options.Operands[1]);
  const ComparedParts parts = PartsOf(before, after);
  for (ReadSettings* side : {&before, &after}) {
    if (side->Setup) side->Setup->Load(environment.Locale, parts.Analog, side->Settings);
  }
  const auto changes = CompareSettings(before.Settings, after.Settings, parts);
  if (!changes)
    throw CommandFailure(TwoLanguages{u"a value does not fit a logger's memory; put the file right",
                                      u"ein Wert passt nicht in den Speicher eines Loggers; die "
                                      u"Datei richtigstellen"}
                             .Text());
  for (const SettingsChange& change : *changes) {
    if (options.Json) {
      JsonLine json;
      json.Text("field", change.Field).Text("old", change.Before).Text("new", change.After);
      environment.Out.Data(json.Line());
      continue;
    }
    environment.Out.Data(ControlsToBlanks(change.Field) + u'\t' + ControlsToBlanks(change.Before) +
                         u'\t' + ControlsToBlanks(change.After));
  }
  return changes->empty() ? kCommandDone : kCommandFailed;
}

}  // namespace tessmar
