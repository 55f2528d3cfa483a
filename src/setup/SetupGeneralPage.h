#pragma once

#include <QWidget>
#include <array>

#include "settings/LoggerSettings.h"
#include "setup/SetupControls.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace tessmar {

class FieldChecks;

/// The page of what concerns the whole logger: name, warm-up, baud rate, logging mode and alarms.
class SetupGeneralPage final : public QWidget {
 public:
  /// @param use24HourClock  hides the A.M./P.M. lists.
  /// @param sampleOnDemandSupported  enables chkSOD, which keeps its value when disabled.
  SetupGeneralPage(bool use24HourClock, bool sampleOnDemandSupported, QWidget* parent);

  void Guard(FieldChecks& checks);
  void Read(SetupControls& controls) const;
  void Write(const SetupControls& controls);

  /// Lets the fields of both alarms follow their check boxes.
  void FollowAlarmChecks();

 private:
  struct Alarm {
    QCheckBox* chkAlarm = nullptr;
    QLabel* lblAlarm = nullptr;
    QLineEdit* txtAlarm = nullptr;
    QComboBox* cmbAlarm = nullptr;
  };

  void AddNameAndSpeed(QBoxLayout* page);
  void AddLoggingModes(QBoxLayout* page);
  void AddException(QBoxLayout* page);
  Alarm NewAlarm(int index, bool use24HourClock);

  QLineEdit* txtName_ = nullptr;
  QComboBox* cmbWarmup_ = nullptr;
  QComboBox* cmbBaud_ = nullptr;
  QRadioButton* optPeriodic_ = nullptr;
  QLineEdit* txtSampleInterval_ = nullptr;
  QComboBox* cmbSampleInterval_ = nullptr;
  QRadioButton* optFastMode_ = nullptr;
  QRadioButton* optLogarithmic_ = nullptr;
  QCheckBox* chkException_ = nullptr;
  QLineEdit* txtException_ = nullptr;
  QCheckBox* chkWrap_ = nullptr;
  QCheckBox* chkSOD_ = nullptr;
  std::array<Alarm, kAlarms> alarms_;
};

}  // namespace tessmar
