#include "app/frmMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "measure/MeterColumn.h"
#include "ui/DisplayArea.h"
#include "ui/FactsRow.h"
#include "ui/FittingLabel.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMeters = 8;
constexpr int kRelays = 4;
constexpr int kHistoryLines = 4;

/// Room for the window's frame, the menu, the status line and the margins.
constexpr QSize kAroundTheRows{36, 140};

struct ButtonRow {
  const char* Name;
  MainCommand Command;
};

constexpr ButtonRow kButtons[] = {
    {"cmdConnect", MainCommand::ToggleConnection},  {"cmdGetSettings", MainCommand::GetSample},
    {"cmdGetHistoryData", MainCommand::GetHistory}, {"cmdClearMemory", MainCommand::ClearHistory},
    {"cmdSynchronizeTime", MainCommand::SyncTime},  {"cmdSetup", MainCommand::Setup},
};

// What is disabled until a logger is connected.
constexpr const char* kDisabledAtStart[] = {
    "cmdGetSettings", "cmdGetHistoryData",     "cmdClearMemory",     "cmdSynchronizeTime",
    "cmdSetup",       "chkSampleContinuously", "mnuDisconnect",      "mnuSampleContinuously",
    "mnuGetSettings", "mnuGetHistoryData",     "mnuClearHistory",    "mnuSynchronizeTime",
    "mnuSetup",       "mnuResetPulseAccs",     "mnuFirmwareVersion",
};

struct FrameRow {
  const char* Frame;
  const char* Label;
  int Characters;  ///< Room for its usual texts, in both languages.
};

constexpr FrameRow kStateFrames[] = {
    {"fraCommStatus", "lblCommStatus", 15}, {"fraLoggerName", "lblLoggerName", 24},
    {"fraDateTime", "lblDateTime", 18},     {"fraLoggingState", "lblLoggingState", 22},
    {"fraRecordings", "lblRecordings", 9},  {"fraInterval", "lblSampleInterval", 13},
    {"fraWarmup", "lblWarmup", 9},
};

constexpr FrameRow kTotalsFrames[] = {
    {"fraPulse1", "lblPulseValue1", 18},
    {"fraPulse2", "lblPulseValue2", 18},
    {"fraAlarm1", "lblAlarm(0)", 12},
    {"fraAlarm2", "lblAlarm(1)", 12},
};

QFont Scaled(const QFont& font, double factor, bool bold = false) {
  QFont scaled = font;
  scaled.setPointSizeF(font.pointSizeF() * factor);
  scaled.setBold(bold);
  return scaled;
}

// Widgets break lines at a line feed alone.
QString ForWidget(QString text) {
  return text.replace("\r\n"_L1, "\n"_L1);
}

QColor ToColour(Rgb colour) {
  return {colour.Red, colour.Green, colour.Blue};
}

}  // namespace

frmMain::frmMain(QWidget* parent) : QMainWindow(parent) {
  setObjectName(u"frmMain"_s);
  controls_.insert(u"frmMain"_s, this);

  auto* scrolled = new QWidget;
  auto* rows = new QVBoxLayout(scrolled);
  rows->setContentsMargins({});
  rows->addLayout(MakeMeterRow(), 1);
  rows->addLayout(MakeStateRow());
  rows->addLayout(MakeTotalsRow());
  rows->addLayout(MakeCommandRow());
  auto* centre = new QWidget(this);
  auto* parts = new QVBoxLayout(centre);
  parts->addWidget(new DisplayArea(scrolled, kAroundTheRows), 1);
  // Always in view.
  parts->addWidget(MakeStatusLine());
  setCentralWidget(centre);
  MakeMenus();

  for (const char* name : kDisabledAtStart) SetEnabled(QString::fromLatin1(name), false);
}

QGroupBox* frmMain::MakeMeter(int channel) {
  auto* frame = Add(new QGroupBox(QString::number(channel + 1)), ElementName("fraMeter", channel));
  auto* column = new QVBoxLayout(frame);
  column->setContentsMargins(6, 4, 6, 4);
  column->setSpacing(2);

  auto label = [&](const char* array, int characters, double size, bool bold) {
    auto* made = Add(new FittingLabel(characters), ElementName(array, channel));
    made->setFont(Scaled(font(), size, bold));
    made->setAlignment(Qt::AlignCenter);
    QSizePolicy policy = made->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    made->setSizePolicy(policy);
    return made;
  };

  column->addWidget(label("lblMax", 10, 0.9, false));
  auto* meter = Add(new MeterColumn, ElementName("fraColumn", channel));
  meters_[static_cast<std::size_t>(channel)] = meter;
  column->addWidget(meter, 1);
  column->addWidget(label("lblMin", 10, 0.9, false));
  column->addWidget(label("lblValue", 10, 1.5, true));
  column->addWidget(label("lblUnits", 10, 1.0, false));

  auto* history = Add(new QLabel, ElementName("lblHistory", channel));
  history->setFont(Scaled(font(), 0.85));
  history->setTextFormat(Qt::PlainText);
  history->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  history->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  history->setMinimumHeight(QFontMetrics(history->font()).lineSpacing() * kHistoryLines + 2);
  QSizePolicy policy = history->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  history->setSizePolicy(policy);
  column->addWidget(history);

  SetCaption(ElementName("lblMax", channel), u"0.000"_s);
  SetCaption(ElementName("lblMin", channel), u"0.000"_s);
  return frame;
}

QHBoxLayout* frmMain::MakeMeterRow() {
  auto* row = new QHBoxLayout;
  for (int channel = 0; channel < kMeters; ++channel) row->addWidget(MakeMeter(channel), 1);
  return row;
}

QGroupBox* frmMain::MakeValueFrame(const QString& frame, const QString& label, int characters) {
  auto* group = Add(new QGroupBox, frame);
  auto* inside = new QVBoxLayout(group);
  inside->setContentsMargins(8, 4, 8, 4);
  inside->addWidget(Add(new FittingLabel(characters), label));
  return group;
}

QHBoxLayout* frmMain::MakeStateRow() {
  auto* row = new QHBoxLayout;
  for (const FrameRow& frame : kStateFrames) {
    row->addWidget(MakeValueFrame(QString::fromLatin1(frame.Frame),
                                  QString::fromLatin1(frame.Label), frame.Characters),
                   frame.Characters);
  }
  return row;
}

QHBoxLayout* frmMain::MakeTotalsRow() {
  auto* row = new QHBoxLayout;
  for (const FrameRow& frame : kTotalsFrames) {
    row->addWidget(MakeValueFrame(QString::fromLatin1(frame.Frame),
                                  QString::fromLatin1(frame.Label), frame.Characters),
                   frame.Characters);
  }
  row->addWidget(MakeRelayPanel(), 48);
  row->addStretch(48);
  return row;
}

QGroupBox* frmMain::MakeRelayPanel() {
  auto* panel = Add(new QGroupBox, u"fraRelay"_s);
  auto* row = new QHBoxLayout(panel);
  row->setContentsMargins(8, 4, 8, 4);
  for (int relay = 0; relay < kRelays; ++relay) {
    auto* picture = Add(new QWidget, ElementName("pctRelay", relay));
    auto* inside = new QHBoxLayout(picture);
    inside->setContentsMargins(4, 2, 4, 2);
    auto* number =
        Add(new QLabel(QString::number(relay + 1)), ElementName("lblRelayNumber", relay));
    inside->addWidget(number);
    inside->addWidget(Add(new FittingLabel(8), ElementName("lblRelayState", relay)));
    row->addWidget(picture);
  }
  panel->hide();
  return panel;
}

QHBoxLayout* frmMain::MakeCommandRow() {
  auto* row = new QHBoxLayout;
  for (const ButtonRow& button : kButtons) {
    auto* made = Add(new QPushButton, QString::fromLatin1(button.Name));
    made->setAutoDefault(true);
    connect(made, &QPushButton::clicked, this,
            [this, command = button.Command] { Q_EMIT CommandRequested(command); });
    row->addWidget(made, 1);
  }
  auto* sampling = Add(new QCheckBox, u"chkSampleContinuously"_s);
  connect(sampling, &QCheckBox::clicked, this,
          [this] { Q_EMIT CommandRequested(MainCommand::SamplingClicked); });
  row->addWidget(sampling);
  return row;
}

QWidget* frmMain::MakeStatusLine() {
  auto* row = new FactsRow;
  int place = 0;
  for (const auto& name : {u"lblArchived"_s, u"lblClockDrift"_s, u"lblMemoryFull"_s})
    Add(row->Fact(place++), name);
  return row;
}

QObject* frmMain::Control(const QString& name) const {
  QObject* control = controls_.value(name, nullptr);
  Q_ASSERT_X(control != nullptr, "frmMain::Control", qPrintable(name));
  return control;
}

QString frmMain::Caption(const QString& control) const {
  return captions_.value(control);
}

void frmMain::SetCaption(const QString& control, const QString& text) {
  captions_.insert(control, text);
  QObject* object = Control(control);
  if (auto* label = qobject_cast<QLabel*>(object)) {
    label->setText(ForWidget(text));
    if (control.startsWith("lblValue"_L1)) TellReading(control);
  } else if (auto* button = qobject_cast<QAbstractButton*>(object)) {
    button->setText(ForWidget(text));
  } else if (auto* group = qobject_cast<QGroupBox*>(object)) {
    group->setTitle(text);
  } else if (auto* menu = qobject_cast<QMenu*>(object)) {
    menu->setTitle(text);
  } else if (auto* entry = qobject_cast<QAction*>(object)) {
    entry->setText(text);
  } else if (object == this) {
    setWindowTitle(text);
  }
}

// Who cannot see a column hears the value that stands under it.
void frmMain::TellReading(const QString& valueLabel) {
  for (std::size_t channel = 0; channel < meters_.size(); ++channel) {
    const int index = static_cast<int>(channel);
    if (ElementName("lblValue", index) != valueLabel) continue;
    meters_[channel]->SetReadingText(
        (Caption(valueLabel) + u' ' + Caption(ElementName("lblUnits", index))).trimmed());
  }
}

void frmMain::SetEnabled(const QString& control, bool enabled) {
  QObject* object = Control(control);
  if (auto* entry = qobject_cast<QAction*>(object)) {
    entry->setEnabled(enabled);
  } else if (auto* widget = qobject_cast<QWidget*>(object)) {
    widget->setEnabled(enabled);
  }
}

void frmMain::SetVisible(const QString& control, bool visible) {
  QObject* object = Control(control);
  if (auto* menu = qobject_cast<QMenu*>(object)) {
    menu->menuAction()->setVisible(visible);
  } else if (auto* entry = qobject_cast<QAction*>(object)) {
    entry->setVisible(visible);
  } else if (auto* widget = qobject_cast<QWidget*>(object)) {
    widget->setVisible(visible);
  }
}

bool frmMain::IsChecked(const QString& control) const {
  const auto* button = qobject_cast<QAbstractButton*>(Control(control));
  return button != nullptr && button->isChecked();
}

void frmMain::SetChecked(const QString& control, bool checked) {
  if (auto* button = qobject_cast<QAbstractButton*>(Control(control))) button->setChecked(checked);
}

void frmMain::SetTextColour(const QString& control, Rgb colour) {
  auto* widget = qobject_cast<QWidget*>(Control(control));
  QPalette colours = widget->palette();
  colours.setColor(QPalette::WindowText, ToColour(colour));
  widget->setPalette(colours);
}

void frmMain::SetBackground(const QString& control, std::optional<Rgb> colour) {
  auto* widget = qobject_cast<QWidget*>(Control(control));
  QPalette colours = palette();
  if (colour) {
    colours.setColor(QPalette::Window, ToColour(*colour));
    colours.setColor(QPalette::WindowText, Qt::black);
  }
  widget->setPalette(colours);
  widget->setAutoFillBackground(colour.has_value());
}

void frmMain::PaintMeter(int channel, double fraction, bool enabled) {
  meters_.at(static_cast<std::size_t>(channel))->SetLevel(fraction, enabled);
}

void frmMain::SetWaitCursor(bool on) {
  waitCursors_ += on ? 1 : -1;
  if (on && waitCursors_ == 1) QApplication::setOverrideCursor(Qt::WaitCursor);
  if (!on && waitCursors_ == 0) QApplication::restoreOverrideCursor();
}

void frmMain::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  Q_EMIT Painted();
  if (painted_) return;
  painted_ = true;
  // Told when the painting is over: what follows may open a dialog.
  QMetaObject::invokeMethod(this, &frmMain::FirstPainted, Qt::QueuedConnection);
}

void frmMain::closeEvent(QCloseEvent* event) {
  const bool mayClose = !MayClose || MayClose();
  event->setAccepted(mayClose);
  if (mayClose) Q_EMIT Closed();
}

}  // namespace tessmar
