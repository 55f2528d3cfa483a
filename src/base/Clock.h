#pragma once

#include <QDateTime>
#include <chrono>

namespace tessmar {

/// The system's present local time.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual QDateTime Now() const = 0;
  /// Milliseconds from some moment on, for the time between two others. Setting the clock of the
  /// machine does not change it.
  virtual qint64 SteadyMs() const { return Now().toMSecsSinceEpoch(); }
};

/// The clock of the machine.
class SystemClock final : public Clock {
 public:
  QDateTime Now() const override { return QDateTime::currentDateTime(); }
  qint64 SteadyMs() const override {
    using std::chrono::duration_cast, std::chrono::milliseconds, std::chrono::steady_clock;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
  }
};

}  // namespace tessmar
