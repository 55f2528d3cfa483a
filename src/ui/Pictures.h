#pragma once

#include <QIcon>
#include <QSize>

namespace tessmar {

/// Size of the pond picture in logical pixels.
inline constexpr QSize kPondPictureSize(480, 320);

/// The picture of the splash and the about box, sharp up to a device pixel ratio of 2. Its lower
/// 110 pixels are deep water, dark enough for white text.
QPixmap PondPicture(qreal devicePixelRatio);

/// The program's icon, 16 to 256 pixels.
QIcon ProgramIcon();

}  // namespace tessmar
