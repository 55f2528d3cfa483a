#pragma once

#include <QString>
#include <QStringList>

#include "base/Clock.h"

namespace tessmar {

/// What the program did, for whoever has to find out later why something went wrong: a text file of
/// lines with a UTC time. Phone numbers and passwords are never written.
///
/// A line that would make the file larger than 1 MB begins a new one; the file before it stays as
/// "tessmar.log.1". A log that cannot be written is silent: nothing fails for it.
class SupportLog {
 public:
  /// @param path  of the file; empty writes nothing.
  SupportLog(QString path, const Clock& clock);

  /// Adds a line; control characters in it become blanks.
  void Write(const QString& text) const;

  /// The last lines of the file, the newest last; fewer where it has fewer.
  QStringList Last(int lines) const;

  const QString& Path() const { return path_; }

  /// $XDG_STATE_HOME/Tessmar/tessmar.log, in the user's folder where the variable says nothing.
  static QString DefaultPath();

  static constexpr qint64 kLargest = 1'000'000;

 private:
  QString path_;
  const Clock& clock_;
};

}  // namespace tessmar
