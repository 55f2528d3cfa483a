#pragma once

#include <QTableView>

namespace tessmar {

/// A table whose first column stays in view while the others scroll: a second view lies over it,
/// and shares its model, selection and vertical position. Rows have one fixed height. Ctrl+C copies
/// the selected cells as tab-separated text.
class HistoryView : public QTableView {
 public:
  explicit HistoryView(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;

  /// The selected cells, row by row, with tabs between columns and a line feed behind each row but
  /// the last. A cell that is not selected, between some that are, is empty.
  QString SelectedText() const;

  /// Keeps the view over the first column in step with its width.
  void SetColumnWidth(int column, int width);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void scrollTo(const QModelIndex& index, ScrollHint hint) override;

 private:
  void SetUp(QTableView& view);
  void SetRowHeight();
  void PlaceFrozen();
  void ShowFirstColumnOnly();

  QTableView* frozen_;
};

}  // namespace tessmar
