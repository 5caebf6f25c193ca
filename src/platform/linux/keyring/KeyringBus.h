// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/linux/glib/GlibPointers.h"
#include "platform/linux/glib/GlibThread.h"
#include "platform/linux/keyring/KeyringService.h"

namespace vantorel {

/// The session bus as far as the keyring needs it: the connection that GIO shares within a process
/// (libsecret uses no other), made when first needed and made anew after it broke. Each call ends
/// at the deadline. On the keyring's thread.
class KeyringBus {
 public:
  static constexpr const char* serviceName = "org.freedesktop.secrets";
  static constexpr const char* servicePath = "/org/freedesktop/secrets";

  explicit KeyringBus(GlibThread& thread) : thread_(thread) {}
  KeyringBus(const KeyringBus&) = delete;
  KeyringBus& operator=(const KeyringBus&) = delete;

  void setDeadline(Deadline deadline) { deadline_ = deadline; }
  [[nodiscard]] Deadline deadline() const { return deadline_; }
  [[nodiscard]] GlibThread& thread() { return thread_; }

  /// The open connection; null when there is no bus.
  [[nodiscard]] GDBusConnection* connection();

  /// Calls a method of the keyring service; takes `arguments` when they are floating.
  [[nodiscard]] KeyringAnswer<VariantPointer> call(const ObjectPath& object, const char* interface,
                                                   const char* method, GVariant* arguments);
  /// The same without waiting for an answer, but for its way out of this process, which may end
  /// next; where the bus is silent, a quarter of a second.
  void send(const ObjectPath& object, const char* interface, const char* method,
            GVariant* arguments);
  /// The value of a property, which has to be of that GLib `type`; asked from the service each
  /// time.
  [[nodiscard]] KeyringAnswer<VariantPointer> property(const ObjectPath& object,
                                                       const char* interface, const char* name,
                                                       const char* type);

 private:
  GlibThread& thread_;
  Deadline deadline_{};
  ObjectPointer<GDBusConnection> connection_;
};

}  // namespace vantorel
