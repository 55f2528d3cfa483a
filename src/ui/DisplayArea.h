#pragma once

#include <QScrollArea>

namespace tessmar {

/// Shows its content whole, and never less of it, where the display has room for that; where it has
/// not, it takes what room there is and scrolls.
class DisplayArea final : public QScrollArea {
 public:
  /// @param around  what the window has beside the content, in pixels: its frame, a menu, the rows
  ///                outside of the area.
  DisplayArea(QWidget* content, QSize around, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QSize Fitted(QSize wanted) const;

  QSize around_;
};

}  // namespace tessmar
