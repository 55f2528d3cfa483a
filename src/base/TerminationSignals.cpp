#include "base/TerminationSignals.h"

#include <QSocketNotifier>
#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#endif

namespace tessmar {

#ifdef Q_OS_UNIX

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// A signal handler may only write to a descriptor, and needs a place from where to know it.
int signalEnds[2] = {-1, -1};

extern "C" void HandleTerminationSignal(int) {
  const char byte = 1;
  // Nothing can be done here about a full buffer, and a byte is waiting then anyway.
  [[maybe_unused]] const ssize_t written = ::write(signalEnds[0], &byte, sizeof byte);
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : onSignal_(std::move(onSignal)) {
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalEnds) != 0) return;
  notifier_ = new QSocketNotifier(signalEnds[1], QSocketNotifier::Read);
  QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [this] {
    char byte = 0;
    if (::read(signalEnds[1], &byte, sizeof byte) == sizeof byte) onSignal_();
  });
  struct sigaction action = {};
  action.sa_handler = HandleTerminationSignal;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  for (const int number : kSignals) {
    struct sigaction inherited = {};
    if (sigaction(number, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_IGN) continue;
    sigaction(number, &action, nullptr);
  }
}

TerminationSignals::~TerminationSignals() {
  for (const int number : kSignals) {
    struct sigaction present = {};
    const bool isOurs =
        sigaction(number, nullptr, &present) == 0 && present.sa_handler == HandleTerminationSignal;
    if (isOurs) std::signal(number, SIG_DFL);
  }
  delete notifier_;
  for (int& end : signalEnds) {
    if (end >= 0) ::close(end);
    end = -1;
  }
}

#else

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : onSignal_(std::move(onSignal)) {}

TerminationSignals::~TerminationSignals() = default;

#endif

}  // namespace tessmar
