#pragma once

#include <gio/gio.h>

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "platform/linux/keyring/GlibPointers.h"

namespace vantorel {

using Deadline = std::chrono::steady_clock::time_point;

/// A thread with a main context of its own, for asynchronous calls of GIO. It runs the work it is
/// given one after the other; work that waits for an answer goes on serving the context.
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

  /// Serves the context until `done` answers true; what `done` answers at the end, after the
  /// deadline or when the thread is to end. On the thread.
  bool runUntil(Deadline deadline, const std::function<bool()>& done);

  /// Starts one asynchronous operation of GIO and serves the context until it has ended, by itself
  /// or by being cancelled after the deadline. Its result, for the operation's finish function. On
  /// the thread.
  using Start = std::function<void(GCancellable*, GAsyncReadyCallback, gpointer)>;
  [[nodiscard]] ObjectPointer<GAsyncResult> await(Deadline deadline, const Start& start);

 private:
  void run(const std::function<void()>& atEnd);
  [[nodiscard]] bool ending();

  GMainContext* context_;
  std::mutex mutex_;
  std::deque<std::function<void()>> work_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace vantorel
