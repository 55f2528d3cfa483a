#pragma once

#include <QDialog>
#include <functional>

#include "setup/Calibration.h"
#include "setup/FieldRules.h"
#include "setup/FieldValidation.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;

namespace tessmar {

/// The calibration wizard's window: shows the pages of a Calibration and its live reading. exec()
/// gives Accepted when the last page was finished.
class frmCalibrate final : public QDialog {
 public:
  /// Checks a text by the rule of a page and reports a refusal.
  using PageCheck = std::function<FieldVerdict(Calibration::Page page, const QString& text)>;

  /// @param calibration  outlives the window.
  frmCalibrate(Calibration& calibration, const QString& title, PageCheck check, QWidget* parent);

  /// "Next", "Back" or "Cancel", in every language: how the last page was left. Empty until then.
  QString CalibrationResult() const { return result_; }

  void reject() override;

 private:
  void ShowPage();
  void Leave(const QString& result);
  void Tick();

  Calibration& calibration_;
  QString result_;
  FieldValidation validation_;
  QLabel* lblCalibrate_;
  QLineEdit* txtCalibrate_;
  QPushButton* cmdBack_;
  QPushButton* cmdNext_;
  QPushButton* cmdCancel_;
  QTimer* timer1_;
};

}  // namespace tessmar
