#include "ui/DisplayArea.h"

#include <QEvent>
#include <QScreen>
#include <QStyle>

namespace tessmar {

DisplayArea::DisplayArea(QWidget* content, QSize around, QWidget* parent)
    : QScrollArea(parent), around_(around) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  setWidget(content);
  // What is behind is the window, whose painting is the content's too.
  content->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
}

QSize DisplayArea::sizeHint() const {
  return Fitted(widget()->sizeHint());
}

QSize DisplayArea::minimumSizeHint() const {
  return Fitted(widget()->minimumSizeHint());
}

// One bar takes of the other direction's room.
QSize DisplayArea::Fitted(QSize wanted) const {
  const QSize room = screen()->availableGeometry().size() - around_;
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  if (wanted.width() > room.width()) wanted.rheight() += bar;
  if (wanted.height() > room.height()) wanted.rwidth() += bar;
  return wanted.boundedTo(room);
}

bool DisplayArea::eventFilter(QObject* watched, QEvent* event) {
  // The content has grown or shrunk, and the window with it.
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace tessmar
