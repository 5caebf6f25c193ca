#include "platform/linux/desktop/Session.h"

#include <xcb/xcbext.h>

#include "platform/linux/x11/X11Connection.h"

namespace vantorel {
namespace {

/// Servers before 23.1 do not say so themselves.
bool saysThatItIsXwayland(const X11Connection& x11) {
  static xcb_extension_t extension{"XWAYLAND", 0};
  return x11.extension(extension) != nullptr;
}

}  // namespace

Session Session::find(const EnvironmentLookup& environment) {
  Session session;
  const auto display = environment("WAYLAND_DISPLAY");
  if (display && !display->empty()) session.wayland = WaylandConnection::open(*display);
  if (session.wayland) session.waylandDisplay_ = *display;
  const auto x11 = X11Connection::open();
  if (x11) {
    const bool isInside = session.wayland || saysThatItIsXwayland(*x11);
    session.windows = isInside ? Windows::xwayland : Windows::x11;
  }
  return session;
}

std::unique_ptr<WaylandConnection> Session::connectAgain() const {
  return waylandDisplay_.empty() ? nullptr : WaylandConnection::open(waylandDisplay_);
}

std::string Session::refusal() const {
  if (windows != Windows::none) return {};
  return wayland ? "no X server answers in this Wayland session. Install and switch on Xwayland, "
                   "which the windows need."
                 : "no X server answers. Start it in an X11 session, or with Xwayland.";
}

}  // namespace vantorel
