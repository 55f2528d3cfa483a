#include "setup/SetupAnalogPage.h"

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

enum Row : int {
  kEnableRow,
  kUnitsRow,
  kHighEURow,
  kLowEURow,
  kHighRawRow,
  kLowRawRow,
  kTopRow,
  kBottomRow,
  kPrecisionRow,
  kCalibrateRow,
  kRowCount,
};

struct RowLabel {
  Row At;
  const char* Name;
  TextId Caption;
};

// clang-format off
constexpr RowLabel kRowLabels[] = {
    {kUnitsRow,     "Label1",  TextId::Units},
    {kHighEURow,    "Label2",  TextId::HighEngrUnits},
    {kLowEURow,     "Label3",  TextId::LowEngrUnits},
    {kHighRawRow,   "Label4",  TextId::HighRawValue},
    {kLowRawRow,    "Label5",  TextId::LowRawValue},
    {kTopRow,       "Label10", TextId::DisplayHighValue},
    {kBottomRow,    "Label11", TextId::DisplayLowValue},
    {kPrecisionRow, "Label6",  TextId::DecimalPlaces},
};
// clang-format on

/// What a screen reader says for a control of a column: the row's label and the channel.
QString Spoken(TextId label, int channel) {
  return GetText(label) + u' ' + QString::number(channel + 1);
}

/// A frame that is not drawn, so that its rows stand exactly as high as those of a drawn one.
class HiddenFrame final : public QGroupBox {
 public:
  using QGroupBox::QGroupBox;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {}
};

QGridLayout* GridOf(QWidget* widget) {
  return static_cast<QGridLayout*>(widget->layout());
}

struct ListNames {
  const char* Name;
  TextId Label;
};

/// A list of a column: as narrow as its column, whatever its items.
QComboBox* NewColumnList(const ListNames& names, int channel, const QStringList& items,
                         const QString& tip, QWidget* frame) {
  QComboBox* list = NewEditableList(ElementName(names.Name, channel), Spoken(names.Label, channel),
                                    items, tip, frame);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(6);
  return list;
}

}  // namespace

// clang-format off
const std::array<SetupAnalogPage::NumberRow, 6> SetupAnalogPage::kNumberRows{{
    {kHighEURow, "txtHighEU", TextId::HighEngrUnits,
     u"Floating point value of upper calibration point expressed in engineering units",
     &Column::txtHighEU, &AnalogColumnControls::txtHighEU},
    {kLowEURow, "txtLowEU", TextId::LowEngrUnits,
     u"Floating point value of lower calibration point expressed in engineering units",
     &Column::txtLowEU, &AnalogColumnControls::txtLowEU},
    {kHighRawRow, "txtHighRaw", TextId::HighRawValue,
     u"Integer value of upper calibration point ( 0-65535)",
     &Column::txtHighRaw, &AnalogColumnControls::txtHighRaw},
    {kLowRawRow, "txtLowRaw", TextId::LowRawValue,
     u"Integer value of lower calibration point (0-65535)",
     &Column::txtLowRaw, &AnalogColumnControls::txtLowRaw},
    {kTopRow, "txtTop", TextId::DisplayHighValue,
     u"Floating point value of top of display meter",
     &Column::txtTop, &AnalogColumnControls::txtTop},
    {kBottomRow, "txtBottom", TextId::DisplayLowValue,
     u"Floating point value of bottom of display meter",
     &Column::txtBottom, &AnalogColumnControls::txtBottom},
}};
// clang-format on

SetupAnalogPage::SetupAnalogPage(int channelCount, QWidget* parent)
    : QWidget(parent),
      channelCount_(std::clamp(channelCount, 0, kAnalogChannels)),
      rowLabels_(NewRowLabels()) {
  auto* layout = new QHBoxLayout(this);
  layout->setSpacing(2);
  layout->addWidget(rowLabels_);
  for (int channel = 0; channel < kAnalogChannels; ++channel) {
    Column& column = columns_[static_cast<std::size_t>(channel)];
    column = NewColumn(channel, channel < channelCount_);
    layout->addWidget(column.fraSetup, 1);
  }
  AlignRows();
}

QWidget* SetupAnalogPage::NewRowLabels() {
  auto* labels = new HiddenFrame(u" "_s, this);
  auto* grid = new QGridLayout(labels);
  for (const RowLabel& row : kRowLabels)
    grid->addWidget(NewLabel(QLatin1StringView(row.Name), GetText(row.Caption), labels), row.At, 0);
  return labels;
}

QGroupBox* SetupAnalogPage::NewFrame(int channel, bool exists) {
  auto* frame = new QGroupBox(QString::number(channel + 1), this);
  frame->setObjectName(ElementName("fraSetup", channel));
  frame->setAccessibleName(frame->title());
  frame->setEnabled(exists);
  auto* grid = new QGridLayout(frame);
  grid->setContentsMargins(4, grid->contentsMargins().top(), 4, grid->contentsMargins().bottom());
  return frame;
}

SetupAnalogPage::Column SetupAnalogPage::NewColumn(int channel, bool exists) {
  Column column;
  column.fraSetup = NewFrame(channel, exists);
  if (!exists) return column;

  QWidget* frame = column.fraSetup;
  QGridLayout* grid = GridOf(frame);
  column.chkEnable =
      NewCheckBox(ElementName("chkEnable", channel), GetText(TextId::Enable),
                  u"Selects if channel is included in display and history "_s, frame);
  column.chkEnable->setAccessibleName(Spoken(TextId::Enable, channel));
  grid->addWidget(column.chkEnable, kEnableRow, 0);
  column.cmbEU =
      NewColumnList({"cmbEU", TextId::Units}, channel, AnalogUnits(),
                    u"Name of measurement engineering units (9 characters max)"_s, frame);
  grid->addWidget(column.cmbEU, kUnitsRow, 0);
  AddNumbers(column, channel);
  column.cmbPrecision =
      NewColumnList({"cmbPrecision", TextId::DecimalPlaces}, channel, PrecisionItems(),
                    u"Number of digits to display after decimal point "_s, frame);
  grid->addWidget(column.cmbPrecision, kPrecisionRow, 0);
  column.cmdCalibrate = NewButton(ElementName("cmdCalibrate", channel), GetText(TextId::Calibrate),
                                  u"Run dialog that assists setting calibration points"_s, frame);
  column.cmdCalibrate->setAccessibleName(Spoken(TextId::Calibrate, channel));
  grid->addWidget(column.cmdCalibrate, kCalibrateRow, 0);
  QObject::connect(column.cmdCalibrate, &QPushButton::clicked, this, [this, channel] {
    if (OnCalibrate) OnCalibrate(channel);
  });
  return column;
}

void SetupAnalogPage::AddNumbers(Column& column, int channel) {
  for (const NumberRow& row : kNumberRows) {
    QLineEdit* field = NewField(ElementName(row.Name, channel), Spoken(row.Label, channel),
                                QString::fromUtf16(row.Tip), column.fraSetup);
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(u"-999999.99"_s));
    column.*row.Field = field;
    GridOf(column.fraSetup)->addWidget(field, row.Row, 0);
  }
}

/// Gives every row the same height in the labels and in all columns, so that they stand in line,
/// and all columns the same width.
void SetupAnalogPage::AlignRows() {
  int height = 0;
  for (QWidget* part : {rowLabels_, static_cast<QWidget*>(columns_.front().fraSetup)}) {
    QGridLayout* grid = GridOf(part);
    for (int item = 0; item < grid->count(); ++item)
      height = std::max(height, grid->itemAt(item)->sizeHint().height());
  }
  height += GridOf(rowLabels_)->verticalSpacing();
  const auto align = [height](QWidget* widget) {
    QGridLayout* grid = GridOf(widget);
    grid->setVerticalSpacing(0);  // Empty rows have none, and both kinds must be equally high.
    for (int row = 0; row < kRowCount; ++row) grid->setRowMinimumHeight(row, height);
    grid->setRowStretch(kRowCount, 1);
  };
  align(rowLabels_);
  const int width = columns_.front().fraSetup->minimumSizeHint().width();
  for (const Column& column : columns_) {
    align(column.fraSetup);
    column.fraSetup->setMinimumWidth(width);
  }
}

// No wider than its columns need; they grow with the window.
QSize SetupAnalogPage::sizeHint() const {
  return minimumSizeHint();
}

void SetupAnalogPage::Guard(FieldChecks& checks) {
  for (int channel = 0; channel < channelCount_; ++channel) {
    const Column& column = columns_[static_cast<std::size_t>(channel)];
    checks.Guard(column.cmbEU);
    for (const NumberRow& row : kNumberRows) checks.Guard(column.*row.Field);
    checks.Guard(column.cmbPrecision);
  }
}

AnalogColumnControls SetupAnalogPage::ReadColumn(int channel) const {
  const Column& column = columns_[static_cast<std::size_t>(channel)];
  AnalogColumnControls values;
  values.chkEnable = column.chkEnable->isChecked();
  values.cmbEU = column.cmbEU->currentText();
  for (const NumberRow& row : kNumberRows) values.*row.Text = (column.*row.Field)->text();
  values.cmbPrecision = ListPosition(*column.cmbPrecision);
  return values;
}

void SetupAnalogPage::Read(SetupControls& controls) const {
  for (int channel = 0; channel < channelCount_; ++channel)
    controls.Analog[static_cast<std::size_t>(channel)] = ReadColumn(channel);
}

void SetupAnalogPage::Write(const SetupControls& controls) {
  for (int channel = 0; channel < channelCount_; ++channel) {
    const Column& column = columns_[static_cast<std::size_t>(channel)];
    const AnalogColumnControls& values = controls.Analog[static_cast<std::size_t>(channel)];
    column.chkEnable->setChecked(values.chkEnable);
    SetListText(*column.cmbEU, values.cmbEU);
    for (const NumberRow& row : kNumberRows) (column.*row.Field)->setText(values.*row.Text);
    SetListPosition(*column.cmbPrecision, values.cmbPrecision);
  }
}

void SetupAnalogPage::WriteCalibration(int channel, const QString& highEU, const QString& lowEU,
                                       const QString& highRaw, const QString& lowRaw) {
  const Column& column = columns_[static_cast<std::size_t>(channel)];
  column.txtHighEU->setText(highEU);
  column.txtLowEU->setText(lowEU);
  column.txtHighRaw->setText(highRaw);
  column.txtLowRaw->setText(lowRaw);
}

}  // namespace tessmar
