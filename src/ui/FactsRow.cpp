#include "ui/FactsRow.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

namespace tessmar {
namespace {

constexpr int kGap = 16;
/// The second fact stands behind so many characters, unless the first needs more.
constexpr int kFirstCharacters = 46;
/// Of the width, in hundredths, that the second fact has at least when there is not enough.
constexpr int kSecondShare = 40;

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

int ElidedLabel::TextWidth() const {
  // A pixel more: what is as wide as its room to the fraction of a pixel would be elided.
  return text().isEmpty() ? 0 : fontMetrics().horizontalAdvance(text()) + 1;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                        isEnabled(), shown, foregroundRole());
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const bool whole = TextWidth() <= contentsRect().width();
    QToolTip::showText(dynamic_cast<QHelpEvent&>(*event).globalPos(), whole ? QString() : text(),
                       this);
    return true;
  }
  return QLabel::event(event);
}

FactsRow::FactsRow(QWidget* parent)
    : QWidget(parent), facts_{new ElidedLabel(this), new ElidedLabel(this), new ElidedLabel(this)} {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize FactsRow::sizeHint() const {
  return {0, 2 * fontMetrics().lineSpacing()};
}

bool FactsRow::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::LayoutRequest:
    case QEvent::FontChange:
    case QEvent::Show:
      Arrange();
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

void FactsRow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Arrange();
}

// As if the window stood at the left edge of its screen, where one that is too wide ends up.
int FactsRow::SeenWidth() const {
  const int left = mapTo(window(), QPoint(0, 0)).x();
  return std::min(width(), screen()->availableGeometry().width() - 2 * left);
}

void FactsRow::Arrange() {
  const int line = fontMetrics().lineSpacing();
  const int all = std::max(SeenWidth(), 0);
  const int wanted = facts_[1]->TextWidth();
  const int second =
      std::min(wanted, std::max(all * kSecondShare / 100, all - kGap - facts_[0]->TextWidth()));
  const int column = fontMetrics().averageCharWidth() * kFirstCharacters;
  const int room = all - (second > 0 ? second + kGap : 0);
  const int first = std::min(std::max(column, facts_[0]->TextWidth()), room);
  facts_[0]->setGeometry(0, 0, first, line);
  facts_[1]->setGeometry(first + kGap, 0, std::max(all - first - kGap, 0), line);
  facts_[2]->setGeometry(0, line, all, line);
}

}  // namespace tessmar
