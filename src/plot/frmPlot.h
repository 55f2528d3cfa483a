#pragma once

#include <QDialog>
#include <QString>
#include <functional>

#include "base/Clock.h"
#include "base/FileDialogs.h"
#include "base/Messages.h"
#include "base/SystemLocale.h"
#include "plot/PlotData.h"
#include "plot/PlotMemory.h"

class QCheckBox;
class QLabel;
class QLayout;
class QListWidget;
class QPushButton;
class QTableView;
class QTimer;
class QVBoxLayout;

namespace tessmar {

class PlotCanvas;
class StatisticsModel;

/// What the plot's window works with. All of it must outlive the window.
struct PlotParts {
  Messages& Message;
  FileDialogs& Dialogs;
  const Clock& Time;
  const SystemLocale& Locale;
  PlotMemory Memory;
  QString Program;               ///< Name and version, for the head line of pictures.
  QString AppPath;               ///< The folder that the save dialogs begin in.
  bool CsvSingleColumn = false;  ///< Date and time in one column of a CSV file.
  /// Shows a record in the table that the plot was made from; null when there is none.
  std::function<void(std::size_t record)> ShowRow = {};
};

/// The plot's window: the channels to choose from, the plot, the values under its cursor line and
/// the statistics of what is in view, with everything that can be saved of them.
class frmPlot : public QDialog {
  Q_OBJECT

 public:
  /// @param plotData  must outlive the window.
  frmPlot(PlotData& plotData, const PlotParts& parts, QWidget* parent = nullptr);
  ~frmPlot() override;

 protected:
  PlotCanvas& Canvas() { return *pltPlot_; }
  PlotData& Data() { return data_; }
  const PlotParts& Parts() const { return parts_; }
  /// A place for what a window of its own kind has to say, under the plot.
  QVBoxLayout& Foot() { return *foot_; }
  /// The data have grown: what is said of them is to be said anew.
  void Refresh();
  /// The data have other channels than before.
  void FillChannels();
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void MakeControls();
  void MakeLayout();
  QLayout* MakeButtons();
  void Connect();
  void ApplyTheme();
  void PaintChannelIcons();
  void ChannelTicked();
  void ShowCursorText();
  void ShowNotes();
  void ShowStatistics();
  void ShowChannelNamesWhole(int column);
  void Describe();
  void cmdRow_Click();
  void cmdSave_Click();
  void cmdPicture_Click();
  void cmdPrint_Click();
  void cmdCopy_Click();
  QString Head() const;
  void SaveBytes(const QString& path, const QByteArray& bytes, const QString& title);

  PlotData& data_;
  PlotParts parts_;
  bool filling_ = false;

  PlotCanvas* pltPlot_;
  QListWidget* lstChannels_;
  QLabel* lblCursor_;
  QLabel* lblMarks_;
  QTableView* tblStatistics_;
  StatisticsModel* statistics_;
  QCheckBox* chkByDay_;
  QCheckBox* chkFixed_;
  QCheckBox* chkCorrected_;
  QPushButton* cmdOK_;
  QPushButton* cmdBack_;
  QPushButton* cmdForward_;
  QPushButton* cmdFit_;
  QPushButton* cmdRow_;
  QPushButton* cmdSave_;
  QPushButton* cmdPicture_;
  QPushButton* cmdPrint_;
  QPushButton* cmdCopy_;
  QVBoxLayout* foot_ = nullptr;
  QTimer* refresh_;
};

}  // namespace tessmar
