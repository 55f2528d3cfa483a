#include "history/frmProgress.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Shorter work is over before a window could be read.
constexpr qint64 kPatienceMs = 300;

}  // namespace

frmProgress::frmProgress(int maximum, QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      lblStatusBar_(new QLabel(GetText(TextId::PleaseWaitFormatting), this)),
      progressBar_(new QProgressBar(this)) {
  setObjectName(u"frmProgress"_s);
  setWindowTitle(GetText(TextId::FormattingData));
  lblStatusBar_->setObjectName(u"lblStatusBar"_s);
  progressBar_->setObjectName(u"ProgressBar"_s);
  progressBar_->setAccessibleName(GetText(TextId::FormattingData));
  progressBar_->setTextVisible(false);
  progressBar_->setRange(0, maximum);
  progressBar_->setValue(0);

  auto* rows = new QVBoxLayout(this);
  rows->addWidget(lblStatusBar_);
  rows->addWidget(progressBar_);
  sinceStart_.start();
}

void frmProgress::Advance(int value) {
  progressBar_->setValue(value);
  if (value >= progressBar_->maximum()) return;
  if (isHidden() && sinceStart_.elapsed() >= kPatienceMs) show();
  if (isVisible()) repaint();
}

}  // namespace tessmar
