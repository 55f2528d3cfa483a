#include "setup/SetupProgramming.h"

#include <utility>

#include "base/Fault.h"
#include "base/TextTable.h"

namespace tessmar {

bool ImagesEqual(const ConfigImage& a, const ConfigImage& b) {
  return a == b;
}

SetupProgramming::SetupProgramming(LoggerCommands& commands, Programming& programming,
                                   LinkState& link, const LoggerSettings& settings,
                                   const MessageLoop& loop, Messages& messages,
                                   SetupScreenPort screen)
    : commands_(commands),
      programming_(programming),
      link_(link),
      settings_(settings),
      loop_(loop),
      messages_(messages),
      screen_(std::move(screen)) {}

void SetupProgramming::TakeBaselines() {
  fileBaseline_ = Packed();
  loggerBaseline_ = fileBaseline_;
  baselineIsLoggers_ = programming_.AsRead().Settings.has_value();
}

void SetupProgramming::TakeFileBaseline() {
  fileBaseline_ = Packed();
}

void SetupProgramming::ProgramSettings() {
  if (!MayStartOperation(link_)) return;
  link_.Busy = true;
  screen_.SetCancelEnabled(false);
  const auto faulted = [this] {
    messages_.MsgBox(GetText(TextId::OperationError), kOkOnly | kCritical,
                     GetText(TextId::ProgramSettings));
    link_.Busy = false;
  };
  bool programmed = false;
  if (link_.TrapErrors) {
    try {
      programmed = ConfirmAndProgram();
    } catch (const Fault&) {
      // The screen stays as the fault left it, the button back to the main window disabled.
      faulted();
      return;
    }
  } else {
    programmed = ConfirmAndProgram();
  }
  screen_.SetCancelEnabled(true);
  if (programmed) screen_.FocusCancel();
  link_.Busy = false;
}

bool SetupProgramming::ConfirmAndProgram() {
  const QString title = GetText(TextId::ProgramSettings);
  const int answer = messages_.MsgBox(GetText(TextId::AskProgram), kYesNo | kInformation, title);
  if (answer != kYes || loop_.Ending()) return false;
  // The check asks, too.
  if (!screen_.CheckDoSetup() || loop_.Ending()) return false;
  screen_.SetWaitCursor(true);
  screen_.ControlsToSettings();
  if (!WriteAndCommit()) {
    screen_.SetWaitCursor(false);
    messages_.MsgBox(GetText(TextId::ProgrammingError), kOkOnly | kCritical, title);
    return false;
  }
  TakeLoggerBaseline();
  screen_.SetWaitCursor(false);
  return true;
}

void SetupProgramming::TakeLoggerBaseline() {
  ConfigImage before = std::exchange(loggerBaseline_, Packed());
  if (!std::exchange(baselineIsLoggers_, true)) before.clear();
  if (screen_.Programmed) screen_.Programmed(before, loggerBaseline_);
}

bool SetupProgramming::WriteAndCommit() {
  // As one: the image that stands in the logger counts only once it is committed.
  const ProgrammingScope whole(programming_);
  const bool wasLoggers = std::exchange(baselineIsLoggers_, false);
  if (!programming_.ProgramConfiguration() || !commands_.CommitConfiguration()) return false;
  baselineIsLoggers_ = wasLoggers;
  return true;
}

bool SetupProgramming::OfferSaveIfChanged() {
  if (!DiffersFrom(fileBaseline_)) return false;
  const int answer = messages_.MsgBox(GetText(TextId::AskSaveChanged), kYesNoCancel | kInformation,
                                      GetText(TextId::DataHasChanged));
  // A program that is ending answers by itself; nothing may be started on its word.
  if (loop_.Ending()) return true;
  if (answer == kYes) return !screen_.SaveSetupFile();
  return answer != kNo;
}

bool SetupProgramming::OfferProgramIfChanged() {
  if (!DiffersFrom(loggerBaseline_)) return false;
  const int answer = messages_.MsgBox(GetText(TextId::AskProgramChanged),
                                      kYesNoCancel | kInformation, GetText(TextId::DataHasChanged));
  if (loop_.Ending()) return true;
  if (answer == kNo) return false;
  if (answer == kYes) return !ProgramOnClosing();
  // Cancelled: the check runs for the sake of its warnings alone.
  Trapped(link_, [this] { return screen_.CheckDoSetup(); });
  return true;
}

bool SetupProgramming::ProgramOnClosing() {
  // Nothing is shown after a warning answered with Cancel; every other way out but success reports.
  bool refused = false;
  const bool programmed = Trapped(link_, [&] {
    if (!screen_.CheckDoSetup() || loop_.Ending()) {
      refused = true;
      return false;
    }
    if (!MayStartOperation(link_)) return false;
    const BusyScope busy(link_);
    screen_.SetWaitCursor(true);
    if (!WriteAndCommit()) return false;
    TakeLoggerBaseline();
    return true;
  });
  screen_.SetWaitCursor(false);
  if (!programmed && !refused) {
    messages_.MsgBox(GetText(TextId::ClosingProgramError), kOkOnly | kCritical,
                     GetText(TextId::ProgramSettings));
  }
  return programmed;
}

bool SetupProgramming::MayClose() {
  if (link_.Busy) return false;
  if (OfferSaveIfChanged()) return false;
  if (OfferProgramIfChanged()) return false;
  link_.Busy = true;
  return true;
}

bool SetupProgramming::DiffersFrom(const ConfigImage& baseline) {
  screen_.ControlsToSettings();
  currentImage_ = Packed();
  return !ImagesEqual(currentImage_, baseline);
}

ConfigImage SetupProgramming::Packed() const {
  ConfigImage image;
  // A value that does not fit leaves zeros behind it; the comparisons work on what there is.
  PackConfigImage(link_, settings_, image);
  return image;
}

}  // namespace tessmar
