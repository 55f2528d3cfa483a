#pragma once

#include <QString>
#include <span>

class QAbstractItemModel;
class QTableView;

namespace tessmar {

/// Makes a table one of the archive's window: whole rows, read only, sorted by its headings, the
/// model's own order until one is pressed. Tab leaves it.
/// @param caption  for assistive technology; without the marks of a mnemonic.
void SetUpArchiveTable(QTableView* table, const QString& name, const QString& caption,
                       QAbstractItemModel* model);

/// Widths in characters; the last column has the rest.
void SetArchiveColumns(QTableView* table, std::span<const int> widths);

}  // namespace tessmar
