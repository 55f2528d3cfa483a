#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <optional>

#include "plot/PlotStrips.h"

class QPagedPaintDevice;

namespace tessmar {

/// The kinds of picture file.
enum class PictureKind { Png, Svg, Pdf };

/// The kind that a file's name asks for by its ending, in any case; nothing for another ending.
std::optional<PictureKind> KindOfPicture(const QString& path);

/// The head line of a picture: logger, range of time, program.
QString PictureHead(const PlotData& data, TimeRange view, const QString& program,
                    const SystemLocale& locale);

/// What a picture shows: the same as a plot on the screen, in the colours for paper.
struct PictureView {
  const PlotData& Data;
  const SystemLocale& Locale;
  const PlotStrips& Shown;  ///< View, channels and scales are taken from it.
  QString Head;
  QSize Size;        ///< In logical pixels.
  double Scale = 2;  ///< Pixels of a picture of pixels for each of these.
};

/// As pixels.
QImage PictureImage(const PictureView& view);
/// The bytes of a picture file; empty when it could not be made.
QByteArray PictureFile(const PictureView& view, PictureKind kind);
/// Draws onto a page, as large as it allows.
void PaintPicture(const PictureView& view, QPagedPaintDevice& page);

}  // namespace tessmar
