#include "setup/FieldValidation.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabBar>
#include <utility>

namespace tessmar {

namespace {

/// True when pressing or calling this control is meant for it, and not for what lies around it.
bool IsControl(const QWidget& widget) {
  return widget.isEnabled() && widget.focusPolicy() != Qt::NoFocus;
}

QPushButton* DefaultButton(const QDialog& screen) {
  for (QPushButton* button : screen.findChildren<QPushButton*>()) {
    if (button->isDefault()) return button;
  }
  return nullptr;
}

/// Where Tab leads from a control.
QWidget* NextByTab(QWidget& from, bool forward) {
  const auto step = [forward](QWidget* at) {
    return forward ? at->nextInFocusChain() : at->previousInFocusChain();
  };
  for (QWidget* at = step(&from); at != &from; at = step(at)) {
    const bool takesTab = (at->focusPolicy() & Qt::TabFocus) != 0 && at->focusProxy() == nullptr;
    if (takesTab && at->isEnabled() && at->isVisible() && !from.isAncestorOf(at)) return at;
  }
  return nullptr;
}

bool StaysOnScreen(Qt::FocusReason reason) {
  switch (reason) {
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
    case Qt::NoFocusReason:
      return false;
    default:
      return true;
  }
}

}  // namespace

// The filter sits on the application, because a press has to be seen before any control of the
// screen sees it.
FieldValidation::FieldValidation(QDialog& screen) : screen_(screen) {
  QCoreApplication::instance()->installEventFilter(this);
}

FieldValidation::~FieldValidation() {
  QCoreApplication::instance()->removeEventFilter(this);
}

void FieldValidation::Guard(QWidget* field, const Check& check) {
  checks_.insert(field, check);
}

void FieldValidation::NeverChecks(QWidget* control) {
  exempt_.insert(control);
}

bool FieldValidation::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWidgetType()) return false;
  auto* widget = static_cast<QWidget*>(watched);
  if (widget->window() != &screen_) return false;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Shortcut:
      return IsControl(*widget) && !MayLeaveFor(widget);
    case QEvent::Wheel:
      // The wheel turns the pages without taking the focus, and the field goes with its page.
      return qobject_cast<QTabBar*>(widget) != nullptr && !MayLeaveFor(widget);
    case QEvent::KeyPress:
      return LeavesByKey(widget, *static_cast<QKeyEvent*>(event));
    case QEvent::FocusOut:
      FocusMoved(widget, static_cast<QFocusEvent*>(event)->reason());
      return false;
    default:
      return false;
  }
}

bool FieldValidation::MayLeaveFor(QWidget* control) {
  const QPointer<QWidget> focused = screen_.focusWidget();
  QWidget* field = GuardedField(focused);
  // The toolkit moves the focus before a press is delivered.
  const bool moved = left_ != nullptr && focused != nullptr && GuardedField(control) != left_;
  if (moved) {
    field = left_;
    left_->setFocus(Qt::OtherFocusReason);
  }
  left_ = nullptr;
  if (field == nullptr || GuardedField(control) == field || IsExempt(control)) {
    if (moved) focused->setFocus(Qt::MouseFocusReason);
    left_ = nullptr;
    return true;
  }
  const bool accepted = Run(field);
  if (moved && accepted && focused != nullptr) focused->setFocus(Qt::MouseFocusReason);
  left_ = nullptr;
  return accepted;
}

/// True when the key would leave the field and the field refuses.
bool FieldValidation::LeavesByKey(QWidget* receiver, const QKeyEvent& event) {
  QWidget* field = GuardedField(receiver);
  if (field == nullptr || event.modifiers().testFlag(Qt::AltModifier)) return false;
  switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return !IsExempt(NextByTab(*receiver, event.key() == Qt::Key_Tab)) && !Run(field);
    case Qt::Key_Return:
    case Qt::Key_Enter: {
      QPushButton* button = DefaultButton(screen_);
      return button != nullptr && button->isEnabled() && !IsExempt(button) && !Run(field);
    }
    default:
      return false;
  }
}

/// Catches what the events above do not announce, such as a control that is given the focus by
/// code. The check waits until the move is over, because its message may not run inside of it; the
/// press that made the move comes first.
void FieldValidation::FocusMoved(QWidget* from, Qt::FocusReason reason) {
  QWidget* field = GuardedField(from);
  QWidget* next = QApplication::focusWidget();
  if (field == nullptr || checking_ || !StaysOnScreen(reason) || next == nullptr) return;
  if (next->window() != &screen_ || GuardedField(next) == field || IsExempt(next)) return;
  left_ = field;
  QMetaObject::invokeMethod(
      this, [this] { CheckLeftField(); }, Qt::QueuedConnection);
}

void FieldValidation::CheckLeftField() {
  const QPointer<QWidget> field = std::exchange(left_, nullptr);
  if (field == nullptr || !field->isVisible() || !field->isEnabled() || !screen_.isVisible())
    return;
  if (field->hasFocus()) return;
  if (!Run(field)) field->setFocus(Qt::OtherFocusReason);
}

bool FieldValidation::Run(QWidget* field) {
  if (checking_) return false;
  const QScopedValueRollback<bool> running(checking_, true);
  return checks_.value(field)();
}

QWidget* FieldValidation::GuardedField(QWidget* widget) const {
  for (QWidget* at = widget; at != nullptr && at != &screen_; at = at->parentWidget()) {
    if (checks_.contains(at)) return at;
  }
  return nullptr;
}

bool FieldValidation::IsExempt(QWidget* control) const {
  return exempt_.contains(control);
}

}  // namespace tessmar
