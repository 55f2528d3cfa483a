#pragma once

#include <QDialog>
#include <QString>

class QRadioButton;

namespace tessmar {

/// Asks whether a CSV file has date and time in one column or in two.
class frmHistoryOptions : public QDialog {
 public:
  /// @param csvDateTimeSingleColumn  empty for two columns; changed only by cmdOK. Must outlive the
  ///   dialog.
  explicit frmHistoryOptions(QString& csvDateTimeSingleColumn, QWidget* parent = nullptr);

 private:
  void cmdOK_Click();

  QString& csvDateTimeSingleColumn_;
  QRadioButton* optComma_;
  QRadioButton* optNoComma_;
};

}  // namespace tessmar
