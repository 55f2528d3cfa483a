#pragma once

#include <QString>

#include "cli/CommandEnvironment.h"
#include "history/HistoryBuffer.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// Saves records as the viewer's Save To File does, byte for byte: with the language, the locale
/// and the date form that the program itself would use. Throws FileFault.
void SaveHistory(CommandEnvironment& environment, const QString& path, const HistoryBuffer& buffer,
                 const LoggerSettings& settings, const LinkState& link);

}  // namespace tessmar
