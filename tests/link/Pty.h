#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <QString>
#include <stdexcept>
#include <utility>

#include "support/FakeSerialPort.h"

namespace tessmar::test {

/// The far end of a pseudo-terminal.
class Pty {
 public:
  Pty() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) {
      throw std::runtime_error("no pseudo-terminal");
    }
    device_ = QString::fromLocal8Bit(ptsname(master_));
  }
  ~Pty() { HangUp(); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  /// The device that a port opens.
  const QString& Device() const { return device_; }

  void HangUp() {
    if (master_ >= 0) close(std::exchange(master_, -1));
  }

  void Send(const Bytes& bytes) {
    if (write(master_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
      throw std::runtime_error("the pseudo-terminal took too little");
    }
  }

  /// What is there within a time.
  Bytes Receive(int timeoutMs = 0) {
    pollfd wanted{master_, POLLIN, 0};
    if (poll(&wanted, 1, timeoutMs) <= 0 || (wanted.revents & POLLIN) == 0) return {};
    Bytes bytes(4096);
    const ssize_t count = read(master_, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
  }

 private:
  int master_;
  QString device_;
};

}  // namespace tessmar::test
