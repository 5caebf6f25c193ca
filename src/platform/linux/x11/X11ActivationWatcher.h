#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/Workspace.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/x11/ActivationOrder.h"
#include "platform/linux/x11/X11Applications.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// Notices, on a thread of its own, when another application comes to the front, and keeps the
/// desktop entries up to date: they are read at the start, and again when an application shows up
/// that none of them names.
class X11ActivationWatcher {
 public:
  using Handler = std::function<void(const RunningApplication&)>;

  /// `entries` and `order` outlive this. `onActivated` runs on the thread.
  X11ActivationWatcher(std::unique_ptr<X11Connection> connection, DesktopEntries& entries,
                       ActivationOrder& order, Handler onActivated);
  ~X11ActivationWatcher();
  X11ActivationWatcher(const X11ActivationWatcher&) = delete;
  X11ActivationWatcher& operator=(const X11ActivationWatcher&) = delete;

 private:
  void handle(const xcb_generic_event_t& event);
  void readEntries();
  void look();
  [[nodiscard]] std::optional<ApplicationWindow> activeWithFreshEntries();

  DesktopEntries& entries_;
  ActivationOrder& order_;
  Handler onActivated_;
  X11Thread thread_;
  X11Applications applications_;
  xcb_atom_t activeWindow_;
  std::optional<RunningApplication> front_;  // the last one; on the thread
  xcb_window_t unknown_ = XCB_WINDOW_NONE;   // the last window without an entry; on the thread
};

}  // namespace vantorel
