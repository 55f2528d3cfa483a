#pragma once

#include <QElapsedTimer>
#include <optional>

#include "plot/Navigation.h"
#include "plot/PlotStrips.h"

namespace tessmar {

/// The plot as it is worked with: zoom and move by wheel, touchpad, mouse and keys, the views
/// before and after, and a cursor line that stands at a record.
///
/// Wheel: zoom around the pointer; over a scale at the left, or with Ctrl, the scale of that strip,
/// which then is fixed; sideways or with Shift: move. Drag: move. Double click: everything. Left,
/// Right: move; +, -: zoom; Home, End: to the first and the last record; Up, Down: move the scales,
/// Ctrl+Up, Ctrl+Down: stretch them; Backspace: the view before, with Shift the one after;
/// Ctrl+Left, Ctrl+Right: the cursor to the record before and after; Enter: RowWanted.
class PlotCanvas final : public PlotStrips {
  Q_OBJECT

 public:
  PlotCanvas(PlotData& plotData, const SystemLocale& locale, QWidget* parent = nullptr);

  /// Shows all, and forgets the views before.
  void Begin();
  void Fit();
  void Back();
  void Forward();
  bool HasBack() const { return views_.HasBack(); }
  bool HasForward() const { return views_.HasForward(); }
  /// Goes to a view, which the one before can be gone back from.
  void Go(TimeRange view, ViewChange change);

  /// Shows the times of the other clock, in a view of about the same records.
  void ShowCorrectedTimes(bool corrected);

  /// The record that the cursor line stands at; nothing before it was ever set.
  std::optional<std::size_t> CursorRecord() const { return cursorRecord_; }
  void SetCursor(std::size_t record);
  void ForgetCursor();

  /// Where the plot follows readings: the newest ones, as wide as the view is.
  void FollowEnd(double width);

 Q_SIGNALS:
  void ViewChanged();
  void ViewChangedByUser();
  void ScaleFixed();
  void CursorMoved();
  void RowWanted();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void Show(TimeRange view);
  bool MoveByKey(int key);
  bool ScaleByKey(int key, bool stretch);
  void StepCursor(int by);
  double TimeAt(double x) const;
  void ZoomScale(const QString& unit, double factor);
  void ChangeScales(double shift, double factor);

  PlotData& data_;
  ViewHistory views_;
  QElapsedTimer clock_;
  std::optional<std::size_t> cursorRecord_;
  std::optional<QPointF> pressed_;
  TimeRange pressedView_;
};

}  // namespace tessmar
