#pragma once

#include <QWidget>
#include <array>

#include "settings/LoggerSettings.h"
#include "setup/SetupControls.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace tessmar {

class FieldChecks;

/// The page of the two pulse channels. Those that the logger does not have are disabled and blank.
class SetupDigitalPage final : public QWidget {
 public:
  /// @param channelCount  pulse channels of the logger, 0 to 2.
  SetupDigitalPage(int channelCount, QWidget* parent);

  void Guard(FieldChecks& checks);
  void Read(SetupControls& controls) const;
  void Write(const SetupControls& controls);

 private:
  struct Group {
    QGroupBox* fraPulse = nullptr;
    QCheckBox* chkPulseEnable = nullptr;
    QLabel* lblPulse1 = nullptr;
    QComboBox* cmbPulseEU = nullptr;
    QLabel* lblPulse2 = nullptr;
    QLineEdit* txtPulseUnit = nullptr;
    QLabel* lblPulse3 = nullptr;
    QComboBox* cmbPulsePrecision = nullptr;
  };

  Group NewGroup(int channel);
  void SetGroupEnabled(const Group& group, bool enabled);

  int channelCount_;
  std::array<Group, kPulseChannels> groups_;
};

}  // namespace tessmar
