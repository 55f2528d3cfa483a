#include "plot/MarkLines.h"

#include <cmath>

namespace tessmar {
namespace {

constexpr double kHeadSize = 7;

}  // namespace

UprightLines::UprightLines(QCustomPlot* plot, const QString& layer, Form form)
    : QCPLayerable(plot, layer), form_(form) {}

void UprightLines::applyDefaultAntialiasingHint(QCPPainter* painter) const {
  painter->setAntialiasing(false);
}

void UprightLines::draw(QCPPainter* painter) {
  const QList<QCPAxisRect*> strips = mParentPlot->axisRects();
  if (strips.isEmpty()) return;
  const QCPAxis* axis = strips.first()->axis(QCPAxis::atBottom);
  const Qt::PenStyle style = form_ == Form::Plain    ? Qt::SolidLine
                             : form_ == Form::Dashed ? Qt::DashLine
                             : form_ == Form::Split  ? Qt::DashDotLine
                                                     : Qt::DotLine;
  double last = -1;
  for (const double time : times_) {
    if (!axis->range().contains(time)) continue;
    const double x = std::round(axis->coordToPixel(time));
    // Many in one place look like one.
    if (x == last) continue;
    last = x;
    painter->setPen(QPen(colour_, 1, style));
    for (const QCPAxisRect* strip : strips)
      painter->drawLine(QLineF(x, strip->top(), x, strip->bottom()));
    if (form_ != Form::Plain) DrawHead(painter, x, strips.first()->top());
  }
}

void UprightLines::DrawHead(QCPPainter* painter, double x, double top) const {
  painter->setPen(Qt::NoPen);
  painter->setBrush(colour_);
  const double half = kHeadSize / 2;
  if (form_ == Form::Split) {
    painter->drawPolygon(QPolygonF(
        {{x, top}, {x + half, top + half}, {x, top + kHeadSize}, {x - half, top + half}}));
    return;
  }
  const double to = form_ == Form::Back ? x - kHeadSize : x + kHeadSize;
  painter->drawPolygon(QPolygonF({{x, top}, {to, top + half}, {x, top + kHeadSize}}));
}

}  // namespace tessmar
