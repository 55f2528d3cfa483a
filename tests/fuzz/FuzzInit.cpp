// What libFuzzer starts every harness with.

#include <QCoreApplication>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  // Lives as long as the process, as the main function's does.
  static const QCoreApplication application(*argc, *argv);
  return 0;
}
