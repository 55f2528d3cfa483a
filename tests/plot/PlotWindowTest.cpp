#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPdfWriter>
#include <QPrinter>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTemporaryDir>
#include <QWheelEvent>

#include "base/TextTable.h"
#include "history/TableRig.h"
#include "measure/StampTime.h"
#include "plot/PlotCanvas.h"
#include "plot/PlotPicture.h"
#include "plot/PlotRig.h"
#include "plot/frmPlot.h"
#include "support/FakeOutside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::kNone;

constexpr double kBegin = 4012 * 86400.0;  // 26 December 2010.

/// Two channels in mg/L, one in mm: a day of records, one a minute.
SeriesSet Day() {
  SeriesSet set;
  set.LoggerName = u"Well 7"_s;
  set.Stretches = {{.First = 0, .Interval = 60}};
  for (int i = 0; i < 3; ++i) {
    set.Channels.push_back({.Place = i == 2 ? u"p1"_s : u"a%1"_s.arg(i + 1),
                            .Unit = i == 2 ? u"mm"_s : u"mg/L"_s,
                            .Decimals = 2,
                            .Values = {}});
  }
  for (int i = 0; i < 1440; ++i) {
    set.Times.push_back(kBegin + i * 60);
    set.Channels[0].Values.push_back(i == 700 ? 50 : 5 + (i % 100) / 100.0);
    set.Channels[1].Values.push_back(i < 600 ? kNone : 3);
    set.Channels[2].Values.push_back(i % 60 == 0 ? 0.5 : 0);
  }
  return set;
}

class PlotWindow : public testing::Test {
 protected:
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  PlotParts Parts() {
    return {.Message = messages_,
            .Dialogs = dialogs_,
            .Time = clock_,
            .Locale = locale_,
            .Memory = PlotMemory(folder_.filePath(u"store.ini"_s)),
            .Program = u"Tessmar Logger 9.9.9"_s,
            .AppPath = u"/opt/app"_s,
            .ShowRow = [this](std::size_t record) { row_ = static_cast<int>(record); }};
  }
  frmPlot& Open(SeriesSet set) {
    window_.reset();
    data_.emplace(std::move(set));
    window_.emplace(*data_, Parts());
    window_->resize(900, 700);
    window_->show();
    Settle();
    return *window_;
  }
  static void Settle() {
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents);
  }
  template <typename Control>
  Control* Find(const QString& name) const {
    Control* const control = window_->findChild<Control*>(name);
    EXPECT_NE(control, nullptr) << name.toStdString();
    return control;
  }
  PlotCanvas& Canvas() const { return *static_cast<PlotCanvas*>(Find<QWidget>(u"pltPlot"_s)); }
  QString Text(const QString& label) const { return Find<QLabel>(label)->text(); }
  void Click(const QString& button) const {
    Find<QPushButton>(button)->click();
    Settle();
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(&Canvas(), &event);
    Settle();
  }
  void Wheel(QPointF place, QPoint angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QWheelEvent event(place, Canvas().mapToGlobal(place), {}, angle, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Canvas(), &event);
    Settle();
  }
  void Mouse(QEvent::Type type, QPointF place, Qt::MouseButtons buttons) const {
    QMouseEvent event(type, place, Canvas().mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(&Canvas(), &event);
    Settle();
  }
  QPointF Middle() const { return QRectF(Canvas().axisRect(0)->rect()).center(); }
  QString Cell(int row, int column) const {
    return Find<QTableView>(u"tblStatistics"_s)->model()->index(row, column).data().toString();
  }
  int Rows() const { return Find<QTableView>(u"tblStatistics"_s)->model()->rowCount(); }
  QByteArray Saved(const QString& name) const {
    QFile file(folder_.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }

  test::FakeMessages messages_;
  test::FakeFileDialogs dialogs_;
  test::FakeClock clock_;
  SystemLocale locale_ = test::German();
  QTemporaryDir folder_;
  int row_ = -1;
  std::optional<PlotData> data_;
  std::optional<frmPlot> window_;
};

TEST_F(PlotWindow, HasAStripForEachUnit) {
  Open(Day());
  EXPECT_EQ(window_->objectName(), u"frmPlot"_s);
  EXPECT_EQ(window_->windowTitle(), u"Plot"_s);
  EXPECT_EQ(Canvas().Units(), (QStringList{u"mg/L"_s, u"mm"_s}));
  EXPECT_EQ(Canvas().axisRectCount(), 2);
  EXPECT_EQ(Find<QListWidget>(u"lstChannels"_s)->item(2)->text(), u"Pulse channel 1 (mm)"_s);
  EXPECT_EQ(Canvas().View(), FittedView(data_->Whole()));
  // The spike is in the scale, and zero in that of the pulses.
  EXPECT_GT(Canvas().ScaleOf(u"mg/L"_s).upper, 50);
  EXPECT_LE(Canvas().ScaleOf(u"mm"_s).lower, 0);
}

TEST_F(PlotWindow, PutsTheSumBehindTheNameWhereTheStripHasNoRoomForTwoLines) {
  SeriesSet set = Day();
  set.Channels[0].Unit = u"Volts"_s;
  Open(std::move(set));
  EXPECT_EQ(Canvas().plottable(2)->name(), u"Pulse channel 1 (mm)\nSum 12.00"_s);
  Canvas().setFixedHeight(3 * Canvas().fontMetrics().lineSpacing());
  Settle();
  EXPECT_EQ(Canvas().plottable(2)->name(), u"Pulse channel 1 (mm), Sum 12.00"_s);
}

TEST_F(PlotWindow, ShowsTheChannelsThatAreTicked) {
  Open(Day());
  auto* list = Find<QListWidget>(u"lstChannels"_s);
  list->item(2)->setCheckState(Qt::Unchecked);
  Settle();
  EXPECT_EQ(Canvas().Units(), QStringList{u"mg/L"_s});
  EXPECT_EQ(Rows(), 2);
  list->item(0)->setCheckState(Qt::Unchecked);
  list->item(1)->setCheckState(Qt::Unchecked);
  Settle();
  EXPECT_EQ(Canvas().axisRectCount(), 0);
  EXPECT_EQ(Rows(), 0);
}

TEST_F(PlotWindow, RemembersSizeAndChannels) {
  Open(Day());
  Find<QListWidget>(u"lstChannels"_s)->item(1)->setCheckState(Qt::Unchecked);
  window_->resize(777, 666);
  Settle();
  window_->hide();
  data_.emplace(Day());
  window_.emplace(*data_, Parts());
  EXPECT_EQ(window_->size(),
            QSize(777, 666).boundedTo(window_->screen()->availableSize() * 9 / 10));
  EXPECT_EQ(Find<QListWidget>(u"lstChannels"_s)->item(1)->checkState(), Qt::Unchecked);
  EXPECT_EQ(Canvas().Shown(), (std::vector<bool>{true, false, true}));
}

TEST_F(PlotWindow, GivesTheStatisticsOfWhatIsInView) {
  Open(Day());
  EXPECT_EQ(Rows(), 3);
  EXPECT_EQ(Cell(0, 0), u"Channel 1 (mg/L)"_s);
  EXPECT_EQ(Cell(0, 1), u"5.00"_s);
  EXPECT_EQ(Cell(0, 3), u"50.00"_s);
  EXPECT_EQ(Cell(2, 6), u"12.00"_s);  // 24 times 0.5 mm.
  Canvas().Go({kBegin, kBegin + 600}, ViewChange::Other);
  Settle();
  EXPECT_EQ(Cell(0, 3), u"5.10"_s);
  EXPECT_EQ(Cell(1, 3), u"---"_s);
  Canvas().Fit();
  Find<QCheckBox>(u"chkByDay"_s)->click();
  Settle();
  EXPECT_EQ(Cell(0, 0), u"26.12.10"_s);
  EXPECT_EQ(Cell(2, 7), u"12.00"_s);
}

TEST_F(PlotWindow, ReadsEveryChannelUnderTheCursor) {
  Open(Day());
  EXPECT_FALSE(Find<QPushButton>(u"cmdRow"_s)->isEnabled());
  Canvas().SetCursor(60);
  EXPECT_EQ(Text(u"lblCursor"_s),
            u"26.12.10 01:00:00   Channel 1 (mg/L) 5.60   Channel 2 (mg/L) ---   "
            u"Pulse channel 1 (mm) 0.50"_s);
  Press(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(Canvas().CursorRecord(), 61U);
  Press(Qt::Key_Left, Qt::ControlModifier);
  Press(Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(Canvas().CursorRecord(), 59U);
  Press(Qt::Key_Return);
  EXPECT_EQ(row_, 59);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(PlotWindow, TheMouseSetsTheCursor) {
  Open(Day());
  Mouse(QEvent::MouseMove, Middle(), Qt::NoButton);
  ASSERT_TRUE(Canvas().CursorRecord());
  EXPECT_NEAR(static_cast<double>(*Canvas().CursorRecord()), 720, 3);
}

TEST_F(PlotWindow, TheWheelZoomsAroundThePointerAndMoves) {
  Open(Day());
  const TimeRange all = Canvas().View();
  const QPointF left(Canvas().axisRect(0)->left(), Middle().y());
  Wheel(left, {0, 120});
  EXPECT_NEAR(Canvas().View().Begin, all.Begin, 60);
  EXPECT_NEAR(Canvas().View().Length(), all.Length() * 0.8, 60);
  const TimeRange zoomed = Canvas().View();
  Wheel(left, {0, -120}, Qt::ShiftModifier);
  EXPECT_GT(Canvas().View().Begin, zoomed.Begin);
  Wheel(left, {120, 0});
  EXPECT_NEAR(Canvas().View().Begin, zoomed.Begin, 1e-3);
  Press(Qt::Key_Backspace);
  EXPECT_EQ(Canvas().View(), all);
}

TEST_F(PlotWindow, TheWheelWorksBetweenTheStripsToo) {
  Open(Day());
  const TimeRange all = Canvas().View();
  const QCPAxisRect* upper = Canvas().axisRect(0);
  const QCPAxisRect* lower = Canvas().axisRect(1);
  ASSERT_GT(lower->top(), upper->bottom());
  Wheel({Middle().x(), (upper->bottom() + lower->top()) / 2.0}, {0, 120});
  EXPECT_LT(Canvas().View().Length(), all.Length());
}

TEST_F(PlotWindow, ADragMovesAndADoubleClickShowsAll) {
  Open(Day());
  const TimeRange all = Canvas().View();
  Press(Qt::Key_Plus);
  Press(Qt::Key_Plus);
  const TimeRange zoomed = Canvas().View();
  Mouse(QEvent::MouseButtonPress, Middle(), Qt::LeftButton);
  Mouse(QEvent::MouseMove, Middle() + QPointF(50, 0), Qt::LeftButton);
  Mouse(QEvent::MouseButtonRelease, Middle() + QPointF(50, 0), Qt::NoButton);
  const double moved = zoomed.Length() * 50 / Canvas().axisRect(0)->width();
  EXPECT_NEAR(zoomed.Begin - Canvas().View().Begin, moved, zoomed.Length() / 100);
  Mouse(QEvent::MouseButtonDblClick, Middle(), Qt::LeftButton);
  EXPECT_EQ(Canvas().View(), all);
}

TEST_F(PlotWindow, TheKeysMoveZoomAndGoBackAndForth) {
  Open(Day());
  const TimeRange all = Canvas().View();
  EXPECT_FALSE(Find<QPushButton>(u"cmdBack"_s)->isEnabled());
  Press(Qt::Key_Plus);
  const TimeRange zoomed = Canvas().View();
  EXPECT_NEAR(zoomed.Length(), all.Length() * 0.8, 1e-3);
  Press(Qt::Key_End);
  EXPECT_NEAR(Canvas().View().End, all.End, 1e-3);
  Press(Qt::Key_Home);
  EXPECT_NEAR(Canvas().View().Begin, all.Begin, 1e-3);
  Press(Qt::Key_Right);
  EXPECT_NEAR(Canvas().View().Begin, all.Begin + zoomed.Length() / 10, 1e-3);
  Press(Qt::Key_Minus);
  for (int i = 0; i < 4; ++i) Press(Qt::Key_Backspace);
  EXPECT_EQ(Canvas().View(), zoomed);
  Click(u"cmdBack"_s);
  EXPECT_EQ(Canvas().View(), all);
  EXPECT_TRUE(Find<QPushButton>(u"cmdForward"_s)->isEnabled());
  Press(Qt::Key_Backspace, Qt::ShiftModifier);
  EXPECT_EQ(Canvas().View(), zoomed);
  Click(u"cmdFit"_s);
  EXPECT_EQ(Canvas().View(), all);
}

TEST_F(PlotWindow, KeepsAFixedScaleAndFitsOtherwise) {
  Open(Day());
  const QCPRange whole = Canvas().ScaleOf(u"mg/L"_s);
  Find<QCheckBox>(u"chkFixed"_s)->click();
  Canvas().Go({kBegin, kBegin + 600}, ViewChange::Other);
  EXPECT_EQ(Canvas().ScaleOf(u"mg/L"_s), whole);
  Press(Qt::Key_Up, Qt::ControlModifier);
  EXPECT_NEAR(Canvas().ScaleOf(u"mg/L"_s).size(), whole.size() * 0.85, 1e-9);
  Find<QCheckBox>(u"chkFixed"_s)->click();
  EXPECT_LT(Canvas().ScaleOf(u"mg/L"_s).upper, 6);
  // The wheel over a scale fixes it.
  Wheel({5, Middle().y()}, {0, 120});
  EXPECT_TRUE(Find<QCheckBox>(u"chkFixed"_s)->isChecked());
}

TEST_F(PlotWindow, SaysWhatItShows) {
  Open(Day());
  EXPECT_EQ(Canvas().accessibleName(), u"Plot of the channels over time"_s);
  Canvas().Go({kBegin, kBegin + 600}, ViewChange::Other);
  Settle();
  EXPECT_EQ(Canvas().accessibleDescription(),
            u"26.12.10 00:00:00 – 26.12.10 00:10:00, 11 records in view. "
            u"Channel 1 (mg/L): least 5.00, greatest 5.10. Channel 2 (mg/L): no value. "
            u"Pulse channel 1 (mm): least 0.00, greatest 0.50."_s);
}

TEST_F(PlotWindow, CountsMarksAndStepsBack) {
  SeriesSet set = Day();
  set.Times[900] = kBegin;
  set.Marks = {{.Time = kBegin + 60, .Corrected = kNone, .Text = u"synced"_s}};
  Open(set);
  EXPECT_EQ(Text(u"lblMarks"_s),
            u"1 event in view: 26.12.10 00:01:00 synced; clock set back once"_s);
  Canvas().Go({kBegin + 7200, kBegin + 9600}, ViewChange::Other);
  EXPECT_EQ(Text(u"lblMarks"_s), u""_s);
}

TEST_F(PlotWindow, NamesAFewMarksAndCountsMany) {
  SeriesSet set = Day();
  for (int i = 0; i < 4; ++i)
    set.Marks.push_back({.Time = kBegin + i * 60, .Corrected = kNone, .Text = u"m%1"_s.arg(i)});
  Open(set);
  EXPECT_EQ(Text(u"lblMarks"_s), u"4 events in view"_s);
  Canvas().Go({kBegin + 90, kBegin + 9600}, ViewChange::Other);
  EXPECT_EQ(Text(u"lblMarks"_s), u"2 events in view: 26.12.10 00:02:00 m2, 26.12.10 00:03:00 m3"_s);
}

TEST_F(PlotWindow, SaysWhereUploadsDisagree) {
  SeriesSet set = Day();
  set.Disputes = {{10, 12}, {12, 14}, {20, 21}};
  set.Times[12] = set.Times[10];
  set.Times[13] = set.Times[11];
  Open(set);
  EXPECT_EQ(Text(u"lblMarks"_s), u"uploads disagree at 2 places"_s);
  SetTextLanguage(kLanguageGerman);
  Canvas().Go({kBegin + 900, kBegin + 9600}, ViewChange::Other);
  EXPECT_EQ(Text(u"lblMarks"_s), u"Abrufe widersprechen sich an 1 Stelle"_s);
}

TEST_F(PlotWindow, ARunningTotalIsNotSummed) {
  SeriesSet set = Day();
  Open(set);
  EXPECT_EQ(Cell(2, 6), u"12.00"_s);
  set.Channels[2].IsTotal = true;
  Open(set);
  EXPECT_EQ(Cell(2, 5), u"0.00"_s);
  EXPECT_EQ(Cell(2, 6), u"---"_s);
  EXPECT_NE(Cell(0, 6), u"---"_s);
  Find<QCheckBox>(u"chkByDay"_s)->click();
  Settle();
  EXPECT_EQ(Cell(2, 7), u"---"_s);
}

TEST_F(PlotWindow, TheCursorLetsGoOfARecordWithoutACorrectedTime) {
  SeriesSet set = Day();
  for (const double time : set.Times) set.Corrected.push_back(time + 3600);
  set.Corrected[0] = kNone;
  Open(set);
  Canvas().SetCursor(0);
  EXPECT_NE(Text(u"lblCursor"_s), u""_s);
  Find<QCheckBox>(u"chkCorrected"_s)->click();
  EXPECT_EQ(Text(u"lblCursor"_s), u""_s);
  EXPECT_FALSE(Canvas().CursorRecord().has_value());
}

TEST_F(PlotWindow, LabelsOfLowStripsStayApart) {
  SeriesSet set = Day();
  // Twelve strips, each from 0 to 1, where a label would stand at the top.
  const Series model = set.Channels[0];
  set.Channels.clear();
  for (int i = 0; i < 12; ++i) {
    set.Channels.push_back(model);
    set.Channels.back().Unit = u"u%1"_s.arg(i);
    for (std::size_t k = 0; k < set.Times.size(); ++k)
      set.Channels.back().Values[k] = static_cast<double>(k % 2);
  }
  Open(set);
  const double half = Canvas().fontMetrics().height() / 2.0;
  for (int strip = 0; strip < 12; ++strip) {
    const QCPAxisRect* rect = Canvas().axisRect(strip);
    const QCPAxis* axis = rect->axis(QCPAxis::atLeft);
    const QVector<double> ticks = axis->tickVector();
    const QVector<QString> labels = axis->tickVectorLabels();
    bool any = false;
    double below = rect->bottom() + 4 * half;
    for (qsizetype i = 0; i < ticks.size(); ++i) {
      if (!axis->range().contains(ticks[i]) || labels[i].isEmpty()) continue;
      any = true;
      const double place = axis->coordToPixel(ticks[i]);
      EXPECT_GE(place - half, rect->top() - 1) << strip;
      EXPECT_GE(below - place, 2 * half - 1) << strip;
      below = place;
    }
    EXPECT_TRUE(any) << strip;
  }
}

TEST_F(PlotWindow, ShowsTheNamesOfTheChannelsWhole) {
  Open(Day());
  const auto* table = Find<QTableView>(u"tblStatistics"_s);
  const int name = table->fontMetrics().horizontalAdvance(u"Pulse channel 1 (mm)"_s);
  EXPECT_GT(table->columnWidth(0), name);
  Find<QCheckBox>(u"chkByDay"_s)->click();
  Settle();
  EXPECT_GT(table->columnWidth(1), name);
  Find<QCheckBox>(u"chkByDay"_s)->click();
  Settle();
  EXPECT_GT(table->columnWidth(0), name);
  EXPECT_LE(table->horizontalHeader()->length(), table->viewport()->width());
}

TEST_F(PlotWindow, ShowsTheHeadingsWholeWhereThereIsNoChannel) {
  for (const std::int16_t language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    Open(SeriesSet{});
    const auto* table = Find<QTableView>(u"tblStatistics"_s);
    const auto* header = table->horizontalHeader();
    for (int column = 0; column < header->count(); ++column)
      EXPECT_GT(header->sectionSize(column),
                header->fontMetrics().horizontalAdvance(
                    table->model()->headerData(column, Qt::Horizontal).toString()))
          << column;
  }
}

// The screen of the tests has 800 pixels, and a window's frame takes some.
TEST_F(PlotWindow, IsNoWiderThanASmallScreenInBothLanguages) {
  for (const std::int16_t language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    frmPlot& window = Open(Day());
    ASSERT_EQ(window.screen()->availableSize().width(), 800);
    EXPECT_LE(window.minimumSizeHint().width(), 784) << language;
    EXPECT_LE(window.minimumSizeHint().height(), 540) << language;
  }
}

TEST_F(PlotWindow, PrintsOnOnePageOfPaper) {
  Open(Day());
  const QString path = folder_.filePath(u"paper.pdf"_s);
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(path);
  printer.setPageSize(QPageSize(QPageSize::A4));
  printer.setPageOrientation(QPageLayout::Landscape);
  PaintPicture({*data_, locale_, Canvas(), u"Well 7"_s, {1200, 800}}, printer);
  const QByteArray page = Saved(u"paper.pdf"_s);
  EXPECT_TRUE(page.startsWith("%PDF"));
  EXPECT_EQ(page.count("/Type /Page\n"), 1);
  EXPECT_TRUE(page.contains("/MediaBox [0 0 84"));
  // More than an empty page, which has less than 3000 bytes.
  EXPECT_GT(page.size(), 10000);
}

TEST_F(PlotWindow, SaysThatPointsAreJoinedAtAnyDistance) {
  SeriesSet set = Day();
  set.Stretches = {{.First = 0, .Interval = 0}};
  Open(set);
  EXPECT_EQ(Text(u"lblMarks"_s), u"Points joined at any distance: not logged periodically"_s);
}

TEST_F(PlotWindow, SwitchesToCorrectedTimesOnlyWhereThereAreSome) {
  Open(Day());
  EXPECT_TRUE(Find<QCheckBox>(u"chkCorrected"_s)->isHidden());
  SeriesSet set = Day();
  for (const double time : set.Times) set.Corrected.push_back(time + 3600);
  set.Corrected[0] = kNone;
  Open(set);
  auto* box = Find<QCheckBox>(u"chkCorrected"_s);
  EXPECT_FALSE(box->isHidden());
  box->click();
  Settle();
  EXPECT_TRUE(data_->ShowsCorrectedTimes());
  EXPECT_EQ(Text(u"lblMarks"_s), u"1 record without a corrected time is not shown"_s);
  EXPECT_EQ(Canvas().axisRect(1)->axis(QCPAxis::atBottom)->label(), u"Corrected time (UTC)"_s);
  box->click();
  EXPECT_EQ(Canvas().axisRect(1)->axis(QCPAxis::atBottom)->label(), u"Logger time"_s);
}

TEST_F(PlotWindow, SavesWhatIsInView) {
  Open(Day());
  Find<QListWidget>(u"lstChannels"_s)->item(1)->setCheckState(Qt::Unchecked);
  Canvas().Go({kBegin, kBegin + 90}, ViewChange::Other);
  dialogs_.Answers = {folder_.filePath(u"view.csv"_s)};
  Click(u"cmdSave"_s);
  EXPECT_EQ(Saved(u"view.csv"_s),
            "Well 7,27.12.2010,15:05:12\r\n"
            "Date, Time, mg/L, mm\r\n"
            "26.12.10, 00:00:00, 5.00, 0.50\r\n"
            "26.12.10, 00:01:00, 5.01, 0.00\r\n");
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(PlotWindow, TellsWhyItCouldNotSave) {
  Open(Day());
  dialogs_.Answers = {u"/no/such/folder/view.csv"_s, u"/no/such/folder/view.png"_s,
                      folder_.filePath(u"view.txt"_s)};
  Click(u"cmdSave"_s);
  Click(u"cmdPicture"_s);
  Click(u"cmdPicture"_s);
  ASSERT_EQ(messages_.All.size(), 3U);
  EXPECT_TRUE(messages_.All[0].Prompt.contains(u"/no/such/folder"_s));
  EXPECT_TRUE(messages_.All[1].Prompt.contains(u"/no/such/folder"_s));
  EXPECT_EQ(messages_.All[2].Prompt,
            u"The name must end in .png, .svg or .pdf:\r\n"_s + folder_.filePath(u"view.txt"_s));
  EXPECT_FALSE(QFile::exists(folder_.filePath(u"view.txt"_s)));
}

TEST_F(PlotWindow, SavesPicturesOfThreeKinds) {
  Open(Day());
  for (const QString& name : {u"a.png"_s, u"a.svg"_s, u"a.PDF"_s}) {
    dialogs_.Answers = {folder_.filePath(name)};
    Click(u"cmdPicture"_s);
  }
  EXPECT_TRUE(messages_.All.empty());
  const QImage image = QImage::fromData(Saved(u"a.png"_s));
  EXPECT_EQ(image.size(), QSize(2400, 1600));
  EXPECT_EQ(image.pixelColor(3, 3), QColor(Qt::white));
  const QByteArray svg = Saved(u"a.svg"_s);
  EXPECT_TRUE(svg.contains("<svg"));
  EXPECT_TRUE(svg.contains("Well 7"));
  EXPECT_TRUE(svg.contains("Tessmar Logger 9.9.9"));
  EXPECT_TRUE(svg.contains("<polyline"));
  EXPECT_FALSE(svg.contains("<image"));
  EXPECT_TRUE(Saved(u"a.PDF"_s).startsWith("%PDF"));
}

TEST_F(PlotWindow, CopiesThePicture) {
  Open(Day());
  QApplication::clipboard()->clear();
  Click(u"cmdCopy"_s);
  EXPECT_EQ(QApplication::clipboard()->image().size(), QSize(2400, 1600));
}

TEST_F(PlotWindow, PaintsTheOneRecordThatSticksOut) {
  SeriesSet set = Day();
  set.Channels.resize(1);
  Open(set);
  Canvas().replot(QCustomPlot::rpImmediateRefresh);
  const QImage picture = Canvas().grab().toImage();
  const QCPAxisRect* strip = Canvas().axisRect(0);
  const int x = static_cast<int>(strip->axis(QCPAxis::atBottom)->coordToPixel(kBegin + 700 * 60));
  const int y = static_cast<int>(strip->axis(QCPAxis::atLeft)->coordToPixel(30));
  int painted = 0;
  for (int column = x - 2; column <= x + 2; ++column)
    if (picture.pixelColor(column, y) == Canvas().ColourOf(0)) ++painted;
  EXPECT_GE(painted, 1);
  EXPECT_LE(painted, 3);
}

TEST_F(PlotWindow, FollowsTheDesktopsColours) {
  Open(Day());
  const QColor light = Canvas().ColourOf(0);
  QPalette dark = window_->palette();
  dark.setColor(QPalette::Base, QColor(20, 20, 20));
  window_->setPalette(dark);
  Settle();
  EXPECT_NE(Canvas().ColourOf(0), light);
}

TEST_F(PlotWindow, StandsDataOfNothing) {
  Open(SeriesSet{});
  EXPECT_EQ(Text(u"lblMarks"_s), u"No records"_s);
  for (const int key : {Qt::Key_Left, Qt::Key_Plus, Qt::Key_End, Qt::Key_Up, Qt::Key_Return})
    Press(key);
  Press(Qt::Key_Right, Qt::ControlModifier);
  Click(u"cmdSave"_s);
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt, u"There is no record in view."_s);
  dialogs_.Answers = {folder_.filePath(u"a.svg"_s)};
  Click(u"cmdPicture"_s);
  EXPECT_TRUE(Saved(u"a.svg"_s).contains("<svg"));
}

TEST_F(PlotWindow, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  Open(Day());
  EXPECT_EQ(window_->windowTitle(), u"Diagramm"_s);
  EXPECT_EQ(Find<QPushButton>(u"cmdPicture"_s)->text(), u"Bil&d"_s);
  EXPECT_EQ(Find<QListWidget>(u"lstChannels"_s)->item(0)->text(), u"Kanal 1 (mg/L)"_s);
}

}  // namespace
}  // namespace tessmar
