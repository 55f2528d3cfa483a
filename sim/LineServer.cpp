#include "LineServer.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

namespace tessmar::sim {
namespace {

/// A descriptor that is readable once a signal has come that the program listens to.
int HoldSignals() {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGUSR1}) sigaddset(&held, signal);
  sigprocmask(SIG_BLOCK, &held, nullptr);
  const int descriptor = signalfd(-1, &held, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor < 0) throw SystemError("signalfd", errno);
  return descriptor;
}

timespec ToTimespec(Micros time) {
  time = std::max(time, Micros{0});
  return {time.count() / 1'000'000, time.count() % 1'000'000 * 1000};
}

}  // namespace

LineServer::LineServer(PseudoTerminal& terminal, LineDevice& device)
    : terminal_(terminal),
      device_(device),
      signals_(HoldSignals()),
      start_(std::chrono::steady_clock::now()) {}

Micros LineServer::Now() const {
  return std::chrono::duration_cast<Micros>(std::chrono::steady_clock::now() - start_);
}

void LineServer::Run() {
  while (true) {
    const short wanted = outgoing_.empty() ? POLLIN : POLLIN | POLLOUT;
    std::array<pollfd, 3> waits = {{{terminal_.NearEnd(), wanted, 0},
                                    {terminal_.Closings(), POLLIN, 0},
                                    {signals_.Get(), POLLIN, 0}}};
    timespec timeout{};
    if (!later_.empty()) timeout = ToTimespec(later_.begin()->first - Now());
    if (ppoll(waits.data(), waits.size(), later_.empty() ? nullptr : &timeout, nullptr) < 0) {
      if (errno == EINTR) continue;
      throw SystemError("poll", errno);
    }
    if (waits[2].revents != 0 && TakeSignal() != SIGUSR1) return;
    // Closings first: what is read after one comes from the next program.
    if (waits[1].revents != 0) OnClosed();
    if ((waits[0].revents & ~POLLOUT) != 0) ReadRequests();
    WriteDue();
  }
}

int LineServer::TakeSignal() {
  signalfd_siginfo info{};
  if (read(signals_.Get(), &info, sizeof info) != sizeof info) return SIGTERM;
  const int signal = static_cast<int>(info.ssi_signo);
  if (signal == SIGUSR1) device_.TimePassed();
  return signal;
}

void LineServer::OnClosed() {
  if (!terminal_.TakeClosings()) return;
  device_.LineDropped();
  later_.clear();
  outgoing_.clear();
  terminal_.DiscardUnread();
}

void LineServer::ReadRequests() {
  std::array<std::uint8_t, 4096> buffer{};
  const ssize_t count = read(terminal_.NearEnd(), buffer.data(), buffer.size());
  if (count < 0) {
    if (errno == EAGAIN || errno == EINTR) return;
    throw SystemError("pseudo-terminal", errno);
  }
  device_.Receive(std::span(buffer).first(static_cast<std::size_t>(count)), Now());
  for (Output& output : device_.TakeOutput()) later_.emplace(output.Due, std::move(output.Content));
}

void LineServer::WriteDue() {
  const Micros now = Now();
  while (!later_.empty() && later_.begin()->first <= now) {
    const Bytes& content = later_.begin()->second;
    outgoing_.insert(outgoing_.end(), content.begin(), content.end());
    later_.erase(later_.begin());
  }
  if (outgoing_.empty()) return;
  const ssize_t count = write(terminal_.NearEnd(), outgoing_.data(), outgoing_.size());
  if (count > 0) outgoing_.erase(outgoing_.begin(), outgoing_.begin() + count);
  if (count < 0 && errno != EAGAIN && errno != EINTR) throw SystemError("pseudo-terminal", errno);
}

}  // namespace tessmar::sim
