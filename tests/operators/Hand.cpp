#include "operators/Hand.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPointer>
#include <algorithm>

#include "operators/Sensible.h"

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

/// Leaves a window in which there is little to do sooner than another.
Deed LeaveSome(const Windows& reach, Random& random) {
  constexpr int kFew = 4;
  QWidget* window = OneWindow(reach, random);
  if (window == nullptr || window->objectName() == "frmMain"_L1) return {};
  // Nothing is printed, so that there is little to do in that dialog.
  const bool isSmall =
      Usable<QAbstractButton>({window}).size() < kFew || window->objectName() == "dlgPrint"_L1;
  if (!isSmall && !random.OneIn(5)) return {};
  return Leave(*window, random);
}

/// What alone takes clicks and keys, where there is such.
QWidget* Front() {
  if (QWidget* popup = QApplication::activePopupWidget()) return popup;
  return QApplication::activeModalWidget();
}

/// The same deed, left undone when another window has come to the front since: nobody's hand gets
/// through to one below, while a call of click() would.
Deed WhileInFront(const Deed& deed) {
  if (!deed.Do) return deed;
  return {deed.Told,
          [act = deed.Do, front = QPointer<QWidget>(Front())] {
            if (Front() == front) act();
          },
          deed.WaitMs};
}

}  // namespace

QList<QWidget*> Hand::Reach() {
  if (QWidget* front = Front()) return {front};
  QList<QWidget*> windows;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    const bool isWindow = widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog;
    if (widget->isVisible() && isWindow) windows.append(widget);
  }
  std::sort(windows.begin(), windows.end(), [](const QWidget* one, const QWidget* other) {
    return one->objectName() < other->objectName();
  });
  return windows;
}

Deed Hand::Anything(Random& random) {
  if (QWidget* popup = QApplication::activePopupWidget())
    return WhileInFront(WorkPopup(*popup, random));
  using Chooser = Deed (*)(const Windows& reach, Random& random);
  struct Row {
    int Weight;
    Chooser Choose;
  };
  static constexpr Row kRows[] = {
      {26, Sensible},  {12, ClickButton}, {7, TriggerEntry}, {9, PressKey},
      {9, TypeText},   {6, ChooseInList}, {6, ClickItem},    {4, TurnPage},
      {10, MoveMouse}, {2, Resize},       {1, CloseWindow},  {8, LeaveSome},
  };
  const Windows reach = Reach();
  int place = random.Below(100);
  for (const Row& row : kRows) {
    place -= row.Weight;
    if (place >= 0) continue;
    const Deed deed = row.Choose(reach, random);
    return WhileInFront(deed.Do ? deed : PressKey(reach, random));
  }
  return WhileInFront(PressKey(reach, random));
}

Deed Hand::WayOut(Random& random) {
  if (QPointer<QWidget> popup = QApplication::activePopupWidget(); !popup.isNull()) {
    return {u"leaves the popup "_s + NameOf(*popup), [popup] {
              if (!popup.isNull()) popup->close();
            }};
  }
  const Windows reach = Reach();
  QPointer<QWidget> window;
  for (QWidget* widget : reach) {
    if (widget->objectName() != "frmMain"_L1) window = widget;
  }
  if (window.isNull()) return {};
  if (window->objectName() == "FMessage"_L1) return WhileInFront(ClickButton({window}, random));
  return WhileInFront(Leave(*window, random));
}

}  // namespace tessmar::test
