#include "setup/frmSetup.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "base/Fault.h"
#include "base/MainScreen.h"
#include "base/TextTable.h"
#include "setup/Calibration.h"
#include "setup/ChangesRow.h"
#include "setup/DoSetupChecks.h"
#include "setup/FieldChecks.h"
#include "setup/SetupAnalogPage.h"
#include "setup/SetupControls.h"
#include "setup/SetupDigitalPage.h"
#include "setup/SetupDoPage.h"
#include "setup/SetupGeneralPage.h"
#include "setup/SetupMenus.h"
#include "setup/SetupWidgets.h"
#include "setup/frmCalibrate.h"
#include "ui/EnterKey.h"

namespace tessmar {

using namespace Qt::StringLiterals;

namespace {

constexpr int kTimer1Ms = 250;
constexpr int kGeneralTab = 2;

/// Room that a window manager takes around a window.
constexpr QSize kWindowFrame{16, 48};

/// Shows a page whole where the display has room for it, and scrolls it where it has not.
class PageArea final : public QScrollArea {
 public:
  PageArea(QWidget* page, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(page);
  }
  QSize sizeHint() const override { return widget()->sizeHint(); }
};

}  // namespace

frmSetup::frmSetup(SetupServices services, QWidget* parent)
    : QDialog(parent), services_(std::move(services)), validation_(*this) {
  setObjectName(u"frmSetup"_s);
  BuildButtons();
  BuildPages();
  BuildMenus();
  LocalizeSetupScreen();
  setWindowTitle(u"Tessmar DO Monitor Setup"_s);
  ConnectProgramming();
  ConnectFiles();

  programming_->TakeBaselines();
  SettingsToControls();
  timer1_ = new QTimer(this);
  timer1_->setObjectName(u"Timer1"_s);
  timer1_->setInterval(kTimer1Ms);
  QObject::connect(timer1_, &QTimer::timeout, this, [this] { Timer1Tick(); });
  Timer1Tick();
  timer1_->start();
  FitToDisplay();
  cmdOK_->setFocus();
  services_.Link.Busy = false;
}

frmSetup::~frmSetup() {
  SetWaitCursor(false);
}

void frmSetup::ForbidProgramming() {
  cmdOK_->setEnabled(false);
  findChild<QAction*>(u"mnuDownload"_s)->setEnabled(false);
  // There is no logger that anything could differ from.
  hasLogger_ = false;
  changesRow_->hide();
}

void frmSetup::BuildButtons() {
  cmdOK_ = NewButton(u"cmdOK"_s, {}, u"Write setup values to logger flash memory"_s, this);
  cmdCancel_ = NewButton(u"cmdCancel"_s, {}, {}, this);
  QObject::connect(cmdOK_, &QPushButton::clicked, this,
                   [this] { programming_->ProgramSettings(); });
  QObject::connect(cmdCancel_, &QPushButton::clicked, this, [this] { reject(); });
}

void frmSetup::BuildPages() {
  const LinkState& link = services_.Link;
  tabStrip_ = new QTabWidget(this);
  tabStrip_->setObjectName(u"TabStrip"_s);
  // It would hand the focus to its tabs once more behind the pages, and Tab would never come to the
  // buttons.
  tabStrip_->setFocusProxy(nullptr);
  tabStrip_->setFocusPolicy(Qt::NoFocus);
  analog_ = new SetupAnalogPage(link.AnalogChannelCount, tabStrip_);
  digital_ = new SetupDigitalPage(link.PulseChannelCount, tabStrip_);
  general_ = new SetupGeneralPage(services_.Locale.Uses24HourClock(), link.SampleOnDemandSupported,
                                  tabStrip_);
  dissolved_ = new SetupDoPage(link.AnalogChannelCount, tabStrip_);
  analog_->OnCalibrate = [this](int channel) { Calibrate(channel); };

  const std::pair<QWidget*, QString> pages[] = {{analog_, u"Analog"_s},
                                                {digital_, u"Digital"_s},
                                                {general_, u"General"_s},
                                                {dissolved_, u"DO"_s}};
  QWidget* previous = cmdCancel_;
  const auto follow = [&previous](QWidget* next) {
    QWidget::setTabOrder(previous, next);
    previous = next;
  };
  QWidget::setTabOrder(cmdOK_, cmdCancel_);
  follow(tabStrip_->tabBar());
  for (const auto& [page, key] : pages) {
    const int index = tabStrip_->addTab(new PageArea(page, tabStrip_), key);
    page->setObjectName(ElementName("Frames", index));
    tabStrip_->tabBar()->setTabData(index, key);
    for (QWidget* control : page->findChildren<QWidget*>()) {
      // Not the insides of a list: its field, and the window that drops down.
      const bool inList =
          qobject_cast<QComboBox*>(control->parentWidget()) != nullptr || control->window() != this;
      if ((control->focusPolicy() & Qt::TabFocus) != 0 && !inList) follow(control);
    }
  }
  changesRow_ = new ChangesRow(this);
  follow(changesRow_->Button());
  tabStrip_->setCurrentIndex(kGeneralTab);

  checks_ = std::make_unique<FieldChecks>(
      validation_,
      FieldContext{link, services_.Locale.Locale(), services_.Locale.Uses24HourClock()},
      services_.Asker);
  analog_->Guard(*checks_);
  digital_->Guard(*checks_);
  general_->Guard(*checks_);
  dissolved_->Guard(*checks_);
}

QAction* frmSetup::AddEntry(QMenu* menu, const QString& name, std::function<void()> action) {
  QAction* entry = menu->addAction(QString());
  entry->setParent(this);
  entry->setObjectName(name);
  QObject::connect(entry, &QAction::triggered, this, std::move(action));
  return entry;
}

void frmSetup::BuildMenus() {
  menuBar_ = new QMenuBar(this);
  const auto addMenu = [this](const QString& name) {
    QMenu* menu = menuBar_->addMenu(QString());
    menu->setObjectName(name);
    return menu;
  };
  const auto addSeparator = [](QMenu* menu, const QString& name) {
    menu->addSeparator()->setObjectName(name);
  };
  // The settings have to stay as they are while they are written to the logger and compared.
  const auto whenFree = [this](auto action) {
    return [this, action] {
      if (!services_.Link.Busy) action();
    };
  };
  QMenu* file = addMenu(u"mnuFile"_s);
  AddEntry(file, u"mnuSave"_s, whenFree([this] { files_->SaveSetupFile(); }));
  AddEntry(file, u"mnuLoad"_s, whenFree([this] { files_->LoadSetupFile(); }));
  addSeparator(file, u"mnuSep1"_s);
  for (std::size_t i = 0; i < mnuHist_.size(); ++i) {
    mnuHist_[i] = AddEntry(file, ElementName("mnuHist", static_cast<int>(i)),
                           whenFree([this, i] { files_->OpenRecentFile(i); }));
  }
  addSeparator(file, u"mnuSep2"_s);
  AddEntry(file, u"mnuExit"_s, [this] { reject(); });

  QMenu* action = addMenu(u"mnuAction"_s);
  AddEntry(action, u"mnuDownload"_s, [this] { programming_->ProgramSettings(); });
  AddEntry(action, u"mnuInitialize"_s, whenFree([this] { InitializeToDefaults(); }));

  QMenu* help = addMenu(u"mnuHelp"_s);
  const auto show = [](const std::function<void()>& what) {
    if (what) what();
  };
  AddEntry(help, u"mnuLaunchHelp"_s, [this, show] { show(services_.ShowHelp); });
  AddEntry(help, u"mnuLaunchDOHelp"_s, [this, show] {
    show(services_.ShowDoHelp);
  })->setVisible(services_.ShowDoHelpEntry);
  AddEntry(help, u"mnuAbout"_s, [this, show] { show(services_.ShowAbout); });
}

void frmSetup::LocalizeSetupScreen() {
  setWindowTitle(GetText(TextId::SetupTitle));
  cmdCancel_->setText(GetText(TextId::BackToMainWindow));
  cmdOK_->setText(GetText(TextId::ProgramSettings));
  for (QPushButton* button : {cmdOK_, cmdCancel_}) button->setAccessibleName(button->text());
  // The fourth tab, "DO", is the same in every language.
  constexpr TextId kTabs[] = {TextId::AnalogChannels, TextId::DigitalChannels, TextId::General};
  int tab = 0;
  for (const TextId caption : kTabs) tabStrip_->setTabText(tab++, GetText(caption));
  LocalizeMenus();
}

void frmSetup::LocalizeMenus() {
  for (QMenu* menu : menuBar_->findChildren<QMenu*>()) {
    const QString caption = SetupMenuCaption(menu->objectName());
    if (!caption.isEmpty()) menu->setTitle(caption);
  }
  for (QAction* entry : findChildren<QAction*>()) {
    const QString caption = SetupMenuCaption(entry->objectName());
    if (!caption.isEmpty()) entry->setText(caption);
  }
}

void frmSetup::FitToDisplay() {
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(cmdOK_);
  buttons->addWidget(cmdCancel_);
  buttons->addStretch(1);
  auto* layout = new QVBoxLayout(this);
  layout->setMenuBar(menuBar_);
  layout->addWidget(tabStrip_, 1);
  layout->addWidget(changesRow_);
  layout->addLayout(buttons);
  const QSize room = screen()->availableGeometry().size() - kWindowFrame;
  resize(sizeHint().boundedTo(room));
}

void frmSetup::ConnectProgramming() {
  programming_ = std::make_unique<SetupProgramming>(
      services_.Commands, services_.Programmer, services_.Link, services_.Settings, services_.Loop,
      services_.Asker,
      SetupScreenPort{
          .ControlsToSettings = [this] { ControlsToSettings(); },
          .CheckDoSetup = [this] { return CheckDoSetup(); },
          .SaveSetupFile = [this] { return files_->SaveSetupFile(); },
          .SetCancelEnabled = [this](bool on) { cmdCancel_->setEnabled(on); },
          .FocusCancel = [this] { cmdCancel_->setFocus(); },
          .SetWaitCursor = [this](bool on) { SetWaitCursor(on); },
          .Programmed = [this](const ConfigImage& before,
                               const ConfigImage& after) { NoteProgrammed(before, after); }});
}

void frmSetup::ConnectFiles() {
  files_ = std::make_unique<SetupFiles>(
      SetupFileServices{.Link = services_.Link,
                        .Settings = services_.Settings,
                        .Recent = services_.Recent,
                        .FileBaseline = programming_->FileBaseline(),
                        .Asker = services_.Asker,
                        .Dialogs = services_.Dialogs,
                        .Time = services_.Time,
                        .Locale = services_.Locale,
                        .AppPath = services_.AppPath,
                        .Loop = &services_.Loop},
      SetupFileScreen{.ControlsToSettings = [this] { ControlsToSettings(); },
                      .SettingsToControls = [this] { SettingsToControls(); },
                      .OfferSaveIfChanged = [this] { return programming_->OfferSaveIfChanged(); }});
}

SetupControls frmSetup::ReadControls() const {
  SetupControls controls;
  general_->Read(controls);
  analog_->Read(controls);
  digital_->Read(controls);
  dissolved_->Read(controls.Do);
  return controls;
}

template <typename Widget>
Widget& frmSetup::Control(const QString& name) const {
  auto* control = findChild<Widget*>(name);
  if (control == nullptr) throw RangeFault("the screen has no such control");
  return *control;
}

void frmSetup::ControlsToSettings() {
  tessmar::ControlsToSettings(services_.Link, services_.Locale.Uses24HourClock(), ReadControls(),
                              services_.Settings);
}

void frmSetup::SettingsToControls() {
  SetupControls controls;
  tessmar::SettingsToControls(services_.Link, services_.Locale.Uses24HourClock(),
                              services_.Settings, controls);
  general_->Write(controls);
  analog_->Write(controls);
  digital_->Write(controls);
  dissolved_->Write(controls.Do);
}

// The check reads the controls and not the record, so that it sees the screen as it stands.
bool frmSetup::CheckDoSetup() {
  const DoSetupView view{
      .ListIndex = [this](const QString& name) { return ListPosition(Control<QComboBox>(name)); },
      .Text = [this](const QString& name) { return Control<QComboBox>(name).currentText(); },
      .IsChecked = [this](const QString& name) { return Control<QCheckBox>(name).isChecked(); }};
  return tessmar::CheckDoSetup(view, services_.Asker);
}

void frmSetup::InitializeToDefaults() {
  const int answer = services_.Asker.MsgBox(GetText(TextId::AskInitialize), kYesNo | kQuestion,
                                            GetText(TextId::InitializeTitle));
  if (answer != kYes || services_.Loop.Ending()) return;
  LoadDefaultSettings(services_.Settings, services_.Link.AnalogChannelCount);
  SettingsToControls();
}

void frmSetup::Calibrate(int channel) {
  if (!MayStartOperation(services_.Link)) return;
  const BusyScope busy(services_.Link);
  const AnalogColumnControls column = analog_->ReadColumn(channel);
  Calibration calibration(services_.Commands, services_.Link, static_cast<std::int16_t>(channel),
                          column.txtHighEU, column.txtLowEU);
  frmCalibrate wizard(
      calibration, Calibration::Title(channel, column.cmbEU),
      [this](Calibration::Page page, const QString& text) {
        return checks_->Run(CalibrationFieldRule(static_cast<int>(page)), text);
      },
      this);
  if (wizard.exec() != QDialog::Accepted) return;
  const Calibration::Texts& texts = calibration.Kept();
  analog_->WriteCalibration(channel, texts.HighEU, texts.LowEU, texts.HighRaw, texts.LowRaw);
  calibrated_.Add(channel, texts);
}

void frmSetup::Timer1Tick() {
  general_->FollowAlarmChecks();
  for (std::size_t i = 0; i < mnuHist_.size(); ++i) {
    const QString caption =
        u'&' + QString::number(i + 1) + u' ' + FileNameOfPath(services_.Recent.RecentSetupFiles[i]);
    if (mnuHist_[i]->text() != caption) mnuHist_[i]->setText(caption);
  }
  ShowChanges();
}

void frmSetup::NoteProgrammed(const ConfigImage& before, const ConfigImage& after) {
  services_.Book.Note(ProgrammedEntry(before, after));
  if (const auto entry = calibrated_.Take(ReadControls(), before, after))
    services_.Book.Note(*entry);
}

void frmSetup::ShowChanges() {
  if (!hasLogger_) return;
  changesRow_->Show(programming_->LoggerBaseline(),
                    ImageOf(services_.Link, services_.Locale.Uses24HourClock(), ReadControls(),
                            services_.Settings),
                    services_.Link.Busy);
}

void frmSetup::reject() {
  if (AskToClose()) QDialog::reject();
}

bool frmSetup::AskToClose() {
  // A program that is ending takes the screen down whatever goes on.
  if (services_.Loop.Ending()) return true;
  if (closing_) return false;
  const QScopedValueRollback<bool> asking(closing_, true);
  return programming_->MayClose();
}

// Enter presses the button that has the focus, and no other.
void frmSetup::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    PressFocusedButton(*this, *event);
    return;
  }
  QDialog::keyPressEvent(event);
}

void frmSetup::SetWaitCursor(bool on) {
  if (on == waitCursor_) return;
  waitCursor_ = on;
  if (on) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QGuiApplication::restoreOverrideCursor();
  }
}

}  // namespace tessmar
