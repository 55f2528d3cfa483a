#pragma once

#include <QElapsedTimer>
#include <QWidget>

class QLabel;
class QProgressBar;

namespace tessmar {

/// The small window of a table that takes its time to build. It stays hidden unless there is
/// something to wait for: it appears when the work has lasted for a while and is not at its end.
class frmProgress : public QWidget {
 public:
  /// @param maximum  the end of the bar, at least 1.
  explicit frmProgress(int maximum, QWidget* parent);

  /// Moves the bar. The message loop does not run during the work, so the window is painted here.
  void Advance(int value);

 private:
  QLabel* lblStatusBar_;
  QProgressBar* progressBar_;
  QElapsedTimer sinceStart_;
};

}  // namespace tessmar
