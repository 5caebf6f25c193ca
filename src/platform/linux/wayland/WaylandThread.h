// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/linux/wayland/WaylandConnection.h"
#include "platform/linux/windows/WorkLine.h"

namespace vantorel {

/// A thread around one connection: it runs the callbacks of what the compositor says, what is
/// posted to it, its timers, and whoever waits for a pipe, and sleeps in between. When the
/// compositor is lost it says so once, and goes on running the rest, so that nobody waits in vain.
///
/// Owners make the thread first, build what works on it, then `start()` it; before those parts die
/// they `stop()` it. Nothing that runs on it may throw.
class WaylandThread {
 public:
  using TimerId = WorkLine::TimerId;

  /// `name` shows in debuggers, up to 15 bytes of it.
  WaylandThread(std::unique_ptr<WaylandConnection> connection, std::string name);
  /// Stops.
  ~WaylandThread();
  WaylandThread(const WaylandThread&) = delete;
  WaylandThread& operator=(const WaylandThread&) = delete;

  /// Begins, once. `onLost` is called once, on the thread, when the compositor has gone.
  void start(Work onLost);
  /// Ends the loop and joins. What was posted and has not begun is dropped. Not on the thread.
  void stop();

  /// As those of `WorkLine`.
  bool post(Work work) { return line_.post(std::move(work)); }
  [[nodiscard]] bool runAndWait(const Work& work) { return line_.runAndWait(work); }
  TimerId after(WorkLine::Clock::duration delay, Work work) {
    return line_.after(delay, std::move(work));
  }
  void cancel(TimerId timer) { line_.cancel(timer); }

  /// Calls `ready` whenever one of the `poll()` events has come to that descriptor, or its other
  /// end has closed; until it is unwatched. On the thread.
  void watch(int descriptor, short events, Work ready);
  void unwatch(int descriptor) { watched_.erase(descriptor); }

  [[nodiscard]] WaylandConnection& connection() const { return *connection_; }

 private:
  void run();
  void sleep();

  struct Watched {
    short events = 0;
    std::shared_ptr<const Work> ready;
  };

  std::unique_ptr<WaylandConnection> connection_;
  std::string name_;
  WorkLine line_;
  Work onLost_;
  std::thread thread_;
  // On the thread.
  enum class Compositor { reachable, lost } compositor_ = Compositor::reachable;
  std::map<int, Watched> watched_;
};

}  // namespace vantorel
