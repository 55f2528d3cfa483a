#pragma once

#include <QDialog>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <functional>

class QKeyEvent;

namespace tessmar {

/// Checks the fields of a screen as they are left.
///
/// The check of a field runs before the focus passes to another control of the screen: a click,
/// Tab, an access key, Enter for the default button, the wheel over the tabs. A refusal keeps the
/// focus and swallows what would have moved it, so that the click does nothing. Menus, other
/// windows and other programs do not take the focus and check nothing.
class FieldValidation final : public QObject {
 public:
  /// Puts the field's text right and lets the focus go (true), or reports the refusal and keeps the
  /// text (false).
  using Check = std::function<bool()>;

  /// @param screen  outlives this object.
  explicit FieldValidation(QDialog& screen);
  ~FieldValidation() override;

  void Guard(QWidget* field, const Check& check);
  /// Going to this control checks nothing, as the way out of a wizard.
  void NeverChecks(QWidget* control);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool MayLeaveFor(QWidget* control);
  bool LeavesByKey(QWidget* receiver, const QKeyEvent& event);
  void FocusMoved(QWidget* from, Qt::FocusReason reason);
  void CheckLeftField();
  bool Run(QWidget* field);
  QWidget* GuardedField(QWidget* widget) const;
  bool IsExempt(QWidget* control) const;

  QDialog& screen_;
  QHash<QWidget*, Check> checks_;
  QSet<QWidget*> exempt_;
  QPointer<QWidget> left_;  ///< Lost the focus to a control of the screen and is not checked yet.
  bool checking_ = false;
};

}  // namespace tessmar
