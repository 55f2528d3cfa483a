#include "base/QtMessageLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>

namespace tessmar {
namespace {

constexpr int kLongestSleepMs = 100;
constexpr qint64 kMomentNs = 1'000'000;

}  // namespace

QtMessageLoop::QtMessageLoop() {
  alarm_.setInterval(kLongestSleepMs);
  alarm_.callOnTimeout([this] {
    if (depth_ == 0) alarm_.stop();
  });
  QCoreApplication::instance()->installEventFilter(this);
}

void QtMessageLoop::RunOnce() {
  if (ending_) {
    RunPending();
    return;
  }
  if (!alarm_.isActive()) alarm_.start();
  const QScopedValueRollback depth(depth_, depth_ + 1);
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtMessageLoop::RunPending() {
  const QScopedValueRollback depth(depth_, depth_ + 1);
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  sincePending_.start();
}

void QtMessageLoop::RunPendingIfDue() {
  if (!sincePending_.isValid() || sincePending_.nsecsElapsed() >= kMomentNs) RunPending();
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
