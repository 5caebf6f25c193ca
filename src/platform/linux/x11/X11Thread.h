// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/Dispatch.h"
#include "platform/linux/windows/WorkLine.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// A thread around one connection: it hands out the server's events, runs what is posted to it and
/// its timers, and sleeps in between. When the server is lost it says so once, and goes on running
/// posted work and timers, so that nobody waits in vain.
///
/// Owners make the thread first, build what works on it, then `start()` it; before those parts die
/// they `stop()` it. Nothing that runs on it may throw.
class X11Thread {
 public:
  using Clock = WorkLine::Clock;
  using TimerId = WorkLine::TimerId;  // 0 is none
  using EventHandler = std::function<void(const xcb_generic_event_t&)>;

  /// `name` shows in debuggers, up to 15 bytes of it.
  X11Thread(std::unique_ptr<X11Connection> connection, std::string name);
  /// Stops.
  ~X11Thread();
  X11Thread(const X11Thread&) = delete;
  X11Thread& operator=(const X11Thread&) = delete;

  /// Begins, once. `onEvent` gets every event and every error of an unchecked request (response
  /// type 0); `onLost` is called once, when the server has gone. Both on the thread.
  void start(EventHandler onEvent, Work onLost);
  /// Ends the loop and joins. What was posted and has not begun is dropped. Not on the thread.
  void stop();

  /// Runs `work` on the thread, in the order posted. Any thread, also before `start()`. False,
  /// and `work` is dropped, after `stop()`.
  bool post(Work work) { return line_.post(std::move(work)); }
  /// Runs `work` on the thread and waits for it: only for what never waits on another program.
  /// False when it could not run. Not on the thread; between `start()` and `stop()`.
  [[nodiscard]] bool runAndWait(const Work& work) { return line_.runAndWait(work); }

  /// Runs `work` once on the thread, `delay` from now. On the thread.
  TimerId after(Clock::duration delay, Work work) { return line_.after(delay, std::move(work)); }
  /// Does nothing for a timer that has run. On the thread.
  void cancel(TimerId timer) { line_.cancel(timer); }
  /// Hands out the events that have arrived by now, without waiting. For posted work and timers,
  /// never from within the event handler.
  void handleArrivedEvents();
  /// The same for all that happened until now: waits for the server. False when it has no answer.
  bool catchUp();

  [[nodiscard]] X11Connection& connection() const { return *connection_; }

 private:
  void run();
  bool handleEvents(int maximum);
  void noticeLoss();
  void sleep(bool moreEvents);

  std::unique_ptr<X11Connection> connection_;
  std::string name_;
  WorkLine line_;
  EventHandler onEvent_;
  Work onLost_;
  std::thread thread_;
  enum class Server { reachable, lost } server_ = Server::reachable;  // on the thread
};

}  // namespace vantorel
