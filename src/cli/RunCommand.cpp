#include <algorithm>

#include "base/Fault.h"
#include "base/FileTrouble.h"
#include "cli/Commands.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

CommandStatus Run(CommandEnvironment& environment, const CommandOptions& options) {
  switch (options.Work) {
    case CommandWork::Ports:
      return RunPorts(environment, options);
    case CommandWork::Status:
      return RunStatus(environment, options);
    case CommandWork::Sample:
      return RunSample(environment, options);
    case CommandWork::Upload:
      return RunUpload(environment, options);
    case CommandWork::Clock:
      return RunClock(environment, options);
    case CommandWork::Clear:
      return RunClear(environment, options);
    case CommandWork::SettingsGet:
      return RunSettingsGet(environment, options);
    case CommandWork::SettingsPut:
      return RunSettingsPut(environment, options);
    case CommandWork::SettingsDiff:
      return RunSettingsDiff(environment, options);
    case CommandWork::Convert:
      return RunConvert(environment, options);
    case CommandWork::ArchiveList:
      return RunArchiveList(environment, options);
    case CommandWork::ArchiveShow:
      return RunArchiveShow(environment, options);
    case CommandWork::ArchiveExport:
      return RunArchiveExport(environment, options);
    case CommandWork::ArchivePush:
      return RunArchivePush(environment, options);
    case CommandWork::ArchiveCheck:
      return RunArchiveCheck(environment, options);
  }
  return kCommandWrongUsage;
}

/// Why a command on a line failed stands in the program's own log, too, for whoever has to find out
/// later.
void LogFailure(const CommandEnvironment& environment, const CommandOptions& options,
                const QString& text) {
  const auto row = std::ranges::find(CommandRows(), options.Work, &CommandRow::Work);
  if ((row->Options & kOptionBaud) == 0) return;
  environment.Log.Write(u"tessmar %1: %2"_s.arg(QString::fromUtf16(row->Words), text));
}

/// Runs what was asked for, and tells what keeps it from being done.
int RunAsked(CommandEnvironment& environment, const CommandOptions& options) {
  const auto fail = [&](const QString& text, CommandStatus status) {
    environment.Out.Complaint(text);
    if (status != kCommandWrongUsage) LogFailure(environment, options, text);
    return status;
  };
  environment.Out.SetQuiet(options.Quiet);
  try {
    return Run(environment, options);
  } catch (const CommandFailure& failure) {
    return fail(failure.Text, failure.Status);
  } catch (const FileTrouble& trouble) {
    return fail(trouble.Text(), kCommandFailed);
  } catch (const Fault& fault) {
    return fail(QString::fromUtf8(fault.what()), kCommandFailed);
  }
}

}  // namespace

int RunCommand(CommandEnvironment& environment, const QStringList& arguments) {
  const ParsedCommand command = ParseCommand(arguments);
  if (!command.Error.isEmpty()) {
    environment.Out.Complaint(command.Error);
    return kCommandWrongUsage;
  }
  if (command.Options) return RunAsked(environment, *command.Options);
  try {
    environment.Out.Raw(command.Text);
  } catch (const CommandFailure& failure) {
    environment.Out.Complaint(failure.Text);
    return failure.Status;
  }
  return kCommandDone;
}

}  // namespace tessmar
