#include "setup/SetupDoPage.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/MainScreen.h"
#include "setup/FieldChecks.h"
#include "setup/SetupLists.h"
#include "setup/SetupWidgets.h"

namespace tessmar {

using namespace Qt::StringLiterals;

/// The manual entry that can stand for an input's sensor.
struct SetupDoPage::Manual {
  const char* Label;
  const char* Check;
  bool DoControls::*CheckValue;
  const char* Text;
  QString DoControls::*TextValue;
  const char* UnitsLabel;
  const char* Units;
  int DoControls::*UnitsValue;
  QStringList (*UnitItems)();
  const char* Spoken;
};

struct SetupDoPage::Input {
  const char* Label;
  const char* Caption;
  const char* Channel;
  int DoControls::*ChannelValue;
  const char* UnitsLabel;
  const char* Units;
  int DoControls::*UnitsValue;
  QStringList (*UnitItems)();
  const Manual* ManualEntry;
};

struct SetupDoPage::Output {
  const char* NoteLabel;
  const char* Note;
  const char* Check;
  const char* Caption;
  bool DoControls::*CheckValue;
  const char* Channel;
  int DoControls::*ChannelValue;
  const char* UnitsCaption;
  const char* Units;  ///< No list of units: nullptr.
  int DoControls::*UnitsValue;
};

namespace {

constexpr char kUnits[] = "Units:";
constexpr char kDisplayOnChannel[] = "Display On Channel:";
constexpr char kOrManualEntry[] = "or Select Manual Entry:";

}  // namespace

SetupDoPage::SetupDoPage(int analogChannelCount, QWidget* parent)
    : QWidget(parent), channels_(DoChannelItems(analogChannelCount)) {
  auto* page = new QVBoxLayout(this);
  page->addWidget(NewInputs());
  page->addWidget(NewOutputs());
  page->addStretch(1);
  for (const CheckBinding& binding : checks_)
    QObject::connect(binding.Check, &QCheckBox::clicked, this, [this] { UpdateDoPageStates(); });
  UpdateDoPageStates();
}

QGroupBox* SetupDoPage::NewInputs() {
  static constexpr Manual kConductivity{"Label13",
                                        "chkConductivityManualEntry",
                                        &DoControls::chkConductivityManualEntry,
                                        "txtConductivityManualEntry",
                                        &DoControls::txtConductivityManualEntry,
                                        "lblConductivityManualEntryUnits",
                                        "cmbConductivityManualEntryUnits",
                                        &DoControls::cmbConductivityManualEntryUnits,
                                        &ConductivityUnitItems,
                                        "Conductivity"};
  static constexpr Manual kAirPressure{"Label16",
                                       "chkAirPressureManualEntry",
                                       &DoControls::chkAirPressureManualEntry,
                                       "txtAirPressureManualEntry",
                                       &DoControls::txtAirPressureManualEntry,
                                       "lblAirPressureManualEntryUnits",
                                       "cmbAirPressureManualEntryUnits",
                                       &DoControls::cmbAirPressureManualEntryUnits,
                                       &AirPressureUnitItems,
                                       "Air Pressure"};
  static constexpr Input kInputs[] = {
      {"Label17", "O2 Sensor Channel:", "cmbPO2SourceChannel", &DoControls::cmbPO2SourceChannel,
       "Label18", "cmbPO2SourceUnits", &DoControls::cmbPO2SourceUnits, &PO2UnitItems, nullptr},
      {"Label20", "Water Temp Sensor Channel:", "cmbWaterTempSourceChannel",
       &DoControls::cmbWaterTempSourceChannel, "Label19", "cmbWaterTempSourceUnits",
       &DoControls::cmbWaterTempSourceUnits, &WaterTempUnitItems, nullptr},
      {"label1000", "Conductivity Sensor Channel:", "cmbConductivitySourceChannel",
       &DoControls::cmbConductivitySourceChannel, "label1002", "cmbConductivitySourceUnits",
       &DoControls::cmbConductivitySourceUnits, &ConductivityUnitItems, &kConductivity},
      {"label1001", "Air Pressure Sensor Channel:", "cmbAirPressureSourceChannel",
       &DoControls::cmbAirPressureSourceChannel, "label1003", "cmbAirPressureSourceUnits",
       &DoControls::cmbAirPressureSourceUnits, &AirPressureUnitItems, &kAirPressure},
  };

  auto* frame2 = new QGroupBox(u"Inputs"_s, this);
  frame2->setObjectName(u"Frame2"_s);
  auto* grid = new QGridLayout(frame2);
  int row = 0;
  for (const Input& input : kInputs) {
    AddInput(grid, row++, input, frame2);
    if (input.ManualEntry != nullptr) ++row;
  }
  grid->setColumnMinimumWidth(4, 16);
  grid->setColumnStretch(9, 1);
  return frame2;
}

void SetupDoPage::AddInput(QGridLayout* grid, int row, const Input& input, QWidget* frame) {
  const QString caption = QString::fromLatin1(input.Caption);
  grid->addWidget(NewLabel(QString::fromLatin1(input.Label), caption, frame), row, 0);
  grid->addWidget(AddList(input.Channel, caption, channels_, input.ChannelValue, frame), row, 1);
  grid->addWidget(NewLabel(QString::fromLatin1(input.UnitsLabel), QLatin1StringView(kUnits), frame),
                  row, 2);
  grid->addWidget(AddList(input.Units, caption + u' ' + QLatin1StringView(kUnits),
                          input.UnitItems(), input.UnitsValue, frame),
                  row, 3);
  if (input.ManualEntry != nullptr) AddManual(grid, row, *input.ManualEntry, frame);
}

void SetupDoPage::AddManual(QGridLayout* grid, int row, const Manual& manual, QWidget* frame) {
  const QString spoken = QString::fromLatin1(manual.Spoken) + u", manual entry"_s;
  QLabel* label =
      NewLabel(QString::fromLatin1(manual.Label), QLatin1StringView(kOrManualEntry), frame);
  QCheckBox* check = AddCheck(manual.Check, {}, manual.CheckValue, frame);
  check->setAccessibleName(spoken);
  QLineEdit* text = NewField(QString::fromLatin1(manual.Text), spoken, {}, frame);
  text->setText(u"0"_s);
  texts_.push_back({text, manual.TextValue});
  QLabel* unitsLabel =
      NewLabel(QString::fromLatin1(manual.UnitsLabel), QLatin1StringView(kUnits), frame);
  QComboBox* units = AddList(manual.Units, spoken + u' ' + QLatin1StringView(kUnits),
                             manual.UnitItems(), manual.UnitsValue, frame);
  followers_.push_back({check, {text, unitsLabel, units}});

  auto* choice = new QHBoxLayout;
  choice->addWidget(label);
  choice->addWidget(check);
  choice->addStretch(1);
  grid->addLayout(choice, row, 5, 1, 3);
  grid->addWidget(text, row + 1, 5);
  grid->addWidget(unitsLabel, row + 1, 6);
  grid->addWidget(units, row + 1, 7);
}

QGroupBox* SetupDoPage::NewOutputs() {
  static constexpr Output kOutputs[] = {
      {"Label12",
       "Salinity  can be calculated from a conductivity sensor, and displayed in PSS units "
       "(Practical Salinity Scale).",
       "chkEnableSalinityDisplay", "Enable Salinity Display", &DoControls::chkEnableSalinityDisplay,
       "cmbSalinityDisplayChannel", &DoControls::cmbSalinityDisplayChannel, "Units: PSS", nullptr,
       nullptr},
      {"Label14",
       "O2 % Saturation can be calculated from O2 partial pressure, temperature, and air pressure.",
       "chkEnableO2SaturationDisplay", "Enable O2 %Saturation Display",
       &DoControls::chkEnableO2SaturationDisplay, "cmbO2SaturationDisplayChannel",
       &DoControls::cmbO2SaturationDisplayChannel, "Units: %Sat", nullptr, nullptr},
      {"Label15",
       "O2 Concentration in mg/L (equivalent to ppm) can be calculated from O2 partial pressure,  "
       "temperature, and conductivity.",
       "chkEnableO2ConcentrationDisplay", "Enable O2 Concentration Display",
       &DoControls::chkEnableO2ConcentrationDisplay, "cmbO2ConcentrationDisplayChannel",
       &DoControls::cmbO2ConcentrationDisplayChannel, "Units: ", "cmbO2ConcentrationDisplayUnits",
       &DoControls::cmbO2ConcentrationDisplayUnits},
  };

  auto* frame3 = new QGroupBox(u"Outputs"_s, this);
  frame3->setObjectName(u"Frame3"_s);
  auto* grid = new QGridLayout(frame3);
  grid->setColumnMinimumWidth(3, 16);
  grid->setColumnStretch(6, 1);
  int number = 1;
  for (const Output& output : kOutputs) AddOutput(grid, number++, output, frame3);
  return frame3;
}

void SetupDoPage::AddOutput(QGridLayout* grid, int number, const Output& output, QWidget* frame) {
  QLabel* note =
      NewLabel(QString::fromLatin1(output.NoteLabel), QString::fromLatin1(output.Note), frame);
  note->setWordWrap(true);
  const QString caption = QString::fromLatin1(output.Caption);
  QCheckBox* check = AddCheck(output.Check, caption, output.CheckValue, frame);
  QLabel* onChannel = NewLabel(ElementName("lblDisplayOnChannel", number),
                               QLatin1StringView(kDisplayOnChannel), frame);
  QComboBox* channel = AddList(output.Channel, caption + u", "_s + onChannel->text(), channels_,
                               output.ChannelValue, frame);
  QLabel* unitsLabel = NewLabel(ElementName("lblDisplayUnits", number),
                                QString::fromLatin1(output.UnitsCaption), frame);
  Follower follower{check, {onChannel, channel, unitsLabel}};

  const int line = 2 * number;
  grid->addWidget(note, line, 0, 1, grid->columnCount());
  grid->addWidget(check, line + 1, 0);
  grid->addWidget(onChannel, line + 1, 1);
  grid->addWidget(channel, line + 1, 2);
  grid->addWidget(unitsLabel, line + 1, 4);
  if (output.Units != nullptr) {
    QComboBox* units = AddList(output.Units, caption + u", "_s + QLatin1StringView(kUnits),
                               O2ConcentrationUnitItems(), output.UnitsValue, frame);
    grid->addWidget(units, line + 1, 5);
    follower.Controls.push_back(units);
  }
  followers_.push_back(std::move(follower));
}

QComboBox* SetupDoPage::AddList(const char* name, const QString& spokenName,
                                const QStringList& items, int DoControls::*value, QWidget* frame) {
  QComboBox* list = NewList(QString::fromLatin1(name), spokenName, items, frame);
  list->setCurrentIndex(0);
  lists_.push_back({list, value});
  return list;
}

QCheckBox* SetupDoPage::AddCheck(const char* name, const QString& caption, bool DoControls::*value,
                                 QWidget* frame) {
  QCheckBox* check = NewCheckBox(QString::fromLatin1(name), caption, {}, frame);
  checks_.push_back({check, value});
  return check;
}

void SetupDoPage::UpdateDoPageStates() {
  for (const Follower& follower : followers_) {
    for (QWidget* control : follower.Controls) control->setEnabled(follower.Check->isChecked());
  }
}

void SetupDoPage::Guard(FieldChecks& checks) {
  for (const TextBinding& binding : texts_) checks.Guard(binding.Field);
}

void SetupDoPage::Read(DoControls& controls) const {
  for (const ListBinding& binding : lists_) controls.*binding.Value = ListPosition(*binding.List);
  for (const CheckBinding& binding : checks_) controls.*binding.Value = binding.Check->isChecked();
  for (const TextBinding& binding : texts_) controls.*binding.Value = binding.Field->text();
}

void SetupDoPage::Write(const DoControls& controls) {
  for (const ListBinding& binding : lists_) SetListPosition(*binding.List, controls.*binding.Value);
  for (const CheckBinding& binding : checks_) binding.Check->setChecked(controls.*binding.Value);
  for (const TextBinding& binding : texts_) binding.Field->setText(controls.*binding.Value);
  UpdateDoPageStates();
}

}  // namespace tessmar
