#pragma once

#include "app/frmMain.h"
#include "base/SupportLog.h"
#include "link/LinkState.h"

namespace tessmar {

/// Writes what the operator asks for, and when a logger comes and goes, into the log for support.
class ActivityLog {
 public:
  ActivityLog(const SupportLog& log, const LinkState& link) : log_(log), link_(link) {}

  void Command(MainCommand command) const;
  /// Looks at the connection; called with every tick.
  void Tick();

 private:
  const SupportLog& log_;
  const LinkState& link_;
  bool connected_ = false;  ///< As it was told last.
};

}  // namespace tessmar
