#pragma once

#include "cli/CommandEnvironment.h"
#include "cli/CommandOptions.h"

namespace tessmar {

/// The commands. Each gives the exit status when it was carried out, and throws CommandFailure
/// when it was not.
CommandStatus RunPorts(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunStatus(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunSample(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunUpload(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunClock(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunClear(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunSettingsGet(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunSettingsPut(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunSettingsDiff(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunConvert(CommandEnvironment& environment, const CommandOptions& options);

CommandStatus RunArchiveList(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunArchiveShow(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunArchiveExport(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunArchivePush(CommandEnvironment& environment, const CommandOptions& options);
CommandStatus RunArchiveCheck(CommandEnvironment& environment, const CommandOptions& options);

/// Runs the command of a command line, program name first, and shows what comes of it.
/// @return the exit status of the process.
int RunCommand(CommandEnvironment& environment, const QStringList& arguments);

}  // namespace tessmar
