#pragma once

#include <QObject>

namespace tessmar {

/// Keeps the title bar of a dialog on the screen.
///
/// A dialog is placed over the middle of its window before anybody knows its frame. Where there is
/// little room, some window managers then leave the bar above the screen's upper edge, and nobody
/// can take hold of it. One is made after the application object, in its thread.
class FrameKeeper final : public QObject {
 public:
  FrameKeeper();
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessmar
