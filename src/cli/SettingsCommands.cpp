// settings get, put and diff.

#include <QCoreApplication>

#include "ProgramVersion.h"
#include "base/Fault.h"
#include "cli/Commands.h"
#include "cli/LoggerLine.h"
#include "cli/OutputFile.h"
#include "cli/SettingsDifference.h"
#include "cli/SettingsSource.h"
#include "settings/SetupFile.h"
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

}  // namespace

CommandStatus RunSettingsGet(CommandEnvironment& environment, const CommandOptions& options) {
  const QString& path = options.Operands[1];
  OutputFile::Check(path);
  const LoggerLine logger(environment, options.Operands[0], options.Baud);
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
  LoggerSettings probe;
  ReadSetup(path, environment.Locale, kAnalogChannels, probe);
  LoggerLine logger(environment, options.Operands[0], options.Baud);
  ReadSetup(path, environment.Locale, logger.Link.AnalogChannelCount, logger.Settings);
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
  if (!logger.Programmer.ProgramImage(image) || !logger.Commands.CommitConfiguration())
    throw logger.Failure({u"the settings were not programmed, or it cannot be proved; try again",
                          u"die Einstellungen wurden nicht programmiert oder es ist nicht zu "
                          u"belegen; neu versuchen"});
  ReportSettings(environment, options, logger,
                 {u"%1: programmed from %2", u"%1: programmiert nach %2"});
  return kCommandDone;
}

CommandStatus RunSettingsDiff(CommandEnvironment& environment, const CommandOptions& options) {
  LinkState channels;
  channels.TrapErrors = true;
  channels.AnalogChannelCount = kAnalogChannels;
  channels.PulseChannelCount = kPulseChannels;
  ReadSettings before = ReadSource(environment, options, options.Operands[0], channels);
  if (before.KnowsChannels) channels = before.Link;
  const ReadSettings after = ReadSource(environment, options, options.Operands[1], channels);
  // A setup file's defaults are those of the logger beside it.
  if (!before.KnowsChannels && after.KnowsChannels) {
    channels = after.Link;
    before = ReadSource(environment, options, options.Operands[0], channels);
  }
  const std::vector<SettingsDifference> differences = CompareSettings(
      channels, before.Settings, after.Settings, before.HasDerived && after.HasDerived);
  for (const SettingsDifference& difference : differences) {
    if (options.Json) {
      JsonLine json;
      json.Text("field", difference.Field).Text("old", difference.Old).Text("new", difference.New);
      environment.Out.Data(json.Line());
      continue;
    }
    environment.Out.Data(difference.Field + u'\t' + difference.Old + u'\t' + difference.New);
  }
  return differences.empty() ? kCommandDone : kCommandFailed;
}

}  // namespace tessmar
