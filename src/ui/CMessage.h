#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

#include "ui/FMessage.h"

namespace tessmar {

/// The help that F1 opens in a message.
struct MessageHelp {
  QString File;  ///< Empty when there is none.
  std::function<void(const QString& file, int context)> Open;
};

/// One message, from the Buttons number to the result. A new one for each message.
class CMessage {
 public:
  /// @param parent  the window that the message belongs to; may go while the message is open.
  /// @param help    the application's help file, which MsgBox replaces by its own while it shows.
  explicit CMessage(QWidget* parent = nullptr, MessageHelp help = {});

  /// Shows a message and waits for its answer.
  /// @param buttons  a sum of MsgBoxStyle values.
  /// @param title    empty for the application's title.
  /// @return a MsgBoxResult; the first button's when the message is closed by anything else.
  int MsgBox(const QString& prompt, int buttons = 0, const QString& title = {},
             const QString& helpFile = {}, int context = 0);

  /// Shows an error report with a Copy button, which puts the text on the clipboard.
  void DisplayError(const QString& prompt, bool helpButton = false, int context = 0);

 private:
  FMessage* NewForm(int context);
  void m_frmMessage_ButtonClicked(int button);
  void m_frmError_ButtonClicked(int button);

  QWidget* parent_;
  MessageHelp help_;
  QString prompt_;
  QPointer<FMessage> m_frmMessage_;
  QPointer<FMessage> m_frmError_;
};

}  // namespace tessmar
