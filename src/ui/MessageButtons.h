#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace tessmar {

/// One button of a message.
struct MessageButton {
  QString Caption;
  bool Closes = true;  ///< False for Help and Copy, which leave the message open.
  int Result = 0;      ///< What MsgBox gives for it; 0 for a button that has no result.
  bool operator==(const MessageButton&) const = default;
};

/// The buttons that a Buttons number of MsgBox asks for, from the left, at most four. Captions that
/// are texts of the program are in its language; "Abort", "Retry", "Ignore", "Help" and the
/// "Cancel" beside Retry are the same in every language.
std::vector<MessageButton> MessageButtonsFor(int buttons);

/// The result of a message that was closed with this button selected. An index without a result, as
/// a pressed Help leaves it, gives the first button's.
int MessageResult(int buttons, int selectedButton);

/// The icon bits: 16, 32, 48, 64, or 0 for no icon.
int MessageIconCode(int buttons);

/// Index of the default button, 0 to 3; it may lie beyond the buttons that there are.
int DefaultMessageButton(int buttons);

/// What may stand for an answer when none of the buttons was pressed.
struct MessageWayOut {
  std::optional<int> Escape;  ///< Index of the button that Escape presses; none: it does nothing.
  std::optional<int> Close;   ///< The same for the window manager's close request.
  bool operator==(const MessageWayOut&) const = default;
};

/// Escape declines: it presses Cancel, or else No, or else the only button that closes the message;
/// it does nothing where there is a choice without a way to decline. A close request does nothing
/// where there is a choice at all.
MessageWayOut MessageWayOutFor(const std::vector<MessageButton>& buttons);

/// The alias of the system sound that a message plays.
QString MessageSound(int buttons);

}  // namespace tessmar
