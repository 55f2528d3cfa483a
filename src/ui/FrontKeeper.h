#pragma once

#include <QObject>

namespace tessmar {

/// Keeps a window of the program active when the active dialog closes.
///
/// Window managers hand the keyboard on to the window that a closing dialog belongs to. Where that
/// one closes in the same moment, as a file dialog does with its own question, some find it gone
/// and leave no window active, and the keyboard is dead until a click. One is made after the
/// application object, in its thread.
class FrontKeeper final : public QObject {
 public:
  FrontKeeper();
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool asked_ = false;  ///< A window is going to be asked to the front.
};

}  // namespace tessmar
