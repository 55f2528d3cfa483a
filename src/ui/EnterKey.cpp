#include "ui/EnterKey.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QToolButton>

namespace tessmar {

bool PressFocusedButton(const QWidget& window, const QKeyEvent& event) {
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  QWidget* focused = window.focusWidget();
  // Not a check box or an option: Enter leaves these as they are.
  const bool isButton = qobject_cast<QPushButton*>(focused) != nullptr ||
                        qobject_cast<QToolButton*>(focused) != nullptr;
  if (!isButton) return false;
  static_cast<QAbstractButton*>(focused)->click();
  return true;
}

}  // namespace tessmar
