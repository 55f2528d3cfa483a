#pragma once

#include <functional>

#include "plot/ColumnFill.h"
#include "plot/PlotData.h"
#include "plot/PlottingLibrary.h"

namespace tessmar {

/// The cells of a view, made once for all channels of a frame.
using CellsOfView = std::function<const std::vector<ColumnCell>&(const ColumnView& view)>;

/// One channel in its strip. On the screen and in pictures of pixels every device column is filled
/// from the least to the greatest of what lies in it; few records, and files of lines, are drawn as
/// lines. Pulses are bars from zero. The data must outlive it.
class SeriesGraph final : public QCPAbstractPlottable {
  Q_OBJECT

 public:
  SeriesGraph(QCPAxis* time, QCPAxis* value, const PlotData& data, int channel, CellsOfView cells);

  int Channel() const { return channel_; }

  double selectTest(const QPointF& position, bool onlySelectable,
                    QVariant* details = nullptr) const override;
  QCPRange getKeyRange(bool& found, QCP::SignDomain domain) const override;
  QCPRange getValueRange(bool& found, QCP::SignDomain domain,
                         const QCPRange& keyRange) const override;

 protected:
  void draw(QCPPainter* painter) override;
  void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;

 private:
  TimeRange View() const;
  void DrawColumns(QCPPainter* painter, bool bars);
  void DrawStrands(QCPPainter* painter, const ColumnView& fineness);
  void DrawLines(QCPPainter* painter, const QVector<QLineF>& lines) const;
  void DrawDots(QCPPainter* painter, const QVector<QPointF>& points, double size) const;
  void DrawBars(QCPPainter* painter);
  double BarWidth(std::size_t record) const;

  const PlotData& data_;
  int channel_;
  CellsOfView cells_;
};

}  // namespace tessmar
