#pragma once

#include "base/Messages.h"
#include "base/SupportLog.h"

namespace tessmar {

/// Writes every message and its answer into the log for support.
class LoggedMessages final : public Messages {
 public:
  LoggedMessages(Messages& messages, const SupportLog& log) : messages_(messages), log_(log) {}

  int MsgBox(const QString& prompt, int buttons, const QString& title) override {
    log_.Write(QStringLiteral("message \"%1\": %2").arg(title, prompt));
    const int answer = messages_.MsgBox(prompt, buttons, title);
    log_.Write(QStringLiteral("answer %1").arg(answer));
    return answer;
  }

 private:
  Messages& messages_;
  const SupportLog& log_;
};

}  // namespace tessmar
