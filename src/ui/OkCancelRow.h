#pragma once

#include <QHBoxLayout>
#include <QPushButton>
#include <QString>

namespace tessmar {

/// The row of buttons at the foot of a small dialog: cmdOK, the default button, and cmdCancel, at
/// the right edge. The layout belongs to whoever adds it to a dialog, and the buttons then too.
struct OkCancelRow {
  OkCancelRow(const QString& ok, const QString& cancel)
      : Row(new QHBoxLayout), OK(new QPushButton(ok)), Cancel(new QPushButton(cancel)) {
    OK->setObjectName(QStringLiteral("cmdOK"));
    OK->setDefault(true);
    Cancel->setObjectName(QStringLiteral("cmdCancel"));
    Row->addStretch();
    Row->addWidget(OK);
    Row->addWidget(Cancel);
  }

  QHBoxLayout* Row;
  QPushButton* OK;
  QPushButton* Cancel;
};

}  // namespace tessmar
