#include "platform/linux/keyring/GlibThread.h"

#include <pthread.h>

#include <algorithm>
#include <utility>

namespace vantorel {

GlibThread::GlibThread(const std::string& name, std::function<void()> atEnd)
    : context_(g_main_context_new()), thread_([this, atEnd = std::move(atEnd)] { run(atEnd); }) {
  pthread_setname_np(thread_.native_handle(), name.substr(0, 15).c_str());
}

GlibThread::~GlibThread() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    work_.clear();
  }
  g_main_context_wakeup(context_);
  thread_.join();
  g_main_context_unref(context_);
}

void GlibThread::post(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    if (ending_) return;
    work_.push_back(std::move(work));
  }
  g_main_context_wakeup(context_);
}

bool GlibThread::ending() {
  const std::lock_guard lock(mutex_);
  return ending_;
}

bool GlibThread::runUntil(Deadline deadline, const std::function<bool()>& done) {
  using std::chrono::ceil;
  using std::chrono::milliseconds;
  const auto now = [] { return std::chrono::steady_clock::now(); };
  const auto remaining = std::max(milliseconds(0), ceil<milliseconds>(deadline - now()));
  GSource* alarm = g_timeout_source_new(static_cast<guint>(remaining.count()));
  g_source_set_callback(
      alarm, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
  g_source_attach(alarm, context_);
  while (!done() && now() < deadline && !ending()) g_main_context_iteration(context_, TRUE);
  g_source_destroy(alarm);
  g_source_unref(alarm);
  return done();
}

ObjectPointer<GAsyncResult> GlibThread::await(Deadline deadline, const Start& start) {
  const ObjectPointer<GCancellable> cancellable(g_cancellable_new());
  GAsyncResult* result = nullptr;
  start(
      cancellable.get(),
      [](GObject*, GAsyncResult* ended, gpointer slot) {
        *static_cast<GAsyncResult**>(slot) = G_ASYNC_RESULT(g_object_ref(ended));
      },
      &result);
  if (!runUntil(deadline, [&] { return result != nullptr; })) {
    g_cancellable_cancel(cancellable.get());
    // A cancelled operation still ends, and `result` must not go before it does.
    while (!result) g_main_context_iteration(context_, TRUE);
  }
  return ObjectPointer<GAsyncResult>(result);
}

void GlibThread::run(const std::function<void()>& atEnd) {
  g_main_context_push_thread_default(context_);
  for (;;) {
    std::function<void()> next;
    {
      const std::lock_guard lock(mutex_);
      if (ending_) break;
      if (!work_.empty()) {
        next = std::move(work_.front());
        work_.pop_front();
      }
    }
    if (next) {
      next();
    } else {
      g_main_context_iteration(context_, TRUE);
    }
  }
  atEnd();
  // What has been cancelled or unsubscribed still frees its data here.
  while (g_main_context_iteration(context_, FALSE) != FALSE) {
  }
  g_main_context_pop_thread_default(context_);
}

}  // namespace vantorel
