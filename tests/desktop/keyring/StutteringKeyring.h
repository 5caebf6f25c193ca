// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <atomic>

#include "platform/linux/glib/GlibThread.h"

namespace vantorel {

/// A keyring service of this process that holds nothing, and that answers every question with an
/// error until it is told otherwise, as one does that is just starting.
class StutteringKeyring {
 public:
  /// It has its name on the session bus when this returns.
  StutteringKeyring();
  ~StutteringKeyring();
  StutteringKeyring(const StutteringKeyring&) = delete;
  StutteringKeyring& operator=(const StutteringKeyring&) = delete;

  /// From now on it answers; nobody is told.
  void settle() { isReady_ = true; }

 private:
  void open();
  void answer(const char* method, GDBusMethodInvocation* invocation);

  std::atomic<bool> isReady_ = false;
  ObjectPointer<GDBusConnection> connection_;
  GlibThread thread_;  // last: it ends before what it uses
};

}  // namespace vantorel
