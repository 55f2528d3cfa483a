#include "ui/ButtonRows.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace tessmar {
namespace {

/// Pixels that margins and the window's frame take of the screen's width.
constexpr int kAround = 40;

QHBoxLayout* MakeRow(const std::vector<QPushButton*>& buttons) {
  auto* row = new QHBoxLayout;
  for (QPushButton* button : buttons) row->addWidget(button);
  row->addStretch();
  return row;
}

}  // namespace

QLayout* MakeButtonRows(const std::vector<QPushButton*>& first,
                        const std::vector<QPushButton*>& later) {
  std::vector<QPushButton*> all = first;
  all.insert(all.end(), later.begin(), later.end());
  QHBoxLayout* row = MakeRow(all);
  const QPushButton& any = *first.front();
  // A layout that is nobody's yet leaves no gaps.
  const int gap = any.style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing, nullptr, &any);
  const int gaps = static_cast<int>(all.size() - 1) * std::max(gap, 0);
  const int room = any.screen()->availableSize().width() - kAround;
  if (row->sizeHint().width() + gaps <= room) return row;
  delete row;
  auto* rows = new QVBoxLayout;
  rows->addLayout(MakeRow(first));
  rows->addLayout(MakeRow(later));
  return rows;
}

}  // namespace tessmar
