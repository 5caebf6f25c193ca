// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <functional>

#include "base/Deadline.h"
#include "platform/linux/glib/GlibPointers.h"

namespace vantorel {

/// A main context of its own, in which asynchronous operations of GIO run while somebody serves it.
/// Everything but `wake` on one thread, between a `Served` on it.
class GlibLoop {
 public:
  GlibLoop() : context_(g_main_context_new()) {}
  ~GlibLoop() { g_main_context_unref(context_); }
  GlibLoop(const GlibLoop&) = delete;
  GlibLoop& operator=(const GlibLoop&) = delete;

  /// While it lives, operations that this thread starts belong to the loop.
  class Served {
   public:
    explicit Served(GlibLoop& loop) : loop_(loop) {
      g_main_context_push_thread_default(loop_.context_);
    }
    ~Served() {
      loop_.drain();
      g_main_context_pop_thread_default(loop_.context_);
    }
    Served(const Served&) = delete;
    Served& operator=(const Served&) = delete;

   private:
    GlibLoop& loop_;
  };

  /// Serves until `done` answers true; what `done` answers at the end or after the deadline.
  bool runUntil(Deadline deadline, const std::function<bool()>& done);
  /// Waits for something to happen and serves it.
  void serveOnce() { g_main_context_iteration(context_, TRUE); }
  /// Ends a waiting. Any thread.
  void wake() { g_main_context_wakeup(context_); }

  /// Starts one asynchronous operation of GIO and serves until it has ended, by itself or by being
  /// cancelled: after the deadline, or when `abandoned` answers true. Its result, for the
  /// operation's finish function.
  using Start = std::function<void(GCancellable*, GAsyncReadyCallback, gpointer)>;
  [[nodiscard]] ObjectPointer<GAsyncResult> await(Deadline deadline, const Start& start,
                                                  const std::function<bool()>& abandoned = {});

 private:
  void drain();

  GMainContext* context_;
};

}  // namespace vantorel
