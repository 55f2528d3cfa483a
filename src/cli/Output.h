#pragma once

#include <QIODevice>
#include <QString>

#include "cli/CommandOptions.h"

namespace tessmar {

/// How a call of the command ends.
enum CommandStatus : int {
  kCommandDone = 0,
  kCommandFailed = 1,
  kCommandWrongUsage = 2,
  kCommandBrokenOff = 3,  ///< With a part kept.
};

/// What ends a command: its status, and one line for the operator that says what, why, and what to
/// do. Thrown by the commands, shown by RunCommand.
class CommandFailure {
 public:
  explicit CommandFailure(const QString& text, CommandStatus status = kCommandFailed)
      : Text(text), Status(status) {}
  QString Text;
  CommandStatus Status;
};

/// Where a command writes: data to standard output, words to standard error.
class Output {
 public:
  /// @param isTerminal  true when a person watches standard error: progress goes only there.
  Output(QIODevice& out, QIODevice& words, bool isTerminal)
      : out_(out), words_(words), isTerminal_(isTerminal) {}

  void SetQuiet(bool quiet) { quiet_ = quiet; }

  /// One line of data. Throws CommandFailure when nobody takes it.
  void Data(const QString& line);
  /// Text as it stands, with its line ends.
  void Raw(const QString& text);
  /// A remark that --quiet leaves out.
  void Remark(const QString& text);
  /// A warning or a failure, which nothing leaves out.
  void Complaint(const QString& text);
  /// What goes on, on a line that is written anew each time. Only to a terminal.
  void Progress(const QString& text);
  bool ShowsProgress() const { return isTerminal_ && !quiet_; }

  QIODevice& Device() { return out_; }

 private:
  void EndProgress();
  void Words(const QString& text);

  QIODevice& out_;
  QIODevice& words_;
  bool isTerminal_;
  bool quiet_ = false;
  bool inProgress_ = false;
};

}  // namespace tessmar
