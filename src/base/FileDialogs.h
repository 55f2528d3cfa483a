#pragma once

#include <QString>
#include <optional>

namespace tessmar {

/// What a file dialog is asked to show.
struct FileDialogRequest {
  QString Title;
  QString InitialName;       ///< File name or pattern, with or without a folder in front.
  QString Filter;            ///< "Text (*.ext)|*.ext".
  QString DefaultExtension;  ///< With its point, such as ".csv"; added to a name without extension.
  bool ConfirmOverwrite =
      false;  ///< For saving: the dialog asks before an existing file is chosen.
};

/// The platform's open and save dialogs.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;

  /// Asks for an existing file. @return its full path, or nothing when the operator cancels.
  virtual std::optional<QString> AskOpen(const FileDialogRequest& request) = 0;
  /// Asks for a file in an existing folder. @return its full path, or nothing on cancel.
  virtual std::optional<QString> AskSave(const FileDialogRequest& request) = 0;
};

}  // namespace tessmar
