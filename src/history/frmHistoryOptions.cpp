#include "history/frmHistoryOptions.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "base/TextTable.h"
#include "ui/OkCancelRow.h"

namespace tessmar {

using namespace Qt::StringLiterals;

frmHistoryOptions::frmHistoryOptions(QString& csvDateTimeSingleColumn, QWidget* parent)
    : QDialog(parent),
      csvDateTimeSingleColumn_(csvDateTimeSingleColumn),
      optComma_(new QRadioButton(GetText(TextId::DateTimeSeparateColumns))),
      optNoComma_(new QRadioButton(GetText(TextId::DateTimeSingleColumn))) {
  setObjectName(u"frmHistoryOptions"_s);
  setWindowTitle(GetText(TextId::HistoryFileOptions));
  optComma_->setObjectName(u"optComma"_s);
  optNoComma_->setObjectName(u"optNoComma"_s);
  (csvDateTimeSingleColumn.isEmpty() ? optComma_ : optNoComma_)->setChecked(true);

  auto* frame = new QGroupBox(GetText(TextId::DateTimeFormat));
  frame->setObjectName(u"Frame1"_s);
  auto* choices = new QVBoxLayout(frame);
  choices->addWidget(optComma_);
  choices->addWidget(optNoComma_);

  const OkCancelRow buttons(GetText(TextId::Close), GetText(TextId::Cancel));

  auto* rows = new QVBoxLayout(this);
  rows->addWidget(frame);
  rows->addStretch();
  rows->addLayout(buttons.Row);

  connect(buttons.OK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
  connect(buttons.Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmHistoryOptions::cmdOK_Click() {
  csvDateTimeSingleColumn_ = optComma_->isChecked() ? QString() : u"Yes"_s;
  accept();
}

}  // namespace tessmar
