#include "ui/ActiveWindow.h"

#include <QApplication>
#include <QWidget>

namespace tessmar {

QWidget* ActiveWindow() {
  QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : QApplication::activeWindow();
}

}  // namespace tessmar
