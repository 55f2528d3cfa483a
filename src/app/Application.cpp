#include "app/Application.h"

namespace tessmar {

bool Application::notify(QObject* receiver, QEvent* event) {
  if (!OnFault) return QApplication::notify(receiver, event);
  try {
    return QApplication::notify(receiver, event);
  } catch (const Fault& fault) {
    OnFault(fault);
    return false;
  }
}

}  // namespace tessmar
