#pragma once

#include <QString>
#include <optional>

namespace tessmar {

/// What a file dialog is asked to show.
struct FileDialogRequest {
  QString Title;
  QString InitialName;  ///< File name or pattern, with or without a folder in front.
  QString Filter;       ///< "Text (*.ext)|*.ext".
  /// With its point, such as ".csv"; added to a name without extension, unless the chosen part of
  /// several in the filter has one of its own.
  QString DefaultExtension;
  bool ConfirmOverwrite =
      false;            ///< For saving: the dialog asks before an existing file is chosen.
  int* Part = nullptr;  ///< Takes which part of the filter was chosen, from 0.
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
