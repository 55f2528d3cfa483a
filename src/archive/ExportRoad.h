#pragma once

#include <QString>
#include <optional>

#include "archive/ExportWork.h"
#include "base/Clock.h"
#include "base/FileDialogs.h"
#include "base/Messages.h"
#include "base/SystemLocale.h"

class QWidget;

namespace tessmar {

/// What exporting from a window works with. All of it outlives the export.
struct ExportParts {
  Messages& Message;
  FileDialogs& Dialogs;
  const Clock& Time;
  const SystemLocale& Locale;
  QString AppPath;  ///< The folder that the save dialog begins in, without a trailing separator.
  QString Program;  ///< Name and version, for the file.
  bool SingleColumn = false;  ///< Of the viewer's CSV: date and time in one column.
  bool ShowRelays = false;    ///< Of the viewer's CSV: with the relay columns.
};

/// Asks for the file and its kind, exports, and tells what failed over the window.
/// @return what is to be said in the window's status line; nothing when there is nothing to say.
std::optional<QString> ExportFromWindow(const ExportParts& parts, const ExportWish& wish,
                                        QWidget& window);

}  // namespace tessmar
