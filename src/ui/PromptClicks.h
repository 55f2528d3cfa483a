#pragma once

#include <QObject>

namespace tessmar {

/// Lets a button click at once when its key (Alt and a letter) presses it.
///
/// By itself it goes down, and clicks a tenth of a second later, whatever has come on the screen in
/// between: a dialog takes all keys and clicks but that one, and what it starts would stand over
/// the dialog or work behind its back. One is made after the application object, in its thread.
class PromptClicks final : public QObject {
 public:
  PromptClicks();
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessmar
