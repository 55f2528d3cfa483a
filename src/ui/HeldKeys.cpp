#include "ui/HeldKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace tessmar {

HeldKeys::HeldKeys() {
  QCoreApplication::instance()->installEventFilter(this);
}

bool HeldKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto& press = *static_cast<QKeyEvent*>(event);
  if (!press.isAutoRepeat()) return false;
  return press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter ||
         press.key() == Qt::Key_Escape;
}

}  // namespace tessmar
