#include <gtest/gtest.h>

#include <QApplication>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // The names alone can be told anywhere.
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    std::fprintf(stderr, "These tests need a display with a window manager, see ./test\n");
    return 1;
  }
  const QApplication application(argc, argv);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
