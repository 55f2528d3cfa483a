#pragma once

#include <functional>

#include "base/FileDialogs.h"
#include "base/Messages.h"

namespace tessmar {

/// The open and save dialogs on the screen, the same on every desktop.
class QtFileDialogs final : public FileDialogs {
 public:
  /// @param messages  asks before overwriting and says why a name cannot be taken.
  /// @param ending    true once the program is ending; a dialog is cancelled at once then.
  QtFileDialogs(Messages& messages, std::function<bool()> ending);

  std::optional<QString> AskOpen(const FileDialogRequest& request) override;
  std::optional<QString> AskSave(const FileDialogRequest& request) override;

 private:
  enum class Purpose { Open, Save };
  std::optional<QString> Ask(const FileDialogRequest& request, Purpose purpose);

  Messages& messages_;
  std::function<bool()> ending_;
};

}  // namespace tessmar
