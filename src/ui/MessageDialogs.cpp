#include "ui/MessageDialogs.h"

#include <QApplication>
#include <utility>

#include "ui/ActiveWindow.h"
#include "ui/CMessage.h"
#include "ui/MessageButtons.h"

namespace tessmar {

MessageDialogs::MessageDialogs(std::function<bool()> ending, Sound sound)
    : ending_(std::move(ending)), sound_(std::move(sound)) {
  if (!sound_) sound_ = [](const QString& /*alias*/) { QApplication::beep(); };
}

int MessageDialogs::MsgBox(const QString& prompt, int buttons, const QString& title) {
  constexpr int kNoneSelected = 0;
  if (ending_ && ending_()) return MessageResult(buttons, kNoneSelected);
  sound_(MessageSound(buttons));
  return CMessage(ActiveWindow()).MsgBox(prompt, buttons, title);
}

}  // namespace tessmar
