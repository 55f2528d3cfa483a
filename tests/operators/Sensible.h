#pragma once

#include "operators/Deeds.h"

namespace tessmar::test {

/// What somebody does who knows the program. The user interface's thread only.
Deed Sensible(const Windows& reach, Random& random);

/// Escape, or the cross of the window's frame.
Deed Leave(QWidget& window, Random& random);

}  // namespace tessmar::test
