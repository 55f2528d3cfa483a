#pragma once

#include <QDialog>
#include <vector>

#include "setup/SettingsChanges.h"

class QTableWidget;

namespace tessmar {

/// The list of what differs between the setup screen and the logger. It changes nothing; what it
/// shows can be copied, a selection or all of it.
class frmChanges final : public QDialog {
 public:
  explicit frmChanges(std::vector<SettingsChange> changes, QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QTableWidget* NewTable();
  /// The selected rows, or all without a selection.
  std::vector<SettingsChange> Chosen() const;
  void Copy() const;

  std::vector<SettingsChange> changes_;
  QTableWidget* tblChanges_;
};

}  // namespace tessmar
