#include "plot/PlotPicture.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPagedPaintDevice>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <memory>

#include "plot/TimeTicks.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kPdfResolution = 1200;
constexpr double kScreenResolution = 96;

/// A plot that is never on the screen.
std::unique_ptr<PlotStrips> CopyOf(const PictureView& view, QSize size) {
  auto copy = std::make_unique<PlotStrips>(view.Data, view.Locale);
  copy->setFont(view.Shown.font());
  copy->setBufferDevicePixelRatio(1);
  copy->resize(size);
  copy->setViewport(QRect(QPoint(0, 0), size));
  copy->SetHeadLine(view.Head);
  copy->SetShown(view.Shown.Shown());
  copy->SetTheme(LightPlotTheme());
  copy->SetView(view.Shown.View());
  // Laid out once, so that the number of ticks is that of this size.
  copy->replot(QCustomPlot::rpImmediateRefresh);
  copy->SetFixedScale(true);
  for (const QString& unit : view.Shown.Units()) copy->SetScaleOf(unit, view.Shown.ScaleOf(unit));
  copy->replot(QCustomPlot::rpImmediateRefresh);
  return copy;
}

void Paint(PlotStrips& plot, QCPPainter& painter, QSize size) {
  painter.setMode(QCPPainter::pmVectorized);
  painter.setMode(QCPPainter::pmNoCaching);
  plot.toPainter(&painter, size.width(), size.height());
}

QByteArray PngFile(const PictureView& view) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  return PictureImage(view).save(&buffer, "PNG") ? bytes : QByteArray();
}

QByteArray SvgFile(const PictureView& view) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(view.Size);
  generator.setViewBox(QRect(QPoint(0, 0), view.Size));
  generator.setTitle(view.Head);
  generator.setResolution(static_cast<int>(kScreenResolution));
  QCPPainter painter;
  if (!painter.begin(&generator)) return {};
  Paint(*CopyOf(view, view.Size), painter, view.Size);
  return painter.end() ? bytes : QByteArray();
}

QByteArray PdfFile(const PictureView& view) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setTitle(view.Head);
    writer.setCreator(u"Tessmar Logger"_s);
    writer.setResolution(kPdfResolution);
    writer.setPageSize(QPageSize(QSizeF(view.Size) * 72 / kScreenResolution, QPageSize::Point));
    writer.setPageMargins({0, 0, 0, 0});
    PaintPicture(view, writer);
  }
  return bytes;
}

}  // namespace

std::optional<PictureKind> KindOfPicture(const QString& path) {
  const QString ending = QFileInfo(path).suffix().toLower();
  if (ending == "png"_L1) return PictureKind::Png;
  if (ending == "svg"_L1) return PictureKind::Svg;
  if (ending == "pdf"_L1) return PictureKind::Pdf;
  return std::nullopt;
}

QString PictureHead(const PlotData& data, TimeRange view, const QString& program,
                    const SystemLocale& locale) {
  const QString logger = data.Set().LoggerName.trimmed();
  return (logger.isEmpty() ? QString() : logger + u"   "_s) + RangeText(view, locale) + u"   "_s +
         program;
}

QImage PictureImage(const PictureView& view) {
  const std::unique_ptr<PlotStrips> plot = CopyOf(view, view.Size);
  return plot->toPixmap(view.Size.width(), view.Size.height(), view.Scale).toImage();
}

QByteArray PictureFile(const PictureView& view, PictureKind kind) {
  switch (kind) {
    case PictureKind::Png:
      return PngFile(view);
    case PictureKind::Svg:
      return SvgFile(view);
    case PictureKind::Pdf:
      break;
  }
  return PdfFile(view);
}

void PaintPicture(const PictureView& view, QPagedPaintDevice& page) {
  QCPPainter painter;
  if (!painter.begin(&page)) return;
  const double scale = page.logicalDpiX() / kScreenResolution;
  const QSize size = (QSizeF(page.width(), page.height()) / scale).toSize();
  painter.scale(scale, scale);
  Paint(*CopyOf(view, size), painter, size);
}

}  // namespace tessmar
