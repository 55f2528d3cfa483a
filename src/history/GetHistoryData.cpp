#include "history/GetHistoryData.h"

#include "base/TextTable.h"

namespace tessmar {
namespace {

bool LeadsToViewer(const QString& uploadState) {
  return uploadState == UploadStates::kCancel || uploadState == UploadStates::kOkay;
}

}  // namespace

void GetHistoryData(LinkState& link, LoggerCommands& commands, HistoryBuffer& buffer,
                    Messages& messages, MainScreen& screen, const MessageLoop& loop,
                    const HistoryScreens& screens) {
  if (!MayStartOperation(link)) return;
  const BusyScope busy(link);
  buffer.Clear();

  const QString title = GetText(TextId::GetHistoryDataTitle);
  if (!commands.GetLoggerStatus()) {
    messages.MsgBox(GetText(TextId::UploadNotSuccessful), kCritical, title);
    return;
  }
  if (link.RecordCount == 0) {
    messages.MsgBox(GetText(TextId::NoHistoryInMemory), kInformation, title);
    return;
  }

  const QString uploadState = screens.ShowUpload(link.RecordCount);
  if (screens.ReportKept && !loop.Ending()) screens.ReportKept();
  if (LeadsToViewer(uploadState) && buffer.Count() > 0 && !loop.Ending()) {
    {
      const WaitCursorScope waitCursor(screen);
      commands.GetLoggerStatus();
    }
    screens.ShowViewer();
  }
  commands.GetLoggerStatus();
  link.LoggerTimeText = commands.GetLoggerTime();
}

}  // namespace tessmar
