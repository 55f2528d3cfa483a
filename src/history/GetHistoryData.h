#pragma once

#include <QString>
#include <cstdint>
#include <functional>

#include "base/MainScreen.h"
#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "history/HistoryBuffer.h"
#include "link/LinkState.h"
#include "link/cmd.h"

namespace tessmar {

/// States of the upload dialog, as its UploadState spells them.
namespace UploadStates {
inline constexpr QLatin1StringView kStarting{"Starting"};
inline constexpr QLatin1StringView kRunning{"Running"};
inline constexpr QLatin1StringView kCancel{"Cancel"};
inline constexpr QLatin1StringView kOkay{"Okay"};
}  // namespace UploadStates

/// The two screens of the action. Each is shown modally and is gone when its function returns.
struct HistoryScreens {
  /// Runs the upload dialog. @return its UploadState at the end; "Running" after an error.
  std::function<QString(std::int32_t totalRecords)> ShowUpload;
  std::function<void()> ShowViewer;
  /// Tells what was not kept, once the upload has said all it has to say; may be missing.
  std::function<void()> ReportKept = {};
};

/// The Get History action: reads the record count, uploads, shows the records in the viewer, and
/// reads the logger's status and clock again. Does nothing unless MayStartOperation; holds
/// LinkState::Busy throughout.
void GetHistoryData(LinkState& link, LoggerCommands& commands, HistoryBuffer& buffer,
                    Messages& messages, MainScreen& screen, const MessageLoop& loop,
                    const HistoryScreens& screens);

}  // namespace tessmar
