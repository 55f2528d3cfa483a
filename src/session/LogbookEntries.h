#pragma once

#include <cstdint>
#include <optional>

#include "base/Logbook.h"

namespace tessmar {

/// What the logbook is to know of a history that was cleared.
/// @param records  that the logger had.
LogbookEntry ClearedEntry(std::int32_t records);

/// Of a clock that was set.
/// @param before  seconds by which it was fast until then, and after; nothing where nobody read it.
LogbookEntry SyncedEntry(std::optional<std::int32_t> before, std::optional<std::int32_t> after);

}  // namespace tessmar
