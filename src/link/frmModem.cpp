#include "link/frmModem.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kTickMs = 100;

/// A modem may ring for hours.
constexpr int kMostLines = 2000;

/// And what is at the other end may talk on and on without a line feed: a long line costs time with
/// each piece that is added to it.
constexpr int kMostCharacters = 20'000;
constexpr int kKeptCharacters = 10'000;

constexpr int kColumns = 56;
constexpr int kRows = 14;

}  // namespace

frmModem::frmModem(Comm& comm, LinkState& link, const QStringList& commands, const QString& number,
                   QWidget* parent)
    : QDialog(parent),
      txtModem_(new QPlainTextEdit),
      cmdCancel_(new QPushButton(GetText(TextId::Cancel))),
      dialogue_(comm, link, commands, number,
                {.Append = [this](const QString& text) { Append(text); },
                 .SetTextColour = [this](Rgb colour) { SetTextColour(colour); },
                 .Hide = [this] { done(QDialog::Accepted); }}) {
  setObjectName(u"frmModem"_s);
  setWindowTitle(GetText(TextId::ModemConnection));

  txtModem_->setObjectName(u"txtModem"_s);
  txtModem_->setAccessibleName(windowTitle());
  txtModem_->setReadOnly(true);
  txtModem_->setUndoRedoEnabled(false);
  txtModem_->setMaximumBlockCount(kMostLines);
  const QFontMetrics metrics = txtModem_->fontMetrics();
  txtModem_->setMinimumSize(metrics.averageCharWidth() * kColumns, metrics.lineSpacing() * kRows);

  cmdCancel_->setObjectName(u"cmdCancel"_s);
  cmdCancel_->setAccessibleName(cmdCancel_->text());
  connect(cmdCancel_, &QPushButton::clicked, this, [this] { dialogue_.Cancel(); });

  auto* buttons = new QDialogButtonBox;
  buttons->addButton(cmdCancel_, QDialogButtonBox::RejectRole);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(txtModem_);
  layout->addWidget(buttons);
  // Not on Cancel: the key that began the call, pressed once more, must not end it.
  cmdCancel_->setAutoDefault(false);
  txtModem_->setFocus();

  dialogue_.Start();
  timer1_.setObjectName(u"Timer1"_s);
  timer1_.setInterval(kTickMs);
  connect(&timer1_, &QTimer::timeout, this, [this] { dialogue_.Tick(); });
  timer1_.start();
}

void frmModem::reject() {
  dialogue_.Cancel();
}

// Enter presses Cancel only where Cancel has the focus.
void frmModem::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (cmdCancel_->hasFocus()) cmdCancel_->click();
    return;
  }
  QDialog::keyPressEvent(event);
}

void frmModem::Append(const QString& text) {
  QString shown = text;
  // The line feed alone breaks the line; NUL would end the text for whoever copies it.
  shown.remove(u'\r').remove(QChar(u'\0'));
  txtModem_->moveCursor(QTextCursor::End);
  txtModem_->insertPlainText(shown.right(kKeptCharacters));
  ForgetOldest();
  txtModem_->ensureCursorVisible();
}

void frmModem::ForgetOldest() {
  const int held = txtModem_->document()->characterCount();
  if (held <= kMostCharacters) return;
  QTextCursor cursor(txtModem_->document());
  cursor.setPosition(held - kKeptCharacters, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
}

void frmModem::SetTextColour(Rgb colour) {
  QPalette palette = txtModem_->palette();
  palette.setColor(QPalette::Text, QColor(colour.Red, colour.Green, colour.Blue));
  txtModem_->setPalette(palette);
}

}  // namespace tessmar
