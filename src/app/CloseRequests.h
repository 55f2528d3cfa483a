#pragma once

#include <QAbstractNativeEventFilter>
#include <functional>

class QWidget;

namespace tessmar {

/// Lets the window manager's request to close a window through while the window stands under a
/// modal dialog, where Qt itself would drop it.
///
/// It acts only while `wanted` says so: the program uses it while a logger operation waits, so that
/// a dead line never holds up the end of the program. On platforms other than X11 it does nothing.
class CloseRequests final : public QAbstractNativeEventFilter {
 public:
  CloseRequests(QWidget& window, std::function<bool()> wanted);
  ~CloseRequests() override;

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  QWidget& window_;
  std::function<bool()> wanted_;
};

}  // namespace tessmar
