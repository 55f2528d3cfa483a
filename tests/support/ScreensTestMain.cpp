#include <gtest/gtest.h>

#include "app/Application.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // The build lists the tests of this program where no display is; ask for another platform by
  // name.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  tessmar::Application application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
