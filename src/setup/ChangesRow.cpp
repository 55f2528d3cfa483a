#include "setup/ChangesRow.h"

#include <QHBoxLayout>

#include "base/TextTable.h"
#include "setup/SetupWidgets.h"
#include "setup/frmChanges.h"

namespace tessmar {

using namespace Qt::StringLiterals;

ChangesRow::ChangesRow(QWidget* parent)
    : QWidget(parent),
      lblChanges_(NewLabel(u"lblChanges"_s, {}, this)),
      cmdChanges_(
          NewButton(u"cmdChanges"_s, InLanguage(u"Changes...", u"Änderungen..."), {}, this)) {
  cmdChanges_->setEnabled(false);
  QObject::connect(cmdChanges_, &QPushButton::clicked, this, [this] { ShowList(); });
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  row->addWidget(lblChanges_);
  row->addWidget(cmdChanges_);
  row->addStretch(1);
}

void ChangesRow::Show(const ConfigImage& logger, const std::optional<ConfigImage>& wanted,
                      bool busy) {
  if (logger != logger_ || wanted != wanted_ || lblChanges_->text().isEmpty()) {
    logger_ = logger;
    wanted_ = wanted;
    changes_ = wanted ? ChangesBetween(logger, *wanted) : std::vector<SettingsChange>{};
    const QString text = wanted ? ChangesSummary(changes_.size())
                                : InLanguage(u"Some settings do not fit the logger",
                                             u"Einige Einstellungen passen nicht in den Logger");
    lblChanges_->setText(text);
    lblChanges_->setAccessibleName(text);
  }
  cmdChanges_->setEnabled(!changes_.empty() && !busy);
}

void ChangesRow::ShowList() {
  frmChanges(changes_, window()).exec();
}

}  // namespace tessmar
