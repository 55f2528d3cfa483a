#pragma once

#include <QWidget>
#include <array>
#include <vector>

#include "setup/SetupControls.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLineEdit;

namespace tessmar {

class FieldChecks;

/// The page of the dissolved-oxygen set-up: four inputs and three outputs. English in every
/// language.
class SetupDoPage final : public QWidget {
 public:
  /// @param analogChannelCount  analog channels of the logger; channel 8 is never offered.
  SetupDoPage(int analogChannelCount, QWidget* parent);

  void Guard(FieldChecks& checks);
  void Read(DoControls& controls) const;
  void Write(const DoControls& controls);

  /// Enables what belongs to the manual entries and displays that are checked.
  void UpdateDoPageStates();

 private:
  struct Input;
  struct Manual;
  struct Output;
  /// A check box and what is enabled with it.
  struct Follower {
    QCheckBox* Check;
    std::vector<QWidget*> Controls;
  };
  struct ListBinding {
    QComboBox* List;
    int DoControls::*Value;
  };
  struct CheckBinding {
    QCheckBox* Check;
    bool DoControls::*Value;
  };
  struct TextBinding {
    QLineEdit* Field;
    QString DoControls::*Value;
  };

  QGroupBox* NewInputs();
  QGroupBox* NewOutputs();
  void AddInput(QGridLayout* grid, int row, const Input& input, QWidget* frame);
  void AddManual(QGridLayout* grid, int row, const Manual& manual, QWidget* frame);
  void AddOutput(QGridLayout* grid, int number, const Output& output, QWidget* frame);
  QComboBox* AddList(const char* name, const QString& spokenName, const QStringList& items,
                     int DoControls::*value, QWidget* frame);
  QCheckBox* AddCheck(const char* name, const QString& caption, bool DoControls::*value,
                      QWidget* frame);

  QStringList channels_;
  std::vector<ListBinding> lists_;
  std::vector<CheckBinding> checks_;
  std::vector<TextBinding> texts_;
  std::vector<Follower> followers_;
};

}  // namespace tessmar
