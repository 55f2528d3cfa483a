#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include "base/MessageLoop.h"

namespace tessmar {

/// The message loop of the application. One is made after the application object, in its thread.
class QtMessageLoop final : public QObject, public MessageLoop {
 public:
  QtMessageLoop();

  /// Sleeps at most a tenth of a second, whatever comes. Does not sleep once the program is ending.
  void RunOnce() override;
  void RunPending() override;
  void RunPendingIfDue() override;
  bool Ending() const override { return ending_; }

  /// The program is ending: every wait is over. Asking the application to quit does the same.
  void End();

  /// True inside RunOnce and RunPending: something waits further up the stack.
  bool IsRunningOnce() const { return depth_ > 0; }

  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  /// Wakes a wait when no timer of the program runs, so that it sees the end of the program. It
  /// goes on from one wait to the next, and stops by itself when it finds none.
  QTimer alarm_;
  QElapsedTimer sincePending_;  ///< Since the last RunPending; invalid before the first.
  int depth_ = 0;
  bool ending_ = false;
};

}  // namespace tessmar
