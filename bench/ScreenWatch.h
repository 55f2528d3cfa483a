#pragma once

#include <xcb/xcb.h>

#include <string>

namespace tessmar::bench {

/// Looks at the X11 screen from outside, as an operator does. Needs a window manager.
class ScreenWatch {
 public:
  /// Throws std::runtime_error without a display or without a window manager on it.
  ScreenWatch();
  ~ScreenWatch();
  ScreenWatch(const ScreenWatch&) = delete;
  ScreenWatch& operator=(const ScreenWatch&) = delete;

  /// True once a window whose title begins so stands on the screen and shows something: the row
  /// of pixels across its middle has more than two colours, which neither the bare screen nor the
  /// window manager's frame has.
  bool ShowsWindow(const std::string& title);

 private:
  void WaitForWindowManager();
  xcb_atom_t Atom(const std::string& name);
  std::string Title(xcb_window_t window);
  bool IsPainted(xcb_window_t window);

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  xcb_atom_t clientList_ = 0;
  xcb_atom_t name_ = 0;
  xcb_atom_t utf8_ = 0;
};

}  // namespace tessmar::bench
