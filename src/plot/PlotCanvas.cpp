#include "plot/PlotCanvas.h"

#include <QKeyEvent>
#include <QNativeGestureEvent>
#include <algorithm>
#include <cmath>

#include "plot/MarkLines.h"

namespace tessmar {
namespace {

constexpr double kWheelStep = 120;    // Of an ordinary wheel.
constexpr double kZoomOfAStep = 0.8;  // The view's new length.
constexpr double kMoveOfAStep = 0.1;  // Of the view's length.
constexpr double kScaleZoom = 0.85;
constexpr double kScaleMove = 0.1;
constexpr double kPixelsOfADrag = 3;  // Less is a click.

}  // namespace

PlotCanvas::PlotCanvas(PlotData& plotData, const SystemLocale& locale, QWidget* parent)
    : PlotStrips(plotData, locale, parent), data_(plotData) {
  setObjectName(QStringLiteral("pltPlot"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  clock_.start();
}

void PlotCanvas::Begin() {
  views_.Begin(FittedView(data_.Whole()));
  Show(views_.Present());
}

void PlotCanvas::Show(TimeRange view) {
  SetView(view);
  Q_EMIT ViewChanged();
}

void PlotCanvas::Go(TimeRange view, ViewChange change) {
  views_.Go(view, change, clock_.elapsed());
  Show(view);
  Q_EMIT ViewChangedByUser();
}

void PlotCanvas::Fit() {
  Go(FittedView(data_.Whole()), ViewChange::Other);
}

void PlotCanvas::Back() {
  Show(views_.Back());
  Q_EMIT ViewChangedByUser();
}

void PlotCanvas::Forward() {
  Show(views_.Forward());
  Q_EMIT ViewChangedByUser();
}

void PlotCanvas::FollowEnd(double width) {
  const TimeRange all = FittedView(data_.Whole());
  views_.Begin({std::max(all.Begin, all.End - width), all.End});
  Show(views_.Present());
}

void PlotCanvas::ShowCorrectedTimes(bool corrected) {
  const std::size_t first = data_.Nearest(View().Begin);
  const std::size_t last = data_.Nearest(View().End);
  const double before = first < data_.RecordCount() ? data_.Times()[first] : 0;
  data_.ShowCorrectedTimes(corrected);
  TimeRange view = FittedView(data_.Whole());
  if (last < data_.RecordCount()) {
    const double begin = data_.Times()[first];
    const double end = data_.Times()[last];
    const double room = std::max(before - View().Begin, 0.0);
    if (begin < end) view = {begin - room, end + room};
  }
  views_.Begin(view);
  DataChanged();
  if (cursorRecord_) SetCursor(*cursorRecord_);
  Show(view);
}

void PlotCanvas::SetCursor(std::size_t record) {
  if (record >= data_.RecordCount()) return;
  // It stands nowhere on this axis.
  if (std::isnan(data_.Times()[record])) return ForgetCursor();
  cursorRecord_ = record;
  Cursor().SetTimes({data_.Times()[record]});
  layer(QStringLiteral("overlay"))->replot();
  Q_EMIT CursorMoved();
}

void PlotCanvas::ForgetCursor() {
  cursorRecord_.reset();
  Cursor().SetTimes({});
  layer(QStringLiteral("overlay"))->replot();
  Q_EMIT CursorMoved();
}

double PlotCanvas::TimeAt(double x) const {
  const QRect area = StripsArea();
  if (area.width() <= 0) return View().Begin;
  return View().Begin + (x - area.left()) / area.width() * View().Length();
}

void PlotCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  pressed_ = event->position();
  pressedView_ = View();
}

void PlotCanvas::mouseMoveEvent(QMouseEvent* event) {
  const QPointF place = event->position();
  if (pressed_ && (event->buttons() & Qt::LeftButton) != 0) {
    const int width = std::max(StripsArea().width(), 1);
    if (std::abs(place.x() - pressed_->x()) < kPixelsOfADrag && View() == pressedView_) return;
    const TimeRange view = Moved(pressedView_, (pressed_->x() - place.x()) / width, data_.Whole());
    if (!(view == View())) Show(view);
    return;
  }
  const std::size_t record = data_.Nearest(TimeAt(place.x()));
  if (record < data_.RecordCount() && record != cursorRecord_) SetCursor(record);
}

void PlotCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressed_) return;
  pressed_.reset();
  if (!(View() == pressedView_)) {
    Go(View(), ViewChange::Other);
    return;
  }
  SetCursor(data_.Nearest(TimeAt(event->position().x())));
}

void PlotCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Fit();
}

void PlotCanvas::wheelEvent(QWheelEvent* event) {
  event->accept();
  const QPoint angle = event->angleDelta();
  const bool sideways = std::abs(angle.x()) > std::abs(angle.y());
  // Alt turns an upright wheel sideways on some desktops.
  const double steps = (sideways ? angle.x() : angle.y()) / kWheelStep;
  if (steps == 0) return;
  const bool overScale = event->position().x() < StripsArea().left();
  if (!sideways && (overScale || (event->modifiers() & Qt::ControlModifier) != 0)) {
    ZoomScale(UnitAt(event->position().y()), std::pow(kScaleZoom, steps));
  } else if (sideways || (event->modifiers() & Qt::ShiftModifier) != 0) {
    Go(Moved(View(), -steps * kMoveOfAStep, data_.Whole()), ViewChange::Wheel);
  } else {
    Go(Zoomed(View(), std::pow(kZoomOfAStep, steps), TimeAt(event->position().x()), data_.Whole()),
       ViewChange::Wheel);
  }
}

// Two fingers on a touchpad.
bool PlotCanvas::event(QEvent* event) {
  if (event->type() == QEvent::NativeGesture) {
    const auto* gesture = static_cast<QNativeGestureEvent*>(event);
    if (gesture->gestureType() == Qt::ZoomNativeGesture) {
      Go(Zoomed(View(), 1 / std::max(1 + gesture->value(), 0.1), TimeAt(gesture->position().x()),
                data_.Whole()),
         ViewChange::Wheel);
      return true;
    }
  }
  return PlotStrips::event(event);
}

void PlotCanvas::ZoomScale(const QString& unit, double factor) {
  if (unit.isEmpty() && !Units().contains(unit)) return;
  if (!HasFixedScale()) Q_EMIT ScaleFixed();
  const QCPRange scale = ScaleOf(unit);
  const double half = scale.size() / 2 * factor;
  if (half > 1e-9 && half < 1e15)
    SetScaleOf(unit, QCPRange(scale.center() - half, scale.center() + half));
}

void PlotCanvas::ChangeScales(double shift, double factor) {
  if (!HasFixedScale()) Q_EMIT ScaleFixed();
  const QStringList units = Units();
  for (const QString& unit : units) {
    const QCPRange scale = ScaleOf(unit);
    const double by = shift * scale.size();
    SetScaleOf(unit, QCPRange(scale.lower + by, scale.upper + by));
    if (factor != 1) ZoomScale(unit, factor);
  }
}

void PlotCanvas::keyPressEvent(QKeyEvent* event) {
  const bool control = (event->modifiers() & Qt::ControlModifier) != 0;
  const bool shift = (event->modifiers() & Qt::ShiftModifier) != 0;
  const int key = event->key();
  const bool upright = key == Qt::Key_Up || key == Qt::Key_Down;
  event->accept();
  if (key == Qt::Key_Backspace) return shift ? Forward() : Back();
  if (control && key == Qt::Key_Left) return StepCursor(-1);
  if (control && key == Qt::Key_Right) return StepCursor(1);
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    if (cursorRecord_) Q_EMIT RowWanted();
    return;
  }
  if (upright ? ScaleByKey(key, control) : MoveByKey(key)) return;
  event->ignore();
  PlotStrips::keyPressEvent(event);
}

bool PlotCanvas::MoveByKey(int key) {
  const TimeRange view = View();
  const double middle = (view.Begin + view.End) / 2;
  switch (key) {
    case Qt::Key_Left:
      Go(Moved(view, -kMoveOfAStep, data_.Whole()), ViewChange::Other);
      return true;
    case Qt::Key_Right:
      Go(Moved(view, kMoveOfAStep, data_.Whole()), ViewChange::Other);
      return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      Go(Zoomed(view, kZoomOfAStep, middle, data_.Whole()), ViewChange::Other);
      return true;
    case Qt::Key_Minus:
      Go(Zoomed(view, 1 / kZoomOfAStep, middle, data_.Whole()), ViewChange::Other);
      return true;
    case Qt::Key_Home:
      Go(Moved(view, -1e9, data_.Whole()), ViewChange::Other);
      return true;
    case Qt::Key_End:
      Go(Moved(view, 1e9, data_.Whole()), ViewChange::Other);
      return true;
    default:
      return false;
  }
}

bool PlotCanvas::ScaleByKey(int key, bool stretch) {
  const bool up = key == Qt::Key_Up;
  if (stretch) {
    ChangeScales(0, up ? kScaleZoom : 1 / kScaleZoom);
  } else {
    ChangeScales(up ? kScaleMove : -kScaleMove, 1);
  }
  return true;
}

// Without a cursor yet, to the first or the last record in view.
void PlotCanvas::StepCursor(int by) {
  if (data_.RecordCount() == 0) return;
  if (!cursorRecord_) return SetCursor(data_.Nearest(by > 0 ? View().Begin : View().End));
  auto record = static_cast<std::int64_t>(*cursorRecord_);
  do {
    record += by;
  } while (record >= 0 && record < static_cast<std::int64_t>(data_.RecordCount()) &&
           std::isnan(data_.Times()[static_cast<std::size_t>(record)]));
  if (record < 0 || record >= static_cast<std::int64_t>(data_.RecordCount())) return;
  SetCursor(static_cast<std::size_t>(record));
  const double time = data_.Times()[static_cast<std::size_t>(record)];
  if (time < View().Begin || time > View().End) {
    const double part = (time - (View().Begin + View().End) / 2) / View().Length();
    Go(Moved(View(), part, data_.Whole()), ViewChange::Other);
  }
}

}  // namespace tessmar
