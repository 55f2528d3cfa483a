#pragma once

namespace tessmar {

/// The user-interface message loop, as the few places that wait see it.
class MessageLoop {
 public:
  virtual ~MessageLoop() = default;

  /// Runs the message loop once: handles what is there, or else sleeps until something comes (bytes
  /// on the port, a timer's tick, a click) and handles that. Timers and clicks run inside.
  virtual void RunOnce() = 0;

  /// Handles what is there without sleeping: for a wait that has nothing to wait for, such as the
  /// second half of a reply that came in one piece.
  virtual void RunPending() = 0;

  /// The same, for what does so many times a millisecond: once in that time is enough for whoever
  /// clicks, and for timers.
  virtual void RunPendingIfDue() { RunPending(); }

  /// True once the program is ending; every wait ends then.
  virtual bool Ending() const = 0;
};

}  // namespace tessmar
