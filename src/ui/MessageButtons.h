#pragma once

#include <QString>
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

/// The alias of the system sound that a message plays.
QString MessageSound(int buttons);

}  // namespace tessmar
