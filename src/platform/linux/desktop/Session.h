// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/wayland/WaylandConnection.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// What the session that this process was started in has for windows and clipboards, found out
/// once, before the toolkit: that one ends the process where it finds nothing. Told by what
/// answers, not by the names of desktops.
struct Session {
  /// wayland: a compositor that lets a program keep the clipboard and stand above the windows, and
  /// a toolkit that speaks to it. xwayland: an X server that stands inside of a compositor, so that
  /// it knows only of the windows, keys and pointer that belong to X11 programs.
  enum class Windows { none, x11, xwayland, wayland };

  Windows windows = Windows::none;
  /// Null where `WAYLAND_DISPLAY` names nobody who answers.
  std::unique_ptr<WaylandConnection> wayland = nullptr;
  /// Another connection to the same compositor, for a thread of its own; null where there is none.
  /// There are two, made at once: a compositor that knows its programs by their files cannot look
  /// any more when this process has closed itself to others.
  [[nodiscard]] std::unique_ptr<WaylandConnection> takeAnother();

  /// Waits for the window systems alone; asks no Wayland compositor where the environment names
  /// none.
  [[nodiscard]] static Session find(const EnvironmentLookup& environment);

  /// How the toolkit is told, by its option "-platform", to speak to what was found.
  /// Options that the user gives by `QT_QPA_PLATFORM` hold for that platform alone.
  [[nodiscard]] std::string toolkitPlatform(const EnvironmentLookup& environment) const;

  /// Whether the desktop's portal is who gives the shortcut. Portals announce shortcuts for
  /// desktops that lack them, so the desktop's name counts.
  [[nodiscard]] bool hasShortcutOfPortal(const EnvironmentLookup& environment) const;

  /// Why no window can be shown, and what to do, as one line; empty when one can.
  [[nodiscard]] std::string refusal() const;

 private:
  std::vector<std::unique_ptr<WaylandConnection>> others_;
};

}  // namespace vantorel
