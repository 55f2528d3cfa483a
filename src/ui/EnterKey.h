#pragma once

class QKeyEvent;
class QWidget;

namespace tessmar {

/// For the keyPressEvent of a window: Enter presses the button that has the focus in it.
/// @return false for any other key, and when no button has the focus: nothing was done then.
bool PressFocusedButton(const QWidget& window, const QKeyEvent& event);

}  // namespace tessmar
