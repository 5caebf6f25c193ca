// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// What a tray of the older kind says of itself.
struct TrayFacts {
  xcb_window_t window = XCB_WINDOW_NONE;  // none: there is no such tray
  xcb_visualid_t visual = 0;              // that its icons should have; 0 when it does not say
  std::optional<std::uint32_t> ink = {};  // 0xRRGGBB, of symbols on it
  friend bool operator==(const TrayFacts&, const TrayFacts&) = default;
};

/// Knows which program's window is this screen's tray: the owner of `_NET_SYSTEM_TRAY_Sn`. On one
/// thread.
class TrayManager {
 public:
  enum class News { none, changed, announced };

  /// Watches from now on; `facts()` are known when this returns.
  explicit TrayManager(X11Connection& connection);

  [[nodiscard]] const TrayFacts& facts() const { return facts_; }
  /// What the event says of the tray. announced: the same has said again that it is there, and may
  /// know of none of its icons.
  News handle(const xcb_generic_event_t& event);
  /// Asks it to take that window in. It may never do so.
  void dock(xcb_window_t window) const;

 private:
  News read();
  [[nodiscard]] TrayFacts factsOf(xcb_window_t window);
  [[nodiscard]] xcb_window_t owner() const;
  void select(xcb_window_t window, std::uint32_t mask) const;

  X11Connection& connection_;
  xcb_atom_t selection_;
  xcb_atom_t announcement_;
  xcb_atom_t visual_;
  xcb_atom_t colors_;
  TrayFacts facts_;
};

}  // namespace vantorel
