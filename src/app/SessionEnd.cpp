#include "app/SessionEnd.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

namespace tessmar {

SessionEnd::SessionEnd(std::function<void()> onEnd) : onEnd_(std::move(onEnd)) {
  QCoreApplication::instance()->installEventFilter(this);
}

bool SessionEnd::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) return false;
  onEnd_();
  return true;
}

}  // namespace tessmar
