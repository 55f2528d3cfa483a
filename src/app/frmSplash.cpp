#include "app/frmSplash.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

#include "ui/Pictures.h"

namespace tessmar {

using namespace Qt::StringLiterals;

frmSplash::frmSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setObjectName(u"frmSplash"_s);
  setWindowTitle(QGuiApplication::applicationDisplayName());
  setAccessibleName(QGuiApplication::applicationDisplayName());
  auto* picture = new QLabel(this);
  picture->setObjectName(u"Picture1"_s);
  picture->setAccessibleName(QGuiApplication::applicationDisplayName());
  picture->setPixmap(PondPicture(devicePixelRatioF()));
  picture->resize(kPondPictureSize);
  setFixedSize(kPondPictureSize);
  move(screen()->availableGeometry().center() - rect().center());
}

}  // namespace tessmar
