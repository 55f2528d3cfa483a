#pragma once

#include <QLabel>

namespace tessmar {

/// A one-line label that asks for the room of a number of characters and, where its text is longer
/// than that, writes it in a smaller font instead of cutting it off. Its text never changes the
/// layout around it.
class FittingLabel final : public QLabel {
 public:
  FittingLabel(int characters, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int characters_;
};

}  // namespace tessmar
