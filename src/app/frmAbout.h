#pragma once

#include <QDialog>

namespace tessmar {

/// The about box: the program's picture with its title and version. Shown by exec(); the Escape key
/// closes it.
class frmAbout : public QDialog {
 public:
  /// @param title  of the main window, with the version.
  explicit frmAbout(const QString& title, QWidget* parent = nullptr);
};

}  // namespace tessmar
