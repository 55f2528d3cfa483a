#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <optional>

#include "base/Clock.h"
#include "base/FileDialogs.h"
#include "base/FileTrouble.h"
#include "base/MainScreen.h"
#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "base/SystemLocale.h"
#include "history/HistoryBuffer.h"
#include "history/HistoryTable.h"
#include "history/HistoryTableModel.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace tessmar {

class HistoryView;

/// What the viewer asks a plot of.
struct PlotRequest {
  const HistoryTable& Table;
  QString LoggerName;
  QWidget* Viewer = nullptr;
  /// Goes to the row of a record, from 0, in the order of HistoryTable::Records.
  std::function<void(std::int32_t record)> ShowRecord;
};

/// What the viewer works with. All of it must outlive the viewer.
struct HistoryViewerParts {
  const HistoryBuffer& Buffer;
  const LoggerSettings& Settings;
  const LinkState& Link;
  MainScreen& Screen;  ///< Gives the caption of lblLoggerName, shows the wait cursor.
  Messages& Message;
  FileDialogs& Dialogs;
  const Clock& Time;
  const SystemLocale& Locale;
  QString& CsvDateTimeSingleColumn;  ///< Empty for date and time in separate columns.
  bool RelayDisplayEnabled = false;
  QString AppPath;  ///< The folder that the save dialog begins in, without a trailing separator.
  /// Tells that the program is ending: an answer packs nothing then. None never ends.
  const MessageLoop* Loop = nullptr;
  /// The logger that the records are of; without it the one that the screen names.
  std::optional<QString> LoggerName = {};
  /// Shows the table's records as a plot, modally over the viewer; null when there is no plot.
  std::function<void(const PlotRequest& request)> ShowPlot = {};
};

/// The historical data viewer. The table is built when the form is made, and keeps the settings as
/// they were then.
class frmHistory : public QDialog {
 public:
  explicit frmHistory(const HistoryViewerParts& parts, QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildControls();
  void BuildLayout();
  void FillList(bool pack);
  void ShowTable(HistoryTable table);
  void SizeToColumns();
  void ShowBar(int minimum, int maximum);
  /// Gives why the file was not written; nothing when it was.
  std::optional<FileTrouble> SaveTable(const QString& path);
  void cmdOK_Click();
  void cmdOptions_Click();
  void cmdPack_Click();
  void cmdSave_Click();
  void cmdPlot_Click();
  void ShowRecord(std::int32_t record);

  HistoryViewerParts parts_;
  HistoryTableModel model_;

  HistoryView* lvwHistory_;
  QProgressBar* progressBar_;
  QLabel* lblNumRecords_;
  QLabel* lblLoggerName_;
  QPushButton* cmdOK_;
  QPushButton* cmdOptions_;
  QPushButton* cmdPack_;
  QPushButton* cmdSave_;
  QPushButton* cmdPlot_;
};

}  // namespace tessmar
