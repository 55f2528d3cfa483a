#pragma once

#include <functional>

#include "app/HelpTarget.h"

namespace tessmar {

/// Shows a help target in the viewer, or its page where there is no viewer or it does not start.
void OpenHelpOnDesktop(const HelpTarget& target);

/// The help entries of the menus.
class Help {
 public:
  using Opener = std::function<void(const HelpTarget& target)>;

  /// @param appPath  the program's folder, without a trailing separator.
  explicit Help(QString appPath, Opener open = OpenHelpOnDesktop);

  /// Opens a help file at its contents. Nothing happens for an empty path or a file that has gone.
  void Open(const QString& helpFile) const;

 private:
  QString appPath_;
  Opener open_;
};

}  // namespace tessmar
