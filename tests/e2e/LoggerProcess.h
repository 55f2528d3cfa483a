#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace tessmar::test {

/// A simulated logger in a process of its own, on a pseudo-terminal. Made, used and ended in one
/// thread.
class LoggerProcess {
 public:
  /// Starts it and waits until it serves; throws std::runtime_error when it does not.
  LoggerProcess(const QString& program, const QString& link, const QStringList& options);
  ~LoggerProcess();

  /// Pulls the adapter out: the process dies and its end of the pseudo-terminal closes.
  void PullOut();

  /// Hangs: the line stays open, nothing is read and nothing answered; and goes on from there.
  void Hang();
  void GoOn();

 private:
  void Signal(int number);
  QProcess process_;
};

}  // namespace tessmar::test
