#include "plot/SeriesGraph.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "plot/ClippedLine.h"

namespace tessmar {
namespace {

constexpr double kLineWidth = 1.5;   // Logical pixels.
constexpr double kLoneSize = 4;      // Of a record with nothing beside it.
constexpr double kDotSize = 4;       // Of a record in a line.
constexpr double kRoomForDots = 12;  // Between two records.
constexpr double kRoomForLines = 6;  // Closer records are drawn as columns.
constexpr int kLineFineness = 4;     // Columns for a point of a file.
constexpr double kBarShare = 0.8;    // Of the interval.
constexpr double kLeastBarWidth = 3;
constexpr double kFarAway = 20000;  // Pixels beyond which nothing is told apart.

/// Undoes every scaling, so that a unit is a device pixel, until it goes.
class DevicePixels {
 public:
  explicit DevicePixels(QCPPainter* painter)
      : painter_(painter), toDevice_(painter->combinedTransform()) {
    painter_->save();
    painter_->setWorldTransform(toDevice_.inverted() * painter_->worldTransform());
  }
  ~DevicePixels() { painter_->restore(); }
  DevicePixels(const DevicePixels&) = delete;
  DevicePixels& operator=(const DevicePixels&) = delete;

  double Scale() const { return toDevice_.m11(); }
  QPointF Place(QPointF logical) const { return toDevice_.map(logical); }

 private:
  QCPPainter* painter_;
  QTransform toDevice_;
};

/// An axis as the straight line that it is, so that thousands of values take a product and a sum
/// each.
class AxisLine {
 public:
  explicit AxisLine(const QCPAxis& axis)
      : from_(axis.range().lower),
        at_(axis.coordToPixel(from_)),
        scale_((axis.coordToPixel(axis.range().upper) - at_) / axis.range().size()) {}

  double PixelOf(double value) const { return at_ + (value - from_) * scale_; }

 private:
  double from_;
  double at_;
  double scale_;
};

double Near(double place) {
  return std::clamp(place, -kFarAway, kFarAway);
}

int Pixel(double place) {
  return static_cast<int>(std::lround(Near(place)));
}

}  // namespace

SeriesGraph::SeriesGraph(QCPAxis* time, QCPAxis* value, const PlotData& data, int channel,
                         CellsOfView cells)
    : QCPAbstractPlottable(time, value), data_(data), channel_(channel), cells_(std::move(cells)) {
  setSelectable(QCP::stNone);
}

double SeriesGraph::selectTest(const QPointF& /*position*/, bool /*onlySelectable*/,
                               QVariant* /*details*/) const {
  return -1;
}

QCPRange SeriesGraph::getKeyRange(bool& found, QCP::SignDomain /*domain*/) const {
  found = !data_.Runs().empty();
  return {data_.Whole().Begin, data_.Whole().End};
}

QCPRange SeriesGraph::getValueRange(bool& found, QCP::SignDomain /*domain*/,
                                    const QCPRange& keyRange) const {
  const TimeRange range =
      keyRange == QCPRange() ? data_.Whole() : TimeRange{keyRange.lower, keyRange.upper};
  const Extent extent = data_.ExtentIn(channel_, range);
  found = extent.Any();
  return found ? QCPRange(extent.Least, extent.Greatest) : QCPRange();
}

TimeRange SeriesGraph::View() const {
  return {mKeyAxis->range().lower, mKeyAxis->range().upper};
}

void SeriesGraph::draw(QCPPainter* painter) {
  const double width = mKeyAxis->axisRect()->width();
  const bool isFile = painter->modes().testFlag(QCPPainter::pmVectorized);
  const auto records = static_cast<double>(data_.CountIn(View()));
  if (data_.Channel(channel_).IsCounted()) {
    if (!isFile && records > width) {
      DrawColumns(painter, true);
    } else {
      DrawBars(painter);
    }
  } else if (isFile || records * kRoomForLines <= width) {
    DrawStrands(painter, {View(), static_cast<int>(width) * kLineFineness});
  } else {
    DrawColumns(painter, false);
  }
}

void SeriesGraph::DrawColumns(QCPPainter* painter, bool bars) {
  painter->setAntialiasing(false);
  const QRect inside = mKeyAxis->axisRect()->rect();
  const DevicePixels pixels(painter);
  const double scale = pixels.Scale();
  const int left = Pixel(pixels.Place(inside.topLeft()).x());
  const ColumnView view{View(), static_cast<int>(std::lround(inside.width() * scale))};
  const int line = std::max(1, Pixel(kLineWidth * scale));
  const int lone = std::max(2, Pixel(kLoneSize * scale));
  const AxisLine values(*mValueAxis);
  const double origin = pixels.Place({0, 0}).y();
  const auto yOf = [&](double value) { return Pixel(origin + values.PixelOf(value) * scale); };
  const std::vector<ColumnCell>& cells = cells_(view);
  QVector<QRect> rects;
  if (bars) {
    for (const ColumnCell& cell : cells) {
      const Extent extent = data_.ExtentOf(channel_, cell.First, cell.End);
      if (!extent.Any() || cell.Column < 0 || cell.Column >= view.Columns) continue;
      const int top = yOf(std::max(extent.Greatest, 0.0));
      const int bottom = yOf(std::min(extent.Least, 0.0));
      rects.append({left + cell.Column, top, 1, std::max(bottom - top, line)});
    }
  } else {
    for (const FilledColumn& column : FillColumns(data_, channel_, view, cells)) {
      const int top = yOf(column.Greatest);
      const int height = yOf(column.Least) - top;
      if (column.Lone) {
        rects.append({left + column.Column - lone / 2, top - lone / 2, lone, height + lone});
      } else {
        rects.append({left + column.Column, top - line / 2, 1, height + line});
      }
    }
  }
  painter->setPen(Qt::NoPen);
  painter->setBrush(mPen.color());
  painter->drawRects(rects);
}

// Lines of two points each, which the painter draws several times faster than a polyline; in a file
// they are joined again, for its size and its corners.
void SeriesGraph::DrawStrands(QCPPainter* painter, const ColumnView& fineness) {
  painter->setAntialiasing(true);
  const auto records = static_cast<double>(data_.CountIn(View()));
  const bool dots = records * kRoomForDots <= mKeyAxis->axisRect()->width();
  const QRectF room = QRectF(mKeyAxis->axisRect()->rect())
                          .adjusted(-kLineWidth, -kLineWidth, kLineWidth, kLineWidth);
  const AxisLine times(*mKeyAxis);
  const AxisLine values(*mValueAxis);
  QVector<QLineF> lines;
  QVector<QPointF> points;
  QVector<QPointF> lone;
  for (const Strand& strand : StrandsIn(data_, channel_, View())) {
    std::optional<QPointF> last;
    for (const std::size_t record : ThinnedStrand(data_, channel_, strand, fineness)) {
      const QPointF place(times.PixelOf(data_.Times()[record]),
                          values.PixelOf(data_.Value(channel_, record)));
      if (last)
        if (const auto line = ClippedLine({*last, place}, room)) lines.append(*line);
      last = place;
      if (!room.contains(place)) continue;
      if (strand.End - strand.First == 1) {
        lone.append(place);
      } else if (dots) {
        points.append(place);
      }
    }
  }
  DrawLines(painter, lines);
  DrawDots(painter, points, kDotSize);
  DrawDots(painter, lone, kLoneSize);
}

void SeriesGraph::DrawLines(QCPPainter* painter, const QVector<QLineF>& lines) const {
  QPen pen = mPen;
  pen.setWidthF(kLineWidth);
  pen.setCapStyle(Qt::SquareCap);
  pen.setJoinStyle(Qt::BevelJoin);
  painter->setPen(pen);
  painter->setBrush(Qt::NoBrush);
  if (!painter->modes().testFlag(QCPPainter::pmVectorized)) {
    painter->drawLines(lines);
    return;
  }
  QPolygonF path;
  for (const QLineF& line : lines) {
    if (path.isEmpty() || path.last() != line.p1()) {
      if (!path.isEmpty()) painter->drawPolyline(path);
      path = {line.p1()};
    }
    path.append(line.p2());
  }
  if (!path.isEmpty()) painter->drawPolyline(path);
}

void SeriesGraph::DrawDots(QCPPainter* painter, const QVector<QPointF>& points, double size) const {
  painter->setPen(Qt::NoPen);
  painter->setBrush(mPen.color());
  for (const QPointF& point : points) painter->drawEllipse(point, size / 2, size / 2);
}

// Of the interval that the record was logged with.
double SeriesGraph::BarWidth(std::size_t record) const {
  const double interval = data_.IntervalAt(record) * kBarShare;
  const double pixels = interval / View().Length() * mKeyAxis->axisRect()->width();
  return std::max(pixels, kLeastBarWidth);
}

void SeriesGraph::DrawBars(QCPPainter* painter) {
  painter->setAntialiasing(false);
  painter->setPen(Qt::NoPen);
  painter->setBrush(mPen.color());
  const AxisLine times(*mKeyAxis);
  const AxisLine values(*mValueAxis);
  const double zero = Near(values.PixelOf(0));
  for (const RecordSpan& run : data_.Runs()) {
    RecordSpan inside = data_.InRange(run, View());
    // The halves of bars whose records lie just outside.
    if (inside.First > run.First) --inside.First;
    if (inside.End < run.End) ++inside.End;
    for (std::size_t record = inside.First; record < inside.End; ++record) {
      if (std::isnan(data_.Value(channel_, record))) continue;
      const QPointF tip(Near(times.PixelOf(data_.Times()[record])),
                        Near(values.PixelOf(data_.Value(channel_, record))));
      const double width = BarWidth(record);
      const double height = std::max(std::abs(tip.y() - zero), 1.0);
      painter->drawRect(QRectF(tip.x() - width / 2, std::min(tip.y(), zero), width, height));
    }
  }
}

void SeriesGraph::drawLegendIcon(QCPPainter* painter, const QRectF& rect) const {
  painter->setAntialiasing(false);
  const double height = data_.Channel(channel_).IsCounted() ? rect.height() : 4;
  painter->fillRect(QRectF(rect.left(), rect.center().y() - height / 2, rect.width(), height),
                    mPen.color());
}

}  // namespace tessmar
