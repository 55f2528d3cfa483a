#include "history/HistoryView.h"

#include <QApplication>
#include <QClipboard>
#include <QFontInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <limits>

namespace tessmar {

namespace {

using namespace Qt::StringLiterals;

constexpr double kSmallestScale = 0.7;
constexpr double kSizeStep = 0.25;  // Points.

/// Makes the letters smaller, within reason, where the column is too narrow for its text: the time
/// of day stands at the end of a stamp and must not be lost to an ellipsis.
class FittedText final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const QStyle* const style = option->widget->style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, option, option->widget) + 1;
    const double room = option->rect.width() - 2 * margin;
    const double wanted = QFontMetricsF(option->font).horizontalAdvance(option->text) + 1;
    if (room <= 0 || wanted <= room) return;
    const double usual = QFontInfo(option->font).pointSizeF();
    // Hinted letters shrink in steps, so that the size that should do may still be too wide.
    double size = std::max(room / wanted, kSmallestScale) * usual;
    do {
      option->font.setPointSizeF(size);
      option->fontMetrics = QFontMetrics(option->font);
      size -= kSizeStep;
    } while (option->fontMetrics.horizontalAdvance(option->text) + 1 > room &&
             size >= kSmallestScale * usual);
  }
};

}  // namespace

HistoryView::HistoryView(QWidget* parent) : QTableView(parent), frozen_(new QTableView(this)) {
  SetUp(*this);
  SetUp(*frozen_);
  frozen_->setObjectName(u"lvwHistoryFirstColumn"_s);
  // In this order: a policy set afterwards would be the table's own.
  frozen_->setFocusPolicy(Qt::NoFocus);
  frozen_->setFocusProxy(this);
  frozen_->setFrameShape(QFrame::NoFrame);
  frozen_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  frozen_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  frozen_->viewport()->installEventFilter(this);
  viewport()->stackUnder(frozen_);

  connect(verticalScrollBar(), &QScrollBar::valueChanged, frozen_->verticalScrollBar(),
          &QScrollBar::setValue);
  connect(frozen_->verticalScrollBar(), &QScrollBar::valueChanged, verticalScrollBar(),
          &QScrollBar::setValue);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int section, int, int width) {
            if (section != 0) return;
            frozen_->setColumnWidth(0, width);
            PlaceFrozen();
          });
  connect(frozen_->horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int section, int, int width) {
            if (section == 0) setColumnWidth(0, width);
          });
  SetRowHeight();
}

void HistoryView::SetUp(QTableView& view) {
  view.setEditTriggers(QAbstractItemView::NoEditTriggers);
  view.setAlternatingRowColors(true);
  view.setWordWrap(false);
  view.setCornerButtonEnabled(false);
  view.setTabKeyNavigation(false);
  view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  view.setItemDelegateForColumn(0, new FittedText(&view));
  view.verticalHeader()->hide();
  view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view.horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
  view.horizontalHeader()->setHighlightSections(false);
}

void HistoryView::SetRowHeight() {
  const int height = fontMetrics().height() + 6;
  verticalHeader()->setMinimumSectionSize(height);
  verticalHeader()->setDefaultSectionSize(height);
  frozen_->verticalHeader()->setMinimumSectionSize(height);
  frozen_->verticalHeader()->setDefaultSectionSize(height);
}

void HistoryView::setModel(QAbstractItemModel* model) {
  QTableView::setModel(model);
  frozen_->setModel(model);
  frozen_->setSelectionModel(selectionModel());
  connect(model, &QAbstractItemModel::modelReset, this, [this] { ShowFirstColumnOnly(); });
  ShowFirstColumnOnly();
}

void HistoryView::ShowFirstColumnOnly() {
  const int columns = model()->columnCount();
  frozen_->setVisible(columns > 0);
  for (int column = 0; column < columns; ++column) frozen_->setColumnHidden(column, column != 0);
  PlaceFrozen();
}

void HistoryView::SetColumnWidth(int column, int width) {
  setColumnWidth(column, width);
  if (column == 0) frozen_->setColumnWidth(0, width);
  PlaceFrozen();
}

void HistoryView::PlaceFrozen() {
  frozen_->horizontalHeader()->setFixedHeight(horizontalHeader()->height());
  frozen_->setGeometry(frameWidth(), frameWidth(), columnWidth(0),
                       viewport()->height() + horizontalHeader()->height());
}

void HistoryView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  PlaceFrozen();
}

void HistoryView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SetRowHeight();
}

// A wheel over the frozen column scrolls the table as one over any other does. Not what the toolkit
// lets the table watch besides: its own scroll bars, to which the viewport hands each wheel on.
bool HistoryView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == frozen_->viewport() && event->type() == QEvent::Wheel) {
    QApplication::sendEvent(viewport(), event);
    return true;
  }
  return QTableView::eventFilter(watched, event);
}

void HistoryView::scrollTo(const QModelIndex& index, ScrollHint hint) {
  QScrollBar* const bar = horizontalScrollBar();
  const int before = bar->value();
  QTableView::scrollTo(index, hint);
  if (index.column() == 0) {
    // Always in view: scrolling to it would only move the others.
    bar->setValue(before);
    return;
  }
  // What lies under the first column is in the viewport, but not in view.
  const int hidden = columnWidth(0) - visualRect(index).left();
  if (hidden > 0) bar->setValue(bar->value() - hidden);
}

QString HistoryView::SelectedText() const {
  const QItemSelection selection = selectionModel()->selection();
  int top = std::numeric_limits<int>::max();
  int bottom = -1;
  int left = std::numeric_limits<int>::max();
  int right = -1;
  for (const QItemSelectionRange& range : selection) {
    top = std::min(top, range.top());
    bottom = std::max(bottom, range.bottom());
    left = std::min(left, range.left());
    right = std::max(right, range.right());
  }

  QString text;
  for (int row = top; row <= bottom; ++row) {
    QString line;
    bool any = false;
    for (int column = left; column <= right; ++column) {
      if (column > left) line += u'\t';
      const QModelIndex cell = model()->index(row, column);
      if (!selection.contains(cell)) continue;
      any = true;
      line += cell.data().toString();
    }
    if (!any) continue;
    if (!text.isEmpty()) text += u'\n';
    text += line;
  }
  return text;
}

void HistoryView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    const QString text = SelectedText();
    if (!text.isEmpty()) QApplication::clipboard()->setText(text);
    event->accept();
    return;
  }
  QTableView::keyPressEvent(event);
}

}  // namespace tessmar
