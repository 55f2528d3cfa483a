#include "archive/ArchiveQuestions.h"

#include <QInputDialog>

#include "base/TextTable.h"
#include "ui/ActiveWindow.h"

namespace tessmar {

namespace {

using namespace Qt::StringLiterals;

/// What the operator answered; nothing when the dialog was cancelled.
std::optional<QString> Ask(QInputDialog& dialog, const QString& title, const QString& prompt) {
  dialog.setWindowTitle(title);
  dialog.setLabelText(prompt);
  dialog.setOkButtonText(GetText(TextId::OK));
  dialog.setCancelButtonText(GetText(TextId::Cancel));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.textValue();
}

}  // namespace

std::optional<QString> AskArchiveText(const QString& title, const QString& prompt,
                                      const QString& present) {
  QInputDialog dialog(ActiveWindow());
  dialog.setObjectName(u"frmArchiveText"_s);
  dialog.setTextValue(present);
  return Ask(dialog, title, prompt);
}

std::optional<int> AskArchiveChoice(const QString& title, const QString& prompt,
                                    const QStringList& choices) {
  QInputDialog dialog(ActiveWindow());
  dialog.setObjectName(u"frmArchiveChoice"_s);
  dialog.setComboBoxItems(choices);
  dialog.setOption(QInputDialog::UseListViewForComboBoxItems);
  const std::optional<QString> answer = Ask(dialog, title, prompt);
  const auto chosen = answer ? choices.indexOf(*answer) : -1;
  if (chosen < 0) return std::nullopt;
  return static_cast<int>(chosen);
}

}  // namespace tessmar
