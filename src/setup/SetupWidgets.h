#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStringList>

namespace tessmar {

/// The controls of the setup screen, made alike: each has its name as object name, its caption, its
/// tool tip and a name for screen readers.

/// A text from the text table as a widget shows it.
QString ShownText(const QString& text);

QLabel* NewLabel(const QString& name, const QString& caption, QWidget* parent);
QCheckBox* NewCheckBox(const QString& name, const QString& caption, const QString& tip,
                       QWidget* parent);
QRadioButton* NewOption(const QString& name, const QString& caption, QWidget* parent);
QPushButton* NewButton(const QString& name, const QString& caption, const QString& tip,
                       QWidget* parent);
/// @param spokenName  what a screen reader says, as the caption stands in a label of its own.
QLineEdit* NewField(const QString& name, const QString& spokenName, const QString& tip,
                    QWidget* parent);
/// A list to choose from.
QComboBox* NewList(const QString& name, const QString& spokenName, const QStringList& items,
                   QWidget* parent);
/// A list that only suggests: any text can be typed.
QComboBox* NewEditableList(const QString& name, const QString& spokenName, const QStringList& items,
                           const QString& tip, QWidget* parent);

/// The position of the item shown; -1 for none, and for typed text that is not one of the items.
int ListPosition(const QComboBox& list);
/// Shows an item; -1 shows none.
void SetListPosition(QComboBox& list, int position);
/// Shows a text in a list that takes any; the arrow keys go on from it when it is one of the items.
void SetListText(QComboBox& list, const QString& text);

}  // namespace tessmar
