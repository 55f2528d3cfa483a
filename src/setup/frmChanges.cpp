#include "setup/frmChanges.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <QTableWidget>
#include <QVBoxLayout>
#include <utility>

#include "base/TextTable.h"
#include "setup/SetupWidgets.h"

namespace tessmar {

using namespace Qt::StringLiterals;

frmChanges::frmChanges(std::vector<SettingsChange> changes, QWidget* parent)
    : QDialog(parent), changes_(std::move(changes)), tblChanges_(NewTable()) {
  setObjectName(u"frmChanges"_s);
  setWindowTitle(ChangesSummary(changes_.size()));
  setAccessibleName(windowTitle());
  QPushButton* cmdCopy = NewButton(u"cmdCopy"_s, InLanguage(u"Copy", u"Kopieren"), {}, this);
  QPushButton* cmdClose = NewButton(u"cmdClose"_s, GetText(TextId::Close), {}, this);
  QObject::connect(cmdCopy, &QPushButton::clicked, this, [this] { Copy(); });
  QObject::connect(cmdClose, &QPushButton::clicked, this, [this] { accept(); });

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(cmdCopy);
  buttons->addWidget(cmdClose);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tblChanges_, 1);
  layout->addLayout(buttons);
  constexpr QSize kUsual{720, 360};
  resize(kUsual.boundedTo(screen()->availableGeometry().size() * 9 / 10));
  cmdClose->setDefault(true);
  cmdClose->setFocus();
}

QTableWidget* frmChanges::NewTable() {
  auto* table = new QTableWidget(static_cast<int>(changes_.size()), 3, this);
  table->setObjectName(u"tblChanges"_s);
  table->setAccessibleName(ChangesSummary(changes_.size()));
  table->setHorizontalHeaderLabels({InLanguage(u"Setting", u"Einstellung"),
                                    InLanguage(u"In the logger", u"Im Logger"),
                                    InLanguage(u"New", u"Neu")});
  table->verticalHeader()->hide();
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setTabKeyNavigation(false);
  for (int row = 0; row < table->rowCount(); ++row) {
    const SettingsChange& change = changes_[static_cast<std::size_t>(row)];
    int column = 0;
    for (const QString& text : {change.Field, change.Before, change.After})
      table->setItem(row, column++, new QTableWidgetItem(text));
  }
  table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  for (const int column : {1, 2})
    table->horizontalHeader()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
  return table;
}

std::vector<SettingsChange> frmChanges::Chosen() const {
  std::vector<SettingsChange> chosen;
  for (int row = 0; row < tblChanges_->rowCount(); ++row) {
    if (tblChanges_->selectionModel()->isRowSelected(row))
      chosen.push_back(changes_[static_cast<std::size_t>(row)]);
  }
  return chosen.empty() ? changes_ : chosen;
}

void frmChanges::Copy() const {
  QGuiApplication::clipboard()->setText(ChangesAsText(Chosen()));
}

void frmChanges::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
    return;
  }
  QDialog::keyPressEvent(event);
}

}  // namespace tessmar
