#include "app/CloseRequests.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMetaObject>
#include <QWidget>

#ifdef TESSMAR_XCB
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#endif

namespace tessmar {

CloseRequests::CloseRequests(QWidget& window, std::function<bool()> wanted)
    : window_(window), wanted_(std::move(wanted)) {
  qApp->installNativeEventFilter(this);
}

CloseRequests::~CloseRequests() {
  qApp->removeNativeEventFilter(this);
}

#ifdef TESSMAR_XCB

namespace {

xcb_atom_t DeleteWindowAtom() {
  const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr) return XCB_ATOM_NONE;
  static constexpr char kName[] = "WM_DELETE_WINDOW";
  xcb_connection_t* connection = x11->connection();
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 1, sizeof kName - 1, kName),
                            nullptr),
      &std::free);
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

}  // namespace

bool CloseRequests::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (eventType != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) return false;
  const auto* request = static_cast<const xcb_client_message_event_t*>(message);
  if (!window_.isVisible() || request->window != window_.winId()) return false;
  if (request->data.data32[0] != DeleteWindowAtom()) return false;
  // A window that no dialog stands over gets the request from Qt.
  if (QApplication::activeModalWidget() == nullptr || !wanted_()) return false;
  QMetaObject::invokeMethod(&window_, "close", Qt::QueuedConnection);
  return true;
}

#else

bool CloseRequests::nativeEventFilter(const QByteArray&, void*, qintptr*) {
  return false;
}

#endif

}  // namespace tessmar
