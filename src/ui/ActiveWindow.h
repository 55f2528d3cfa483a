#pragma once

class QWidget;

namespace tessmar {

/// The window that a new dialog belongs to: the innermost modal one, or else the active one; none
/// when the program has no window in front.
QWidget* ActiveWindow();

}  // namespace tessmar
