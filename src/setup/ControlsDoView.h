#pragma once

#include "link/LinkState.h"
#include "setup/DoSetupChecks.h"
#include "setup/SetupControls.h"

namespace tessmar {

/// The setup screen as its check sees it, without a screen: controls that hold these values, in the
/// lists that a logger with so many channels has. The controls must outlive it.
DoSetupView ViewOfControls(const LinkState& link, const SetupControls& controls);

}  // namespace tessmar
