#include "ui/FrameKeeper.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QScreen>

namespace tessmar {
namespace {

/// Shows a window with its frame at a place of the screen and lets it become active there.
void ShowAt(QWidget& window, QPoint place) {
  window.resize(200, 100);
  window.show();
  window.move(place);
  QEvent active(QEvent::WindowActivate);
  QCoreApplication::sendEvent(&window, &active);
}

TEST(FrameKeeper, BringsTheTitleBarOfADialogBackToTheScreen) {
  const FrameKeeper keeper;
  const int top = QGuiApplication::primaryScreen()->availableGeometry().top();
  QDialog dialog;
  ShowAt(dialog, {60, top - 25});
  EXPECT_EQ(dialog.frameGeometry().topLeft(), QPoint(60, top));
}

TEST(FrameKeeper, LeavesADialogWhoseTitleBarCanBeSeen) {
  const FrameKeeper keeper;
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  for (const QPoint place : {QPoint(60, screen.top()), QPoint(-150, screen.top() + 30),
                             QPoint(60, screen.bottom() - 20)}) {
    QDialog dialog;
    ShowAt(dialog, place);
    EXPECT_EQ(dialog.frameGeometry().topLeft(), place);
  }
}

TEST(FrameKeeper, LeavesWindowsThatAreNoDialogs) {
  const FrameKeeper keeper;
  QWidget window;
  ShowAt(window, {60, -25});
  EXPECT_EQ(window.frameGeometry().topLeft(), QPoint(60, -25));
}

}  // namespace
}  // namespace tessmar
