#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

#include "archive/ArchiveFault.h"
#include "archive/ArchiveModels.h"
#include "archive/ArchivedUpload.h"
#include "archive/ExportWork.h"
#include "archive/Store.h"
#include "base/Clock.h"
#include "base/FileDialogs.h"
#include "base/MainScreen.h"
#include "base/Messages.h"
#include "base/SystemLocale.h"
#include "measure/Series.h"

class QCheckBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QSplitter;
class QTableView;
class QTreeView;

namespace tessmar {

class CalibrationsPage;
class LogbookTabs;

/// What the archive's window works with. All of it must outlive the window.
struct ArchiveParts {
  QString Path;  ///< Of the archive's file, which need not be there.
  MainScreen& Screen;
  Messages& Message;
  FileDialogs& Dialogs;
  const Clock& Time;
  const SystemLocale& Locale;
  QString& CsvDateTimeSingleColumn;  ///< Empty for date and time in separate columns.
  bool RelayDisplayEnabled = false;
  QString AppPath;  ///< The folder that the save dialog begins in, without a trailing separator.
  QString Program;  ///< Name and version, for exported files.
  std::function<bool()> Ending;  ///< True once the program is ending: no answer counts then.
  /// Asks for a text. @return nothing when the operator cancels.
  std::function<std::optional<QString>(const QString& title, const QString& prompt,
                                       const QString& present)>
      AskText;
  /// Asks for one of some texts. @return its place, or nothing when the operator cancels.
  std::function<std::optional<int>(const QString& title, const QString& prompt,
                                   const QStringList& choices)>
      AskChoice;
  /// Shows an upload in the viewer, modally over the window.
  std::function<void(const ArchivedUpload& upload, QWidget* parent)> ShowViewer;
  /// Shows an upload, or the series of a logger, as a plot in the same way; null when there is
  /// none.
  std::function<void(SeriesSet set, QWidget* parent)> ShowPlot = {};
};

/// The archive's window: the loggers, their uploads and their logbook, and what can be done with
/// them.
class frmArchive : public QDialog {
 public:
  explicit frmArchive(const ArchiveParts& parts, QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildControls();
  void BuildTables();
  void BuildButtons();
  void BuildLayout();
  QWidget* Sides();
  void OrderTabs();
  QWidget* UploadsWithCaption();
  LogbookTabs* LogbookPages();
  void Connect();
  void Load();
  void ReadAll();
  void ShowChosen();
  void UpdateButtons();
  void ApplyFilter();
  void ShowStatus(const QString& what = {});
  bool InBin() const;
  std::optional<qint64> ChosenLogger() const;
  QString NameOfLogger(qint64 logger) const;
  std::vector<qint64> ChosenUploads() const;
  void Choose(std::optional<qint64> logger);
  /// Changes the archive and shows it anew; a fault is told. @return false then.
  bool Change(const std::function<void(Store& store)>& change);
  void TellFault(const ArchiveFault& fault, const QString& what);
  void TellChanged();
  std::optional<ArchivedUpload> Read();
  std::optional<SeriesSet> ReadSeries();
  /// The logger whose series is chosen: that of the list while none of its uploads is chosen.
  std::optional<qint64> ChosenSeries() const;
  /// What is chosen, in words; empty for nothing that could be plotted.
  QString ChosenText() const;

  /// What Export would save; nothing while that is not clear.
  std::optional<ExportWish> WishedExport() const;
  void ShowWishedExport();

  /// Lets go of what is chosen of a logger's uploads.
  void ChooseSeries();
  void cmdOpen_Click();
  void cmdPlot_Click();
  void cmdExport_Click();
  void cmdRename_Click();
  void cmdMerge_Click();
  void cmdSplit_Click();
  void cmdDelete_Click();
  void cmdRestore_Click();
  void cmdEmpty_Click();

  ArchiveParts parts_;
  Store store_;
  std::vector<UploadRow> uploads_;
  std::vector<UploadRow> binned_;
  std::vector<EventRow> events_;
  LoggerNames names_;

  LoggersModel loggersModel_;
  UploadsModel uploadsModel_;
  LogbookModel logbookModel_;
  ArchiveFilter uploadsFilter_;
  ArchiveFilter logbookFilter_;

  QTreeView* treeLoggers_;
  QTableView* tblUploads_;
  QTableView* tblLogbook_;
  CalibrationsPage* calibrations_;
  QLineEdit* txtFilter_;
  QCheckBox* chkSince_;
  QDateEdit* dtpSince_;
  QCheckBox* chkUntil_;
  QDateEdit* dtpUntil_;
  QLabel* lblStatus_;
  QPushButton* cmdOpen_;
  QPushButton* cmdPlot_;
  QPushButton* cmdExport_;
  QPushButton* cmdRename_;
  QPushButton* cmdMerge_;
  QPushButton* cmdSplit_;
  QPushButton* cmdDelete_;
  QPushButton* cmdRestore_;
  QPushButton* cmdEmpty_;
  QPushButton* cmdClose_;
};

}  // namespace tessmar
