// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/glib/GlibPointers.h"

namespace vantorel {

class GlibThread;

/// What the log-in manager knows of this program's session: whether somebody said that its screen
/// is locked. Asked on the system bus, over a connection and on a thread of its own, for nobody
/// else waits for that bus. Without a bus or a manager nothing is known; none is started. A manager
/// that is silent, or goes and soon comes again, leaves what it told as it is; it is asked again.
class LoginSession {
 public:
  /// `told` is called on the thread, with the same answer any number of times.
  explicit LoginSession(std::function<void(bool isLocked)> told);
  ~LoginSession();
  LoginSession(const LoginSession&) = delete;
  LoginSession& operator=(const LoginSession&) = delete;

 private:
  // On the thread.
  void join();
  void ask();
  void answered(GVariant* reply, const GError* error);
  void askLater();
  void forgetToAsk();
  void hear(const char* sender, const char* interface, const char* signal, const char* argument,
            GDBusSignalCallback callback);
  static void busClosed(GDBusConnection* bus, gboolean byTheBus, GError* error, LoginSession* self);
  void leave();

  const std::function<void(bool)> told_;
  ObjectPointer<GDBusConnection> connection_;
  ObjectPointer<GCancellable> questions_;
  std::vector<guint> subscriptions_;
  gulong closed_ = 0;
  int openQuestions_ = 0;
  GSource* later_ = nullptr;  // when it is asked again
  std::optional<std::chrono::steady_clock::time_point> awaySince_;
  std::unique_ptr<GlibThread> thread_;  // last: it ends before what it uses
};

}  // namespace vantorel
