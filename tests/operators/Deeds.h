#pragma once

#include <QList>
#include <QString>
#include <QWidget>
#include <functional>

#include "operators/Random.h"

namespace tessmar::test {

/// Something that an operator does in the windows.
struct Deed {
  QString Told;              ///< What it is, for who reads what had happened.
  std::function<void()> Do;  ///< May run a dialog and its message loop. Empty: there was no such.
  int WaitMs = 0;            ///< What the operator waits for then, without a look.
};

/// The deeds that need no knowledge of the program, each with something of what can be reached. All
/// in the user interface's thread.
using Windows = QList<QWidget*>;
Deed PressKey(const Windows& reach, Random& random);
Deed ClickButton(const Windows& reach, Random& random);
Deed TriggerEntry(const Windows& reach, Random& random);
Deed TypeText(const Windows& reach, Random& random);
Deed ChooseInList(const Windows& reach, Random& random);
Deed ClickItem(const Windows& reach, Random& random);
Deed TurnPage(const Windows& reach, Random& random);
Deed MoveMouse(const Windows& reach, Random& random);
Deed Resize(const Windows& reach, Random& random);
Deed CloseWindow(const Windows& reach, Random& random);
Deed WorkPopup(QWidget& popup, Random& random);

QString NameOf(const QObject& object);

/// One of the windows; null when there is none.
QWidget* OneWindow(const Windows& reach, Random& random);

/// The visible and enabled children of a kind in the windows that take clicks.
template <typename Widget>
QList<Widget*> Usable(const Windows& windows) {
  QList<Widget*> found;
  for (const QWidget* window : windows) {
    const QList<Widget*> all = window->findChildren<Widget*>();
    for (Widget* widget : all) {
      if (widget->isVisible() && widget->isEnabled() && widget->window() == window)
        found.append(widget);
    }
  }
  return found;
}

}  // namespace tessmar::test
