#pragma once

#include <QTimer>

#include "archive/Journal.h"

namespace tessmar {

/// Calls the journal's Tick from the message loop, every 100 ms and more often while it has much to
/// do. The journal outlives it.
class JournalTimer {
 public:
  explicit JournalTimer(Journal& journal);

 private:
  QTimer timer_;
};

}  // namespace tessmar
