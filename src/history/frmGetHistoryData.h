#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <cstdint>

#include "base/Messages.h"
#include "history/BlockSink.h"
#include "history/HistoryBuffer.h"
#include "history/HistoryUpload.h"
#include "link/Comm.h"
#include "link/LinkState.h"
#include "link/cmd.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace tessmar {

/// The upload dialog. Shown with exec(); the upload begins by itself when the dialog is on the
/// screen. The frame's close button and Escape do what cmdCancel does, or cmdOkay once that one is
/// enabled.
class frmGetHistoryData : public QDialog {
 public:
  /// @param sink  takes the blocks as they come.
  /// @param totalRecords  as the status reply gave it.
  frmGetHistoryData(HistoryBuffer& buffer, LoggerCommands& commands, Comm& comm, LinkState& link,
                    Messages& messages, BlockSink& sink, std::int32_t totalRecords,
                    QWidget* parent = nullptr);

  /// "Starting", "Running", "Cancel" or "Okay"; an upload that failed leaves "Running".
  const QString& UploadState() const { return uploadState_; }

  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void BuildLayout();
  void RunUpload();
  UploadEnd Pull();
  void Finish(UploadEnd end);
  void ShowProgress(const HistoryUpload& upload);
  void ShowWait(const HistoryUpload& upload, bool waits);
  void ShowRetries(const HistoryUpload& upload, const QString& note = {});
  void ShowCount(std::int32_t count);
  bool IsRunning() const;
  void cmdOkay_Click();
  void cmdCancel_Click();

  HistoryBuffer& buffer_;
  LoggerCommands& commands_;
  Comm& comm_;
  LinkState& link_;
  Messages& messages_;
  BlockSink& sink_;

  QString uploadState_;
  std::int32_t totalRecords_;
  QString recordsPrefix_;
  QString retriesPrefix_;
  bool pulling_ = false;
  std::int32_t shownFailures_ = 0;
  int shownTimesBegunAnew_ = 0;
  QElapsedTimer sinceShown_;

  QLabel* lblGetHistoryData_;
  QLabel* lblRetries_;
  QProgressBar* progressBar1_;
  QPushButton* cmdOkay_;
  QPushButton* cmdCancel_;
};

}  // namespace tessmar
