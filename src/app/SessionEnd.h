#pragma once

#include <QObject>
#include <functional>

namespace tessmar {

/// Tells when the desktop ends the session, as at a log-out: Qt would ask every window for its
/// consent first, and the first dialog that has a question to ask would refuse. One is made after
/// the application object, in its thread.
class SessionEnd final : public QObject {
 public:
  explicit SessionEnd(std::function<void()> onEnd);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<void()> onEnd_;
};

}  // namespace tessmar
