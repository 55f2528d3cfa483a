#pragma once

#include <map>
#include <optional>
#include <vector>

#include "base/SystemLocale.h"
#include "plot/ColumnFill.h"
#include "plot/PlotColours.h"
#include "plot/PlotData.h"
#include "plot/PlottingLibrary.h"
#include "plot/Statistics.h"

namespace tessmar {

class SeriesGraph;
class UprightLines;

/// The picture of a plot: a strip for each unit among the channels shown, one above the other, over
/// one time axis. It only shows; PlotCanvas is worked with. Data and locale must outlive it.
class PlotStrips : public QCustomPlot {
  Q_OBJECT

 public:
  PlotStrips(const PlotData& plotData, const SystemLocale& locale, QWidget* parent = nullptr);
  ~PlotStrips() override;

  /// Which channels are shown; all at first.
  void SetShown(const std::vector<bool>& shown);
  const std::vector<bool>& Shown() const { return shown_; }
  std::vector<int> ShownChannels() const;

  void SetTheme(const PlotTheme& theme);
  /// The colour that a channel has in the present theme.
  QColor ColourOf(int channel) const;
  /// A line above the strips; none when it is empty.
  void SetHeadLine(const QString& text);

  /// Shows a stretch of time. The vertical scales fit what is in it, unless they are fixed.
  void SetView(TimeRange view);
  TimeRange View() const { return view_; }
  void SetFixedScale(bool fixed);
  bool HasFixedScale() const { return fixed_; }
  /// A strip's scale: its unit's least and greatest place.
  QCPRange ScaleOf(const QString& unit) const;
  void SetScaleOf(const QString& unit, const QCPRange& scale);
  QStringList Units() const;

  /// The data have other records or other times than before.
  void DataChanged();
  /// The data have more records than before.
  void DataGrew();
  /// The data have other channels than before.
  void ChannelsChanged();

 protected:
  const PlotData& Data() const { return data_; }
  const SystemLocale& Locale() const { return locale_; }
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  UprightLines& Cursor() { return *cursor_; }
  /// The unit of the strip at a height, also between strips; empty when there is none.
  QString UnitAt(double y) const;
  QRect StripsArea() const;

 private:
  struct Strip {
    QString Unit;
    QCPAxisRect* Rect = nullptr;
    QCPLegend* Legend = nullptr;
    std::vector<SeriesGraph*> Graphs;
  };

  void BuildStrips();
  void ClearStrips();
  void AddStrip(const QString& unit, int row);
  void AddGraph(Strip& strip, int channel);
  void AddHeadLine();
  void DressAll();
  void DressStrip(const Strip& strip, bool last);
  void FitScales();
  std::optional<QCPRange> FittedScale(const Strip& strip) const;
  Extent ExtentInView(int channel) const;
  void NameGraphs();
  void PlaceMarks();
  std::vector<double> TimesOf(std::span<const std::size_t> records) const;
  const std::vector<ColumnCell>& Cells(const ColumnView& view);

  const PlotData& data_;
  const SystemLocale& locale_;
  const PlotTheme* theme_;
  std::vector<bool> shown_;
  std::vector<Strip> strips_;
  QString headLine_;
  TimeRange view_;
  bool fixed_ = false;
  std::map<QString, QCPRange> fixedScales_;
  QSharedPointer<QCPAxisTicker> timeTicker_;
  QCPMarginGroup* margins_;
  UprightLines* marks_ = nullptr;
  UprightLines* stepsBack_ = nullptr;
  UprightLines* disputes_ = nullptr;
  UprightLines* cursor_ = nullptr;
  ColumnView cellsView_;
  std::vector<ColumnCell> cells_;
};

}  // namespace tessmar
