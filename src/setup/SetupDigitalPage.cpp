#include "setup/SetupDigitalPage.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <algorithm>

#include "base/MainScreen.h"
#include "base/TextTable.h"
#include "setup/FieldChecks.h"
#include "setup/SetupLists.h"
#include "setup/SetupWidgets.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

/// Where the frames stand on the page, in logical pixels.
constexpr int kLeftMargin = 50;
constexpr int kTopMargin = 33;
constexpr int kLeastGap = 12;
/// How much of a wide page a frame takes for each part that a gap takes.
constexpr int kFrameShare = 8;

}  // namespace

SetupDigitalPage::SetupDigitalPage(int channelCount, QWidget* parent)
    : QWidget(parent), channelCount_(std::clamp(channelCount, 0, kPulseChannels)) {
  auto* columns = new QHBoxLayout(this);
  columns->setContentsMargins(kLeftMargin, kTopMargin, columns->contentsMargins().right(), 0);
  columns->setSpacing(kLeastGap);
  for (int channel = 0; channel < kPulseChannels; ++channel) {
    Group& group = groups_[static_cast<std::size_t>(channel)];
    group = NewGroup(channel);
    SetGroupEnabled(group, channel < channelCount_);
    columns->addWidget(group.fraPulse, kFrameShare, Qt::AlignTop);
    columns->addStretch(1);
  }
}

SetupDigitalPage::Group SetupDigitalPage::NewGroup(int channel) {
  Group group;
  const QString caption = GetText(TextId::PulseChannel) + u' ' + QString::number(channel + 1);
  group.fraPulse = new QGroupBox(caption, this);
  group.fraPulse->setObjectName(ElementName("fraPulse", channel));
  group.fraPulse->setAccessibleName(caption);
  QWidget* frame = group.fraPulse;
  const auto spoken = [&](TextId label) { return caption + u": "_s + GetText(label); };
  const auto label = [&](const char* name, TextId text) {
    return NewLabel(ElementName(name, channel), GetText(text), frame);
  };
  group.chkPulseEnable =
      NewCheckBox(ElementName("chkPulseEnable", channel), GetText(TextId::Enable),
                  u"Selects if pulse channel is included in display and history data"_s, frame);
  group.chkPulseEnable->setAccessibleName(spoken(TextId::Enable));
  group.lblPulse1 = label("lblPulse1", TextId::SensorNameOrUnits);
  group.cmbPulseEU =
      NewEditableList(ElementName("cmbPulseEU", channel), spoken(TextId::SensorNameOrUnits),
                      PulseUnits(), u"Name of measurement units (9 characters max)"_s, frame);
  group.lblPulse2 = label("lblPulse2", TextId::ValueForSinglePulse);
  group.txtPulseUnit =
      NewField(ElementName("txtPulseUnit", channel), spoken(TextId::ValueForSinglePulse),
               u"Floating point value for each pulse expressed in engineering units"_s, frame);
  group.lblPulse3 = label("lblPulse3", TextId::DecimalPlaces);
  group.cmbPulsePrecision = NewEditableList(
      ElementName("cmbPulsePrecision", channel), spoken(TextId::DecimalPlaces), PrecisionItems(),
      u"Number of digits to display after decimal point "_s, frame);

  auto* grid = new QGridLayout(frame);
  grid->addWidget(group.chkPulseEnable, 0, 0, 1, 2);
  grid->addWidget(group.lblPulse1, 1, 0);
  grid->addWidget(group.cmbPulseEU, 1, 1);
  grid->addWidget(group.lblPulse2, 2, 0);
  grid->addWidget(group.txtPulseUnit, 2, 1);
  grid->addWidget(group.lblPulse3, 3, 0);
  grid->addWidget(group.cmbPulsePrecision, 3, 1);
  grid->setColumnStretch(1, 1);
  return group;
}

void SetupDigitalPage::SetGroupEnabled(const Group& group, bool enabled) {
  QWidget* const controls[] = {group.fraPulse,          group.chkPulseEnable, group.cmbPulseEU,
                               group.txtPulseUnit,      group.lblPulse1,      group.lblPulse2,
                               group.cmbPulsePrecision, group.lblPulse3};
  for (QWidget* control : controls) control->setEnabled(enabled);
}

void SetupDigitalPage::Guard(FieldChecks& checks) {
  for (const Group& group : groups_) {
    checks.Guard(group.cmbPulseEU);
    checks.Guard(group.txtPulseUnit);
    checks.Guard(group.cmbPulsePrecision);
  }
}

void SetupDigitalPage::Read(SetupControls& controls) const {
  for (int channel = 0; channel < channelCount_; ++channel) {
    const Group& group = groups_[static_cast<std::size_t>(channel)];
    controls.Pulse[static_cast<std::size_t>(channel)] = {
        .chkPulseEnable = group.chkPulseEnable->isChecked(),
        .cmbPulseEU = group.cmbPulseEU->currentText(),
        .txtPulseUnit = group.txtPulseUnit->text(),
        .cmbPulsePrecision = ListPosition(*group.cmbPulsePrecision)};
  }
}

void SetupDigitalPage::Write(const SetupControls& controls) {
  for (int channel = 0; channel < channelCount_; ++channel) {
    const Group& group = groups_[static_cast<std::size_t>(channel)];
    const PulseControls& values = controls.Pulse[static_cast<std::size_t>(channel)];
    group.chkPulseEnable->setChecked(values.chkPulseEnable);
    SetListText(*group.cmbPulseEU, values.cmbPulseEU);
    group.txtPulseUnit->setText(values.txtPulseUnit);
    SetListPosition(*group.cmbPulsePrecision, values.cmbPulsePrecision);
  }
}

}  // namespace tessmar
