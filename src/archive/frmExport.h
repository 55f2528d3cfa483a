#pragma once

#include <QDialog>
#include <QTimer>
#include <functional>

#include "archive/ExportWork.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace tessmar {

/// The small window of an export that takes its time, with a bar and Cancel. The export runs in a
/// thread of its own, so that this window and all others stay alive; it appears when there is
/// something to wait for.
class frmExport : public QDialog {
 public:
  using Work = std::function<void(ExportState& state)>;

  explicit frmExport(QWidget* parent);

  /// Does the work and returns when it has ended, cancelled or not. What it throws is thrown here.
  /// Once the program is ending, the work is asked to stop.
  void Run(const Work& work);

  void reject() override;

 private:
  void Look();

  ExportState state_;
  std::atomic<bool> ended_ = false;
  QTimer looks_;
  QLabel* lblStatusBar_;
  QProgressBar* progressBar_;
  QPushButton* cmdCancel_;
};

}  // namespace tessmar
