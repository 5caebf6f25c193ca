// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Workspace.h"
#include "platform/linux/x11/WindowFacts.h"
#include "platform/linux/x11/WindowQueries.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// A window as it is known at present.
struct KnownWindow {
  WindowToken token = 0;
  WindowFacts facts;
  std::uint64_t lastInFront = 0;  // the larger, the later; 0: it never was
};

/// All that is known of the windows of a display: learnt when one is first heard of, kept up to
/// date by what the server tells of it, and dropped with the window. The server gives a number out
/// again as soon as its window has gone, so nothing here is believed for longer. On the X thread.
class X11Windows {
 public:
  /// `thread` outlives this; events reach it by `handle()`.
  explicit X11Windows(X11Thread& thread);
  ~X11Windows();
  X11Windows(const X11Windows&) = delete;
  X11Windows& operator=(const X11Windows&) = delete;

  /// True when another window may be in front, or its application be another, since.
  bool handle(const xcb_generic_event_t& event);
  /// The server has gone: there are no windows any more.
  void handleLoss();

  /// Takes in everything that has happened on the server by now, in one round trip. What follows in
  /// the same turn is true of this moment. Not within `handle()`.
  void catchUp();

  /// Whether a window manager is there that tells of every change of the active window.
  [[nodiscard]] bool announcesActive();

  /// The window that has the user's attention: what the window manager says, as long as it and
  /// that window exist; else, and without such a window manager, the one that has the keyboard.
  [[nodiscard]] std::optional<KnownWindow> active();
  /// The application's window that the keyboard's input goes to, perhaps to a part of it.
  [[nodiscard]] std::optional<KnownWindow> focused();
  [[nodiscard]] xcb_window_t inputFocus() const { return queries_.inputFocus(); }

  /// Absent when that window has ended.
  [[nodiscard]] std::optional<KnownWindow> find(WindowToken token);
  /// When that window, which has ended, was last seen in front, in seconds since the machine was
  /// started; absent while it exists, and when it is not remembered.
  [[nodiscard]] std::optional<double> lastSightOf(WindowToken token) const;
  /// Every window of an application: those that were in front, the last first, then the others, the
  /// highest first.
  [[nodiscard]] std::vector<KnownWindow> all();

  /// Brings the window to the front, as a pager does. `current` is this program's own active
  /// window, or none. Without a window manager that listens, raises and focuses it directly.
  void activate(xcb_window_t window, xcb_window_t current);

  [[nodiscard]] const WindowQueries& queries() const { return queries_; }
  /// The process of this program, as the server sees it.
  [[nodiscard]] std::optional<ProcessId> ownPid() const { return queries_.ownProcess(clock_); }

 private:
  struct Entry {
    KnownWindow window;
    double seenInFront = 0;  // seconds since the machine was started
    bool factsAreFresh = false;
  };
  using Entries = std::map<xcb_window_t, Entry>;

  bool handle(const xcb_property_notify_event_t& change);
  bool handle(const xcb_destroy_notify_event_t& end);
  void watch(xcb_window_t window, std::uint32_t events) const;
  Entry* take(xcb_window_t window, std::optional<WindowFacts> facts);
  Entry* learn(xcb_window_t window);
  void forget(Entries::iterator entry);
  void lookForManager();
  void readActive();
  [[nodiscard]] Entry* learnStated();
  [[nodiscard]] Entry* learnFocused();
  [[nodiscard]] xcb_timestamp_t serverTime();

  X11Thread& thread_;
  X11Connection& connection_;
  WindowQueries queries_;
  xcb_window_t clock_;  // our own; a change of its property tells the server's time
  xcb_timestamp_t time_ = XCB_CURRENT_TIME;
  xcb_atom_t activeWindow_;
  xcb_atom_t managerCheck_;
  xcb_atom_t supported_;

  Entries entries_;
  /// Of windows that were in front and have ended, the last ended last.
  std::deque<std::pair<WindowToken, double>> lastSights_;
  WindowToken lastToken_ = 0;
  std::uint64_t timesInFront_ = 0;

  std::optional<WindowQueries::Manager> manager_;
  bool managerIsKnown_ = false;
  bool managerHasEnded_ = false;  // and none has come since: what it said last is no longer true

  std::optional<xcb_window_t> stated_;  // what the window manager says is active
  bool statedIsFresh_ = false;
  bool statedHasEnded_ = false;  // that window has, and nothing else was said since
};

}  // namespace vantorel
