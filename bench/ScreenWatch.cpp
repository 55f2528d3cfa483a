#include "bench/ScreenWatch.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <span>
#include <stdexcept>
#include <thread>

namespace tessmar::bench {
namespace {

constexpr int kPatienceMs = 10000;
constexpr std::uint32_t kMostWords = 1024;
constexpr std::size_t kFewestColours = 3;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> Own(Reply* reply) {
  return {reply, &std::free};
}

}  // namespace

ScreenWatch::ScreenWatch() : connection_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) {
    xcb_disconnect(connection_);
    throw std::runtime_error("there is no X11 display");
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  clientList_ = Atom("_NET_CLIENT_LIST");
  name_ = Atom("_NET_WM_NAME");
  utf8_ = Atom("UTF8_STRING");
  WaitForWindowManager();
}

ScreenWatch::~ScreenWatch() {
  xcb_disconnect(connection_);
}

xcb_atom_t ScreenWatch::Atom(const std::string& name) {
  const auto cookie =
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  const auto reply = Own(xcb_intern_atom_reply(connection_, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// One that has only just been started would take windows over while their start is measured.
void ScreenWatch::WaitForWindowManager() {
  const xcb_atom_t check = Atom("_NET_SUPPORTING_WM_CHECK");
  for (int i = 0; i < kPatienceMs; ++i) {
    const auto cookie = xcb_get_property(connection_, 0, root_, check, XCB_ATOM_WINDOW, 0, 1);
    const auto reply = Own(xcb_get_property_reply(connection_, cookie, nullptr));
    if (reply && xcb_get_property_value_length(reply.get()) > 0) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  xcb_disconnect(connection_);
  throw std::runtime_error("the display has no window manager");
}

bool ScreenWatch::ShowsWindow(const std::string& title) {
  const auto cookie =
      xcb_get_property(connection_, 0, root_, clientList_, XCB_ATOM_WINDOW, 0, kMostWords);
  const auto reply = Own(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply) return false;
  const std::span windows(
      static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get())),
      static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) / sizeof(xcb_window_t));
  for (const xcb_window_t window : windows) {
    if (Title(window).starts_with(title)) return IsPainted(window);
  }
  return false;
}

std::string ScreenWatch::Title(xcb_window_t window) {
  const auto cookie = xcb_get_property(connection_, 0, window, name_, utf8_, 0, kMostWords);
  const auto reply = Own(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

// Asks the root window for the pixels, as far as they are on the screen: a window that is not
// altogether there has none to give.
bool ScreenWatch::IsPainted(xcb_window_t window) {
  const auto size =
      Own(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  const auto screen =
      Own(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, root_), nullptr));
  if (!size || !screen) return false;
  const auto place = Own(xcb_translate_coordinates_reply(
      connection_,
      xcb_translate_coordinates(connection_, window, root_, 0,
                                static_cast<std::int16_t>(size->height / 2)),
      nullptr));
  if (!place) return false;
  const int left = std::max<int>(place->dst_x, 0);
  const int right = std::min(place->dst_x + size->width, int{screen->width});
  if (left >= right || place->dst_y < 0 || place->dst_y >= screen->height) return false;
  const auto image = Own(xcb_get_image_reply(
      connection_,
      xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, static_cast<std::int16_t>(left),
                    place->dst_y, static_cast<std::uint16_t>(right - left), 1, ~0U),
      nullptr));
  if (!image) return false;
  const std::span pixels(
      reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get())),
      static_cast<std::size_t>(xcb_get_image_data_length(image.get())) / sizeof(std::uint32_t));
  return std::set<std::uint32_t>(pixels.begin(), pixels.end()).size() >= kFewestColours;
}

}  // namespace tessmar::bench
