#pragma once

#include <optional>

#include "archive/JournalQueue.h"
#include "archive/Store.h"
#include "base/Logbook.h"

namespace tessmar {

/// How a logger was left, as far as is known: the newest of what was programmed, what a connection
/// found and what an upload was read with. Nothing where a logger was initialised since, or never
/// seen.
///
/// Imported images do not count: nobody knows how old they are.
/// @param store  open; null where there is no archive yet. Throws ArchiveFault.
/// @param queue  what is newer than the store, and waits for it.
std::optional<KnownSettings> FindLastSettings(const Store* store, const JournalQueue& queue,
                                              const LoggerName& logger);

}  // namespace tessmar
