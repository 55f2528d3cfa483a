#pragma once

#include <QString>

#include "base/Messages.h"
#include "setup/FieldRules.h"
#include "setup/FieldValidation.h"

class QComboBox;
class QLineEdit;

namespace tessmar {

/// Ties the rules of the fields to their controls: runs the rule of a field that is left, shows
/// what the rule makes of the text, and reports a refusal.
class FieldChecks {
 public:
  FieldChecks(FieldValidation& validation, const FieldContext& context, Messages& messages);

  /// Guards a control by the rule that bears its name.
  void Guard(QLineEdit* field);
  /// For a list of numbers the accepted one is chosen, for a list of units the text is put right.
  void Guard(QComboBox* list);

  /// Runs a rule and shows its message on a refusal.
  FieldVerdict Run(const FieldRule& rule, const QString& text) const;

 private:
  FieldValidation& validation_;
  FieldContext context_;
  Messages& messages_;
};

}  // namespace tessmar
