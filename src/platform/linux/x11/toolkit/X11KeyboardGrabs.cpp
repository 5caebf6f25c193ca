// SPDX-License-Identifier: MIT
#include "platform/linux/x11/toolkit/X11KeyboardGrabs.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>
#include <memory>

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/toolkit/ToolkitConnection.h"

namespace vantorel {
namespace {

/// Asked of the server: the toolkit may not have heard yet that what is typed goes elsewhere, and
/// a grab would then take the keyboard from there.
bool hasFocus(xcb_connection_t* connection, WindowNumber window) {
  const X11Reply<xcb_get_input_focus_reply_t> focus(
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  return focus && focus->focus == window;
}

class X11KeyboardGrab : public Observation {
 public:
  explicit X11KeyboardGrab(QWindow& window) : window_(&window) {}
  ~X11KeyboardGrab() override {
    // A grab ends with its window; a window that is still there has to be told.
    if (!window_ || window_->handle() == nullptr) return;
    window_->setKeyboardGrabEnabled(false);
    // The toolkit would send it with whatever it has to send next, which may be much later.
    if (auto* connection = toolkitConnection()) xcb_flush(connection);
  }
  X11KeyboardGrab(const X11KeyboardGrab&) = delete;
  X11KeyboardGrab& operator=(const X11KeyboardGrab&) = delete;

 private:
  QPointer<QWindow> window_;
};

}  // namespace

std::unique_ptr<Observation> X11KeyboardGrabs::grabKeyboard(WindowNumber window) {
  auto* connection = toolkitConnection();
  if (connection == nullptr || !hasFocus(connection, window)) return nullptr;
  const auto windows = QGuiApplication::allWindows();
  for (auto* each : windows) {
    // A window without a handle would be given one by being asked for its number.
    if (each->handle() == nullptr || each->winId() != window) continue;
    if (!each->setKeyboardGrabEnabled(true)) return nullptr;
    return std::make_unique<X11KeyboardGrab>(*each);
  }
  return nullptr;
}

}  // namespace vantorel
