#pragma once

#include <functional>

#include "base/Messages.h"

namespace tessmar {

/// MsgBox on the screen: the sound, then a CMessage over the active window.
class MessageDialogs final : public Messages {
 public:
  /// Plays a system sound by its alias.
  using Sound = std::function<void(const QString& alias)>;

  /// @param ending  true once the program is ending; a message is answered at once then, with its
  ///                first button, and not shown.
  /// @param sound   plays a message's sound; the desktop's bell when not given.
  explicit MessageDialogs(std::function<bool()> ending, Sound sound = {});

  int MsgBox(const QString& prompt, int buttons, const QString& title) override;

 private:
  std::function<bool()> ending_;
  Sound sound_;
};

}  // namespace tessmar
