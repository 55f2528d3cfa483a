#include "app/Application.h"

#include <QScopedValueRollback>

namespace tessmar {

bool Application::notify(QObject* receiver, QEvent* event) {
  if (!OnFault) return QApplication::notify(receiver, event);
  try {
    return QApplication::notify(receiver, event);
  } catch (const Fault& fault) {
    if (!isTelling_) {
      const QScopedValueRollback telling(isTelling_, true);
      OnFault(fault);
    }
    return false;
  }
}

}  // namespace tessmar
