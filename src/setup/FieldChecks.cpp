#include "setup/FieldChecks.h"

#include <QComboBox>
#include <QLineEdit>

#include "setup/SetupWidgets.h"

namespace tessmar {

namespace {

/// The rule of a control, by its object name without the index of a control array.
const FieldRule& RuleOf(const QWidget& control) {
  const FieldRule* rule = FindFieldRule(control.objectName().section(u'(', 0, 0));
  Q_ASSERT_X(rule != nullptr, "FieldChecks", "a field without a rule is guarded");
  return *rule;
}

}  // namespace

FieldChecks::FieldChecks(FieldValidation& validation, const FieldContext& context,
                         Messages& messages)
    : validation_(validation), context_(context), messages_(messages) {}

void FieldChecks::Guard(QLineEdit* field) {
  validation_.Guard(field, [this, field, &rule = RuleOf(*field)] {
    const FieldVerdict verdict = Run(rule, field->text());
    if (verdict.Accepted && field->text() != verdict.Text) field->setText(verdict.Text);
    return verdict.Accepted;
  });
}

void FieldChecks::Guard(QComboBox* list) {
  validation_.Guard(list, [this, list, &rule = RuleOf(*list)] {
    const FieldVerdict verdict = Run(rule, list->currentText());
    if (!verdict.Accepted) return false;
    if (verdict.ListIndex) {
      SetListPosition(*list, *verdict.ListIndex);
    } else {
      SetListText(*list, verdict.Text);
    }
    return true;
  });
}

FieldVerdict FieldChecks::Run(const FieldRule& rule, const QString& text) const {
  FieldVerdict verdict = CheckField(rule, text, context_);
  if (!verdict.Accepted && verdict.Message)
    messages_.MsgBox(GetText(*verdict.Message), rule.Buttons, GetText(rule.Title));
  return verdict;
}

}  // namespace tessmar
