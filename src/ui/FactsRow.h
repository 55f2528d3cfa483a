#pragma once

#include <QLabel>
#include <QWidget>
#include <array>

namespace tessmar {

/// A line of plain text that ends in an ellipsis where there is no room for it; the whole text is
/// then its tool tip. Assistive technology has the whole text always.
class ElidedLabel final : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }
  /// Pixels that the whole text takes.
  int TextWidth() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
};

/// Three facts in two lines at the foot of a window: two side by side and a third below. It takes
/// the same height whatever they say, none of its own width, and never writes where a window that
/// is wider than its screen cannot be seen.
class FactsRow final : public QWidget {
 public:
  explicit FactsRow(QWidget* parent = nullptr);

  ElidedLabel* Fact(int which) const { return facts_.at(static_cast<std::size_t>(which)); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  int SeenWidth() const;
  void Arrange();

  std::array<ElidedLabel*, 3> facts_;
};

}  // namespace tessmar
