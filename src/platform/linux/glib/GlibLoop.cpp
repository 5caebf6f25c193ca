// SPDX-License-Identifier: MIT
#include "platform/linux/glib/GlibLoop.h"

#include <algorithm>

namespace vantorel {

bool GlibLoop::runUntil(Deadline deadline, const std::function<bool()>& done) {
  using std::chrono::ceil;
  using std::chrono::milliseconds;
  const auto now = [] { return std::chrono::steady_clock::now(); };
  const auto remaining = std::max(milliseconds(0), ceil<milliseconds>(deadline - now()));
  GSource* alarm = g_timeout_source_new(static_cast<guint>(remaining.count()));
  g_source_set_callback(
      alarm, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
  g_source_attach(alarm, context_);
  while (!done() && now() < deadline) serveOnce();
  g_source_destroy(alarm);
  g_source_unref(alarm);
  return done();
}

ObjectPointer<GAsyncResult> GlibLoop::await(Deadline deadline, const Start& start,
                                            const std::function<bool()>& abandoned) {
  const ObjectPointer<GCancellable> cancellable(g_cancellable_new());
  GAsyncResult* result = nullptr;
  start(
      cancellable.get(),
      [](GObject*, GAsyncResult* ended, gpointer slot) {
        *static_cast<GAsyncResult**>(slot) = G_ASYNC_RESULT(g_object_ref(ended));
      },
      &result);
  runUntil(deadline, [&] { return result != nullptr || (abandoned && abandoned()); });
  if (!result) {
    g_cancellable_cancel(cancellable.get());
    // A cancelled operation still ends, and `result` must not go before it does.
    while (!result) serveOnce();
  }
  return ObjectPointer<GAsyncResult>(result);
}

void GlibLoop::drain() {
  // What has been cancelled or unsubscribed still frees its data.
  while (g_main_context_iteration(context_, FALSE) != FALSE) {
  }
}

}  // namespace vantorel
