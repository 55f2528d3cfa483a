#include "operators/Deeds.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabBar>
#include <QTest>
#include <QTextEdit>
#include <QWheelEvent>

#include "operators/Junk.h"

namespace tessmar::test {

using namespace Qt::StringLiterals;

QString NameOf(const QObject& object) {
  const QString name = object.objectName();
  return name.isEmpty() ? QString::fromLatin1(object.metaObject()->className()) : name;
}

namespace {

QString PlaceOf(const QWidget& widget) {
  return NameOf(widget) + u" of "_s + NameOf(*widget.window());
}

}  // namespace

QWidget* OneWindow(const Windows& reach, Random& random) {
  return reach.isEmpty() ? nullptr : reach[random.Below(static_cast<int>(reach.size()))];
}

namespace {

void SendText(QWidget* widget, const QString& text) {
  QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, text);
  QApplication::sendEvent(widget, &press);
}

QWidget* KeysGoTo(const Windows& reach, Random& random) {
  QWidget* window = OneWindow(reach, random);
  if (window == nullptr) return nullptr;
  QWidget* focus = window->focusWidget();
  const bool takes = focus != nullptr && focus->isVisible() && focus->isEnabled();
  return takes ? focus : window;
}

}  // namespace

Deed PressKey(const Windows& reach, Random& random) {
  QPointer<QWidget> target = KeysGoTo(reach, random);
  if (target.isNull()) return {};
  const KeyRow row =
      Keys()[static_cast<std::size_t>(random.Below(static_cast<int>(Keys().size())))];
  const QString told = QKeySequence(row.With | row.Key).toString();
  return {u"key %1 to %2"_s.arg(told, PlaceOf(*target)), [target, row] {
            if (!target.isNull()) QTest::keyClick(target, row.Key, row.With);
          }};
}

Deed ClickButton(const Windows& reach, Random& random) {
  const QList<QAbstractButton*> buttons = Usable<QAbstractButton>(reach);
  if (buttons.isEmpty()) return {};
  QPointer<QAbstractButton> button = random.OneOf(buttons);
  const bool twice = random.OneIn(12);
  return {(twice ? u"double click on "_s : u"click on "_s) + PlaceOf(*button), [button, twice] {
            const auto click = [&button] {
              if (!button.isNull() && button->isVisible())
                QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier,
                                  QPoint(8, button->height() / 2));
            };
            click();
            if (twice) click();
          }};
}

namespace {

void CollectEntries(const QMenu& menu, QList<QAction*>& entries) {
  for (QAction* entry : menu.actions()) {
    if (!entry->isVisible() || !entry->isEnabled() || entry->isSeparator()) continue;
    if (entry->menu() != nullptr) {
      CollectEntries(*entry->menu(), entries);
    } else {
      entries.append(entry);
    }
  }
}

}  // namespace

Deed TriggerEntry(const Windows& reach, Random& random) {
  QList<QAction*> entries;
  for (const QMenuBar* bar : Usable<QMenuBar>(reach)) {
    for (const QAction* title : bar->actions()) {
      if (title->isVisible() && title->isEnabled() && title->menu() != nullptr)
        CollectEntries(*title->menu(), entries);
    }
  }
  if (entries.isEmpty()) return {};
  QPointer<QAction> entry = random.OneOf(entries);
  // It ends the program, which is not to happen each time.
  if (entry->objectName() == "mnuExit"_L1 && !random.OneIn(12)) return {};
  return {u"entry "_s + NameOf(*entry), [entry] {
            if (!entry.isNull()) entry->trigger();
          }};
}

Deed TypeText(const Windows& reach, Random& random) {
  QList<QWidget*> fields;
  for (QWidget* field : Usable<QLineEdit>(reach)) fields.append(field);
  for (QWidget* field : Usable<QTextEdit>(reach)) fields.append(field);
  if (fields.isEmpty()) return {};
  QPointer<QWidget> field = random.OneOf(fields);
  const bool isFile = qobject_cast<QFileDialog*>(field->window()) != nullptr;
  const QStringList texts = isFile ? FileNames() : Junk();
  const QString text = random.OneOf(texts);
  const bool all = random.OneIn(2) || isFile;
  const bool tab = random.OneIn(2);
  return {u"text \"%1\" into %2"_s.arg(text.left(40), PlaceOf(*field)), [=] {
            if (field.isNull()) return;
            field->setFocus();
            auto* line = qobject_cast<QLineEdit*>(field.data());
            if (line != nullptr && all) line->selectAll();
            if (text.isEmpty()) QTest::keyClick(field, Qt::Key_Delete);
            if (!text.isEmpty()) SendText(field, text);
            if (tab && !field.isNull()) QTest::keyClick(field, Qt::Key_Tab);
          }};
}

Deed ChooseInList(const Windows& reach, Random& random) {
  const QList<QComboBox*> lists = Usable<QComboBox>(reach);
  if (lists.isEmpty()) return {};
  QPointer<QComboBox> list = random.OneOf(lists);
  const int keys = random.Between(1, 5);
  const Qt::Key key = random.OneIn(2) ? Qt::Key_Down : Qt::Key_Up;
  const bool opens = random.OneIn(5);
  return {(opens ? u"opens "_s : u"turns "_s) + PlaceOf(*list), [=] {
            if (list.isNull()) return;
            list->setFocus();
            if (opens) return list->showPopup();
            for (int i = 0; i < keys && !list.isNull(); ++i) QTest::keyClick(list, key);
          }};
}

Deed ClickItem(const Windows& reach, Random& random) {
  QList<QAbstractItemView*> views;
  for (QAbstractItemView* view : Usable<QAbstractItemView>(reach)) {
    if (view->model() != nullptr && view->model()->rowCount(view->rootIndex()) > 0)
      views.append(view);
  }
  if (views.isEmpty()) return {};
  QPointer<QAbstractItemView> view = random.OneOf(views);
  const int row = random.Below(view->model()->rowCount(view->rootIndex()));
  const int column = random.Below(std::max(1, view->model()->columnCount(view->rootIndex())));
  const bool twice = random.OneIn(5);
  const Qt::KeyboardModifiers with = random.OneIn(4)   ? Qt::ControlModifier
                                     : random.OneIn(6) ? Qt::ShiftModifier
                                                       : Qt::NoModifier;
  return {u"item %1, %2 in %3%4"_s.arg(row).arg(column).arg(PlaceOf(*view),
                                                            twice ? u" twice"_s : QString()),
          [=] {
            if (view.isNull()) return;
            const QModelIndex index = view->model()->index(row, column, view->rootIndex());
            if (!index.isValid()) return;
            view->scrollTo(index);
            const QPoint place = view->visualRect(index).center();
            QTest::mouseClick(view->viewport(), Qt::LeftButton, with, place);
            if (twice && !view.isNull())
              QTest::mouseDClick(view->viewport(), Qt::LeftButton, with, place);
          }};
}

Deed TurnPage(const Windows& reach, Random& random) {
  const QList<QTabBar*> bars = Usable<QTabBar>(reach);
  if (bars.isEmpty()) return {};
  QPointer<QTabBar> bar = random.OneOf(bars);
  if (bar->count() == 0) return {};
  const int page = random.Below(bar->count());
  return {u"page %1 of %2"_s.arg(page).arg(PlaceOf(*bar)), [bar, page] {
            if (!bar.isNull())
              QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(page).center());
          }};
}

namespace {

QPoint PlaceIn(const QWidget& widget, Random& random) {
  return {random.Below(std::max(1, widget.width())), random.Below(std::max(1, widget.height()))};
}

}  // namespace

Deed MoveMouse(const Windows& reach, Random& random) {
  const QList<QWidget*> widgets = Usable<QWidget>(reach);
  if (widgets.isEmpty()) return {};
  QPointer<QWidget> widget = random.OneOf(widgets);
  const QPoint from = PlaceIn(*widget, random);
  const QPoint to = PlaceIn(*widget, random);
  const bool isFile = qobject_cast<QFileDialog*>(widget->window()) != nullptr;
  switch (random.Below(4)) {
    case 0:
      return {u"wheel over "_s + PlaceOf(*widget), [=, up = random.OneIn(2)] {
                if (widget.isNull()) return;
                QWheelEvent turn(from, widget->mapToGlobal(from), {}, {0, up ? 120 : -120},
                                 Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
                QApplication::sendEvent(widget, &turn);
              }};
    case 1:
      // The file dialog's own menu deletes and renames.
      if (isFile) return {};
      return {u"menu of "_s + PlaceOf(*widget), [=] {
                if (widget.isNull()) return;
                QContextMenuEvent event(QContextMenuEvent::Mouse, from, widget->mapToGlobal(from));
                QApplication::sendEvent(widget, &event);
              }};
    case 2:
      return {u"double click into "_s + PlaceOf(*widget), [=] {
                if (!widget.isNull())
                  QTest::mouseDClick(widget, Qt::LeftButton, Qt::NoModifier, from);
              }};
    default:
      return {u"drag over "_s + PlaceOf(*widget), [=] {
                if (!widget.isNull())
                  QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, from);
                if (!widget.isNull()) QTest::mouseMove(widget, to);
                if (!widget.isNull())
                  QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, to);
              }};
  }
}

Deed Resize(const Windows& reach, Random& random) {
  QPointer<QWidget> window = OneWindow(reach, random);
  if (window.isNull()) return {};
  const QSize size(random.Between(1, 1800), random.Between(1, 1200));
  return {u"%1 becomes %2 x %3"_s.arg(NameOf(*window)).arg(size.width()).arg(size.height()), [=] {
            if (!window.isNull()) window->resize(size);
          }};
}

Deed CloseWindow(const Windows& reach, Random& random) {
  QPointer<QWidget> window = OneWindow(reach, random);
  if (window.isNull()) return {};
  if (window->objectName() == "frmMain"_L1 && !random.OneIn(8)) return {};
  return {u"closes "_s + NameOf(*window), [window] {
            if (!window.isNull()) window->close();
          }};
}

Deed WorkPopup(QWidget& popup, Random& random) {
  QPointer<QWidget> target(&popup);
  if (random.OneIn(3)) {
    const QPoint place = PlaceIn(popup, random);
    return {u"click into "_s + NameOf(popup), [=] {
              if (!target.isNull())
                QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier, place);
            }};
  }
  static constexpr Qt::Key kPopupKeys[] = {Qt::Key_Escape, Qt::Key_Down,  Qt::Key_Down,
                                           Qt::Key_Up,     Qt::Key_Right, Qt::Key_Return};
  const Qt::Key key = random.OneOf(kPopupKeys);
  return {u"key %1 to the popup %2"_s.arg(QKeySequence(key).toString(), NameOf(popup)), [=] {
            if (!target.isNull()) QTest::keyClick(target, key);
          }};
}

}  // namespace tessmar::test
