#include "ui/Pictures.h"

#include <QPixmap>

// The macro declares a function and must stand outside of a namespace.
static void LoadPictures() {
  Q_INIT_RESOURCE(icons);
}

namespace tessmar {

using namespace Qt::StringLiterals;

QPixmap PondPicture(qreal devicePixelRatio) {
  LoadPictures();
  const bool isFine = devicePixelRatio > 1;
  QPixmap picture(isFine ? u":/icons/pond@2x.png"_s : u":/icons/pond.png"_s);
  const QSize size = (QSizeF(kPondPictureSize) * devicePixelRatio).toSize();
  picture.setDevicePixelRatio(1);
  picture = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  picture.setDevicePixelRatio(devicePixelRatio);
  return picture;
}

QIcon ProgramIcon() {
  LoadPictures();
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    icon.addFile(u":/icons/tessmar-logger-%1.png"_s.arg(size), QSize(size, size));
  }
  return icon;
}

}  // namespace tessmar
