#pragma once

#include <QFrame>

namespace tessmar {

/// The column of one meter: a sunken frame, filled from the bottom to a fraction of its inner
/// height.
///
/// It keeps what it shows, so the system may have it painted at any time; asked to show what it
/// already shows, it paints nothing. The user of the class sets its name and its accessible name.
/// To a screen reader it is a gauge from 0 to 100, described by the reading that stands beside it.
class MeterColumn : public QFrame {
  Q_OBJECT

 public:
  explicit MeterColumn(QWidget* parent = nullptr);

  /// @param fraction  of the inner height; below 0 counts as 0, above 1 as 1.
  /// @param enabled   a column that is not enabled is not filled.
  void SetLevel(double fraction, bool enabled);

  /// Height of the fill in logical pixels; 0 when the column is not enabled.
  int FillHeight() const;
  /// How full the column is, 0 to 100.
  int Percent() const;

  /// The reading as text, such as "71.40 %", for who cannot see the column.
  void SetReadingText(const QString& text);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double fraction_ = 0;
  bool enabled_ = false;
};

}  // namespace tessmar
