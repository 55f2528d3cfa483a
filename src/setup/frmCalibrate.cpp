#include "setup/frmCalibrate.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "base/TextTable.h"
#include "setup/SetupWidgets.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

constexpr int kTickMs = 250;
constexpr TextId kLabels[] = {TextId::EnterHighestValue, TextId::EnterLowestValue,
                              TextId::PressNextWhenSettled};

}  // namespace

frmCalibrate::frmCalibrate(Calibration& calibration, const QString& title, PageCheck check,
                           QWidget* parent)
    : QDialog(parent), calibration_(calibration), validation_(*this) {
  setObjectName(u"frmCalibrate"_s);
  setWindowTitle(title);

  auto* frame1 = new QFrame(this);
  frame1->setObjectName(u"Frame1"_s);
  lblCalibrate_ = NewLabel(u"lblCalibrate"_s, {}, frame1);
  txtCalibrate_ = NewField(u"txtCalibrate"_s, {}, {}, frame1);
  cmdBack_ = NewButton(u"cmdBack"_s, GetText(TextId::Back), {}, this);
  cmdNext_ = NewButton(u"cmdNext"_s, GetText(TextId::Next), {}, this);
  cmdCancel_ = NewButton(u"cmdCancel"_s, GetText(TextId::Cancel), {}, this);
  cmdNext_->setDefault(true);
  // Enter presses the one that has the focus, and Next from the field.
  for (QPushButton* button : {cmdBack_, cmdNext_, cmdCancel_}) button->setAutoDefault(true);

  auto* inner = new QVBoxLayout(frame1);
  inner->addWidget(lblCalibrate_);
  inner->addWidget(txtCalibrate_);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  for (QPushButton* button : {cmdBack_, cmdNext_, cmdCancel_}) buttons->addWidget(button);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(frame1);
  layout->addLayout(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  // One width for all pages: that of the longest sentence.
  int width = 0;
  for (const TextId id : kLabels)
    width = std::max(width, lblCalibrate_->fontMetrics().horizontalAdvance(GetText(id)));
  lblCalibrate_->setMinimumWidth(width);

  validation_.Guard(txtCalibrate_, [this, check = std::move(check)] {
    const FieldVerdict verdict = check(calibration_.CalibrationStep(), txtCalibrate_->text());
    if (verdict.Accepted) txtCalibrate_->setText(verdict.Text);
    return verdict.Accepted;
  });
  validation_.NeverChecks(cmdCancel_);

  timer1_ = new QTimer(this);
  timer1_->setObjectName(u"Timer1"_s);
  timer1_->setInterval(kTickMs);
  QObject::connect(timer1_, &QTimer::timeout, this, [this] { Tick(); });
  QObject::connect(cmdBack_, &QPushButton::clicked, this, [this] { Leave(u"Back"_s); });
  QObject::connect(cmdNext_, &QPushButton::clicked, this, [this] { Leave(u"Next"_s); });
  QObject::connect(cmdCancel_, &QPushButton::clicked, this, [this] { Leave(u"Cancel"_s); });
  ShowPage();
}

void frmCalibrate::ShowPage() {
  const Calibration::PageView& page = calibration_.View();
  lblCalibrate_->setText(GetText(page.Label));
  lblCalibrate_->setAccessibleName(GetText(page.Label));
  txtCalibrate_->setAccessibleName(GetText(page.Label));
  txtCalibrate_->setText(calibration_.StartText());
  cmdNext_->setText(GetText(page.NextCaption));
  txtCalibrate_->setFocus();
  txtCalibrate_->selectAll();
  cmdBack_->setEnabled(page.BackEnabled);
  if (page.LiveReading) timer1_->start();
}

void frmCalibrate::Leave(const QString& result) {
  timer1_->stop();
  result_ = result;
  if (result == "Cancel"_L1) {
    QDialog::reject();
  } else if (result == "Back"_L1) {
    calibration_.Back();
    ShowPage();
  } else if (calibration_.Next(txtCalibrate_->text())) {
    accept();
  } else {
    ShowPage();
  }
}

// The window's close box and Escape are the Cancel button.
void frmCalibrate::reject() {
  Leave(u"Cancel"_s);
}

void frmCalibrate::Tick() {
  // The reading waits for the logger, and the window may be gone by then.
  const QPointer<QLineEdit> field = txtCalibrate_;
  const std::optional<std::int32_t> reading = calibration_.Tick();
  if (reading && field != nullptr && isVisible()) field->setText(QString::number(*reading));
}

}  // namespace tessmar
