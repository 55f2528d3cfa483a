#pragma once

#include <QStringList>
#include <QtGlobal>

namespace tessmar::test {

/// Collects what the toolkit warns of, as long as it lives. One at a time.
class ToolkitWarnings {
 public:
  ToolkitWarnings() {
    Said().clear();
    before_ = qInstallMessageHandler(Take);
  }
  ~ToolkitWarnings() { qInstallMessageHandler(before_); }
  ToolkitWarnings(const ToolkitWarnings&) = delete;
  ToolkitWarnings& operator=(const ToolkitWarnings&) = delete;

  static QStringList& Said() {
    static QStringList said;
    return said;
  }

 private:
  static void Take(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtWarningMsg || type == QtCriticalMsg) Said().append(text);
  }

  QtMessageHandler before_;
};

}  // namespace tessmar::test
