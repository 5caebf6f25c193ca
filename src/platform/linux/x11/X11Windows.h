#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

enum class WindowKind { normal, other };
enum class WindowManagement { managed, unmanaged };

/// What a window and the server say about it. Texts are valid UTF-8, empty when nothing is said.
struct WindowFacts {
  xcb_window_t window = XCB_WINDOW_NONE;
  WindowManagement management = WindowManagement::unmanaged;
  WindowKind kind = WindowKind::normal;  // normal, dialog or untyped, and on the taskbar
  std::string wmInstance;
  std::string wmClass;
  std::string desktopFile;                 // what toolkits announce: the id of the desktop entry
  std::string clientMachine;               // host name
  std::optional<std::uint32_t> statedPid;  // _NET_WM_PID: the program's own word
  std::optional<std::uint32_t> clientPid;  // the local process at the other end, as the server sees
};

/// Asks the server about windows. Every call waits for the server alone, in one or two round trips.
/// For one thread at a time; selects no events on windows of others. `activate()` throws the
/// connection's waiting events away: only for a connection that nobody else listens to.
class X11Windows {
 public:
  /// `connection` outlives this.
  explicit X11Windows(X11Connection& connection);
  ~X11Windows();
  X11Windows(const X11Windows&) = delete;
  X11Windows& operator=(const X11Windows&) = delete;

  /// The window that has the user's attention: what the window manager says, if that window exists
  /// and is one; else, and without such a window manager, the top-level window that has the
  /// keyboard. Absent when none has. Which one it is, is always news; what else is said of it may
  /// be some seconds old.
  [[nodiscard]] std::optional<WindowFacts> active() const;

  /// The top-level window that gets the keys.
  [[nodiscard]] std::optional<WindowFacts> focused() const;

  /// Absent when the window is gone.
  [[nodiscard]] std::optional<WindowFacts> facts(xcb_window_t window) const;

  /// Every window of an application, the lowest first.
  [[nodiscard]] std::vector<WindowFacts> all() const;

  /// Brings the window to the front, as a pager does. `current` is this program's own active
  /// window, or none. Without a window manager that listens, raises and focuses it directly.
  void activate(xcb_window_t window, xcb_window_t current) const;

  /// The bits of a window's id that tell windows of one client apart.
  [[nodiscard]] std::uint32_t resourceMask() const;

 private:
  struct Asked;

  [[nodiscard]] Asked ask(xcb_window_t window) const;
  [[nodiscard]] std::optional<WindowFacts> answer(const Asked& asked) const;
  [[nodiscard]] std::vector<WindowFacts> factsOf(const std::vector<xcb_window_t>& windows) const;
  [[nodiscard]] std::vector<xcb_window_t> clientList() const;
  [[nodiscard]] std::vector<xcb_window_t> unlistedClients() const;
  [[nodiscard]] xcb_window_t windowUnderPointer() const;
  [[nodiscard]] std::optional<WindowFacts> topLevelOf(xcb_window_t window) const;
  [[nodiscard]] bool exists(xcb_window_t window) const;
  [[nodiscard]] bool managerActivates() const;
  [[nodiscard]] xcb_timestamp_t serverTime() const;

  X11Connection& connection_;
  /// The window that was active when it was asked last.
  struct Active {
    WindowFacts facts;
    std::chrono::steady_clock::time_point asked;
  };
  mutable std::optional<Active> lastActive_;
  xcb_window_t clock_;  // our own; a change of its property tells the server's time
  bool knowsClientPids_;
};

}  // namespace vantorel
