#include "archive/ArchiveQuestions.h"

#include <QInputDialog>

#include "base/TextTable.h"
#include "ui/ActiveWindow.h"

namespace tessmar {

using namespace Qt::StringLiterals;

std::optional<QString> AskArchiveText(const QString& title, const QString& prompt,
                                      const QString& present) {
  QInputDialog dialog(ActiveWindow());
  dialog.setObjectName(u"frmArchiveText"_s);
  dialog.setWindowTitle(title);
  dialog.setLabelText(prompt);
  dialog.setTextValue(present);
  dialog.setOkButtonText(GetText(TextId::OK));
  dialog.setCancelButtonText(GetText(TextId::Cancel));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.textValue();
}

std::optional<int> AskArchiveChoice(const QString& title, const QString& prompt,
                                    const QStringList& choices) {
  QInputDialog dialog(ActiveWindow());
  dialog.setObjectName(u"frmArchiveChoice"_s);
  dialog.setWindowTitle(title);
  dialog.setLabelText(prompt);
  dialog.setComboBoxItems(choices);
  dialog.setOption(QInputDialog::UseListViewForComboBoxItems);
  dialog.setOkButtonText(GetText(TextId::OK));
  dialog.setCancelButtonText(GetText(TextId::Cancel));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const auto chosen = choices.indexOf(dialog.textValue());
  if (chosen < 0) return std::nullopt;
  return static_cast<int>(chosen);
}

}  // namespace tessmar
