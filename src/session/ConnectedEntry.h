#pragma once

#include <optional>

#include "base/Logbook.h"
#include "link/LinkState.h"
#include "settings/config.h"

namespace tessmar {

/// What the logbook is to know of a logger that was met, before anybody did anything to it: its
/// state, its settings, and in which of them it differs from how it was left the last time. Clock,
/// records and status are no settings and never differ.
/// @param found  its configuration as it would be packed; nothing when it was not read whole.
/// @param known  how it was left; nothing when nobody knows.
LogbookEntry ConnectedEntry(const LinkState& link, const std::optional<ConfigImage>& found,
                            const std::optional<KnownSettings>& known);

}  // namespace tessmar
