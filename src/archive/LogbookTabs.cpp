#include "archive/LogbookTabs.h"

#include <QEvent>
#include <QTabBar>
#include <QTableView>

namespace tessmar {

using namespace Qt::StringLiterals;

LogbookTabs::LogbookTabs(QWidget* parent) : QTabWidget(parent) {
  setObjectName(u"tabLogbook"_s);
  setDocumentMode(true);
  // Its bar has the focus; as a second stop for Tab it would lead round in a circle.
  setFocusProxy(nullptr);
  setFocusPolicy(Qt::NoFocus);
  tabBar()->installEventFilter(this);
}

bool LogbookTabs::eventFilter(QObject* watched, QEvent* event) {
  if (watched == tabBar() && event->type() == QEvent::Shortcut) {
    // Behind the bar's own work, which turns to the page.
    QMetaObject::invokeMethod(
        this,
        [this] {
          auto* table = qobject_cast<QTableView*>(currentWidget());
          if (table == nullptr) table = currentWidget()->findChild<QTableView*>();
          if (table != nullptr) table->setFocus(Qt::ShortcutFocusReason);
        },
        Qt::QueuedConnection);
  }
  return QTabWidget::eventFilter(watched, event);
}

}  // namespace tessmar
