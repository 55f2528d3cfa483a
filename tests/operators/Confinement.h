#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

class QFileDialog;
class QWidget;

namespace tessmar::test {

/// Keeps an operator who presses anything where nothing can be spoilt: all files are below one
/// folder, nothing is printed, no other program is started, no page is opened.
class Confinement final : public QObject {
  Q_OBJECT

 public:
  /// Points home, settings, documents and programs of this process into the folder. To be called
  /// before the application object is made.
  static void PrepareEnvironment(const QString& folder);

  /// Watches the dialogs of the application object, which must be there.
  explicit Confinement(const QString& folder);
  ~Confinement() override;

  /// How often a help page would have been opened.
  int PagesOpened() const { return pagesOpened_; }

  /// Stops what a key or a click would do in a file dialog that looks out of the folder, or in the
  /// printing dialog but for Cancel and Escape.
  bool eventFilter(QObject* watched, QEvent* event) override;

 public Q_SLOTS:
  void OpenPage(const QUrl& page);

 private:
  bool IsInside(const QFileDialog& dialog) const;
  static bool LeavesPrinting(const QWidget& widget, const QEvent& event);

  const QString folder_;
  int pagesOpened_ = 0;
};

}  // namespace tessmar::test
