#include "ui/FrameKeeper.h"

#include <QApplication>
#include <QDialog>
#include <QScreen>

namespace tessmar {

FrameKeeper::FrameKeeper() {
  QCoreApplication::instance()->installEventFilter(this);
}

bool FrameKeeper::eventFilter(QObject* watched, QEvent* event) {
  // A window that gets the keyboard has its frame.
  if (event->type() != QEvent::WindowActivate) return false;
  auto* dialog = qobject_cast<QDialog*>(watched);
  if (dialog == nullptr || !dialog->isWindow()) return false;
  const int top = dialog->screen()->availableGeometry().top();
  const QRect frame = dialog->frameGeometry();
  // A bar that stands on the screen above can be taken hold of there.
  const bool isSeen = QGuiApplication::screenAt({frame.center().x(), frame.top()}) != nullptr;
  if (frame.top() < top && !isSeen) dialog->move(frame.left(), top);
  return false;
}

}  // namespace tessmar
