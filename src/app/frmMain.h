#pragma once

#include <QHash>
#include <QMainWindow>
#include <QString>
#include <array>
#include <functional>

#include "base/MainScreen.h"

class QGroupBox;
class QHBoxLayout;
class QLabel;
class QMenu;
class QVBoxLayout;

namespace tessmar {

class MeterColumn;

/// What the operator can ask of the main window, by button or by menu.
enum class MainCommand {
  ToggleConnection,  ///< cmdConnect: connects or disconnects.
  Connect,
  Disconnect,
  ToggleSampling,   ///< A menu entry: flips the check box.
  SamplingClicked,  ///< The check box itself was clicked.
  GetSample,
  GetHistory,
  ClearHistory,
  SyncTime,
  Setup,
  ResetPulseAccumulators,
  LoadLoggerImageFile,
  Archive,
  LiveTrend,
  LaunchHelp,
  LaunchDoHelp,
  About,
  FirmwareVersion,
  Exit,
};

/// The main window: the row of meters, the logger's state, the command buttons and the menus.
///
/// It decides nothing. The core writes its controls by name through MainScreen, and what the
/// operator asks for leaves as CommandRequested.
class frmMain final : public QMainWindow, public MainScreen {
  Q_OBJECT

 public:
  explicit frmMain(QWidget* parent = nullptr);

  QString Caption(const QString& control) const override;
  void SetCaption(const QString& control, const QString& text) override;
  void SetEnabled(const QString& control, bool enabled) override;
  void SetVisible(const QString& control, bool visible) override;
  bool IsChecked(const QString& control) const override;
  void SetChecked(const QString& control, bool checked) override;
  void SetTextColour(const QString& control, Rgb colour) override;
  void SetBackground(const QString& control, std::optional<Rgb> colour) override;
  void PaintMeter(int channel, double fraction, bool enabled) override;
  void SetWaitCursor(bool on) override;

  /// The control with this name: a widget, a menu or a menu entry. Every name of the core's tables
  /// is here; asking for another one is a programming error.
  QObject* Control(const QString& name) const;

  /// Asked when the window is to be closed; a window that may not be closed stays without a word.
  std::function<bool()> MayClose;

 Q_SIGNALS:
  void CommandRequested(tessmar::MainCommand command);
  /// The window was closed through its frame.
  void Closed();
  /// The window stands on the screen, painted for the first time.
  void FirstPainted();
  /// The window was painted, wholly or in part.
  void Painted();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  template <typename Widget>
  Widget* Add(Widget* widget, const QString& name) {
    widget->setObjectName(name);
    controls_.insert(name, widget);
    return widget;
  }
  QGroupBox* MakeMeter(int channel);
  QGroupBox* MakeValueFrame(const QString& frame, const QString& label, int characters);
  QGroupBox* MakeRelayPanel();
  QHBoxLayout* MakeMeterRow();
  QHBoxLayout* MakeStateRow();
  QHBoxLayout* MakeTotalsRow();
  QHBoxLayout* MakeCommandRow();
  QWidget* MakeStatusLine();
  void MakeMenus();
  void TellReading(const QString& valueLabel);
  QMenu* MakeActionMenu(const QString& prefix);
  void AddEntry(QMenu* menu, const QString& name, MainCommand command, const QString& caption = {},
                const QString& shortcut = {});

  QHash<QString, QObject*> controls_;
  QHash<QString, QString> captions_;  ///< As they were set, line breaks as the core writes them.
  std::array<MeterColumn*, 8> meters_{};
  int waitCursors_ = 0;
  bool painted_ = false;
};

}  // namespace tessmar
