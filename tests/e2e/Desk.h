#pragma once

#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <memory>

#include "app/Program.h"
#include "e2e/Robot.h"

namespace tessmar::test {

/// A simulated logger in a process of its own, on a pseudo-terminal.
class LoggerProcess {
 public:
  /// Starts it and waits until it serves; throws std::runtime_error when it does not.
  LoggerProcess(const QString& link, const QStringList& options);
  ~LoggerProcess();

  /// Pulls the adapter out: the process dies and its end of the pseudo-terminal closes.
  void PullOut();

 private:
  QProcess process_;
};

/// An operator's desk: a logger, the program with a store of its own, and a robot who works it.
class Desk {
 public:
  explicit Desk(const QStringList& loggerOptions = {}, const QStringList& arguments = {},
                const SystemLocale& locale = SystemLocale(QLocale(QStringLiteral("en_US"))));
  ~Desk();

  /// Starts the program, lets the robot work, and returns when the program has ended or the robot
  /// is done. What went wrong is the result, or nothing.
  QString Work(const std::function<void()>& work);

  /// For the robot: presses Connect in the dialog that opens by itself and waits for live readings.
  void Connect();
  void StartLogger();
  void PullOut() { logger_->PullOut(); }

  /// For the robot: closes the main window, as from its frame, and says how long the program took
  /// to end. The robot may do nothing in the windows after it.
  void CloseMainWindow();

  Program& TheProgram() { return *program_; }
  QString StorePath() const { return folder_.filePath(QStringLiteral("store.ini")); }
  QString StoredValue(const QString& key) const;
  QString Path(const QString& name) const { return folder_.filePath(name); }

  /// Milliseconds from the close request to the end of the message loop.
  qint64 MillisecondsToEnd() const { return millisecondsToEnd_; }
  bool EndedAtOnce() const { return endedAtOnce_; }

 private:
  QTemporaryDir folder_;
  QStringList loggerOptions_;
  std::unique_ptr<LoggerProcess> logger_;
  std::unique_ptr<Program> program_;
  QElapsedTimer sinceClose_;
  qint64 millisecondsToEnd_ = -1;
  bool endedAtOnce_ = false;
};

}  // namespace tessmar::test
