// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/Session.h"

#include <xcb/xcbext.h>

#include <utility>

#include "platform/linux/shortcuts/OwnCommand.h"
#include "platform/linux/wayland/DataControl.h"
#include "platform/linux/wayland/toolkit/WaylandPlugins.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {
namespace {

constexpr int otherConnections = 2;  // for the windows, and for the keys that are pressed

/// Servers before 23.1 do not say so themselves.
bool saysThatItIsXwayland(const X11Connection& x11) {
  static xcb_extension_t extension{"XWAYLAND", 0};
  return x11.extension(extension) != nullptr;
}

/// What the program needs of a compositor to do without an X server.
bool letsStandAbove(const WaylandConnection& compositor) {
  constexpr std::uint32_t oldestLayers = 3;
  return DataControl::protocol(compositor) && compositor.version("wl_seat") > 0 &&
         compositor.version("wl_subcompositor") > 0 &&
         compositor.version("zwlr_layer_shell_v1") >= oldestLayers;
}

}  // namespace

Session Session::find(const EnvironmentLookup& environment) {
  Session session;
  const auto display = environment("WAYLAND_DISPLAY");
  if (display && !display->empty()) session.wayland = WaylandConnection::open(*display);
  for (int i = 0; session.wayland && i < otherConnections; ++i) {
    session.others_.push_back(WaylandConnection::open(*display));
  }
  if (session.wayland && letsStandAbove(*session.wayland) && hasWaylandPlugins()) {
    session.windows = Windows::wayland;
    return session;
  }
  const auto x11 = X11Connection::open();
  if (x11) {
    const bool isInside = session.wayland || saysThatItIsXwayland(*x11);
    session.windows = isInside ? Windows::xwayland : Windows::x11;
  }
  return session;
}

std::unique_ptr<WaylandConnection> Session::takeAnother() {
  if (others_.empty()) return nullptr;
  auto taken = std::move(others_.back());
  others_.pop_back();
  return taken;
}

std::string Session::toolkitPlatform(const EnvironmentLookup& environment) const {
  const std::string fitting = windows == Windows::wayland ? "wayland" : "xcb";
  const auto chosen = environment("QT_QPA_PLATFORM").value_or(std::string());
  return chosen == fitting || chosen.starts_with(fitting + ":") ? chosen : fitting;
}

bool Session::hasShortcutOfPortal(const EnvironmentLookup& environment) const {
  return windows == Windows::xwayland &&
         desktopName(environment).find("GNOME") != std::string::npos;
}

std::string Session::refusal() const {
  if (windows != Windows::none) return {};
  if (!wayland) return "no X server answers. Start it in an X11 session, or with Xwayland.";
  if (letsStandAbove(*wayland)) {
    return "the toolkit lacks its part for Wayland. Install qt6-wayland, or switch on Xwayland.";
  }
  return "no X server answers in this Wayland session. Install and switch on Xwayland, "
         "which the windows need.";
}

}  // namespace vantorel
