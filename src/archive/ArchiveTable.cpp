#include "archive/ArchiveTable.h"

#include <QHeaderView>
#include <QTableView>

namespace tessmar {

void SetUpArchiveTable(QTableView* table, const QString& name, const QString& caption,
                       QAbstractItemModel* model) {
  table->setObjectName(name);
  table->setAccessibleName(caption);
  table->setModel(model);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setTabKeyNavigation(false);
  table->setAlternatingRowColors(true);
  table->setShowGrid(false);
  table->setWordWrap(false);
  table->verticalHeader()->hide();
  table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
  table->horizontalHeader()->setHighlightSections(false);
  table->horizontalHeader()->setStretchLastSection(true);
  table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  table->setSortingEnabled(true);
}

void SetArchiveColumns(QTableView* table, std::span<const int> widths) {
  const int character = table->fontMetrics().averageCharWidth();
  for (std::size_t i = 0; i < widths.size(); ++i)
    table->setColumnWidth(static_cast<int>(i), widths[i] * character);
}

}  // namespace tessmar
