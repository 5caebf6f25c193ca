// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/KeyringBus.h"

#include <chrono>
#include <climits>
#include <string_view>
#include <utility>

#include "platform/linux/glib/SessionBusAddress.h"

namespace vantorel {
namespace {

constexpr int noTimeoutOfItsOwn = INT_MAX;
constexpr std::chrono::milliseconds longestFlush(250);

KeyringFailure failureOf(const GError* error) {
  const TextPointer name(g_dbus_error_get_remote_error(error));
  const bool locked =
      name && std::string_view(name.get()) == "org.freedesktop.Secret.Error.IsLocked";
  return locked ? KeyringFailure::locked : KeyringFailure::noAnswer;
}

}  // namespace

GDBusConnection* KeyringBus::connection() {
  if (connection_ && g_dbus_connection_is_closed(connection_.get()) == FALSE) {
    return connection_.get();
  }
  connection_.reset();
  // Asked for without an address, GIO would start a bus.
  if (!sessionBusAddress(processEnvironment)) return nullptr;
  const auto result = thread_.await(
      deadline_, [](GCancellable* cancellable, GAsyncReadyCallback done, gpointer slot) {
        g_bus_get(G_BUS_TYPE_SESSION, cancellable, done, slot);
      });
  GError* error = nullptr;
  ObjectPointer<GDBusConnection> found(g_bus_get_finish(result.get(), &error));
  const ErrorPointer discarded(error);
  if (!found) return nullptr;
  // Otherwise the end of the bus would be the end of this process.
  g_dbus_connection_set_exit_on_close(found.get(), FALSE);
  if (g_dbus_connection_is_closed(found.get()) != FALSE) return nullptr;
  connection_ = std::move(found);
  return connection_.get();
}

KeyringAnswer<VariantPointer> KeyringBus::call(const ObjectPath& object, const char* interface,
                                               const char* method, GVariant* arguments) {
  const VariantPointer held(g_variant_ref_sink(arguments));
  if (!connection()) return KeyringFailure::noAnswer;
  const auto result = thread_.await(
      deadline_, [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer slot) {
        g_dbus_connection_call(connection_.get(), serviceName, object.c_str(), interface, method,
                               held.get(), nullptr, G_DBUS_CALL_FLAGS_NONE, noTimeoutOfItsOwn,
                               cancellable, done, slot);
      });
  GError* error = nullptr;
  VariantPointer reply(g_dbus_connection_call_finish(connection_.get(), result.get(), &error));
  const ErrorPointer failed(error);
  if (failed) return failureOf(failed.get());
  return reply;
}

void KeyringBus::send(const ObjectPath& object, const char* interface, const char* method,
                      GVariant* arguments) {
  const VariantPointer held(g_variant_ref_sink(arguments));
  if (!connection_) return;
  g_dbus_connection_call(connection_.get(), serviceName, object.c_str(), interface, method,
                         held.get(), nullptr, G_DBUS_CALL_FLAGS_NONE, noTimeoutOfItsOwn, nullptr,
                         nullptr, nullptr);
  thread_.flush(std::chrono::steady_clock::now() + longestFlush, *connection_);
}

KeyringAnswer<VariantPointer> KeyringBus::property(const ObjectPath& object, const char* interface,
                                                   const char* name, const char* type) {
  auto reply = call(object, "org.freedesktop.DBus.Properties", "Get",
                    g_variant_new("(ss)", interface, name));
  if (!reply) return reply.failure();
  if (g_variant_is_of_type(reply->get(), G_VARIANT_TYPE("(v)")) == FALSE) {
    return KeyringFailure::noAnswer;
  }
  GVariant* value = nullptr;
  g_variant_get(reply->get(), "(v)", &value);
  VariantPointer held(value);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-cstyle-cast): what the macro expands to
  if (g_variant_is_of_type(value, G_VARIANT_TYPE(type)) == FALSE) return KeyringFailure::noAnswer;
  return held;
}

}  // namespace vantorel
