#include "ui/FittingLabel.h"

#include <QPainter>
#include <QStyle>

namespace tessmar {

FittingLabel::FittingLabel(int characters, QWidget* parent)
    : QLabel(parent), characters_(characters) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize FittingLabel::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {metrics.averageCharWidth() * characters_, metrics.height()};
}

void FittingLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QFont shrunk = font();
  // Half a point at a time: the text changes seldom, and a label has few characters.
  while (shrunk.pointSizeF() > 5 &&
         QFontMetrics(shrunk).horizontalAdvance(text()) > contentsRect().width()) {
    shrunk.setPointSizeF(shrunk.pointSizeF() - 0.5);
  }
  painter.setFont(shrunk);
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                        isEnabled(), text(), foregroundRole());
}

}  // namespace tessmar
