#include "measure/MeterColumn.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QPalette>
#include <limits>
#include <memory>

namespace tessmar {
namespace {

const QColor kFill(128, 128, 255);
const QColor kFace(10, 200, 30);

/// Counts the paint events of a widget.
class PaintCounter : public QObject {
 public:
  explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++Count;
    return false;
  }
  int Count = 0;
};

// A column with an inner area of 40 by 200 pixels and a button face of its own.
class MeterColumnTest : public testing::Test {
 protected:
  MeterColumnTest() {
    QPalette palette = column_.palette();
    palette.setColor(QPalette::Button, kFace);
    column_.setPalette(palette);
    const int frame = 2 * column_.frameWidth();
    column_.resize(40 + frame, 200 + frame);
  }

  // Rows of the inner area that have one colour from end to end, from the bottom up.
  int RowsFromBottom(const QColor& colour) {
    const QImage image = column_.grab().toImage();
    const QRect inner = column_.contentsRect();
    int rows = 0;
    for (int y = inner.bottom(); y >= inner.top(); --y, ++rows)
      for (int x = inner.left(); x <= inner.right(); ++x)
        if (image.pixelColor(x, y) != colour) return rows;
    return rows;
  }

  QColor TopColour() {
    return column_.grab().toImage().pixelColor(column_.contentsRect().topLeft());
  }

  // Lets all paint events that are due arrive.
  static void Settle() { QApplication::processEvents(); }

  MeterColumn column_;
};

TEST_F(MeterColumnTest, IsASunkenFrame) {
  EXPECT_EQ(column_.frameShadow(), QFrame::Sunken);
  EXPECT_EQ(column_.contentsRect().size(), QSize(40, 200));
}

TEST_F(MeterColumnTest, FillsFromTheBottomAndIsButtonFaceAbove) {
  column_.SetLevel(0.25, true);
  EXPECT_EQ(RowsFromBottom(kFill), 50);
  const QImage image = column_.grab().toImage();
  const QRect inner = column_.contentsRect();
  for (int y = inner.top(); y < inner.top() + 150; ++y)
    EXPECT_EQ(image.pixelColor(inner.center().x(), y), kFace) << y;
}

TEST_F(MeterColumnTest, IsEmptyAtFirstAndAt0) {
  EXPECT_EQ(RowsFromBottom(kFace), 200);
  column_.SetLevel(0, true);
  EXPECT_EQ(RowsFromBottom(kFace), 200);
}

TEST_F(MeterColumnTest, IsFilledWhollyAt1) {
  column_.SetLevel(1, true);
  EXPECT_EQ(RowsFromBottom(kFill), 200);
}

TEST_F(MeterColumnTest, KeepsWithinItsEnds) {
  column_.SetLevel(1.5, true);
  EXPECT_EQ(RowsFromBottom(kFill), 200);
  column_.SetLevel(-0.5, true);
  EXPECT_EQ(RowsFromBottom(kFace), 200);
  column_.SetLevel(std::numeric_limits<double>::infinity(), true);
  EXPECT_EQ(column_.FillHeight(), 200);
  column_.SetLevel(std::numeric_limits<double>::quiet_NaN(), true);
  EXPECT_EQ(column_.FillHeight(), 0);
}

TEST_F(MeterColumnTest, IsNotFilledWhenNotEnabled) {
  column_.SetLevel(0.75, true);
  column_.SetLevel(0.75, false);
  EXPECT_EQ(RowsFromBottom(kFace), 200);
  column_.SetLevel(0.75, true);
  EXPECT_EQ(RowsFromBottom(kFill), 150);
}

TEST_F(MeterColumnTest, KeepsItsFractionAtAnotherSize) {
  column_.SetLevel(0.5, true);
  column_.resize(column_.width(), column_.height() + 100);
  EXPECT_EQ(RowsFromBottom(kFill), 150);
}

TEST_F(MeterColumnTest, FollowsThePaletteAboveTheFill) {
  QPalette palette = column_.palette();
  palette.setColor(QPalette::Button, QColor(1, 2, 3));
  column_.setPalette(palette);
  EXPECT_EQ(TopColour(), QColor(1, 2, 3));
}

TEST_F(MeterColumnTest, PaintsNothingWhileNothingChanges) {
  column_.SetLevel(0.5, true);
  column_.show();
  Settle();
  PaintCounter paints(&column_);
  for (int tick = 0; tick < 100; ++tick) {
    column_.SetLevel(0.5, true);
    Settle();
  }
  EXPECT_EQ(paints.Count, 0);
}

TEST_F(MeterColumnTest, PaintsNothingForAChangeBelowOnePixel) {
  column_.SetLevel(0.5, true);
  column_.show();
  Settle();
  PaintCounter paints(&column_);
  column_.SetLevel(0.501, true);
  Settle();
  EXPECT_EQ(paints.Count, 0);
}

TEST_F(MeterColumnTest, PaintsOnceForAVisibleChange) {
  column_.SetLevel(0.5, true);
  column_.show();
  Settle();
  PaintCounter paints(&column_);
  column_.SetLevel(0.6, true);
  Settle();
  EXPECT_EQ(paints.Count, 1);
}

TEST_F(MeterColumnTest, PaintsNothingWhenAnEmptyColumnIsSwitchedOff) {
  column_.SetLevel(0, true);
  column_.show();
  Settle();
  PaintCounter paints(&column_);
  column_.SetLevel(0, false);
  column_.SetLevel(0.8, false);
  Settle();
  EXPECT_EQ(paints.Count, 0);
}

TEST_F(MeterColumnTest, RepaintsFromWhatItKeeps) {
  column_.SetLevel(0.5, true);
  column_.show();
  Settle();
  PaintCounter paints(&column_);
  column_.update();
  Settle();
  EXPECT_EQ(paints.Count, 1);
  EXPECT_EQ(RowsFromBottom(kFill), 100);
}

TEST_F(MeterColumnTest, TellsAScreenReaderHowFullItIsAndWhatItReads) {
  column_.setAccessibleName("Channel 1");
  column_.SetLevel(0.714, true);
  column_.SetReadingText("71.40 %");
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&column_);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->text(QAccessible::Name), "Channel 1");
  EXPECT_EQ(accessible->text(QAccessible::Description), "71.40 %");
  QAccessibleValueInterface* value = accessible->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->minimumValue().toInt(), 0);
  EXPECT_EQ(value->maximumValue().toInt(), 100);
  EXPECT_EQ(value->currentValue().toInt(), 71);
  value->setCurrentValue(3);
  EXPECT_EQ(value->currentValue().toInt(), 71);
  column_.SetLevel(0.714, false);
  EXPECT_EQ(value->currentValue().toInt(), 0);
}

TEST_F(MeterColumnTest, HasRoomToShrinkAndToGrow) {
  EXPECT_GT(column_.sizeHint().height(), column_.minimumSizeHint().height());
  EXPECT_TRUE(column_.sizePolicy().verticalPolicy() & QSizePolicy::ExpandFlag);
}

}  // namespace
}  // namespace tessmar
