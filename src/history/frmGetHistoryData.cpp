#include "history/frmGetHistoryData.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/AddedTexts.h"
#include "base/TextTable.h"
#include "history/GetHistoryData.h"
#include "history/PullHistory.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Blocks that come faster than this are shown together: a screen cannot tell them apart, and
/// painting each would hold up a fast line.
constexpr qint64 kShowEveryMs = 40;

}  // namespace

frmGetHistoryData::frmGetHistoryData(HistoryBuffer& buffer, LoggerCommands& commands, Comm& comm,
                                     LinkState& link, Messages& messages, BlockSink& sink,
                                     std::int32_t totalRecords, QWidget* parent)
    : QDialog(parent),
      buffer_(buffer),
      commands_(commands),
      comm_(comm),
      link_(link),
      messages_(messages),
      sink_(sink),
      uploadState_(UploadStates::kStarting),
      totalRecords_(totalRecords),
      recordsPrefix_(GetText(TextId::Records) + u' '),
      retriesPrefix_(GetText(TextId::Retries) + u' '),
      lblGetHistoryData_(new QLabel(this)),
      lblRetries_(new QLabel(this)),
      progressBar1_(new QProgressBar(this)),
      cmdOkay_(new QPushButton(GetText(TextId::Okay), this)),
      cmdCancel_(new QPushButton(GetText(TextId::Stop), this)) {
  setObjectName(u"frmGetHistoryData"_s);
  setWindowTitle(GetText(TextId::GetHistoryDataTitle));
  lblGetHistoryData_->setObjectName(u"lblGetHistoryData"_s);
  lblRetries_->setObjectName(u"lblRetries"_s);
  progressBar1_->setObjectName(u"ProgressBar1"_s);
  progressBar1_->setAccessibleName(GetText(TextId::GetHistoryDataTitle));
  progressBar1_->setTextVisible(false);
  cmdOkay_->setObjectName(u"cmdOkay"_s);
  cmdOkay_->setEnabled(false);
  cmdCancel_->setObjectName(u"cmdCancel"_s);
  BuildLayout();

  // Not on Stop: the key that began the upload, pressed once more, must not end it.
  progressBar1_->setFocusPolicy(Qt::TabFocus);
  progressBar1_->setFocus();

  connect(cmdOkay_, &QPushButton::clicked, this, [this] { cmdOkay_Click(); });
  connect(cmdCancel_, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
}

void frmGetHistoryData::BuildLayout() {
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdOkay_);
  buttons->addWidget(cmdCancel_);

  auto* rows = new QVBoxLayout(this);
  rows->addWidget(lblGetHistoryData_);
  rows->addWidget(progressBar1_);
  rows->addWidget(lblRetries_);
  rows->addStretch();
  rows->addLayout(buttons);
  setMinimumWidth(fontMetrics().averageCharWidth() * 60);
}

void frmGetHistoryData::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // Queued, so that the dialog stands on the screen before the upload takes the thread.
  QMetaObject::invokeMethod(
      this, [this] { RunUpload(); }, Qt::QueuedConnection);
}

bool frmGetHistoryData::IsRunning() const {
  return uploadState_ == UploadStates::kRunning && !comm_.Loop().Ending();
}

void frmGetHistoryData::RunUpload() {
  if (uploadState_ != UploadStates::kStarting) return;
  uploadState_ = UploadStates::kRunning;

  const QPointer<frmGetHistoryData> self(this);
  pulling_ = true;
  const UploadEnd end = Pull();
  if (self.isNull()) return;
  pulling_ = false;
  Finish(end);
}

UploadEnd frmGetHistoryData::Pull() {
  HistoryUpload upload(link_, buffer_, totalRecords_);
  progressBar1_->setRange(0, totalRecords_);
  progressBar1_->setValue(0);
  lblRetries_->clear();
  ShowCount(0);
  sinceShown_.start();

  const QPointer<frmGetHistoryData> self(this);
  const UploadEnd end =
      PullHistory(upload, commands_, comm_, link_,
                  {.Running = [self] { return !self.isNull() && self->IsRunning(); },
                   .Changed =
                       [self, &upload] {
                         if (!self.isNull()) self->ShowProgress(upload);
                       },
                   .Waiting =
                       [self, &upload](bool waits) {
                         if (!self.isNull()) self->ShowWait(upload, waits);
                       }},
                  sink_);
  if (!self.isNull() && end == UploadEnd::Complete && upload.IsShort())
    ShowRetries(upload, ShortUploadText(upload.Count(), upload.TotalRecords()));
  return end;
}

void frmGetHistoryData::ShowProgress(const HistoryUpload& upload) {
  const bool begunAnew = upload.TimesBegunAnew() != shownTimesBegunAnew_;
  if (upload.TotalFailures() != shownFailures_ || begunAnew) {
    shownFailures_ = upload.TotalFailures();
    shownTimesBegunAnew_ = upload.TimesBegunAnew();
    ShowRetries(upload);
  } else if (sinceShown_.elapsed() < kShowEveryMs && upload.Count() < upload.TotalRecords()) {
    return;
  }
  sinceShown_.restart();
  if (progressBar1_->maximum() < upload.BarMaximum() || begunAnew)
    progressBar1_->setMaximum(upload.BarMaximum());
  progressBar1_->setValue(upload.Count());
  ShowCount(upload.Count());
}

void frmGetHistoryData::ShowWait(const HistoryUpload& upload, bool waits) {
  ShowRetries(upload, waits ? GetText(AddedText::WaitingForLateAnswers) : QString());
}

// The retries so far, and what else there is to say about them.
void frmGetHistoryData::ShowRetries(const HistoryUpload& upload, const QString& note) {
  QStringList parts;
  if (upload.TotalFailures() > 0)
    parts.append(retriesPrefix_ + QString::number(upload.TotalFailures()));
  if (upload.TimesBegunAnew() > 0) parts.append(GetText(AddedText::UploadBegunAnew));
  if (!note.isEmpty()) parts.append(note);
  lblRetries_->setText(parts.join(u", "_s));
}

void frmGetHistoryData::ShowCount(std::int32_t count) {
  lblGetHistoryData_->setText(recordsPrefix_ + QString::number(count));
}

void frmGetHistoryData::Finish(UploadEnd end) {
  if (end == UploadEnd::Complete) {
    progressBar1_->setValue(buffer_.Count());
    cmdOkay_->setEnabled(true);
    cmdOkay_->setDefault(true);
    cmdOkay_->setFocus();
    cmdCancel_->setEnabled(false);
    lblGetHistoryData_->setText(GetText(TextId::UploadCompleteHead) +
                                QString::number(buffer_.Count()) +
                                GetText(TextId::UploadCompleteTail));
    // A stop that came with the last block leaves nothing to wait for; what arrived is shown.
    if (!IsRunning()) QDialog::reject();
    return;
  }

  ShowCount(buffer_.Count());
  const QPointer<frmGetHistoryData> self(this);
  messages_.MsgBox(UploadEndText(end, buffer_.Count(), totalRecords_),
                   end == UploadEnd::BufferFull ? kInformation : kCritical,
                   GetText(TextId::GetHistoryDataTitle));
  if (self.isNull()) return;
  if (end != UploadEnd::Failed) uploadState_ = UploadStates::kCancel;
  QDialog::reject();
}

void frmGetHistoryData::cmdOkay_Click() {
  uploadState_ = UploadStates::kOkay;
  accept();
}

void frmGetHistoryData::cmdCancel_Click() {
  uploadState_ = UploadStates::kCancel;
}

void frmGetHistoryData::reject() {
  if (cmdOkay_->isEnabled()) {
    cmdOkay_Click();
  } else if (pulling_) {
    cmdCancel_Click();
  } else {
    if (uploadState_ == UploadStates::kStarting) uploadState_ = UploadStates::kCancel;
    QDialog::reject();
  }
}

}  // namespace tessmar
