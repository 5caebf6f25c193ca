// SPDX-License-Identifier: MIT
#include "platform/linux/glib/GlibThread.h"

#include <pthread.h>

#include <utility>

namespace vantorel {

GlibThread::GlibThread(const std::string& name, std::function<void()> atEnd)
    : thread_([this, atEnd = std::move(atEnd)] { run(atEnd); }) {
  pthread_setname_np(thread_.native_handle(), name.substr(0, 15).c_str());
}

GlibThread::~GlibThread() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    work_.clear();
  }
  loop_.wake();
  thread_.join();
}

void GlibThread::post(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    if (ending_) return;
    work_.push_back(std::move(work));
  }
  loop_.wake();
}

bool GlibThread::ending() {
  const std::lock_guard lock(mutex_);
  return ending_;
}

bool GlibThread::runUntil(Deadline deadline, const std::function<bool()>& done) {
  loop_.runUntil(deadline, [&] { return done() || ending(); });
  return done();
}

ObjectPointer<GAsyncResult> GlibThread::await(Deadline deadline, const GlibLoop::Start& start) {
  return loop_.await(deadline, start, [this] { return ending(); });
}

void GlibThread::flush(Deadline deadline, GDBusConnection& connection) {
  const auto flushed = loop_.await(
      deadline, [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer slot) {
        g_dbus_connection_flush(&connection, cancellable, done, slot);
      });
  // Whether it came out in time is of no use to anybody.
  (void)g_dbus_connection_flush_finish(&connection, flushed.get(), nullptr);
}

void GlibThread::run(const std::function<void()>& atEnd) {
  const GlibLoop::Served served(loop_);
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
      loop_.serveOnce();
    }
  }
  atEnd();
}

}  // namespace vantorel
