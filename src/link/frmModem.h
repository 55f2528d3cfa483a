#pragma once

#include <QDialog>
#include <QTimer>

#include "link/ModemDialogue.h"

class QPlainTextEdit;
class QPushButton;

namespace tessmar {

/// Shows the dialogue with a modem while it runs. Cancel, Escape and the window's close button end
/// the dialogue, which closes the window.
class frmModem : public QDialog {
 public:
  /// @param commands  see ModemDialogueShow. Throws PortFault when the port is closed.
  frmModem(Comm& comm, LinkState& link, const QStringList& commands, const QString& number,
           QWidget* parent = nullptr);

  ModemResult Result() const { return dialogue_.Result(); }

  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Append(const QString& text);
  void ForgetOldest();
  void SetTextColour(Rgb colour);

  QPlainTextEdit* txtModem_;
  QPushButton* cmdCancel_;
  QTimer timer1_;
  ModemDialogue dialogue_;
};

}  // namespace tessmar
