#pragma once

#include <QObject>

namespace tessmar {

/// Lets a key that is held down press once only.
///
/// The keyboard repeats a held key, and Enter that has opened a question would answer it with the
/// next repetition, unread. So repetitions of Enter and Escape reach no window of the program. One
/// is made after the application object, in its thread.
class HeldKeys final : public QObject {
 public:
  HeldKeys();
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessmar
