#include "setup/SetupGeneralPage.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

#include "base/MainScreen.h"
#include "base/TextTable.h"
#include "setup/FieldChecks.h"
#include "setup/SetupLists.h"
#include "setup/SetupWidgets.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

struct AlarmCaptions {
  TextId Use;
  TextId Time;
};
constexpr std::array<AlarmCaptions, kAlarms> kAlarmCaptions{{
    {TextId::UseAlarm1, TextId::Alarm1Time},
    {TextId::UseAlarm2, TextId::Alarm2Time},
}};

QLineEdit* NewNumberField(const QString& name, const QString& spokenName, QWidget* parent) {
  QLineEdit* field = NewField(name, spokenName, {}, parent);
  field->setMaximumWidth(field->fontMetrics().horizontalAdvance(u'0') * 12);
  return field;
}

/// A row of controls, left-aligned.
QHBoxLayout* RowOf(std::initializer_list<QWidget*> controls) {
  auto* row = new QHBoxLayout;
  for (QWidget* control : controls) row->addWidget(control);
  row->addStretch(1);
  return row;
}

}  // namespace

SetupGeneralPage::SetupGeneralPage(bool use24HourClock, bool sampleOnDemandSupported,
                                   QWidget* parent)
    : QWidget(parent) {
  auto* page = new QVBoxLayout(this);
  AddNameAndSpeed(page);
  AddLoggingModes(page);
  AddException(page);
  chkWrap_ = NewCheckBox(u"chkWrap"_s, GetText(TextId::WrapRecords), {}, this);
  chkSOD_ = NewCheckBox(u"chkSOD"_s, GetText(TextId::EnableSampleOnDemand), {}, this);
  chkSOD_->setEnabled(sampleOnDemandSupported);
  page->addWidget(chkWrap_);
  page->addWidget(chkSOD_);
  for (int index = 0; index < kAlarms; ++index) {
    Alarm& alarm = alarms_[static_cast<std::size_t>(index)];
    alarm = NewAlarm(index, use24HourClock);
    page->addWidget(alarm.chkAlarm);
    QHBoxLayout* time = RowOf({alarm.lblAlarm, alarm.txtAlarm, alarm.cmbAlarm});
    time->insertSpacing(0, 24);
    page->addLayout(time);
  }
  page->addStretch(1);
}

void SetupGeneralPage::AddNameAndSpeed(QBoxLayout* page) {
  const QString name = GetText(TextId::Name);
  QLabel* label7 = NewLabel(u"Label7"_s, name, this);
  txtName_ = NewField(u"txtName"_s, name, {}, this);
  txtName_->setMinimumWidth(txtName_->fontMetrics().averageCharWidth() * (kLoggerNameLength + 4));
  txtName_->setMaxLength(kLoggerNameLength);

  const QString warmup = GetText(TextId::SensorWarmupTime);
  QLabel* label8 = NewLabel(u"Label8"_s, warmup, this);
  cmbWarmup_ = NewEditableList(u"cmbWarmup"_s, warmup, WarmupItems(), {}, this);
  QLabel* label9 = NewLabel(u"Label9"_s, GetText(TextId::Seconds), this);
  const QString baud = GetText(TextId::BaudRate);
  QLabel* lblBaudRate = NewLabel(u"lblBaudRate"_s, baud, this);
  cmbBaud_ = NewList(u"cmbBaud"_s, baud, BaudItems(), this);

  auto* grid = new QGridLayout;
  grid->addWidget(label7, 0, 0);
  grid->addWidget(txtName_, 0, 1, 1, 3);
  grid->addWidget(label8, 1, 0);
  grid->addWidget(cmbWarmup_, 1, 1);
  grid->addWidget(label9, 1, 2);
  grid->addWidget(lblBaudRate, 1, 5);
  grid->addWidget(cmbBaud_, 1, 6);
  grid->setColumnStretch(3, 1);
  grid->setColumnMinimumWidth(4, 24);
  grid->setColumnStretch(7, 1);
  page->addLayout(grid);
}

void SetupGeneralPage::AddLoggingModes(QBoxLayout* page) {
  auto* frame1 = new QFrame(this);
  frame1->setObjectName(u"Frame1"_s);
  frame1->setFrameShape(QFrame::StyledPanel);
  const QString periodic = GetText(TextId::SamplePeriodically);
  optPeriodic_ = NewOption(u"optPeriodic"_s, periodic, frame1);
  txtSampleInterval_ = NewNumberField(u"txtSampleInterval"_s, periodic, frame1);
  txtSampleInterval_->setText(u"1"_s);
  cmbSampleInterval_ = NewList(u"cmbSampleInterval"_s, periodic, SampleIntervalItems(), frame1);
  optFastMode_ = NewOption(u"optFastMode"_s, GetText(TextId::FastSamplingMode), frame1);
  optLogarithmic_ = NewOption(u"optLogarithmic"_s, GetText(TextId::LogarithmicSampling), frame1);

  auto* rows = new QVBoxLayout(frame1);
  rows->addLayout(RowOf({optPeriodic_, txtSampleInterval_, cmbSampleInterval_}));
  rows->addWidget(optFastMode_);
  rows->addWidget(optLogarithmic_);
  page->addWidget(frame1);
}

// In German the sentence is read around the number: box, number and label stand close together.
void SetupGeneralPage::AddException(QBoxLayout* page) {
  const QString caption = GetText(TextId::LogOnlyIfChange);
  chkException_ = NewCheckBox(u"chkException"_s, caption, {}, this);
  txtException_ = NewNumberField(u"txtException"_s, caption, this);
  QLabel* units = NewLabel(u"lblExceptionUnits"_s, GetText(TextId::RawUnits), this);
  page->addLayout(RowOf({chkException_, txtException_, units}));
}

SetupGeneralPage::Alarm SetupGeneralPage::NewAlarm(int index, bool use24HourClock) {
  const AlarmCaptions& captions = kAlarmCaptions[static_cast<std::size_t>(index)];
  const QString time = GetText(captions.Time);
  Alarm alarm;
  alarm.chkAlarm = NewCheckBox(ElementName("chkAlarm", index), GetText(captions.Use), {}, this);
  alarm.lblAlarm = NewLabel(ElementName("lblAlarm", index), time, this);
  alarm.txtAlarm = NewNumberField(ElementName("txtAlarm", index), time, this);
  alarm.cmbAlarm = NewList(ElementName("cmbAlarm", index), time, AlarmHalfDayItems(), this);
  alarm.cmbAlarm->setHidden(use24HourClock);
  return alarm;
}

void SetupGeneralPage::FollowAlarmChecks() {
  for (const Alarm& alarm : alarms_) {
    const bool wanted = alarm.chkAlarm->isChecked();
    if (alarm.txtAlarm->isEnabled() == wanted) continue;
    alarm.txtAlarm->setEnabled(wanted);
    alarm.lblAlarm->setEnabled(wanted);
    alarm.cmbAlarm->setEnabled(wanted);
  }
}

void SetupGeneralPage::Guard(FieldChecks& checks) {
  checks.Guard(txtName_);
  checks.Guard(cmbWarmup_);
  checks.Guard(txtSampleInterval_);
  checks.Guard(txtException_);
  for (const Alarm& alarm : alarms_) checks.Guard(alarm.txtAlarm);
}

void SetupGeneralPage::Read(SetupControls& controls) const {
  controls.txtName = txtName_->text();
  controls.cmbWarmup = ListPosition(*cmbWarmup_);
  controls.cmbBaud = ListPosition(*cmbBaud_);
  controls.optPeriodic = optPeriodic_->isChecked();
  controls.optFastMode = optFastMode_->isChecked();
  controls.optLogarithmic = optLogarithmic_->isChecked();
  controls.txtSampleInterval = txtSampleInterval_->text();
  controls.cmbSampleInterval = ListPosition(*cmbSampleInterval_);
  controls.chkException = chkException_->isChecked();
  controls.txtException = txtException_->text();
  controls.chkWrap = chkWrap_->isChecked();
  controls.chkSOD = chkSOD_->isChecked();
  for (std::size_t index = 0; index < alarms_.size(); ++index) {
    controls.Alarm[index] = {.chkAlarm = alarms_[index].chkAlarm->isChecked(),
                             .txtAlarm = alarms_[index].txtAlarm->text(),
                             .cmbAlarm = ListPosition(*alarms_[index].cmbAlarm)};
  }
}

void SetupGeneralPage::Write(const SetupControls& controls) {
  // What is typed ends at the limit; a longer name is shown as it is.
  txtName_->setMaxLength(
      std::max<int>(kLoggerNameLength, static_cast<int>(controls.txtName.size())));
  txtName_->setText(controls.txtName);
  txtName_->setCursorPosition(0);
  SetListPosition(*cmbWarmup_, controls.cmbWarmup);
  SetListPosition(*cmbBaud_, controls.cmbBaud);
  optPeriodic_->setChecked(controls.optPeriodic);
  optFastMode_->setChecked(controls.optFastMode);
  optLogarithmic_->setChecked(controls.optLogarithmic);
  txtSampleInterval_->setText(controls.txtSampleInterval);
  SetListPosition(*cmbSampleInterval_, controls.cmbSampleInterval);
  chkException_->setChecked(controls.chkException);
  txtException_->setText(controls.txtException);
  chkWrap_->setChecked(controls.chkWrap);
  chkSOD_->setChecked(controls.chkSOD);
  for (std::size_t index = 0; index < alarms_.size(); ++index) {
    alarms_[index].chkAlarm->setChecked(controls.Alarm[index].chkAlarm);
    alarms_[index].txtAlarm->setText(controls.Alarm[index].txtAlarm);
    SetListPosition(*alarms_[index].cmbAlarm, controls.Alarm[index].cmbAlarm);
  }
}

}  // namespace tessmar
