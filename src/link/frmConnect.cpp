#include "link/frmConnect.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "base/Blanks.h"
#include "base/TextTable.h"
#include "link/ConnectChoices.h"
#include "link/ModemConnection.h"
#include "link/frmModem.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Room for a usual entry of a port list; longer names show in the opened list.
constexpr int kPortColumns = 26;

/// A text of the table as a widget shows it.
QString Caption(TextId id) {
  return GetText(id).replace(u"\r\n"_s, u"\n"_s);
}

QFrame* MakeArea(const QString& name) {
  auto* area = new QFrame;
  area->setObjectName(name);
  area->setFrameShape(QFrame::StyledPanel);
  return area;
}

QLabel* MakeLabel(TextId caption, QComboBox* control, const QString& line) {
  auto* label = new QLabel(Caption(caption));
  label->setBuddy(control);
  control->setAccessibleName(line + u", "_s + label->text());
  return label;
}

/// Gives the label and speed columns of two areas the same widths.
void AlignColumns(QGridLayout& first, QGridLayout& second) {
  constexpr int kRows = 2;
  for (const int column : {0, 2, 3}) {
    int width = 0;
    for (const QGridLayout* area : {&first, &second}) {
      for (int row = 0; row < kRows; ++row) {
        const QLayoutItem* item = area->itemAtPosition(row, column);
        // What spans several columns does not decide about one.
        if (item != nullptr && area->itemAtPosition(row, 1) != item) {
          width = std::max(width, item->sizeHint().width());
        }
      }
    }
    first.setColumnMinimumWidth(column, width);
    second.setColumnMinimumWidth(column, width);
  }
}

template <typename Control>
Control* Named(const QString& name, Control* control) {
  control->setObjectName(name);
  return control;
}

}  // namespace

frmConnect::frmConnect(Comm& comm, LoggerCommands& commands, LinkState& link,
                       ConnectionSettings& settings, Messages& messages, FileDialogs& fileDialogs,
                       MainScreen& screen, const std::function<QStringList()>& enumeratePorts,
                       QWidget* parent)
    : QDialog(parent),
      comm_(comm),
      link_(link),
      settings_(settings),
      messages_(messages),
      fileDialogs_(fileDialogs),
      operation_(comm, commands, link, settings, messages, screen,
                 [this] { return ConnectByModem(); }) {
  setObjectName(u"frmConnect"_s);
  setWindowTitle(Caption(TextId::Connect));
  MakeControls();
  Load(enumeratePorts());
  LayOut();
  connect(chkInitFile_, &QCheckBox::toggled, this,
          [this](bool on) { settings_.UseModemInit = on ? 1 : 0; });
  connect(cmdBrowse_, &QPushButton::clicked, this, [this] { Browse(); });
  connect(cmdConnect_, &QPushButton::clicked, this, [this] { Connect(); });
  connect(cmdCancel_, &QPushButton::clicked, this, [this] { reject(); });
}

void frmConnect::MakeControls() {
  optDirect_ = Named(u"optDirect"_s, new QRadioButton(Caption(TextId::Direct)));
  optModem_ = Named(u"optModem"_s, new QRadioButton(Caption(TextId::Modem)));
  cmbPort1_ = Named(u"cmbPort1"_s, new QComboBox);
  cmbBaud1_ = Named(u"cmbBaud1"_s, new QComboBox);
  cmbPort2_ = Named(u"cmbPort2"_s, new QComboBox);
  cmbBaud2_ = Named(u"cmbBaud2"_s, new QComboBox);
  for (QComboBox* ports : {cmbPort1_, cmbPort2_}) {
    ports->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    ports->setMinimumContentsLength(kPortColumns);
  }

  cmbNumber_ = Named(u"cmbNumber"_s, new QComboBox);
  cmbNumber_->setEditable(true);
  cmbNumber_->setInsertPolicy(QComboBox::NoInsert);
  // A number must never be completed to a longer one that was dialled before.
  cmbNumber_->setCompleter(nullptr);

  chkInitFile_ = Named(u"chkInitFile"_s, new QCheckBox(Caption(TextId::UseModemInitFile)));
  txtConfiguration_ = Named(u"txtConfiguration"_s, new QLineEdit);
  txtConfiguration_->setAccessibleName(chkInitFile_->text());
  cmdBrowse_ = Named(u"cmdBrowse"_s, new QPushButton(u"..."_s));
  cmdBrowse_->setAccessibleName(Caption(TextId::SelectModemCommandFile));

  working_ = new QProgressBar;
  working_->setRange(0, 0);
  working_->setTextVisible(false);
  working_->setAccessibleName(Caption(TextId::Connect));
  QSizePolicy policy = working_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  working_->setSizePolicy(policy);
  working_->hide();

  cmdConnect_ = Named(u"cmdConnect"_s, new QPushButton(Caption(TextId::Connect)));
  cmdConnect_->setDefault(true);
  cmdCancel_ = Named(u"cmdCancel"_s, new QPushButton(Caption(TextId::Cancel)));
}

QGridLayout* frmConnect::LayOutDirect() {
  fraDirect_ = MakeArea(u"fraDirect"_s);
  auto* direct = new QGridLayout(fraDirect_);
  direct->addWidget(MakeLabel(TextId::Port, cmbPort1_, optDirect_->text()), 0, 0);
  direct->addWidget(cmbPort1_, 0, 1);
  direct->addWidget(MakeLabel(TextId::BaudRate, cmbBaud1_, optDirect_->text()), 0, 2);
  direct->addWidget(cmbBaud1_, 0, 3);
  direct->setColumnStretch(1, 1);
  return direct;
}

QGridLayout* frmConnect::LayOutModem() {
  fraModem_ = MakeArea(u"fraModem"_s);
  auto* modem = new QGridLayout(fraModem_);
  modem->addWidget(MakeLabel(TextId::Port, cmbPort2_, optModem_->text()), 0, 0);
  modem->addWidget(cmbPort2_, 0, 1);
  modem->addWidget(MakeLabel(TextId::BaudRate, cmbBaud2_, optModem_->text()), 0, 2);
  modem->addWidget(cmbBaud2_, 0, 3);
  modem->addWidget(MakeLabel(TextId::PhoneNumber, cmbNumber_, optModem_->text()), 1, 0);
  modem->addWidget(cmbNumber_, 1, 1, 1, 3);
  modem->addWidget(chkInitFile_, 2, 0, 1, 4);
  auto* file = new QHBoxLayout;
  file->addWidget(txtConfiguration_, 1);
  file->addWidget(cmdBrowse_);
  modem->addLayout(file, 3, 0, 1, 4);
  modem->setColumnStretch(1, 1);
  return modem;
}

void frmConnect::LayOut() {
  // One after the other: the areas take part in the order of the Tab key.
  QGridLayout* direct = LayOutDirect();
  QGridLayout* modem = LayOutModem();
  AlignColumns(*direct, *modem);
  auto* lines = new QGridLayout;
  lines->addWidget(optDirect_, 0, 0);
  lines->addWidget(fraDirect_, 0, 1);
  lines->addWidget(optModem_, 1, 0);
  lines->addWidget(fraModem_, 1, 1);
  lines->setColumnStretch(1, 1);

  auto* buttons = new QDialogButtonBox;
  buttons->addButton(cmdConnect_, QDialogButtonBox::AcceptRole);
  buttons->addButton(cmdCancel_, QDialogButtonBox::RejectRole);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(working_, 1);
  bottom->addWidget(buttons);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(lines);
  layout->addStretch();
  layout->addLayout(bottom);
  OrderTabs();
  cmdConnect_->setFocus();
}

void frmConnect::OrderTabs() {
  const std::initializer_list<QWidget*> order{
      optDirect_, cmbPort1_,    cmbBaud1_,         optModem_,  cmbPort2_,   cmbBaud2_,
      cmbNumber_, chkInitFile_, txtConfiguration_, cmdBrowse_, cmdConnect_, cmdCancel_};
  for (auto control = order.begin(); control + 1 != order.end(); ++control) {
    setTabOrder(*control, *(control + 1));
  }
}

void frmConnect::Load(const QStringList& enumerated) {
  for (const QString& number : settings_.ModemNumbers) cmbNumber_->addItem(number);
  cmbNumber_->setEditText(settings_.CurrentPhoneNumber);
  txtConfiguration_->setText(settings_.ModemInit);
  chkInitFile_->setChecked(settings_.UseModemInit != 0);

  const QStringList ports = PortItems(enumerated);
  for (QComboBox* list : {cmbPort1_, cmbPort2_}) {
    list->addItems(ports);
    // The opened list shows long names whole.
    QAbstractItemView* view = list->view();
    view->setMinimumWidth(view->sizeHintForColumn(0) +
                          view->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
  }
  cmbBaud1_->addItems(DirectBaudItems());
  cmbBaud2_->addItems(ModemBaudItems());
  cmbPort1_->setCurrentIndex(InitialPortIndex(ports, settings_.DirectPort));
  cmbPort2_->setCurrentIndex(InitialPortIndex(ports, settings_.ModemPort));
  cmbBaud1_->setCurrentIndex(InitialDirectBaudIndex(settings_.DirectBaud));
  cmbBaud2_->setCurrentIndex(InitialModemBaudIndex(settings_.ModemBaud));
  (settings_.ConnectionIsModem ? optModem_ : optDirect_)->setChecked(true);
}

void frmConnect::Connect() {
  if (operation_.IsConnecting()) return;
  ShowConnecting(true);
  const auto shown = qScopeGuard([this] { ShowConnecting(false); });
  const bool isModem = optModem_->isChecked();
  operation_.Run({.IsModem = isModem,
                  .PortText = (isModem ? cmbPort2_ : cmbPort1_)->currentText(),
                  .BaudText = (isModem ? cmbBaud2_ : cmbBaud1_)->currentText()});
  done(link_.Connected ? QDialog::Accepted : QDialog::Rejected);
}

bool frmConnect::ConnectByModem() {
  const auto showDialogue = [this](const QStringList& commands, const QString& number) {
    frmModem window(comm_, link_, commands, number, this);
    window.exec();
    return window.Result();
  };
  return ConnectModem({.Number = PhoneNumber(),
                       .UseCommandFile = chkInitFile_->isChecked(),
                       .CommandFile = txtConfiguration_->text()},
                      comm_, link_, settings_, messages_, showDialogue);
}

// A line end that was pasted with the number would end the dial command early.
QString frmConnect::PhoneNumber() const {
  return ControlsToBlanks(cmbNumber_->currentText());
}

void frmConnect::Browse() {
  const std::optional<QString> path =
      fileDialogs_.AskOpen({.Title = GetText(TextId::SelectModemCommandFile),
                            .InitialName = QCoreApplication::applicationDirPath() + u"/*.txt"_s,
                            .Filter = GetText(TextId::ModemCommandFile) + u" (*.txt)|*.txt"_s,
                            .DefaultExtension = u".txt"_s});
  if (!path) return;
  settings_.ModemInit = *path;
  txtConfiguration_->setText(*path);
}

void frmConnect::ShowConnecting(bool connecting) {
  working_->setVisible(connecting);
  // Hidden it would end the round of the Tab key.
  working_->setFocusPolicy(connecting ? Qt::TabFocus : Qt::NoFocus);
  // Not on Cancel: the key that began the work, pressed once more, must not end it.
  if (connecting) working_->setFocus();
  cmdConnect_->setEnabled(!connecting);
  for (QWidget* choice :
       std::initializer_list<QWidget*>{optDirect_, optModem_, fraDirect_, fraModem_}) {
    choice->setEnabled(!connecting);
  }
  if (!connecting) cmdConnect_->setFocus();
}

void frmConnect::reject() {
  if (operation_.IsConnecting()) {
    operation_.Cancel();
    return;
  }
  done(QDialog::Rejected);
}

void frmConnect::TellNoContact(std::function<void(PortCause)> tell) {
  operation_.NoContact = std::move(tell);
}

void frmConnect::done(int result) {
  settings_.CurrentPhoneNumber = PhoneNumber();
  settings_.ConnectionIsModem = optModem_->isChecked();
  settings_.ModemInit = txtConfiguration_->text();
  QDialog::done(result);
}

}  // namespace tessmar
