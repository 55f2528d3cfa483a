#include "setup/SetupWidgets.h"

#include <QWheelEvent>

#include "base/Blanks.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

/// A list that the wheel turns only while it has the focus: on a page that scrolls, the wheel is
/// for the page.
class SetupList final : public QComboBox {
 public:
  explicit SetupList(QWidget* parent) : QComboBox(parent) { setFocusPolicy(Qt::StrongFocus); }

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus()) {
      QComboBox::wheelEvent(event);
    } else {
      event->ignore();
    }
  }
};

int PositionOf(const QComboBox& list, const QString& item) {
  return list.findText(item, Qt::MatchExactly | Qt::MatchCaseSensitive);
}

/// What is typed, pasted or dropped gets blanks for its control characters; what the program puts
/// in stays, because a screen that nobody touched must give back what it was given.
QLineEdit* KeepControlsOut(QLineEdit* field) {
  QObject::connect(field, &QLineEdit::textEdited, field, [field](const QString& text) {
    const QString plain = ControlsToBlanks(text);
    if (plain == text) return;
    const int cursor = field->cursorPosition();
    field->setText(plain);
    field->setCursorPosition(cursor);
  });
  return field;
}

template <typename Control>
Control* Named(Control* control, const QString& name, const QString& spokenName,
               const QString& tip) {
  control->setObjectName(name);
  control->setAccessibleName(spokenName.trimmed());
  if (!tip.isEmpty()) control->setToolTip(tip);
  return control;
}

}  // namespace

QString ShownText(const QString& text) {
  return QString(text).replace("\r\n"_L1, "\n"_L1);
}

QLabel* NewLabel(const QString& name, const QString& caption, QWidget* parent) {
  auto* label = new QLabel(ShownText(caption), parent);
  label->setTextFormat(Qt::PlainText);
  return Named(label, name, caption, {});
}

QCheckBox* NewCheckBox(const QString& name, const QString& caption, const QString& tip,
                       QWidget* parent) {
  return Named(new QCheckBox(ShownText(caption), parent), name, caption, tip);
}

QRadioButton* NewOption(const QString& name, const QString& caption, QWidget* parent) {
  return Named(new QRadioButton(ShownText(caption), parent), name, caption, {});
}

QPushButton* NewButton(const QString& name, const QString& caption, const QString& tip,
                       QWidget* parent) {
  auto* button = new QPushButton(ShownText(caption), parent);
  // Enter in a field must not press a button that the operator did not go to.
  button->setAutoDefault(false);
  return Named(button, name, caption, tip);
}

QLineEdit* NewField(const QString& name, const QString& spokenName, const QString& tip,
                    QWidget* parent) {
  return Named(KeepControlsOut(new QLineEdit(parent)), name, spokenName, tip);
}

QComboBox* NewList(const QString& name, const QString& spokenName, const QStringList& items,
                   QWidget* parent) {
  auto* list = new SetupList(parent);
  list->addItems(items);
  return Named(list, name, spokenName, {});
}

QComboBox* NewEditableList(const QString& name, const QString& spokenName, const QStringList& items,
                           const QString& tip, QWidget* parent) {
  auto* list = new SetupList(parent);
  list->setEditable(true);
  list->setInsertPolicy(QComboBox::NoInsert);
  // No completion: what is typed is what is meant, in the case in which it was typed.
  list->setCompleter(nullptr);
  KeepControlsOut(list->lineEdit());
  list->addItems(items);
  list->setCurrentIndex(-1);
  list->clearEditText();
  return Named(list, name, spokenName, tip);
}

int ListPosition(const QComboBox& list) {
  return list.isEditable() ? PositionOf(list, list.currentText()) : list.currentIndex();
}

void SetListPosition(QComboBox& list, int position) {
  list.setCurrentIndex(position);
  if (list.isEditable() && list.currentIndex() < 0) list.clearEditText();
  // Typed text may have left the index where it was.
  if (list.isEditable() && list.currentIndex() >= 0) list.setEditText(list.itemText(position));
}

void SetListText(QComboBox& list, const QString& text) {
  list.setCurrentIndex(PositionOf(list, text));
  if (list.currentText() != text) list.setEditText(text);
}

}  // namespace tessmar
