#include "history/frmImportSetup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "settings/LoggerSettings.h"
#include "ui/OkCancelRow.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kAnalogAtFirst = 3;
constexpr int kDigitalAtFirst = 1;

// The index of an item is the count that it stands for.
QComboBox* CountBox(const QString& name, int most, int atFirst) {
  auto* box = new QComboBox;
  box->setObjectName(name);
  for (int count = 0; count <= most; ++count) box->addItem(QString::number(count));
  box->setCurrentIndex(atFirst);
  return box;
}

QCheckBox* Ticked(const QString& name, const QString& caption) {
  auto* box = new QCheckBox(caption);
  box->setObjectName(name);
  box->setChecked(true);
  return box;
}

}  // namespace

frmImportSetup::frmImportSetup(Messages& messages, QWidget* parent)
    : QDialog(parent),
      messages_(messages),
      result_(u"CANCEL"_s),
      cmbNumAnalogChannels_(CountBox(u"cmbNumAnalogChannels"_s, kAnalogChannels, kAnalogAtFirst)),
      cmbNumDigitalChannels_(CountBox(u"cmbNumDigitalChannels"_s, kPulseChannels, kDigitalAtFirst)),
      chkLaunchSetup_(Ticked(u"chkLaunchSetup"_s, u"Launch Setup Screen before History Screen"_s)),
      chkLaunchHistory_(Ticked(u"chkLaunchHistory"_s, u"Launch History Viewer"_s)) {
  setObjectName(u"frmImportSetup"_s);
  setWindowTitle(u"Import Logger Data File"_s);
  BuildLayout();
}

void frmImportSetup::BuildLayout() {
  auto* counts = new QFormLayout;
  counts->addRow(u"Number of Analog Channels:"_s, cmbNumAnalogChannels_);
  counts->addRow(u"Number of Digital Channels:"_s, cmbNumDigitalChannels_);
  cmbNumAnalogChannels_->setAccessibleName(u"Number of Analog Channels"_s);
  cmbNumDigitalChannels_->setAccessibleName(u"Number of Digital Channels"_s);

  const OkCancelRow buttons(u"OK"_s, u"Cancel"_s);

  auto* rows = new QVBoxLayout(this);
  rows->addLayout(counts);
  rows->addWidget(chkLaunchSetup_);
  rows->addWidget(chkLaunchHistory_);
  rows->addStretch();
  rows->addLayout(buttons.Row);

  connect(buttons.OK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
  connect(buttons.Cancel, &QPushButton::clicked, this, [this] { reject(); });
}

void frmImportSetup::cmdOK_Click() {
  const ImportChoice choice = Choice();
  const QString refusal = ImportRefusal(choice.AnalogChannels, choice.PulseChannels);
  if (!refusal.isEmpty()) {
    messages_.MsgBox(refusal, kExclamation, {});
    return;
  }
  result_ = u"OK"_s;
  accept();
}

ImportChoice frmImportSetup::Choice() const {
  return {.AnalogChannels = cmbNumAnalogChannels_->currentIndex(),
          .PulseChannels = cmbNumDigitalChannels_->currentIndex(),
          .LaunchSetup = chkLaunchSetup_->isChecked(),
          .LaunchHistory = chkLaunchHistory_->isChecked()};
}

}  // namespace tessmar
