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
  if (frame.top() < top) dialog->move(frame.left(), top);
  return false;
}

}  // namespace tessmar
