#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "settings/config.h"
#include "setup/SettingsChanges.h"

class QLabel;
class QPushButton;

namespace tessmar {

/// The row above the buttons of the setup screen that says how many settings differ from the
/// logger, with the button that lists them.
class ChangesRow final : public QWidget {
 public:
  explicit ChangesRow(QWidget* parent);

  /// Compares what the logger holds with what would be programmed now; cheap when neither has
  /// changed since the last call.
  /// @param wanted  nothing when the screen holds a value that no image can.
  void Show(const ConfigImage& logger, const std::optional<ConfigImage>& wanted, bool busy);

  QPushButton* Button() const { return cmdChanges_; }

 private:
  void ShowList();

  ConfigImage logger_;
  std::optional<ConfigImage> wanted_;
  std::vector<SettingsChange> changes_;
  QLabel* lblChanges_;
  QPushButton* cmdChanges_;
};

}  // namespace tessmar
