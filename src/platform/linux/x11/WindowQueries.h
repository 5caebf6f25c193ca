// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/x11/ClientProcesses.h"
#include "platform/linux/x11/WindowFacts.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// Questions to the server about windows. Each waits for the server alone, in one or two round
/// trips, and remembers nothing. Any thread.
class WindowQueries {
 public:
  /// `connection` outlives this.
  explicit WindowQueries(X11Connection& connection);

  /// Absent when the window is gone.
  [[nodiscard]] std::optional<WindowFacts> facts(xcb_window_t window) const;
  /// One answer for each window, in order.
  [[nodiscard]] std::vector<std::optional<WindowFacts>> facts(
      const std::vector<xcb_window_t>& windows) const;
  /// Whether `facts()` would say something else once that property of a window changes.
  [[nodiscard]] bool isFact(xcb_atom_t property) const;

  /// What the window manager says has the user's attention: XCB_WINDOW_NONE for nothing, absent
  /// when it says nothing at all.
  [[nodiscard]] std::optional<xcb_window_t> activeWindow() const;
  /// Where the keyboard's input goes: a window, perhaps a part of one, or XCB_WINDOW_NONE.
  [[nodiscard]] xcb_window_t inputFocus() const;
  /// The application's window around, or at, this one; absent when there is none.
  [[nodiscard]] std::optional<WindowFacts> topLevelOf(xcb_window_t window) const;
  /// Every managed window, the lowest first; without a window manager's list every window that
  /// might be an application's.
  [[nodiscard]] std::vector<xcb_window_t> candidates() const;

  /// Who manages windows, if somebody does.
  struct Manager {
    xcb_window_t check = XCB_WINDOW_NONE;  // its own window, which ends with it
    bool activates = false;  // it says which window is active, and changes it on demand
    bool hasEnded = false;   // what it said of itself outlives it
  };
  [[nodiscard]] std::optional<Manager> manager() const;

  /// The process of this connection, as the server sees it.
  [[nodiscard]] std::optional<ProcessId> ownProcess(xcb_window_t ownWindow) const {
    return processes_.of(ownWindow);
  }
  /// The bits of a window's id that tell windows of one client apart.
  [[nodiscard]] std::uint32_t resourceMask() const;

 private:
  struct Asked;

  [[nodiscard]] Asked ask(xcb_window_t window) const;
  [[nodiscard]] std::optional<WindowFacts> answer(const Asked& asked) const;
  [[nodiscard]] std::vector<xcb_window_t> unlistedClients() const;
  [[nodiscard]] xcb_window_t windowUnderPointer() const;

  X11Connection& connection_;
  ClientProcesses processes_;
  std::vector<xcb_atom_t> facts_;  // the properties that make them
};

}  // namespace vantorel
