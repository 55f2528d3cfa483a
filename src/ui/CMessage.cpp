#include "ui/CMessage.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QKeyEvent>
#include <utility>

#include "base/Messages.h"
#include "ui/MessageButtons.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Buttons of an error report.
enum ErrorButton { kCopyButton = 1, kErrorHelpButton = 2 };

void SetButtons(FMessage& form, const std::vector<MessageButton>& buttons) {
  QStringList captions;
  QList<bool> unload;
  for (const MessageButton& button : buttons) {
    captions << button.Caption;
    unload << button.Closes;
  }
  form.SetButtonText(captions);
  form.SetButtonsUnload(unload);
  const MessageWayOut wayOut = MessageWayOutFor(buttons);
  form.SetWayOut(wayOut.Escape, wayOut.Close);
}

/// Presses F1, as the operator would, at the control that has the focus.
void SendHelpKey(FMessage* form) {
  QWidget* focused = form->focusWidget();
  QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
  QCoreApplication::sendEvent(focused != nullptr ? focused : form, &press);
  QKeyEvent release(QEvent::KeyRelease, Qt::Key_F1, Qt::NoModifier);
  QCoreApplication::sendEvent(focused != nullptr ? focused : form, &release);
}

}  // namespace

CMessage::CMessage(QWidget* parent, MessageHelp help) : parent_(parent), help_(std::move(help)) {}

FMessage* CMessage::NewForm(int context) {
  auto* form = new FMessage(parent_);
  QObject::connect(form, &FMessage::HelpKeyPressed, form, [this, context] {
    if (help_.Open && QFileInfo::exists(help_.File)) help_.Open(help_.File, context);
  });
  return form;
}

int CMessage::MsgBox(const QString& prompt, int buttons, const QString& title,
                     const QString& helpFile, int context) {
  m_frmMessage_ = NewForm(context);
  FMessage* form = m_frmMessage_;
  prompt_ = prompt;
  form->SetMessageTitle(title);

  SetButtons(*form, MessageButtonsFor(buttons));
  form->SetMessageIcon(MessageIconCode(buttons));
  form->SetButtonDefault(DefaultMessageButton(buttons));
  form->SetTextAlignment((buttons & kRightAligned) != 0 ? Qt::AlignRight : Qt::AlignLeft);
  form->SetTopMost((buttons & kForeground) != 0);
  QObject::connect(form, &FMessage::ButtonClicked, form,
                   [this](int button) { m_frmMessage_ButtonClicked(button); });

  const QString applicationHelpFile = std::exchange(help_.File, helpFile);
  form->ShowMessage(prompt);
  help_.File = applicationHelpFile;

  // The window that the form belongs to may have gone meanwhile, and the form with it.
  const int selected = m_frmMessage_ ? m_frmMessage_->SelectedButton() : 0;
  delete m_frmMessage_;
  return MessageResult(buttons, selected);
}

void CMessage::DisplayError(const QString& prompt, bool helpButton, int context) {
  m_frmError_ = NewForm(context);
  FMessage* form = m_frmError_;
  prompt_ = prompt;
  form->SetMessageTitle(QCoreApplication::applicationName());
  std::vector<MessageButton> set{{u"Close"_s, true, 0}, {u"Copy"_s, false, 0}};
  if (helpButton) set.push_back({u"Help"_s, false, 0});
  SetButtons(*form, set);
  form->SetMessageIcon(kCritical);
  form->SetButtonDefault(0);
  form->SetTextAlignment(Qt::AlignLeft);
  form->SetTopMost(true);
  QObject::connect(form, &FMessage::ButtonClicked, form,
                   [this](int button) { m_frmError_ButtonClicked(button); });
  form->ShowMessage(prompt);
  delete m_frmError_;
}

void CMessage::m_frmMessage_ButtonClicked(int /*button*/) {
  SendHelpKey(m_frmMessage_);
}

void CMessage::m_frmError_ButtonClicked(int button) {
  if (button == kCopyButton) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(prompt_);
  } else if (button == kErrorHelpButton) {
    SendHelpKey(m_frmError_);
  }
}

}  // namespace tessmar
