#include "base/QtMessageLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>

namespace tessmar {
namespace {

constexpr int kLongestSleepMs = 100;

}  // namespace

QtMessageLoop::QtMessageLoop() {
  alarm_.setInterval(kLongestSleepMs);
  QCoreApplication::instance()->installEventFilter(this);
}

void QtMessageLoop::RunOnce() {
  if (ending_) {
    RunPending();
    return;
  }
  if (!alarm_.isActive()) alarm_.start();
  {
    const QScopedValueRollback depth(depth_, depth_ + 1);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  if (depth_ == 0) alarm_.stop();
}

void QtMessageLoop::RunPending() {
  const QScopedValueRollback depth(depth_, depth_ + 1);
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtMessageLoop::End() {
  ending_ = true;
  alarm_.stop();
}

bool QtMessageLoop::eventFilter(QObject* receiver, QEvent* event) {
  if (event->type() == QEvent::Quit && receiver == QCoreApplication::instance()) End();
  return QObject::eventFilter(receiver, event);
}

}  // namespace tessmar
