// The plot of a full history of ten channels: opening to the first paint, and frames of zoom and
// move, beside a bare QCustomPlot with its own graphs and its own adaptive sampling. All in one
// run, painted by the processor into a picture as large as the window.

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>

#include "bench/Figures.h"
#include "plot/Navigation.h"
#include "plot/PlotCanvas.h"
#include "plot/frmPlot.h"
#include "support/FakeOutside.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kRecords = 200000;
constexpr int kChannels = 10;
constexpr int kFrames = 400;
constexpr QSize kSize{1600, 1000};
constexpr int kOpenings = 7;

/// A year and more of wandering values; with holes, a third of the values is missing.
SeriesSet FullHistory(bool holes) {
  std::mt19937 luck(1);
  SeriesSet set;
  set.LoggerName = u"Bench"_s;
  set.Stretches = {{.First = 0, .Interval = 180}};
  for (int i = 0; i < kRecords; ++i) set.Times.push_back(3e8 + i * 180.0);
  for (int channel = 0; channel < kChannels; ++channel) {
    Series series{.Place = u"a%1"_s.arg(channel % 8 + 1),
                  .Unit = u"unit %1"_s.arg(channel),
                  .Decimals = 2,
                  .Values = {}};
    double value = 10;
    for (int i = 0; i < kRecords; ++i) {
      value += (static_cast<double>(luck() % 2001) - 1000) / 5000;
      series.Values.push_back(holes && luck() % 3 == 0 ? std::nan("") : value);
    }
    set.Channels.push_back(series);
  }
  return set;
}

/// The views of a zoom into the middle and of moves at each depth.
std::vector<TimeRange> Views(TimeRange whole) {
  std::vector<TimeRange> views;
  TimeRange view = FittedView(whole);
  for (int frame = 0; frame < kFrames; ++frame) {
    const int turn = frame % 40;
    if (frame % 200 == 0) view = FittedView(whole);
    view = turn < 10 ? Zoomed(view, 0.8, whole.Begin + whole.Length() * 0.43, whole)
                     : Moved(view, turn < 25 ? 0.02 : -0.02, whole);
    views.push_back(view);
  }
  return views;
}

struct Frames {
  double Median = 0;
  double NinetyNine = 0;  ///< Of 100 no more take longer.
};

Frames Sorted(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return {times[times.size() / 2], times[times.size() * 99 / 100]};
}

/// @param show  shows a view; what it takes to the painted picture is counted, in ms.
template <typename Show>
Frames Watch(QWidget& widget, const std::vector<TimeRange>& views, double scale, Show show) {
  QImage screen(widget.size() * scale, QImage::Format_RGB32);
  screen.setDevicePixelRatio(scale);
  std::vector<double> times;
  for (const TimeRange& view : views) {
    QElapsedTimer timer;
    timer.start();
    show(view);
    widget.render(&screen);
    times.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-6);
  }
  return Sorted(times);
}

Frames WatchOurs(PlotData& data, const SystemLocale& locale, double scale) {
  PlotCanvas canvas(data, locale);
  canvas.setBufferDevicePixelRatio(scale);
  canvas.resize(kSize);
  canvas.show();
  canvas.Begin();
  canvas.SetCursor(data.RecordCount() / 2);
  QCoreApplication::processEvents();
  return Watch(canvas, Views(data.Whole()), scale, [&](TimeRange view) {
    canvas.SetView(view);
    canvas.replot(QCustomPlot::rpImmediateRefresh);
  });
}

/// The peer: the same strips, each with a graph of the library. It joins points over every hole.
Frames WatchPeer(const PlotData& data, double scale, double& seconds) {
  QElapsedTimer timer;
  timer.start();
  QCustomPlot plot;
  plot.setBufferDevicePixelRatio(scale);
  plot.resize(kSize);
  plot.plotLayout()->clear();
  auto* margins = new QCPMarginGroup(&plot);
  std::vector<QCPAxisRect*> strips;
  for (int channel = 0; channel < kChannels; ++channel) {
    auto* strip = new QCPAxisRect(&plot);
    strip->setMinimumSize(50, 20);
    strip->setMarginGroup(QCP::msLeft | QCP::msRight, margins);
    plot.plotLayout()->addElement(channel, 0, strip);
    strips.push_back(strip);
    QCPGraph* graph = plot.addGraph(strip->axis(QCPAxis::atBottom), strip->axis(QCPAxis::atLeft));
    auto container = QSharedPointer<QCPGraphDataContainer>::create();
    const std::vector<double>& values = data.Channel(channel).Values;
    for (std::size_t i = 0; i < values.size(); ++i) container->add({data.Times()[i], values[i]});
    graph->setData(container);
    graph->setAdaptiveSampling(true);
  }
  plot.show();
  const auto show = [&](TimeRange view) {
    for (QCPAxisRect* strip : strips)
      strip->axis(QCPAxis::atBottom)->setRange(view.Begin, view.End);
    for (int i = 0; i < plot.graphCount(); ++i) plot.graph(i)->rescaleValueAxis(false, true);
    plot.replot(QCustomPlot::rpImmediateRefresh);
  };
  show(FittedView(data.Whole()));
  QImage screen(kSize, QImage::Format_RGB32);
  plot.render(&screen);
  QCoreApplication::processEvents();
  seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
  return Watch(plot, Views(data.Whole()), scale, show);
}

/// From the records to the painted window.
double SecondsToOpen(const SeriesSet& set, const PlotParts& parts) {
  std::vector<double> times;
  for (int i = 0; i < kOpenings; ++i) {
    SeriesSet copy = set;
    QElapsedTimer timer;
    timer.start();
    PlotData data(std::move(copy));
    frmPlot window(data, parts);
    window.resize(kSize);
    window.show();
    QCoreApplication::processEvents();
    QImage screen(kSize, QImage::Format_RGB32);
    window.render(&screen);
    times.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
  }
  return Median(times);
}

void PrintFrames(const QString& what, const Frames& ours, const Frames& peer, double budget) {
  Print({what + u": frame, 99 of 100"_s, ours.NinetyNine, u"ms"_s, Budget::AtMost, budget});
  PrintComparison(u"  the same"_s, ours.NinetyNine, u"ms"_s, u"bare library"_s, peer.NinetyNine);
  PrintComparison(u"  median"_s, ours.Median, u"ms"_s, u"bare library"_s, peer.Median);
}

void Measure() {
  const SystemLocale locale(QLocale(u"en_US"_s));
  const QTemporaryDir folder;
  test::FakeMessages messages;
  test::FakeFileDialogs dialogs;
  const test::FakeClock clock;
  const PlotParts parts{.Message = messages,
                        .Dialogs = dialogs,
                        .Time = clock,
                        .Locale = locale,
                        .Memory = PlotMemory(folder.filePath(u"store.ini"_s)),
                        .Program = u"Bench"_s,
                        .AppPath = {}};
  const SeriesSet plain = FullHistory(false);
  PlotData data(plain);
  PlotData holed(FullHistory(true));
  double peerOpens = 0;
  const Frames peer = WatchPeer(data, 1, peerOpens);
  const double opens = SecondsToOpen(plain, parts);
  Print({u"plot of 10 x 200000: open to first paint"_s, opens, u"s"_s, Budget::AtMost, 0.15});
  PrintComparison(u"  beside"_s, opens, u"s"_s, u"bare library"_s, peerOpens);
  PrintFrames(u"plot of 10 x 200000, 1600 x 1000"_s, WatchOurs(data, locale, 1), peer, 16);
  double unused = 0;
  PrintFrames(u"the same at scale 2"_s, WatchOurs(data, locale, 2), WatchPeer(data, 2, unused), 33);
  PrintFrames(u"the same, 66000 values of each missing"_s, WatchOurs(holed, locale, 1),
              WatchPeer(holed, 1, unused), 16);
}

}  // namespace
}  // namespace tessmar::bench

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  tessmar::bench::Measure();
  return 0;
}
