#pragma once

#include <QDialog>
#include <QString>

#include "base/Messages.h"
#include "history/ImageImport.h"

class QCheckBox;
class QComboBox;

namespace tessmar {

/// Asks for the channel counts of a logger image file and for what to open after the import. In
/// English in every language.
class frmImportSetup : public QDialog {
 public:
  explicit frmImportSetup(Messages& messages, QWidget* parent = nullptr);

  /// "OK" or "CANCEL".
  const QString& Result() const { return result_; }
  ImportChoice Choice() const;

 private:
  void BuildLayout();
  void cmdOK_Click();

  Messages& messages_;
  QString result_;
  QComboBox* cmbNumAnalogChannels_;
  QComboBox* cmbNumDigitalChannels_;
  QCheckBox* chkLaunchSetup_;
  QCheckBox* chkLaunchHistory_;
};

}  // namespace tessmar
