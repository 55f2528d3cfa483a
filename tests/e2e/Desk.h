#pragma once

#include <QElapsedTimer>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <ostream>

#include "app/Program.h"
#include "e2e/LoggerProcess.h"
#include "e2e/Robot.h"

/// How a failed test shows a text.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace tessmar::test {

/// What a label of the main window shows.
QString MainText(const QString& control);

/// For the robot: fails the test when the program works while it has nothing to do.
void ExpectNoSpin();

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
  /// For the robot: chooses the modem line in the dialog that opens by itself, and dials.
  void Dial();
  /// For the robot: waits for the session's first readings.
  void WaitForReading();
  /// For the robot: starts an upload and waits for its first records.
  void StartUpload();
  /// For the robot: uploads the history of a connected logger, up to the viewer.
  void OpenViewer();
  /// For the robot: opens the setup screen of a connected logger.
  void OpenSetup();
  /// For the robot: ends the session by the button.
  void Disconnect();
  /// For the robot: ends the session, starts a logger and connects to it.
  void PlugInAndConnect(const QStringList& loggerOptions);
  /// Starts another logger in the place of the present one.
  void StartLogger(const QStringList& loggerOptions);
  /// For the robot: pulls the adapter out and lets the program notice it.
  void PullOut();

  /// For the robot: closes the main window, as from its frame, and says how long the program took
  /// to end. The robot may do nothing in the windows after it.
  void CloseMainWindow();
  /// For the robot: ends the program as a signal does, and says how long it took to end.
  void EndBySignal();
  /// Makes a new program after the present one has ended, with the same store and logger.
  void StartProgramAgain();

  Program& TheProgram() { return *program_; }
  QString StorePath() const { return folder_.filePath(QStringLiteral("store.ini")); }
  QString StoredValue(const QString& key) const;
  QString Path(const QString& name) const { return folder_.filePath(name); }

  /// Milliseconds from the close request to the end of the message loop.
  qint64 MillisecondsToEnd() const { return millisecondsToEnd_; }
  bool EndedAtOnce() const { return endedAtOnce_; }

 private:
  void MakeProgram();

  const QStringList arguments_;
  const SystemLocale locale_;
  QTemporaryDir folder_;
  std::unique_ptr<LoggerProcess> logger_;
  std::unique_ptr<Program> program_;
  QElapsedTimer sinceClose_;
  qint64 millisecondsToEnd_ = -1;
  bool endedAtOnce_ = false;
};

}  // namespace tessmar::test
