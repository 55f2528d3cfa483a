#pragma once

#include <QDialog>
#include <functional>

namespace tessmar {

/// The about box: the program's picture with its title and version. Shown by exec(); the Escape key
/// closes it.
class frmAbout : public QDialog {
 public:
  /// @param title    of the main window, with the version.
  /// @param details  what cmdCopyDetails copies; without it the button is not there.
  explicit frmAbout(const QString& title, QWidget* parent = nullptr,
                    const std::function<QString()>& details = {});

 private:
  void AddCopyDetails(const std::function<QString()>& details);
};

}  // namespace tessmar
