#include "ui/FrontKeeper.h"

#include <QApplication>
#include <QDialog>

#include "ui/ActiveWindow.h"

namespace tessmar {
namespace {

/// The window that takes the place of a dialog in front; none when the program has none left.
QWidget* NextInFront() {
  if (QWidget* modal = ActiveWindow()) return modal;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowType() == Qt::Window) return window;
  }
  return nullptr;
}

}  // namespace

FrontKeeper::FrontKeeper() {
  QCoreApplication::instance()->installEventFilter(this);
}

bool FrontKeeper::eventFilter(QObject* watched, QEvent* event) {
  // A hidden dialog is active no more. One that refuses to close stays the one in front.
  if (event->type() != QEvent::Close || asked_) return false;
  auto* dialog = qobject_cast<QDialog*>(watched);
  // A dialog that was not in front leaves the windows of other programs in peace.
  if (dialog == nullptr || !dialog->isWindow() || !dialog->isActiveWindow()) return false;
  asked_ = true;
  // Only when everything that closes in this moment has closed.
  QMetaObject::invokeMethod(
      this,
      [this] {
        asked_ = false;
        QWidget* next = NextInFront();
        if (next != nullptr && next->isVisible()) next->activateWindow();
      },
      Qt::QueuedConnection);
  return false;
}

}  // namespace tessmar
