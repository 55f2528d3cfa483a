#include <gtest/gtest.h>

#include <QApplication>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    std::fprintf(stderr, "These tests need a display with a window manager, see ./test\n");
    return 1;
  }
  const QApplication application(argc, argv);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
