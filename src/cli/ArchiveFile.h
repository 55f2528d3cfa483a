#pragma once

#include <QString>
#include <functional>

#include "archive/Store.h"
#include "cli/CommandOptions.h"
#include "cli/Output.h"

namespace tessmar {

/// The archive's file that the options name, or the usual one; empty where nothing is to be kept.
QString ArchivePathOf(const CommandOptions& options);

/// What the archive's file refuses, in one line.
CommandFailure ArchiveRefusal(const QString& path, const ArchiveFault& fault);

/// Runs work on the archive, opened for reading. Throws CommandFailure, of wrong usage for a file
/// that was named and is not there.
CommandStatus OnArchive(const CommandOptions& options,
                        const std::function<CommandStatus(Store&)>& work);

/// The upload that the options name by its number in the archive. Throws CommandFailure.
UploadRow UploadNamed(const Store& store, const QString& number);

}  // namespace tessmar
