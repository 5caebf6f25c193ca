// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <thread>

#include "program/Screen.h"

namespace vantorel::bench {

/// Measures how long the program's main thread does not answer: it pings a window of the program
/// every half millisecond from a thread and a connection of its own, as a window manager would that
/// wants to know whether a program hangs. The longest time to an answer is the longest pause.
class PauseWatch {
 public:
  /// Begins, and waits for the first answer; throws when there is none within 10 s.
  explicit PauseWatch(xcb_window_t window);
  ~PauseWatch();
  PauseWatch(const PauseWatch&) = delete;
  PauseWatch& operator=(const PauseWatch&) = delete;

  /// Waits for the last answers and answers the longest pause in milliseconds.
  double finish();

 private:
  void run();
  void ping(std::uint32_t number) const;

  Screen screen_;
  xcb_window_t window_;
  xcb_atom_t protocols_;
  xcb_atom_t pingAtom_;
  std::atomic<bool> answered_{false};
  std::atomic<bool> stopping_{false};
  double longest_ = 0;  // the thread's until it has ended
  std::thread thread_;
};

}  // namespace vantorel::bench
