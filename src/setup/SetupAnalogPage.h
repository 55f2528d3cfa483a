#pragma once

#include <QWidget>
#include <array>
#include <functional>

#include "base/TextTable.h"
#include "settings/LoggerSettings.h"
#include "setup/SetupControls.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

namespace tessmar {

class FieldChecks;

/// The page of the analog channels: a column of controls for each channel of the logger, and an
/// empty, disabled frame with its number for each channel that the logger does not have.
class SetupAnalogPage final : public QWidget {
 public:
  /// @param channelCount  analog channels of the logger, 0 to 8.
  SetupAnalogPage(int channelCount, QWidget* parent);

  void Guard(FieldChecks& checks);
  void Read(SetupControls& controls) const;
  void Write(const SetupControls& controls);

  /// The texts that calibrating a channel starts with and writes.
  AnalogColumnControls ReadColumn(int channel) const;
  void WriteCalibration(int channel, const QString& highEU, const QString& lowEU,
                        const QString& highRaw, const QString& lowRaw);

  /// Called with the channel when its cmdCalibrate is pressed.
  std::function<void(int)> OnCalibrate;

  QSize sizeHint() const override;

 private:
  struct Column {
    QGroupBox* fraSetup = nullptr;
    QCheckBox* chkEnable = nullptr;
    QComboBox* cmbEU = nullptr;
    QLineEdit* txtHighEU = nullptr;
    QLineEdit* txtLowEU = nullptr;
    QLineEdit* txtHighRaw = nullptr;
    QLineEdit* txtLowRaw = nullptr;
    QLineEdit* txtTop = nullptr;
    QLineEdit* txtBottom = nullptr;
    QComboBox* cmbPrecision = nullptr;
    QPushButton* cmdCalibrate = nullptr;
  };

  /// A row of number fields: what it is on the screen, and where its text goes.
  struct NumberRow {
    int Row;
    const char* Name;
    TextId Label;
    const char16_t* Tip;
    QLineEdit* Column::*Field;
    QString AnalogColumnControls::*Text;
  };
  static const std::array<NumberRow, 6> kNumberRows;

  QWidget* NewRowLabels();
  QGroupBox* NewFrame(int channel, bool exists);
  Column NewColumn(int channel, bool exists);
  void AddNumbers(Column& column, int channel);
  void AlignRows();

  int channelCount_;
  QWidget* rowLabels_;
  std::array<Column, kAnalogChannels> columns_;
};

}  // namespace tessmar
