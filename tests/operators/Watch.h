#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace tessmar::test {

/// What of the windows an operator may see at any moment. The user interface's thread only.
class Watch {
 public:
  /// What stands on the screen and does not belong there, in words; empty when all is well.
  static QString Stranger();

  /// What holds the program beside its main window: windows, popups, message loops, the wait
  /// cursor; empty when there is none.
  static QString Holds();

  /// Counts what is on the screen.
  void Count();
  /// How often each window was seen, by its name.
  const QMap<QString, int>& Seen() const { return seen_; }

  /// All windows that the program has.
  static QStringList AllWindows();

 private:
  QMap<QString, int> seen_;
};

/// What this process holds of the system.
struct Holdings {
  QStringList Threads = {};      ///< Their names.
  QStringList Descriptors = {};  ///< What each leads to.
};
Holdings HoldingsOfProcess();

}  // namespace tessmar::test
