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
    case CommandWork::ArchiveCheck:
      return RunArchiveCheck(environment, options);
  }
  return kCommandWrongUsage;
}

}  // namespace

int RunCommand(CommandEnvironment& environment, const QStringList& arguments) {
  const ParsedCommand command = ParseCommand(arguments);
  try {
    if (!command.Error.isEmpty()) throw CommandFailure(command.Error, kCommandWrongUsage);
    if (!command.Options) {
      environment.Out.Raw(command.Text);
      return kCommandDone;
    }
    environment.Out.SetQuiet(command.Options->Quiet);
    return Run(environment, *command.Options);
  } catch (const CommandFailure& failure) {
    environment.Out.Complaint(failure.Text);
    return failure.Status;
  } catch (const FileTrouble& trouble) {
    environment.Out.Complaint(trouble.Text());
    return kCommandFailed;
  } catch (const Fault& fault) {
    environment.Out.Complaint(QString::fromUtf8(fault.what()));
    return kCommandFailed;
  }
}

}  // namespace tessmar
