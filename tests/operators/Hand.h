#pragma once

#include "operators/Deeds.h"

namespace tessmar::test {

/// An operator's hand: chooses what to press, type, turn or close among all that is there to be
/// pressed. The user interface's thread only.
class Hand {
 public:
  /// Anything; one in four times what somebody does who knows the program.
  static Deed Anything(Random& random);

  /// What leads nearer to the main window alone.
  static Deed WayOut(Random& random);

  /// The windows that take clicks and keys: the popup, or the modal one, or all.
  static Windows Reach();
};

}  // namespace tessmar::test
