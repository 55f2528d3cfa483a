#pragma once

#include <QWidget>

namespace tessmar {

/// The picture on the screen while the main window is built. As large as its picture; show() does
/// not block.
class frmSplash : public QWidget {
 public:
  frmSplash();
};

}  // namespace tessmar
