#include "e2e/LoggerProcess.h"

#include <csignal>
#include <stdexcept>

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 15000;

}  // namespace

LoggerProcess::LoggerProcess(const QString& program, const QString& link,
                             const QStringList& options) {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(program, QStringList{u"--link"_s, link} + options);
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(kPatience)) {
      throw std::runtime_error("the simulated logger does not start");
    }
  }
}

LoggerProcess::~LoggerProcess() {
  GoOn();
  process_.terminate();
  if (!process_.waitForFinished(kPatience)) process_.kill();
}

void LoggerProcess::PullOut() {
  process_.kill();
  process_.waitForFinished(kPatience);
}

void LoggerProcess::Hang() {
  Signal(SIGSTOP);
}

void LoggerProcess::GoOn() {
  Signal(SIGCONT);
}

// A process that has ended has no number any more; 0 would mean this process and all beside it.
void LoggerProcess::Signal(int number) {
  const qint64 process = process_.processId();
  if (process > 0) ::kill(static_cast<pid_t>(process), number);
}

}  // namespace tessmar::test
