// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "platform/linux/glib/GlibLoop.h"

namespace vantorel {

/// A thread with a loop of its own. It runs the work it is given one after the other; work that
/// waits for an answer goes on serving the loop.
class GlibThread {
 public:
  /// `atEnd` runs on the thread as its last work.
  GlibThread(const std::string& name, std::function<void()> atEnd);
  /// Ends the waiting of the work that runs, drops what has not begun, and joins the thread.
  ~GlibThread();
  GlibThread(const GlibThread&) = delete;
  GlibThread& operator=(const GlibThread&) = delete;

  /// Any thread.
  void post(std::function<void()> work);

  /// As the loop's, but both also end when the thread is to end. On the thread.
  bool runUntil(Deadline deadline, const std::function<bool()>& done);
  [[nodiscard]] ObjectPointer<GAsyncResult> await(Deadline deadline, const GlibLoop::Start& start);
  /// What was sent over the connection leaves the process, also when the thread is to end.
  void flush(Deadline deadline, GDBusConnection& connection);

 private:
  void run(const std::function<void()>& atEnd);
  [[nodiscard]] bool ending();

  GlibLoop loop_;
  std::mutex mutex_;
  std::deque<std::function<void()>> work_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace vantorel
