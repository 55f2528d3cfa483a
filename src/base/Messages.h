#pragma once

#include <QString>

namespace tessmar {

/// Buttons, icon and default button of a message in one number, as MsgBox takes it.
enum MsgBoxStyle : int {
  kOkOnly = 0,
  kOkCancel = 1,
  kAbortRetryIgnore = 2,
  kYesNoCancel = 3,
  kYesNo = 4,
  kRetryCancel = 5,

  kCritical = 16,
  kQuestion = 32,
  kExclamation = 48,
  kInformation = 64,

  kDefaultButton2 = 256,
  kDefaultButton3 = 512,
  kDefaultButton4 = 768,
  kHelpButton = 16384,
  kForeground = 65536,
  kRightAligned = 524288,
};

/// What MsgBox gives back.
enum MsgBoxResult : int {
  kOk = 1,
  kCancel = 2,
  kAbort = 3,
  kRetry = 4,
  kIgnore = 5,
  kYes = 6,
  kNo = 7,
};

/// The one way in which the program asks or reports.
class Messages {
 public:
  virtual ~Messages() = default;

  /// Shows a message and waits for its answer.
  /// @param buttons  a sum of MsgBoxStyle values.
  /// @return a MsgBoxResult: the pressed button's; of one that the end of the program closed, the
  ///   first button's. So whoever acts on an answer asks MessageLoop::Ending first.
  virtual int MsgBox(const QString& prompt, int buttons, const QString& title) = 0;
};

}  // namespace tessmar
