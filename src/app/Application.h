#pragma once

#include <QApplication>
#include <functional>

#include "base/Fault.h"

namespace tessmar {

/// The Qt application, with an answer for faults that no operation has trapped: without one they
/// would travel through Qt's event loops, which must not happen.
class Application final : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override;

  /// Told of a fault that reached the message loop; not of one that comes while it is being told,
  /// which it may be under a message. Without it the fault ends the process.
  std::function<void(const Fault&)> OnFault;

 private:
  bool isTelling_ = false;
};

}  // namespace tessmar
