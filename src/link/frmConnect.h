#pragma once

#include <QDialog>
#include <QStringList>
#include <functional>

#include "base/FileDialogs.h"
#include "link/ConnectOperation.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;

namespace tessmar {

/// Lets the operator choose a line, and connects. LinkState::Connected tells the outcome once it
/// has closed; the port is open then only if a session exists.
class frmConnect : public QDialog {
 public:
  /// @param enumeratePorts  see EnumeratePorts; asked once.
  frmConnect(Comm& comm, LoggerCommands& commands, LinkState& link, ConnectionSettings& settings,
             Messages& messages, FileDialogs& fileDialogs, MainScreen& screen,
             const std::function<QStringList()>& enumeratePorts, QWidget* parent = nullptr);

  /// See ConnectOperation::NoContact.
  void TellNoContact(std::function<void(PortCause)> tell);

  /// Every way out of the dialog remembers what it held.
  void done(int result) override;
  /// Cancel: closes the dialog, or asks the running work to end.
  void reject() override;

 private:
  void MakeControls();
  QGridLayout* LayOutDirect();
  QGridLayout* LayOutModem();
  void LayOut();
  void OrderTabs();
  void Load(const QStringList& enumerated);
  void Connect();
  void Browse();
  void ShowConnecting(bool connecting);
  bool ConnectByModem();
  QString PhoneNumber() const;

  Comm& comm_;
  LinkState& link_;
  ConnectionSettings& settings_;
  Messages& messages_;
  FileDialogs& fileDialogs_;
  ConnectOperation operation_;

  QWidget* fraDirect_;
  QWidget* fraModem_;
  QRadioButton* optDirect_;
  QRadioButton* optModem_;
  QComboBox* cmbPort1_;
  QComboBox* cmbBaud1_;
  QComboBox* cmbPort2_;
  QComboBox* cmbBaud2_;
  QComboBox* cmbNumber_;
  QCheckBox* chkInitFile_;
  QLineEdit* txtConfiguration_;
  QPushButton* cmdBrowse_;
  QProgressBar* working_;
  QPushButton* cmdConnect_;
  QPushButton* cmdCancel_;
};

}  // namespace tessmar
