#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "archive/ArchiveModels.h"
#include "archive/CalibrationsModel.h"
#include "base/FileDialogs.h"
#include "base/Messages.h"

class QPushButton;
class QTableView;

namespace tessmar {

/// What the page works with. All of it must outlive the page.
struct CalibrationsParts {
  const SystemLocale& Locale;
  FileDialogs& Dialogs;
  Messages& Message;
  QString AppPath;  ///< The folder that the save dialog begins in.
  /// Told the path of a file that was written.
  std::function<void(const QString& path)> Saved;
};

/// The calibrations of the logbook's loggers over time, and what was found to have drifted between
/// them.
class CalibrationsPage final : public QWidget {
 public:
  explicit CalibrationsPage(const CalibrationsParts& parts, QWidget* parent = nullptr);

  /// Shows the calibrations among these events.
  void Show(const std::vector<EventRow>& events, const LoggerNames& names);
  /// What the rows have to hold; see ArchiveFilter.
  void SetFilter(const QString& text, QDate since, QDate until);

  QTableView* Table() const { return tblCalibrations_; }
  QPushButton* ExportButton() const { return cmdCalibrationsCsv_; }

 private:
  void UpdateButton();
  void Export();
  std::vector<CalibrationRow> ShownRows() const;

  CalibrationsParts parts_;
  CalibrationsModel model_;
  ArchiveFilter filter_;
  QTableView* tblCalibrations_;
  QPushButton* cmdCalibrationsCsv_;
};

}  // namespace tessmar
