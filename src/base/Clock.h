#pragma once

#include <QDateTime>

namespace tessmar {

/// The system's present local time.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual QDateTime Now() const = 0;
};

/// The clock of the machine.
class SystemClock final : public Clock {
 public:
  QDateTime Now() const override { return QDateTime::currentDateTime(); }
};

}  // namespace tessmar
