// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/x11/WindowApplication.h"
#include "platform/linux/x11/X11Thread.h"
#include "platform/linux/x11/X11Windows.h"
#include "platform/posix/ThreadedQueue.h"

namespace vantorel {

struct ApplicationWindow {
  KnownWindow window;
  RunningApplication application;
};

/// The applications behind the windows of a display: the one place that knows them, on one
/// connection and one thread, for whoever asks which application is in front, was copied from, is
/// pasted into or is pressed keys for. It says when another window has come to the front, and keeps
/// the desktop entries up to date: they are read at the start, and again when an application shows
/// up that none of them names.
class X11Applications {
 public:
  /// Called on the thread.
  struct Observer {
    std::function<void(const RunningApplication&)> onActivated;
    /// Whether changes of the active window are announced has become another answer.
    std::function<void(bool announces)> onAnnouncing;
  };
  using EventHandler = X11Thread::EventHandler;

  /// Waits for the server alone; reading the desktop entries goes on afterwards.
  X11Applications(std::unique_ptr<X11Connection> connection, DesktopEntryPlaces places,
                  Observer observer);
  ~X11Applications();
  X11Applications(const X11Applications&) = delete;
  X11Applications& operator=(const X11Applications&) = delete;

  // Any thread but the one of this.

  /// Runs `question` on the thread, where all that the server told by now is known, and waits for
  /// it: for what waits for the server alone.
  void ask(const Work& question);
  /// Runs `work` on the thread later, in the order given; dropped when this ends.
  void post(Work work);
  [[nodiscard]] bool isLost() const { return lost_; }
  [[nodiscard]] const DesktopEntries& entries() const { return entries_; }

  // On the thread.

  /// The window that has the user's attention.
  [[nodiscard]] std::optional<ApplicationWindow> active();
  [[nodiscard]] std::optional<ApplicationWindow> find(WindowToken token);
  /// Every window of an application, the one that was in front last first.
  [[nodiscard]] std::vector<ApplicationWindow> all();

  [[nodiscard]] X11Windows& windows() { return windows_; }
  [[nodiscard]] X11Thread& thread() { return thread_; }
  [[nodiscard]] const LocalHost& host() const { return host_; }
  /// Gets every event besides; empty: none.
  void setEventHandler(EventHandler handler) { onEvent_ = std::move(handler); }

 private:
  [[nodiscard]] ApplicationWindow describe(KnownWindow window) const;
  void handle(const xcb_generic_event_t& event);
  void look();
  void readEntries();
  void entriesRead();

  Observer observer_;
  DesktopEntries entries_;
  X11Thread thread_;
  X11Windows windows_;
  LocalHost host_;
  std::atomic<bool> lost_ = false;

  // On the thread.
  EventHandler onEvent_;
  bool lookIsPosted_ = false;
  bool announces_ = false;
  std::optional<RunningApplication> front_;  // the last one
  WindowToken unnamed_ = 0;                  // the last window without an entry

  ThreadedQueue entriesQueue_;  // last: it reads the disk, where nobody waits for it
};

}  // namespace vantorel
