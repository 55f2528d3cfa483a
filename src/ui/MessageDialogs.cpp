#include "ui/MessageDialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <utility>

#include "ui/ActiveWindow.h"
#include "ui/CMessage.h"
#include "ui/MessageButtons.h"

namespace tessmar {
namespace {

/// The window that a message belongs to. Not a file dialog, which goes together with its question:
/// a window manager would look for it to hand the keyboard on.
QWidget* OwnerOfMessage() {
  QWidget* owner = ActiveWindow();
  while (qobject_cast<QFileDialog*>(owner) != nullptr) owner = owner->parentWidget();
  return owner;
}

}  // namespace

MessageDialogs::MessageDialogs(std::function<bool()> ending, Sound sound)
    : ending_(std::move(ending)), sound_(std::move(sound)) {
  if (!sound_) sound_ = [](const QString& /*alias*/) { QApplication::beep(); };
}

int MessageDialogs::MsgBox(const QString& prompt, int buttons, const QString& title) {
  constexpr int kNoneSelected = 0;
  if (ending_ && ending_()) return MessageResult(buttons, kNoneSelected);
  sound_(MessageSound(buttons));
  return CMessage(OwnerOfMessage()).MsgBox(prompt, buttons, title);
}

}  // namespace tessmar
