#include "plot/PlotStrips.h"

#include <algorithm>
#include <cmath>

#include "measure/Scaling.h"
#include "plot/AxisTickers.h"
#include "plot/MarkLines.h"
#include "plot/PlotTexts.h"
#include "plot/SeriesGraph.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr double kScaleRoom = 0.06;  // Above and below what is in view.
constexpr int kLeastStripHeight = 24;
constexpr int kBetweenStrips = 3;
constexpr int kValueTickDistance = 34;  // Pixels.

QColor Colour(Rgb rgb) {
  return {rgb.Red, rgb.Green, rgb.Blue};
}

}  // namespace

PlotStrips::PlotStrips(const PlotData& plotData, const SystemLocale& locale, QWidget* parent)
    : QCustomPlot(parent),
      data_(plotData),
      locale_(locale),
      theme_(&LightPlotTheme()),
      shown_(static_cast<std::size_t>(plotData.ChannelCount()), true),
      timeTicker_(new TimeTicker(locale)),
      margins_(new QCPMarginGroup(this)) {
  // Numbers have a point everywhere in the program.
  setLocale(QLocale::c());
  setAutoAddPlottableToLegend(false);
  setNoAntialiasingOnDrag(false);
  plotLayout()->clear();
  addLayer(u"lines"_s, layer(u"main"_s), limAbove);
  // The library's topmost layer has a picture of its own, so that a move of the cursor paints no
  // more.
  stepsBack_ = new UprightLines(this, u"lines"_s, UprightLines::Form::Back);
  disputes_ = new UprightLines(this, u"lines"_s, UprightLines::Form::Split);
  marks_ = new UprightLines(this, u"lines"_s, UprightLines::Form::Dashed);
  cursor_ = new UprightLines(this, u"overlay"_s, UprightLines::Form::Plain);
  view_ = {0, 1};
  BuildStrips();
}

PlotStrips::~PlotStrips() {
  delete cursor_;
  delete marks_;
  delete stepsBack_;
  delete disputes_;
}

void PlotStrips::SetShown(const std::vector<bool>& shown) {
  shown_ = shown;
  shown_.resize(static_cast<std::size_t>(data_.ChannelCount()), true);
  BuildStrips();
}

std::vector<int> PlotStrips::ShownChannels() const {
  std::vector<int> channels;
  for (int channel = 0; channel < data_.ChannelCount(); ++channel)
    if (shown_[static_cast<std::size_t>(channel)]) channels.push_back(channel);
  return channels;
}

void PlotStrips::SetTheme(const PlotTheme& theme) {
  theme_ = &theme;
  DressAll();
}

QColor PlotStrips::ColourOf(int channel) const {
  return Colour(theme_->Channels[static_cast<std::size_t>(channel % kPlotColours)]);
}

void PlotStrips::SetHeadLine(const QString& text) {
  headLine_ = text;
  BuildStrips();
}

void PlotStrips::ClearStrips() {
  clearPlottables();
  strips_.clear();
  plotLayout()->clear();
}

void PlotStrips::BuildStrips() {
  ClearStrips();
  QStringList units;
  for (const int channel : ShownChannels()) {
    const QString unit = data_.Channel(channel).Unit;
    if (!units.contains(unit)) units.append(unit);
  }
  plotLayout()->setRowSpacing(0);
  AddHeadLine();
  for (const QString& unit : units) AddStrip(unit, plotLayout()->rowCount());
  DressAll();
  SetView(view_);
}

void PlotStrips::AddHeadLine() {
  if (headLine_.isEmpty()) return;
  auto* head = new QCPTextElement(this, headLine_, font());
  head->setTextColor(Colour(theme_->Text));
  head->setTextFlags(Qt::AlignLeft | Qt::AlignVCenter);
  head->setMargins({6, 4, 6, 4});
  plotLayout()->addElement(0, 0, head);
}

void PlotStrips::AddStrip(const QString& unit, int row) {
  Strip strip{.Unit = unit, .Graphs = {}};
  strip.Rect = new QCPAxisRect(this, true);
  strip.Rect->setMinimumSize(50, kLeastStripHeight);
  strip.Rect->setupFullAxesBox(false);
  strip.Rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins_);
  strip.Rect->axis(QCPAxis::atLeft)
      ->setTicker(QSharedPointer<ValueTicker>::create(*strip.Rect, *this));
  plotLayout()->addElement(row, 0, strip.Rect);

  // Beside the strip, where it hides nothing.
  strip.Legend = new QCPLegend;
  plotLayout()->addElement(row, 1, strip.Legend);
  plotLayout()->setColumnStretchFactor(1, 0.001);
  strip.Legend->setLayer(u"legend"_s);
  strip.Legend->setBorderPen(Qt::NoPen);
  strip.Legend->setMargins({0, 0, 8, 0});
  strip.Legend->setRowSpacing(0);
  strip.Legend->setSelectableParts(QCPLegend::spNone);
  for (const int channel : ShownChannels())
    if (data_.Channel(channel).Unit == unit) AddGraph(strip, channel);
  strips_.push_back(strip);
}

void PlotStrips::AddGraph(Strip& strip, int channel) {
  auto* graph = new SeriesGraph(
      strip.Rect->axis(QCPAxis::atBottom), strip.Rect->axis(QCPAxis::atLeft), data_, channel,
      [this](const ColumnView& view) -> const std::vector<ColumnCell>& { return Cells(view); });
  graph->addToLegend(strip.Legend);
  strip.Graphs.push_back(graph);
}

// All share the left and the right edge, and only the lowest names the times.
void PlotStrips::DressAll() {
  setBackground(QBrush(Colour(theme_->Ground)));
  const QColor mark = Colour(theme_->Mark);
  marks_->SetColour(mark);
  stepsBack_->SetColour(mark);
  disputes_->SetColour(mark);
  cursor_->SetColour(Colour(theme_->Text));
  for (const Strip& strip : strips_) DressStrip(strip, &strip == &strips_.back());
  NameGraphs();
}

void PlotStrips::DressStrip(const Strip& strip, bool last) {
  const QColor text = Colour(theme_->Text);
  const QPen grid(Colour(theme_->Grid), 1);
  const QPen line(Colour(theme_->Mark), 1);
  for (QCPAxis* axis : strip.Rect->axes()) {
    axis->setBasePen(line);
    axis->setTickPen(line);
    axis->setSubTickPen(line);
    axis->setTickLabelColor(text);
    axis->setLabelColor(text);
    axis->setTickLabelFont(font());
    axis->setLabelFont(font());
    axis->grid()->setPen(grid);
    axis->grid()->setZeroLinePen(grid);
    axis->setSubTicks(false);
    axis->setSelectableParts(QCPAxis::spNone);
    const bool far = axis->axisType() == QCPAxis::atTop || axis->axisType() == QCPAxis::atRight;
    if (far) axis->setTicks(false);
  }
  QCPAxis* time = strip.Rect->axis(QCPAxis::atBottom);
  time->setTicker(timeTicker_);
  time->setTickLabels(last);
  const bool corrected = data_.ShowsCorrectedTimes();
  time->setLabel(
      last ? PlotText(corrected ? PlotTextId::CorrectedTimeAxis : PlotTextId::LoggerTimeAxis)
           : QString());
  // As much room for the strips as there is: only the lowest has labels below.
  strip.Rect->setAutoMargins(last ? QCP::msLeft | QCP::msRight | QCP::msBottom
                                  : QCP::msLeft | QCP::msRight);
  strip.Rect->setMargins({0, kBetweenStrips, 0, kBetweenStrips});
  strip.Legend->setFont(font());
  strip.Legend->setTextColor(text);
  strip.Legend->setBrush(Qt::NoBrush);
  strip.Legend->setIconSize(16, 10);
  for (SeriesGraph* graph : strip.Graphs) graph->setPen(QPen(ColourOf(graph->Channel())));
}

void PlotStrips::SetView(TimeRange view) {
  view_ = view;
  for (const Strip& strip : strips_)
    for (QCPAxis* axis : {strip.Rect->axis(QCPAxis::atBottom), strip.Rect->axis(QCPAxis::atTop)})
      axis->setRange(view.Begin, view.End);
  // As many labels as fit beside each other; what stands left of the strips is about eight digits.
  const QFontMetrics letters = fontMetrics();
  const int room = viewport().width() - letters.horizontalAdvance(u"00000000"_s);
  static_cast<TimeTicker&>(*timeTicker_)
      .SetMost(std::max(2, room / letters.horizontalAdvance(u"00:00:00 00"_s)));
  FitScales();
  PlaceMarks();
  NameGraphs();
  replot(rpQueuedReplot);
}

void PlotStrips::FitScales() {
  const int strips = std::max(static_cast<int>(strips_.size()), 1);
  const int ticks = std::clamp(viewport().height() / strips / kValueTickDistance - 1, 2, 8);
  for (const Strip& strip : strips_) {
    QCPAxis* const axis = strip.Rect->axis(QCPAxis::atLeft);
    const auto kept = fixedScales_.find(strip.Unit);
    std::optional<QCPRange> scale;
    if (fixed_ && kept != fixedScales_.end()) scale = kept->second;
    if (!scale) scale = FittedScale(strip);
    if (scale) axis->setRange(*scale);
    if (fixed_) fixedScales_[strip.Unit] = axis->range();
    axis->ticker()->setTickCount(ticks);
  }
}

// Where no record is in view, what the lines that cross it come from and lead to.
Extent PlotStrips::ExtentInView(int channel) const {
  Extent extent = data_.ExtentIn(channel, view_);
  if (extent.Any() || data_.CountIn(view_) > 0) return extent;
  for (const Strand& strand : StrandsIn(data_, channel, view_))
    extent.Add(data_.ExtentOf(channel, strand.First, strand.End));
  return extent;
}

std::optional<QCPRange> PlotStrips::FittedScale(const Strip& strip) const {
  Extent extent;
  bool counted = true;
  for (const SeriesGraph* graph : strip.Graphs) {
    const Extent one = ExtentInView(graph->Channel());
    extent.Add(one);
    const bool counts = data_.Channel(graph->Channel()).IsCounted();
    if (one.Any() && counts) extent.Add(0);
    counted = counted && counts;
  }
  if (!extent.Any()) return std::nullopt;
  // Bars stand on the ground.
  if (counted && extent.Least == 0)
    return QCPRange(0, extent.Greatest > 0 ? extent.Greatest * (1 + kScaleRoom) : 1);
  double room = (extent.Greatest - extent.Least) * kScaleRoom;
  if (!(room > 0)) room = std::max(std::abs(extent.Greatest) * kScaleRoom, 0.5);
  return QCPRange(extent.Least - room, extent.Greatest + room);
}

void PlotStrips::SetFixedScale(bool fixed) {
  fixed_ = fixed;
  fixedScales_.clear();
  for (const Strip& strip : strips_)
    if (fixed) fixedScales_[strip.Unit] = strip.Rect->axis(QCPAxis::atLeft)->range();
  SetView(view_);
}

QCPRange PlotStrips::ScaleOf(const QString& unit) const {
  for (const Strip& strip : strips_)
    if (strip.Unit == unit) return strip.Rect->axis(QCPAxis::atLeft)->range();
  return {};
}

void PlotStrips::SetScaleOf(const QString& unit, const QCPRange& scale) {
  fixedScales_[unit] = scale;
  SetView(view_);
}

QStringList PlotStrips::Units() const {
  QStringList units;
  for (const Strip& strip : strips_) units.append(strip.Unit);
  return units;
}

void PlotStrips::NameGraphs() {
  // A second line only where the strip is high enough: it would stand in the next one.
  const int strips = std::max(static_cast<int>(strips_.size()), 1);
  const int lines = viewport().height() / strips / fontMetrics().lineSpacing();
  for (const Strip& strip : strips_) {
    const QString behind = lines >= 2 * static_cast<int>(strip.Graphs.size()) ? u"\n"_s : u", "_s;
    for (SeriesGraph* graph : strip.Graphs) {
      const Series& series = data_.Channel(graph->Channel());
      QString name = ChannelName(series);
      if (series.IsCounted()) {
        const Extent extent = data_.ExtentIn(graph->Channel(), view_);
        const QString sum = extent.Any() ? FormatValue(extent.Sum, series.Decimals) : u"---"_s;
        name += behind + PlotText(PlotTextId::Sum) + u' ' + sum;
      } else if (data_.JoinsAnyDistance()) {
        name += behind + PlotText(PlotTextId::Joined);
      }
      graph->setName(name);
    }
  }
}

void PlotStrips::PlaceMarks() {
  std::vector<double> marks;
  for (const SeriesMark& mark : data_.Set().Marks) marks.push_back(data_.TimeOf(mark));
  marks_->SetTimes(std::move(marks));
  stepsBack_->SetTimes(TimesOf(data_.StepsBack()));
  disputes_->SetTimes(TimesOf(data_.DisputedPlaces()));
}

std::vector<double> PlotStrips::TimesOf(std::span<const std::size_t> records) const {
  std::vector<double> times;
  times.reserve(records.size());
  for (const std::size_t record : records) times.push_back(data_.Times()[record]);
  return times;
}

void PlotStrips::DataChanged() {
  cellsView_ = {};
  DressAll();
  SetView(view_);
}

void PlotStrips::DataGrew() {
  cellsView_ = {};
  SetView(view_);
}

void PlotStrips::ChannelsChanged() {
  cellsView_ = {};
  fixedScales_.clear();
  SetShown(std::vector<bool>(static_cast<std::size_t>(data_.ChannelCount()), true));
}

const std::vector<ColumnCell>& PlotStrips::Cells(const ColumnView& view) {
  if (!(view == cellsView_)) {
    cells_ = CellsOf(data_, view);
    cellsView_ = view;
  }
  return cells_;
}

void PlotStrips::resizeEvent(QResizeEvent* event) {
  QCustomPlot::resizeEvent(event);
  SetView(view_);
}

void PlotStrips::changeEvent(QEvent* event) {
  QCustomPlot::changeEvent(event);
  if (event->type() == QEvent::FontChange) DressAll();
}

QRect PlotStrips::StripsArea() const {
  QRect area;
  for (const Strip& strip : strips_) area |= strip.Rect->rect();
  return area;
}

QString PlotStrips::UnitAt(double y) const {
  QString unit;
  double nearest = 1e9;
  for (const Strip& strip : strips_) {
    const double distance = std::max({strip.Rect->top() - y, y - strip.Rect->bottom(), 0.0});
    if (distance >= nearest) continue;
    nearest = distance;
    unit = strip.Unit;
  }
  return unit;
}

}  // namespace tessmar
