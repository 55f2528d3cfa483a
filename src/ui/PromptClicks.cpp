#include "ui/PromptClicks.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QShortcutEvent>

namespace tessmar {

PromptClicks::PromptClicks() {
  QCoreApplication::instance()->installEventFilter(this);
}

bool PromptClicks::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Shortcut) return false;
  auto* button = qobject_cast<QAbstractButton*>(watched);
  // A letter that two buttons share only moves the focus.
  if (button == nullptr || static_cast<QShortcutEvent*>(event)->isAmbiguous()) return false;
  if (button->isCheckable() && (button->focusPolicy() & Qt::ClickFocus) != 0)
    button->setFocus(Qt::ShortcutFocusReason);
  button->click();
  return true;
}

}  // namespace tessmar
