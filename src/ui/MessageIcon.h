#pragma once

#include <QWidget>

class QPainter;

namespace tessmar {

/// Paints one of the four pictures of a message, sharp at any size.
/// @param code  16 critical, 32 question, 48 exclamation, 64 information; any other paints nothing.
void PaintMessageIcon(QPainter& painter, const QRectF& area, int code);

/// The picture beside a message's text.
class MessageIcon : public QWidget {
 public:
  explicit MessageIcon(QWidget* parent);

  /// Shows the picture with this code, or hides the widget for a code that has none.
  void SetCode(int code);
  int Code() const { return code_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int code_ = 0;
};

}  // namespace tessmar
